// What Docs/integrating.md shows, at work.
#include <gtest/gtest.h>

#include <iostream>

#include "MiddlewareGrpc/Support.h"
#include "NQ_TBoxed.h"
#include "TName.h"

namespace grpc_test {
namespace {

class TNearFirst final : public NQM_ITransport {
 public:
  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override {
    const auto service = NQM_TServices::OfProcess()->Find(address);
    return service != nullptr ? (*service)(request) : network_.Call(address, request, timeout);
  }

 private:
  NQM_TGrpcTransport network_;
};

class GrpcDocs : public testing::Test {
 protected:
  void SetUp() override {
    NQM_TServices::OfProcess()->Add("", "Prices", [](const NQ_TDict& request) -> NQ_TAny {
      const auto* const article = request.Get<NQ_TString>("P1");
      if (article == nullptr) nq::Throw(NQ_EException("Price needs the number of an article"));
      return *article == "4711" ? NQ_TAny("12.50") : NQ_TAny::Null();
    });
  }
  void TearDown() override {
    NQM_TServices::OfProcess()->Remove("", "Prices");
    NQM_TClient::SetTransport(nullptr);
  }
};

void ExpectAName() {
  TName names;
  NQ_TDict parameters;
  parameters.Add("P1", "4711");
  names.Define("price", TName::TName_TypeString, TName::TName_LookupServerQuery);
  names.SetServerQuery("price", "", "Prices", "Price", parameters);
  NQ_TString text;
  names.Resolve("only <price/> today", text);  // only 12.50 today
  EXPECT_EQ(text, "only 12.50 today");
}

void ExpectAClient() {
  NQM_TClient client;
  client.SetConnectionAddress("", "Prices", 0, TLocationMode_Default);
  client.SetTimeout(std::chrono::seconds(5));
  NQ_TDict request;
  request.Add("M", "Price").Add("P1", "4711");
  const NQ_TAny price = client.Call(request);
  EXPECT_EQ(price, NQ_TAny("12.50"));
}

void UseNetwork(std::uint16_t port) {
  NQM_TGrpcTransportOptions options;
  options.servicePort = port;  // where services listen that are asked for by name
  NQM_TClient::SetTransport(std::make_shared<NQM_TGrpcTransport>(options));
}

TEST_F(GrpcDocs, OneProgramNearAndFar) {
  ExpectAName();
  ExpectAClient();
  const std::uint16_t port = 0;
  NQM_TGrpcServerOptions options;
  options.host = "localhost";  // "0.0.0.0" for everybody who can reach this computer
  options.port = port;         // 0 takes any free one
  NQM_TGrpcServer server(NQM_TServices::OfProcess(), options);
  UseNetwork(server.Port());
  ExpectAName();
  ExpectAClient();
  NQM_TClient::SetTransport(std::make_shared<TNearFirst>());
  ExpectAClient();
}

TEST_F(GrpcDocs, Credentials) {
  const auto [authority, certificate, key] = NewCertificate();
  NQM_TGrpcServerOptions serverOptions;
  NQM_TGrpcTransportOptions transportOptions;
  serverOptions.credentials.certificateChain = certificate;
  serverOptions.credentials.privateKey = key;
  transportOptions.credentials.rootCertificates = authority;  // empty: whom the system trusts
  const NQM_TGrpcServer server(NQM_TServices::OfProcess(), serverOptions);
  transportOptions.servicePort = server.Port();
  NQM_TClient::SetTransport(std::make_shared<NQM_TGrpcTransport>(transportOptions));
  ExpectAClient();
}

TEST_F(GrpcDocs, Failures) {
  NQM_TClient client;
  client.SetConnectionAddress("", "Prices", 0, TLocationMode_Default);
  NQ_TDict request;
  request.Add("M", "Price");
  int putAside = 0;
  const auto PutAside = [&](const NQ_TDict&) { ++putAside; };
  const auto printed = [&] {
    testing::internal::CaptureStderr();
    try {
      client.Call(request);
    } catch (const NQM_ECallFailed& failure) {
      std::cerr << failure.NQ_Message() << '\n';  // Calling "Price" at Prices@localhost: no reply within 5000 ms
      if (failure.Cause() == NQM_ECallFailed::kDeadline) PutAside(request);
    } catch (const NQ_EException& error) {
      std::cerr << error.NQ_Message() << '\n';  // Price needs the number of an article
    }
    return testing::internal::GetCapturedStderr();
  };
  EXPECT_EQ(printed(), "Price needs the number of an article\n");
  TEvent released;
  NQM_TServices::OfProcess()->Add("", "Prices", [&](const NQ_TDict&) {
    released.Await();
    return NQ_TAny();
  });
  const NQM_TGrpcServer server(NQM_TServices::OfProcess());
  UseNetwork(server.Port());
  client.SetTimeout(std::chrono::milliseconds(50));
  EXPECT_EQ(printed(), "Calling \"Price\" at Prices@localhost: no reply within 50 ms\n");
  EXPECT_EQ(putAside, 1);
  released.Happen();
}

}  // namespace
}  // namespace grpc_test
