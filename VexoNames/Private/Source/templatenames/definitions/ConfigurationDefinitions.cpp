// TName: definitions from the configuration server, and the localization files that come with them.
//
//   /Resources/<server tree>/<name set>/<scope>     "A,B": where the records are, below /Resources/
//   /Resources/A/<name>                             one record
#include <cstdlib>
#include <set>
#include <vector>

#include "CFS/Server/cfs_tproxy.h"
#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "TName.h"
#include "engine/AttributeKeys.h"
#include "engine/Engine.h"
#include "text/Log.h"

using templatenames::Keys;
using templatenames::Log;

namespace {

const NQ_TString& ReadMethod() {
  static const NQ_TString method("[]");
  return method;
}

NQ_TString InResources(const NQ_TString& path) { return NQ_TString("/Resources/") + path; }

/// What is at the path: kept by the proxy, else asked for.
NQ_TAny ValueAt(CFS_TProxy& cfs, const NQ_TString& path) {
  const NQ_TAny& kept = cfs.GetCached(path, false);
  return kept.IsIllegal() ? cfs.Call(ReadMethod(), path, false) : kept;
}

template <class T>
const T& Held(const NQ_TAny& value, const NQ_TString& path) {
  if (const auto* held = value.As<T>()) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(path + " holds no " + T::NQ_ClassName(), value));
}

/// The resources of a list. An empty piece, such as after a comma at the end, names none.
std::vector<NQ_TString> ResourcesIn(const NQ_TString& list) {
  std::vector<NQ_TString> resources;
  const std::u16string_view units = list.StringView();
  for (std::size_t begin = 0; begin < units.size();) {
    const std::size_t end = std::min(units.find(u',', begin), units.size());
    if (end > begin) resources.emplace_back(units.substr(begin, end - begin));
    begin = end + 1;
  }
  return resources;
}

}  // namespace

bool TName::Define(const NQ_TString& serverTree, const NQ_TString& nameSet, const NQ_TString& scope,
                   const NQ_TString& name, bool userDefined) {
  try {
    const char* const host = std::getenv("NQ_SERVER");
    CFS_TProxy cfs;
    cfs.SetConnectionAddress(host == nullptr ? "" : host, "CFS", 0, TLocationMode_Default);
    return Define(cfs, serverTree, nameSet, scope, name, userDefined);
  } catch (...) {
    return false;
  }
}

bool TName::Define(CFS_TProxy& cfs, const NQ_TString& serverTree, const NQ_TString& nameSet, const NQ_TString& scope,
                   const NQ_TString& name, bool userDefined) {
  try {
    const NQ_TString set = InResources(serverTree + "/" + nameSet);
    return scope == u"*" ? DefineSet(cfs, set, userDefined) : DefineScope(cfs, set + "/" + scope, name, userDefined);
  } catch (...) {
    return false;
  }
}

bool TName::DefineScope(CFS_TProxy& cfs, const NQ_TString& scope, const NQ_TString& name, bool userDefined) {
  const NQ_TAny list = ValueAt(cfs, scope);
  bool ok = true;
  for (const NQ_TString& resource : ResourcesIn(Held<NQ_TString>(list, scope))) {
    if (engine_->Logs(2)) Log(2, "TName::Define: Template resource = ", resource);
    const NQ_TString path = InResources(resource);
    if (name == u"*") {
      const NQ_TTime begin;
      const NQ_TAny tree = ValueAt(cfs, path);
      if (engine_->Logs(1)) Log(1, "CFS Get of ", path, " took ", NQ_TTime() - begin);
      ok = ok && Define(Held<NQ_TTree>(tree, path), path, userDefined);
    } else {
      const NQ_TString place = path + "/" + name;
      const NQ_TAny record = ValueAt(cfs, place);
      ok = Define(name, Held<NQ_TTree>(record, place), userDefined);
    }
  }
  return ok;
}

// All scopes of a name set: their resources are read at once, each of them once.
bool TName::DefineSet(CFS_TProxy& cfs, const NQ_TString& set, bool userDefined) {
  const NQ_TAny listing = ValueAt(cfs, set);
  std::set<NQ_TString> paths;
  for (NQ_TConstIterator i(Held<NQ_TTree>(listing, set)); !i.IsDone(); i.Next()) {
    if (engine_->Logs(2)) Log(2, "TName::Define: Template resource name = ", i.Key());
    for (const NQ_TString& resource : ResourcesIn(Held<NQ_TString>(i.Value(), set))) {
      if (engine_->Logs(2)) Log(2, "TName::Define: Template resource =      ", resource);
      paths.insert(InResources(resource));
    }
  }
  NQ_TArray asked;
  for (const NQ_TString& path : paths) asked.Add(path);
  const NQ_TAny reply = cfs.Call(ReadMethod(), asked, false);
  const auto* const trees = reply.As<NQ_TDict>();
  if (trees == nullptr) return true;
  std::set<NQ_TString> replied;  // in an order that does not depend on the server
  for (NQ_TConstIterator i(*trees); !i.IsDone(); i.Next()) replied.insert(i.Key());
  bool ok = true;
  for (const NQ_TString& path : replied) ok = ok && Define(Held<NQ_TTree>(trees->At(path), path), path, userDefined);
  return ok;
}

// ---- localization files

void TName::SetDefaultLocalizationFile(const NQ_TString& file) {
  if (engine_->Logs(2)) Log(2, "TName::SetDefaultLocalizationFile: FileName = \"", file, '"');
  const std::lock_guard guard(engine_->lock);
  engine_->defaultLocalizationFile = file;
}

NQ_TString TName::GetDefaultLocalizationFile() const {
  const std::lock_guard guard(engine_->lock);
  return engine_->defaultLocalizationFile;
}

void TName::SetLocalizationFile(const NQ_TString& key, const NQ_TString& file) {
  SetStringAttribute("SetLocalizationFile", "FileName", key, Keys().localizationFile, file);
}

const NQ_TString& TName::GetLocalizationFile(const NQ_TString& key) const {
  return GetStringAttribute(key, Keys().localizationFile);
}

NQ_TList TName::GetLocalizationFiles() const {
  if (engine_->Logs(2)) Log(2, "TName::GetLocalizationFiles: method called");
  const std::lock_guard guard(engine_->lock);
  NQ_TDict files;
  for (NQ_TConstIterator i(engine_->store.Names()); !i.IsDone(); i.Next()) {
    const NQ_TString& file = GetLocalizationFile(i.Key());
    if (!file.Empty()) files.Add(file, NQ_TAny());
  }
  NQ_TList list;
  for (NQ_TConstIterator i(files); !i.IsDone(); i.Next()) list.Add(i.Key());
  return list;
}
