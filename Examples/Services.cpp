// Names and clients that ask services: of the same process first, then over the network, in one program. What
// Docs/integrating.md shows is taken from here.
#include <iostream>
#include <utility>

#include "NQM_TClient.h"
#include "NQM_TGrpcServer.h"
#include "NQM_TGrpcTransport.h"
#include "NQM_TServices.h"
#include "TName.h"

namespace {

/// Prefers services of the same process and sends the rest over the network.
class TNearFirst final : public NQM_ITransport {
 public:
  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override {
    const auto service = NQM_TServices::OfProcess()->Find(address);
    return service != nullptr ? (*service)(request) : network_.Call(address, request, timeout);
  }

 private:
  NQM_TGrpcTransport network_;
};

void OfferPrices() {
  NQM_TServices::OfProcess()->Add("", "Prices", [](const NQ_TDict& request) -> NQ_TAny {
    const auto* const article = request.Get<NQ_TString>("P1");
    if (article == nullptr) nq::Throw(NQ_EException("Price needs the number of an article"));
    return *article == "4711" ? NQ_TAny("12.50") : NQ_TAny::Null();
  });
}

void AskByAName() {
  TName names;
  NQ_TDict parameters;
  parameters.Add("P1", "4711");
  names.Define("price", TName::TName_TypeString, TName::TName_LookupServerQuery);
  names.SetServerQuery("price", "", "Prices", "Price", parameters);
  NQ_TString text;
  names.Resolve("only <price/> today", text);  // only 12.50 today
  std::cout << text << '\n';
}

void AskByAClient() {
  NQM_TClient client;
  client.SetConnectionAddress("", "Prices", 0, TLocationMode_Default);
  client.SetTimeout(std::chrono::seconds(5));
  NQ_TDict request;
  request.Add("M", "Price").Add("P1", "4711");
  const NQ_TAny price = client.Call(request);
  std::cout << price << '\n';
}

void PutAside(const NQ_TDict& request) { std::cerr << "put aside: " << request << '\n'; }

void AskWithoutAnArticle() {
  NQM_TClient client;
  client.SetConnectionAddress("", "Prices", 0, TLocationMode_Default);
  NQ_TDict request;
  request.Add("M", "Price");
  try {
    client.Call(request);
  } catch (const NQM_ECallFailed& failure) {
    std::cerr << failure.NQ_Message() << '\n';  // Calling "Price" at Prices@localhost: no reply within 5000 ms
    if (failure.Cause() == NQM_ECallFailed::kDeadline) PutAside(request);
  } catch (const NQ_EException& error) {
    std::cerr << error.NQ_Message() << '\n';  // Price needs the number of an article
  }
}

void UseNetwork(std::uint16_t port) {
  NQM_TGrpcTransportOptions options;
  options.servicePort = port;  // where services listen that are asked for by name
  NQM_TClient::SetTransport(std::make_shared<NQM_TGrpcTransport>(options));
}

void AskNearAndFar(std::uint16_t port) {
  NQM_TGrpcServerOptions options;
  options.host = "localhost";  // "0.0.0.0" for everybody who can reach this computer
  options.port = port;         // 0 takes any free one
  NQM_TGrpcServer server(NQM_TServices::OfProcess(), options);
  UseNetwork(server.Port());
  AskByAName();
  AskByAClient();
  AskWithoutAnArticle();
  NQM_TClient::SetTransport(std::make_shared<TNearFirst>());
  AskByAClient();
  server.Stop(std::chrono::seconds(5));
}

}  // namespace

int main() {
  std::cerr.rdbuf(std::cout.rdbuf());  // what goes wrong is part of what this shows
  OfferPrices();
  AskByAName();
  AskByAClient();
  AskWithoutAnArticle();
  AskNearAndFar(0);
  NQM_TClient::SetTransport(nullptr);
}
