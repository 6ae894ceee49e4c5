#include "NQM_TGrpcTransport.h"

#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <map>
#include <mutex>

#include "Middleware.grpc.pb.h"
#include "NQM_ECallFailed.h"
#include "NQ_TBoxed.h"
#include "Private/Deadline.h"
#include "Private/WireReply.h"
#include "Private/WireText.h"
#include "Private/WireValue.h"

namespace {

namespace pb = vexonames::wire;
using TStub = pb::Middleware::Stub;

/// Something that keeps the call from being made or from having a reply.
struct TFailure {
  const char* cause;
  NQ_TString reason;
};

/// The causes of what gRPC reports. Whatever is not here means that no reply came: unreachable.
constexpr struct {
  grpc::StatusCode code;
  const char* cause;
} kCauses[] = {
    {grpc::StatusCode::DEADLINE_EXCEEDED, NQM_ECallFailed::kDeadline},
    {grpc::StatusCode::NOT_FOUND, NQM_ECallFailed::kNoService},
    {grpc::StatusCode::UNIMPLEMENTED, NQM_ECallFailed::kNoService},
    {grpc::StatusCode::RESOURCE_EXHAUSTED, NQM_ECallFailed::kRefused},
    {grpc::StatusCode::INVALID_ARGUMENT, NQM_ECallFailed::kRefused},
    {grpc::StatusCode::INTERNAL, NQM_ECallFailed::kRefused},
};

TFailure FailureOf(const grpc::Status& status, std::chrono::milliseconds timeout) {
  const auto* const row = std::find_if(std::begin(kCauses), std::end(kCauses),
                                       [&](auto& known) { return known.code == status.error_code(); });
  if (row == std::end(kCauses)) return {NQM_ECallFailed::kUnreachable, NQ_TString(status.error_message())};
  if (row->code == grpc::StatusCode::DEADLINE_EXCEEDED)
    return {row->cause, NQ_TString("no reply within " + std::to_string(timeout.count()) + " ms")};
  return {row->cause, NQ_TString(status.error_message())};
}

grpc::ChannelArguments ChannelArguments(const NQM_TGrpcLimits& limits) {
  grpc::ChannelArguments arguments;
  arguments.SetMaxReceiveMessageSize(nq::wire::MessageLimit(limits));
  // A request may have been carried out although its reply was lost: only the caller knows whether to send it again.
  arguments.SetInt(GRPC_ARG_ENABLE_RETRIES, 0);
  arguments.SetInt(GRPC_ARG_SERVICE_CONFIG_DISABLE_RESOLUTION, 1);
  arguments.SetInt(GRPC_ARG_ENABLE_HTTP_PROXY, 0);
  // Unpacked by ourselves, within the limits.
  arguments.SetInt(GRPC_ARG_ENABLE_PER_MESSAGE_DECOMPRESSION, 0);
  // A server that comes back is found within a second, not after gRPC's two minutes.
  arguments.SetInt(GRPC_ARG_INITIAL_RECONNECT_BACKOFF_MS, 100);
  arguments.SetInt(GRPC_ARG_MAX_RECONNECT_BACKOFF_MS, 1000);
  // While calls wait, a connection whose other end is gone is given up after half a minute, and made anew.
  arguments.SetInt(GRPC_ARG_KEEPALIVE_TIME_MS, 20'000);
  arguments.SetInt(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, 10'000);
  return arguments;
}

std::shared_ptr<grpc::ChannelCredentials> ChannelCredentials(const NQM_TGrpcCredentials& given) {
  if (!given.AreGiven()) return grpc::InsecureChannelCredentials();
  return grpc::SslCredentials({given.rootCertificates, given.privateKey, given.certificateChain});
}

/// Host and port as a gRPC target. The host comes from records and templates: only what can be a host name or a
/// number is taken, so that it cannot name another kind of target.
std::string PlainTarget(const NQM_TAddress& address, std::uint16_t servicePort) {
  constexpr std::string_view kHostCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._:";
  constexpr std::size_t kMostHostBytes = 255;  // RFC 1035
  std::string host(address.host.Empty() ? "localhost" : address.host.Narrow());
  if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  if (host.size() > kMostHostBytes || host.find_first_not_of(kHostCharacters) != std::string::npos)
    throw TFailure{NQM_ECallFailed::kUnreachable, "this is no host name"};
  if (host.find(':') != std::string::npos) host = '[' + host + ']';
  return "dns:///" + host + ':' + std::to_string(address.port != 0 ? address.port : servicePort);
}

}  // namespace

class NQM_TGrpcTransport::TImplementation {
 public:
  explicit TImplementation(NQM_TGrpcTransportOptions options)
      : options_(std::move(options)),
        arguments_(ChannelArguments(options_.limits)),
        credentials_(ChannelCredentials(options_.credentials)) {}

  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) {
    pb::Request message;
    message.set_service(nq::wire::FromText(address.service));
    message.set_request(RequestBytes(request));
    const auto* const zipped = request.Get<NQ_TBool>("PZIPPED");
    message.set_zip_reply(zipped != nullptr && zipped->Value());

    const auto stub = StubFor(options_.target ? options_.target(address) : PlainTarget(address, options_.servicePort));
    grpc::ClientContext context;
    context.set_deadline(nq::wire::Deadline(timeout));
    pb::Reply reply;
    const grpc::Status status = stub->Call(&context, message, &reply);
    if (!status.ok()) throw FailureOf(status, timeout);
    try {
      return nq::wire::ReadReply(reply, options_.limits);
    } catch (const nq::wire::TUnfit& unfit) {
      throw TFailure{NQM_ECallFailed::kRefused, unfit.reason};
    } catch (const nq::wire::TFailed& failed) {
      throw TFailure{NQM_ECallFailed::kServiceFailed, failed.reason};
    }
  }

 private:
  struct TChannel {
    std::shared_ptr<TStub> stub;
    std::uint64_t lastUse = 0;
  };

  std::string RequestBytes(const NQ_TDict& request) const {
    std::string bytes;
    try {
      bytes = nq::wire::FromValue(NQ_TAny(request));
    } catch (const NQ_EException& unfit) {
      throw TFailure{NQM_ECallFailed::kRefused, NQ_TString("the request cannot travel: ") + unfit.NQ_Message()};
    }
    if (bytes.size() > options_.limits.maxMessageBytes)
      throw TFailure{NQM_ECallFailed::kRefused, "the request is larger than allowed"};
    return bytes;
  }

  /// One channel per target. Targets come from records: when there are many, the one not used for longest goes.
  std::shared_ptr<TStub> StubFor(const std::string& target) {
    constexpr std::size_t kMostChannels = 64;
    const std::lock_guard guard(lock_);
    auto found = channels_.find(target);
    if (found == channels_.end()) {
      if (channels_.size() == kMostChannels)
        channels_.erase(std::min_element(channels_.begin(), channels_.end(),
                                         [](auto& a, auto& b) { return a.second.lastUse < b.second.lastUse; }));
      const auto channel = grpc::CreateCustomChannel(target, credentials_, arguments_);
      found = channels_.emplace(target, TChannel{pb::Middleware::NewStub(channel)}).first;
    }
    found->second.lastUse = ++uses_;
    return found->second.stub;
  }

  const NQM_TGrpcTransportOptions options_;
  const grpc::ChannelArguments arguments_;
  const std::shared_ptr<grpc::ChannelCredentials> credentials_;
  std::mutex lock_;
  std::map<std::string, TChannel> channels_;
  std::uint64_t uses_ = 0;
};

NQM_TGrpcTransport::NQM_TGrpcTransport(NQM_TGrpcTransportOptions options)
    : implementation_(std::make_unique<TImplementation>(std::move(options))) {
  nq::wire::RegisterExceptions();
}

NQM_TGrpcTransport::~NQM_TGrpcTransport() = default;

NQ_TAny NQM_TGrpcTransport::Call(const NQM_TAddress& address, const NQ_TDict& request,
                                 std::chrono::milliseconds timeout) {
  try {
    return implementation_->Call(address, request, timeout);
  } catch (const TFailure& failure) {
    nq::Throw(NQM_ECallFailed(address, request, failure.cause, failure.reason));
  }
}
