// The configuration server's proxy.
//
// A configuration is a tree of values under paths such as "/Resources/TemplateNames/global". The proxy reads paths
// from the server (Call with the method "[]"), and keeps whole subtrees, once read, for those roots that it is told.
//
//   CFS_TProxy cfs;
//   cfs.SetConnectionAddress("srv1", "CFS", 0, TLocationMode_Default);
//   cfs.AddCacheRoot("/Resources");
//   const NQ_TAny& value = cfs.GetCached("/Resources/TemplateNames/global", false);  // asks for "Resources" once
#pragma once

#include <map>
#include <optional>

#include "CFS/Server/cfs_exceptions.h"
#include "NQM_TClient.h"
#include "NQ_TMutex.h"

class NQ_EXPORT CFS_TProxy : public NQM_TClient {
 public:
  CFS_TProxy();
  ~CFS_TProxy() override;

  /// From now on the subtree at this path is kept once it has been read. A "/" at its beginning or end does not
  /// count. Any thread.
  void AddCacheRoot(const NQ_TString& root);
  /// Forgets the subtrees read so far; the roots stay. Nobody may use a value from `GetCached` meanwhile or later.
  void ClearCache();

  /// The value at the path, from the subtree of the longest cache root above it; that subtree is fetched first when it
  /// was not yet, compressed on its way when zipped is set. `NQ_TAny::Illegal()` when the path lies below no root.
  ///
  /// Throws CFS_EValueNotSet when the server has no value for the root, or the path ends at an illegal value;
  /// CFS_EIllegalPath, the path as data, when the path does not lead through the subtree; and what `Call` throws, in
  /// which case nothing is kept and the next read asks again.
  ///
  /// Any thread; reads wait for each other, also for a fetch. The value stays in place until `ClearCache` or the
  /// proxy's end.
  const NQ_TAny& GetCached(const NQ_TString& path, bool zipped);

  /// The name of the server's own tree below "/Resources": asked for once, by {"M": "ServerTreeName"}, and kept. Throws
  /// what `Call` throws, and NQ_EIllegalCastFromAny when the reply is no text: then it is asked for again next time.
  /// Any thread.
  NQ_TString GetServerTreeName();

 private:
  using TRoots = std::map<NQ_TString, std::optional<NQ_TAny>>;

  TRoots::iterator FindRoot(const NQ_TString& path);
  const NQ_TAny& FetchedValue(TRoots::iterator root, bool zipped);

  NQ_TMutex lock_;  // recursive: a service of this process that answers a fetch may read through the same proxy
  TRoots roots_;
  NQ_TString serverTreeName_;  // empty: not asked for yet
};
