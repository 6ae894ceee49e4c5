// VexoNameUtils: definitions from the configuration server.
//
//   /Resources/<server tree>/<list>/<scope>     "A,B": the resources of that list
//   /Resources/A                                a tree of definition records
#include "Context.h"
#include "EngineAccess.h"
#include "NQ_TTime.h"
#include "VexoNameUtils.h"
#include "definitions/ConfigurationServer.h"
#include "text/Log.h"

using systemnames::TContext;
using systemnames::TEngineAccess;
using templatenames::Log;

namespace {

constexpr struct {
  const char* list;
  const char* scope;  // null: the task's name; such lists exist for tasks only
  bool user;
} kLists[] = {
    {"TemplateNames", "global", false},
    {"TemplateNames", "user", true},
    {"TaskTemplateNames", nullptr, false},
    {"TaskUserTemplateNames", nullptr, true},
};

}  // namespace

void VexoNameUtils::DefineSystemVexoNames(TName& names, const NQ_TString& taskName) {
  CFS_TProxy* const cfs = cfs_;
  if (cfs == nullptr) return;
  const NQ_TTime begin;
  if (debugLevel_ > 0) Log(1, "Defining Global VexoNames");
  const NQ_TString root = NQ_TString("/Resources/") + cfs->GetServerTreeName() + "/";
  for (const auto& row : kLists) {
    if (row.scope == nullptr && taskName.Empty()) continue;
    const NQ_TString scope = row.scope == nullptr ? taskName : NQ_TString(row.scope);
    DefineVexoNames(names, *cfs, root + row.list + "/" + scope, row.user);
  }
  if (debugLevel_ > 0) Log(1, "Defined Global VexoNames in ", NQ_TTime() - begin);
}

bool VexoNameUtils::DefineVexoNames(TName& names, CFS_TProxy& cfs, const NQ_TString& listPath, bool user) {
  const std::lock_guard guard(cacheLock_);
  try {
    bool defines = true;
    const NQ_TAny list = templatenames::ReadPath(cfs, listPath, false);
    std::u16string_view rest = templatenames::ListIn(list, listPath).StringView();
    for (bool more = true; more;) {
      const std::size_t comma = rest.find(u',');
      more = comma != rest.npos;
      defines = DefineResource(names, cfs, NQ_TString(rest.substr(0, comma)), user, defines);
      if (more) rest.remove_prefix(comma + 1);
    }
    return defines;
  } catch (...) {
    TEngineAccess::SetErrorReason(names, templatenames::ReasonInHand());
    return false;
  }
}

// Resources after one whose definitions failed are read, so that they are kept for others, but not defined.
bool VexoNameUtils::DefineResource(TName& names, CFS_TProxy& cfs, const NQ_TString& resource, bool user, bool defines) {
  if (debugLevel_ > 1) Log(2, "TName::Define: Template resource = ", resource);
  const NQ_TString path = NQ_TString("/Resources/") + resource;
  const NQ_TTime begin;
  const NQ_TTree& tree = GetCachedTree(cfs, path, user);
  if (debugLevel_ > 0) Log(1, "CFS Get of ", path, " took ", NQ_TTime() - begin);
  return defines && TEngineAccess::Define(names, tree, path, user);
}

void VexoNameUtils::DefineVexoNames(TName& names, const TContext& context) {
  DefineSystemVexoNames(names, context.TaskName());
  ResetVexoNames(names, context);
}
