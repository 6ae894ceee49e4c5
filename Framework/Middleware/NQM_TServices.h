// Services of the same process.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <shared_mutex>

#include "NQM_ITransport.h"

/// Answers a request: the method is under "M", its parameters beside it. Called from any number of threads at once. It
/// may throw; the caller of the service receives an NQ_EException as it is.
using NQM_TService = std::function<NQ_TAny(const NQ_TDict& request)>;

/// Services by address, and the transport that calls them: on the caller's thread, without copying anything. A timeout
/// does not interrupt such a call. Host names are told apart without regard to case; no host, "localhost" and the
/// local computer's name are the same. Any thread may call any member.
///
///   NQM_TServices::OfProcess()->Add("", "CFS", [](const NQ_TDict& request) { return Answer(request); });
class NQ_EXPORT NQM_TServices final : public NQM_ITransport {
 public:
  /// The services that clients reach when the program chooses no other transport.
  static const std::shared_ptr<NQM_TServices>& OfProcess();

  NQM_TServices();
  ~NQM_TServices() override;

  /// Offers a service under a name, or at a port, in place of an earlier one. An empty function offers nothing.
  void Add(const NQ_TString& host, const NQ_TString& name, NQM_TService service);
  void Add(const NQ_TString& host, std::uint16_t port, NQM_TService service);
  /// Offers it no longer; nothing happens when it is not offered. Calls that have begun go on and keep the function
  /// alive.
  void Remove(const NQ_TString& host, const NQ_TString& name);
  void Remove(const NQ_TString& host, std::uint16_t port);
  /// The service at the address: by its name when the address has one, else by its port; empty when there is none.
  std::shared_ptr<const NQM_TService> Find(const NQM_TAddress& address) const;

  NQ_TAny Call(const NQM_TAddress& address, const NQ_TDict& request, std::chrono::milliseconds timeout) override;

 private:
  /// A service's place: name and port exclude each other.
  struct TKey {
    explicit TKey(const NQM_TAddress& address);
    bool operator<(const TKey& other) const;

    NQ_TString host;
    NQ_TString name;
    std::uint16_t port;
  };

  void Put(TKey key, NQM_TService service);

  mutable std::shared_mutex lock_;
  std::map<TKey, std::shared_ptr<const NQM_TService>> services_;
};
