// Middleware clients that many names share.
#pragma once

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
/// Host names that differ only in the case of their letters are the same host, and no host is the local one. A server
/// is "#" and a port number, or the name of a service.
class NQ_EXPORT TNameProxyProvider {
 public:
  TNameProxyProvider();
  TNameProxyProvider(const TNameProxyProvider&) = delete;
  TNameProxyProvider& operator=(const TNameProxyProvider&) = delete;
  ~TNameProxyProvider();

  /// Puts a client of the caller's in place, unless there is one already. An empty one makes the provider forget its
  /// client.
  void AddClient(const NQ_TString& host, const NQ_TString& server, const std::shared_ptr<NQM_TClient>& client);
  std::shared_ptr<NQM_TClient> GetClient(const NQ_TString& host, const NQ_TString& server);

 private:
  using TKey = std::pair<NQ_TString, NQ_TString>;  // host, server

  static std::shared_ptr<NQM_TClient> Create(const NQ_TString& host, const NQ_TString& server);
  static TKey MakePair(const NQ_TString& host, const NQ_TString& server);

  std::mutex lock_;
  std::map<TKey, std::shared_ptr<NQM_TClient>> clients_;
};
