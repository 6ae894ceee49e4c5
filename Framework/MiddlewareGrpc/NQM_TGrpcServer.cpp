#include "NQM_TGrpcServer.h"

#include <grpcpp/grpcpp.h>

#include <atomic>
#include <mutex>

#include "Middleware.grpc.pb.h"
#include "NQ_EException.h"
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

/// Hands each call to the local service that it is meant for.
class TOffer final : public pb::Middleware::Service {
 public:
  TOffer(std::shared_ptr<NQM_TServices> services, const NQM_TGrpcLimits& limits)
      : services_(std::move(services)), limits_(limits) {}

  grpc::Status Call(grpc::ServerContext*, const pb::Request* request, pb::Reply* reply) override {
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

  std::atomic<std::uint16_t> port{0};

 private:
  const std::shared_ptr<NQM_TServices> services_;
  const NQM_TGrpcLimits limits_;
};

}  // namespace

class NQM_TGrpcServer::TImplementation {
 public:
  TImplementation(std::shared_ptr<NQM_TServices> services, const NQM_TGrpcServerOptions& options)
      : offer_(std::move(services), options.limits) {
    grpc::ResourceQuota quota;
    quota.SetMaxThreads(options.maxThreads);
    grpc::ServerBuilder builder;
    int port = 0;
    const std::string address = options.host + ':' + std::to_string(options.port);
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
    server_->Shutdown(std::chrono::system_clock::now() + grace);
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
