// VexoNameUtils: definitions once read.
#include "VexoNameUtils.h"
#include "definitions/ConfigurationServer.h"

namespace {

NQ_TTree ReadTree(CFS_TProxy& cfs, const NQ_TString& path) {
  return templatenames::RecordsIn(templatenames::ReadPath(cfs, path, true), path);
}

}  // namespace

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
    return trees_.emplace(path, ReadTree(cfs, path)).first->second;
  }
  const int policy = cachingPolicy_;
  if (const auto kept = timedTrees_.find(path); policy >= 0 && kept != timedTrees_.end()) {
    if (policy == 0 || (clock_() - kept->second.first) / kNanosecondsPerMillisecond < policy)
      return kept->second.second;
    timedTrees_.erase(kept);
  }
  NQ_TTree tree = ReadTree(cfs, path);
  return timedTrees_.insert_or_assign(path, std::pair(clock_(), std::move(tree))).first->second.second;
}
