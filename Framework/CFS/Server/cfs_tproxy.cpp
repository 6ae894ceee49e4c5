#include "CFS/Server/cfs_tproxy.h"

#include <mutex>

#include "NQ_TTree.h"

namespace {

constexpr char kSeparator[] = "/";

NQ_TString WithoutLeadingSeparator(const NQ_TString& path) {
  return path.StartsWith(kSeparator) ? path.Substring(1) : path;
}

const NQ_TAny& ValueInside(const NQ_TAny& value, const NQ_TString& rest, const NQ_TString& path) {
  const auto* const tree = value.As<NQ_TTree>();
  if (tree == nullptr) nq::Throw(CFS_EIllegalPath(NQ_TString(), path));
  try {
    return tree->ValueAtPath(rest, kSeparator);
  } catch (const NQ_ENoMatchingTreeKey&) {
    nq::Throw(CFS_EIllegalPath(NQ_TString(), path));
  } catch (const NQ_EEntryIsNotASubtree&) {
    nq::Throw(CFS_EIllegalPath(NQ_TString(), path));
  }
}

}  // namespace

// The exceptions of a server elsewhere arrive as what they are once their classes are known.
CFS_TProxy::CFS_TProxy() {
  CFS_EIllegalPath::NQ_ClassObject();
  CFS_EValueNotSet::NQ_ClassObject();
}
CFS_TProxy::~CFS_TProxy() = default;

void CFS_TProxy::AddCacheRoot(const NQ_TString& root) {
  NQ_TString path = WithoutLeadingSeparator(root);
  if (const int last = path.Find(kSeparator, -1, true); last >= 0 && last + 1 == static_cast<int>(path.Length()))
    path = path.Substring(0, last);
  const std::lock_guard guard(lock_);
  roots_.try_emplace(path);
}

void CFS_TProxy::ClearCache() {
  const std::lock_guard guard(lock_);
  for (auto& [root, value] : roots_) value.reset();
}

const NQ_TAny& CFS_TProxy::GetCached(const NQ_TString& path, bool zipped) {
  const NQ_TString bare = WithoutLeadingSeparator(path);
  const std::lock_guard guard(lock_);
  const auto root = FindRoot(bare);
  if (root == roots_.end()) return NQ_TAny::Illegal();
  const NQ_TAny& value = FetchedValue(root, zipped);
  if (value.IsIllegal()) nq::Throw(CFS_EValueNotSet());
  const NQ_TString rest = bare.Substring(static_cast<int>(root->first.Length()) + 1);
  if (rest.Empty()) return value;
  const NQ_TAny& found = ValueInside(value, rest, path);
  if (found.IsIllegal()) nq::Throw(CFS_EValueNotSet());
  return found;
}

NQ_TString CFS_TProxy::GetServerTreeName() {
  const std::lock_guard guard(lock_);
  if (serverTreeName_.Empty()) {
    NQ_TDict request;
    request.Add("M", "ServerTreeName");
    const NQ_TAny reply = Call(request);
    const auto* const name = reply.As<NQ_TString>();
    if (name == nullptr) nq::Throw(NQ_EIllegalCastFromAny("ServerTreeName", reply));
    serverTreeName_ = *name;
  }
  return serverTreeName_;
}

// The roots are few, the path may be of any length.
CFS_TProxy::TRoots::iterator CFS_TProxy::FindRoot(const NQ_TString& path) {
  auto longest = roots_.end();
  for (auto root = roots_.begin(); root != roots_.end(); ++root) {
    const unsigned int length = root->first.Length();
    if (!path.StartsWith(root->first) || (length < path.Length() && path[length] != u'/')) continue;
    if (longest == roots_.end() || length > longest->first.Length()) longest = root;
  }
  return longest;
}

const NQ_TAny& CFS_TProxy::FetchedValue(TRoots::iterator root, bool zipped) {
  if (!root->second.has_value()) {
    NQ_TDict request;
    request.Add("M", "[]").Add("P1", root->first).Add("P2", false);
    if (zipped) request.Add("PZIPPED", true);
    NQ_TAny reply = Call(request);
    if (!root->second.has_value()) root->second = std::move(reply);
  }
  return *root->second;
}
