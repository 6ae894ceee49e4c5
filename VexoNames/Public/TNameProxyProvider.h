// Middleware clients that many names share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "NQM_TClient.h"
#include "NQ_TString.h"

/// Keeps one client for each host and server, made when it is first asked for: names that ask the same service use one
/// connection. Without a provider a TName makes a client for every query. One provider can serve many TNames, on any
/// threads.
///
///   auto provider = std::make_shared<TNameProxyProvider>();
///   names.SetTNameProxyProvider(provider);
///
/// A test gives a TName clients of its own, and needs no network and no other state of the process:
///
///   auto fakes = std::make_shared<TNameProxyProvider>(
///       [](const NQ_TString& host, const NQ_TString& server) { return std::make_shared<TFakeClient>(host, server); });
///
/// Host names that differ only in the case of their letters are the same host, and no host is the local one. A server
/// is "#" and a port number, or the name of a service. Both can come from values of names and are therefore checked
/// before anything is made or kept: a host has at most 253 characters (UTF-16 units, as many as the longest domain
/// name) and no spaces or control characters; a server has as many at most, one or more, and no control characters.
/// What is none throws NQ_EException, and so does a server's client that cannot be made.
///
/// Threads: any thread may call any member.
class NQ_EXPORT TNameProxyProvider {
 public:
  /// So many clients that were made are kept; for another one the one goes that was not asked for the longest. Who uses
  /// it has a share of it. Those of `AddClient` are not counted: they stay until they are removed.
  static constexpr std::size_t kMostClients = 256;

  /// Makes a client for a host and a server that were checked; the host is empty for the local one. Called by the
  /// thread that needs the client, by one at a time and with the provider locked: it must not call the provider. What
  /// it throws passes through `GetClient`; null is a failure too. Nothing is kept then.
  using TFactory = std::function<std::shared_ptr<NQM_TClient>(const NQ_TString& host, const NQ_TString& server)>;

  /// Makes clients with an address, which send by `NQM_TClient::Transport()`.
  TNameProxyProvider();
  /// Makes clients with the factory; with an empty one as above.
  explicit TNameProxyProvider(TFactory factory);
  TNameProxyProvider(const TNameProxyProvider&) = delete;
  TNameProxyProvider& operator=(const TNameProxyProvider&) = delete;
  ~TNameProxyProvider();

  /// Puts a client of the caller's in place, unless there is one already. An empty one makes the provider forget its
  /// client, whoever made it; the address is not checked then.
  void AddClient(const NQ_TString& host, const NQ_TString& server, const std::shared_ptr<NQM_TClient>& client);
  /// Never null.
  std::shared_ptr<NQM_TClient> GetClient(const NQ_TString& host, const NQ_TString& server);

 private:
  using TKey = std::pair<NQ_TString, NQ_TString>;  // host, server
  struct TMade {
    std::shared_ptr<NQM_TClient> client;
    std::uint64_t lastUse = 0;
  };

  static std::shared_ptr<NQM_TClient> Create(const NQ_TString& host, const NQ_TString& server);
  static TKey MakePair(const NQ_TString& host, const NQ_TString& server);
  std::shared_ptr<NQM_TClient> Make(const NQ_TString& host, const NQ_TString& server) const;
  TMade TakeLeastUsed();

  const TFactory factory_;
  std::mutex lock_;
  std::map<TKey, std::shared_ptr<NQM_TClient>> added_;
  std::map<TKey, TMade> made_;  // none of a key in added_
  std::uint64_t uses_ = 0;
};
