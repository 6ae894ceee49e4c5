#include "NQM_TGrpcServer.h"

#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <atomic>
#include <mutex>

#include "Middleware.grpc.pb.h"
#include "NQ_EException.h"
#include "Private/Deadline.h"
#include "Private/WireReply.h"
#include "Private/WireText.h"
#include "Private/WireValue.h"

namespace {

namespace pb = vexonames::wire;

std::shared_ptr<grpc::ServerCredentials> ServerCredentials(const NQM_TGrpcCredentials& given) {
  if (!given.AreGiven()) return grpc::InsecureServerCredentials();
  grpc::SslServerCredentialsOptions options(given.rootCertificates.empty()
                                                ? GRPC_SSL_DONT_REQUEST_CLIENT_CERTIFICATE
                                                : GRPC_SSL_REQUEST_AND_REQUIRE_CLIENT_CERTIFICATE_AND_VERIFY);
  options.pem_root_certs = given.rootCertificates;
  options.pem_key_cert_pairs.push_back({given.privateKey, given.certificateChain});
  return grpc::SslServerCredentials(options);
}

/// What one of the calls at work adds to a sum, while it lives.
class TShare {
 public:
  TShare(std::atomic<std::size_t>& sum, std::size_t share) : sum_(sum), share_(share), all_(sum += share) {}
  TShare(const TShare&) = delete;
  TShare& operator=(const TShare&) = delete;
  ~TShare() { sum_ -= share_; }

  /// The sum with this share.
  std::size_t All() const { return all_; }

 private:
  std::atomic<std::size_t>& sum_;
  std::size_t share_;
  std::size_t all_;
};

/// Hands each call to the local service that it is meant for.
class TOffer final : public pb::Middleware::Service {
 public:
  TOffer(std::shared_ptr<NQM_TServices> services, const NQM_TGrpcLimits& limits)
      : services_(std::move(services)), limits_(limits) {}

  grpc::Status Call(grpc::ServerContext* context, const pb::Request* request, pb::Reply* reply) override {
    if (context->IsCancelled()) return grpc::Status::CANCELLED;
    // In memory a request may take many times its bytes.
    const TShare share(bytesAtWork_, request->request().size());
    if (share.All() / 2 > limits_.maxMessageBytes)
      return {grpc::StatusCode::RESOURCE_EXHAUSTED, "the server is busy with other large requests"};
    const NQM_TAddress address{{}, nq::wire::ToText(request->service()), port};
    const auto service = services_->Find(address);
    if (service == nullptr) return {grpc::StatusCode::NOT_FOUND, "the server offers no such service"};
    NQ_TAny value;
    try {
      value = nq::wire::ToValue(request->request(), limits_);
    } catch (const NQ_EException& unfit) {
      return {grpc::StatusCode::INVALID_ARGUMENT,
              std::string("the request is malformed: ") + unfit.NQ_Message().c_str()};
    }
    const auto* const dict = std::as_const(value).As<NQ_TDict>();
    if (dict == nullptr) return {grpc::StatusCode::INVALID_ARGUMENT, "the request is no dictionary"};
    nq::wire::WriteReply([&] { return (*service)(*dict); }, request->zip_reply(), *reply);
    if (reply->ByteSizeLong() > limits_.maxMessageBytes)
      return {grpc::StatusCode::RESOURCE_EXHAUSTED, "the service's reply is larger than allowed"};
    return grpc::Status::OK;
  }

  bool HasServices() const { return services_ != nullptr; }

  std::atomic<std::uint16_t> port{0};

 private:
  const std::shared_ptr<NQM_TServices> services_;
  const NQM_TGrpcLimits limits_;
  std::atomic<std::size_t> bytesAtWork_{0};
};

/// A number with colons stands in brackets where a port follows.
std::string Listening(const NQM_TGrpcServerOptions& options) {
  const bool bare = options.host.find(':') != std::string::npos && options.host.front() != '[';
  return (bare ? '[' + options.host + ']' : options.host) + ':' + std::to_string(options.port);
}

}  // namespace

class NQM_TGrpcServer::TImplementation {
 public:
  TImplementation(std::shared_ptr<NQM_TServices> services, const NQM_TGrpcServerOptions& options)
      : offer_(std::move(services), options.limits) {
    if (!offer_.HasServices()) nq::Throw(NQ_EException("The middleware server has no services to offer"));
    if (options.maxThreads < 2) nq::Throw(NQ_EException("The middleware server needs two threads at least"));
    grpc::ResourceQuota quota;
    quota.SetMaxThreads(options.maxThreads);
    grpc::ServerBuilder builder;
    int port = 0;
    const std::string address = Listening(options);
    builder.AddListeningPort(address, ServerCredentials(options.credentials), &port);
    builder.RegisterService(&offer_);
    builder.SetResourceQuota(quota);
    builder.SetMaxReceiveMessageSize(nq::wire::MessageLimit(options.limits));
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);  // a port that is taken is an error, not a partner
    builder.AddChannelArgument(GRPC_ARG_ENABLE_PER_MESSAGE_DECOMPRESSION, 0);  // no client of ours compresses
    // Clients ask every 20 s whether the server is still there.
    builder.AddChannelArgument(GRPC_ARG_HTTP2_MIN_RECV_PING_INTERVAL_WITHOUT_DATA_MS, 10'000);
    server_ = builder.BuildAndStart();
    if (server_ == nullptr || port == 0)
      nq::Throw(NQ_EException(NQ_TString("The middleware server cannot listen on " + address)));
    offer_.port = static_cast<std::uint16_t>(port);
  }

  std::uint16_t Port() const { return offer_.port; }

  void Stop(std::chrono::milliseconds grace) {
    const std::lock_guard guard(lock_);
    if (stopped_) return;
    server_->Shutdown(nq::wire::Deadline(std::max(grace, std::chrono::milliseconds(0))));
    server_->Wait();
    stopped_ = true;
  }

 private:
  TOffer offer_;
  std::unique_ptr<grpc::Server> server_;
  std::mutex lock_;
  bool stopped_ = false;
};

NQM_TGrpcServer::NQM_TGrpcServer(std::shared_ptr<NQM_TServices> services, const NQM_TGrpcServerOptions& options)
    : implementation_(std::make_unique<TImplementation>(std::move(services), options)) {}

NQM_TGrpcServer::~NQM_TGrpcServer() { Stop(); }

std::uint16_t NQM_TGrpcServer::Port() const { return implementation_->Port(); }

void NQM_TGrpcServer::Stop(std::chrono::milliseconds grace) { implementation_->Stop(grace); }
