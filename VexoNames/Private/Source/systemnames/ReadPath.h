// Reading one path of the configuration server.
#pragma once

#include "CFS/Server/cfs_tproxy.h"

namespace systemnames {

/// The value at the path: from what the proxy keeps, else asked for. Throws what the proxy throws.
inline NQ_TAny ReadPath(CFS_TProxy& cfs, const NQ_TString& path, bool zipped) {
  const NQ_TAny& kept = cfs.GetCached(path, zipped);
  if (!kept.IsIllegal()) return kept;
  NQ_TDict request;
  request.Add("M", "[]").Add("P1", path).Add("P2", false);
  if (zipped) request.Add("PZIPPED", true);
  return cfs.Call(request);
}

}  // namespace systemnames
