// VexoNameUtils: definitions once read.
#include "CFS/Server/cfs_tproxy.h"
#include "ReadPath.h"
#include "Reading.h"
#include "VexoNameUtils.h"

using systemnames::Held;
using systemnames::ReadPath;

std::uint64_t VexoNameUtils::ClearCache() {
  const std::lock_guard guard(cacheLock_);
  const std::uint64_t count = timedTrees_.size() + trees_.size();
  trees_.clear();
  timedTrees_.clear();
  return count;
}

// The caller holds the cache lock; it uses the reference before the next call.
const NQ_TTree& VexoNameUtils::GetCachedTree(CFS_TProxy& cfs, const NQ_TString& path, bool timed) {
  constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;
  if (!timed) {
    if (const auto kept = trees_.find(path); kept != trees_.end()) return kept->second;
    return trees_.emplace(path, Held<NQ_TTree>(ReadPath(cfs, path, true))).first->second;
  }
  const int policy = cachingPolicy_;
  if (const auto kept = timedTrees_.find(path); policy >= 0 && kept != timedTrees_.end()) {
    if (policy == 0 || (clock_() - kept->second.first) / kNanosecondsPerMillisecond < policy)
      return kept->second.second;
    timedTrees_.erase(kept);
  }
  const NQ_TAny tree = ReadPath(cfs, path, true);
  return timedTrees_.insert_or_assign(path, std::pair(clock_(), Held<NQ_TTree>(tree))).first->second.second;
}
