// TName: definitions from the configuration server, and the localization files that come with them.
//
//   /Resources/<server tree>/<name set>/<scope>     "A,B": where the records are, below /Resources/
//   /Resources/A/<name>                             one record
#include <cstdlib>
#include <set>
#include <vector>

#include "NQ_TArray.h"
#include "TName.h"
#include "definitions/ConfigurationServer.h"
#include "definitions/Definitions.h"
#include "definitions/Held.h"
#include "engine/AttributeKeys.h"
#include "engine/StringAttributes.h"
#include "text/Log.h"

using templatenames::DefineRecord;
using templatenames::DefineTree;
using templatenames::Held;
using templatenames::Keys;
using templatenames::ListIn;
using templatenames::Log;
using templatenames::NoteOutcome;
using templatenames::RecordsIn;
using templatenames::TEngine;

namespace {

NQ_TString InResources(const NQ_TString& path) { return NQ_TString("/Resources/") + path; }

NQ_TAny Read(CFS_TProxy& cfs, const NQ_TString& path) { return templatenames::ReadPath(cfs, path, false); }

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

/// What the action gives; false for anything that it throws, with the reason.
template <class Action>
bool DefineOrTell(TEngine& engine, Action action) {
  try {
    return action();
  } catch (...) {
    return NoteOutcome(engine, {TName::TName_ErrorNone, templatenames::ReasonInHand()});
  }
}

bool DefineScope(TEngine& engine, CFS_TProxy& cfs, const NQ_TString& scope, const NQ_TString& name, bool userDefined) {
  const NQ_TAny list = Read(cfs, scope);
  bool ok = true;
  for (const NQ_TString& resource : ResourcesIn(ListIn(list, scope))) {
    if (engine.Logs(2)) Log(2, "TName::Define: Template resource = ", resource);
    const NQ_TString path = InResources(resource);
    if (name == u"*") {
      const NQ_TTime begin;
      const NQ_TAny tree = Read(cfs, path);
      if (engine.Logs(1)) Log(1, "CFS Get of ", path, " took ", NQ_TTime() - begin);
      ok = ok && DefineTree(engine, RecordsIn(tree, path), path, userDefined);
    } else {
      const NQ_TString place = path + "/" + name;
      const NQ_TAny record = Read(cfs, place);
      ok =
          NoteOutcome(engine, DefineRecord(engine, name, Held<NQ_TTree>(record, place, "a record"), userDefined), path);
    }
  }
  return ok;
}

// All scopes of a name set: their resources are read at once, each of them once.
bool DefineSet(TEngine& engine, CFS_TProxy& cfs, const NQ_TString& set, bool userDefined) {
  const NQ_TAny listing = Read(cfs, set);
  std::set<NQ_TString> paths;
  for (NQ_TConstIterator i(Held<NQ_TTree>(listing, set, "a tree of lists")); !i.IsDone(); i.Next()) {
    if (engine.Logs(2)) Log(2, "TName::Define: Template resource name = ", i.Key());
    for (const NQ_TString& resource : ResourcesIn(ListIn(i.Value(), set + "/" + i.Key()))) {
      if (engine.Logs(2)) Log(2, "TName::Define: Template resource =      ", resource);
      paths.insert(InResources(resource));
    }
  }
  NQ_TArray asked;
  for (const NQ_TString& path : paths) asked.Add(path);
  const NQ_TAny reply = templatenames::ReadPaths(cfs, asked, set);
  const auto* const trees = reply.As<NQ_TDict>();
  if (trees == nullptr) return true;
  std::set<NQ_TString> replied;  // in an order that does not depend on the server
  for (NQ_TConstIterator i(*trees); !i.IsDone(); i.Next()) replied.insert(i.Key());
  bool ok = true;
  for (const NQ_TString& path : replied)
    ok = ok && DefineTree(engine, RecordsIn(trees->At(path), path), path, userDefined);
  return ok;
}

}  // namespace

bool TName::Define(const NQ_TString& serverTree, const NQ_TString& nameSet, const NQ_TString& scope,
                   const NQ_TString& name, bool userDefined) {
  return DefineOrTell(*engine_, [&] {
    const char* const host = std::getenv("NQ_SERVER");
    CFS_TProxy cfs;
    cfs.SetConnectionAddress(host == nullptr ? "" : host, "CFS", 0, TLocationMode_Default);
    return Define(cfs, serverTree, nameSet, scope, name, userDefined);
  });
}

bool TName::Define(CFS_TProxy& cfs, const NQ_TString& serverTree, const NQ_TString& nameSet, const NQ_TString& scope,
                   const NQ_TString& name, bool userDefined) {
  return DefineOrTell(*engine_, [&] {
    const NQ_TString set = InResources(serverTree + "/" + nameSet);
    return scope == u"*" ? DefineSet(*engine_, cfs, set, userDefined)
                         : DefineScope(*engine_, cfs, set + "/" + scope, name, userDefined);
  });
}

// ---- localization files

namespace templatenames {

void SetDefaultLocalizationFile(TEngine& engine, const NQ_TString& file) {
  if (engine.Logs(2)) Log(2, "TName::SetDefaultLocalizationFile: FileName = \"", file, '"');
  const std::lock_guard guard(engine.lock);
  engine.defaultLocalizationFile = file;
}

void SetLocalizationFile(TEngine& engine, const NQ_TString& key, const NQ_TString& file) {
  SetStringAttribute(engine, "SetLocalizationFile", "FileName", key, Keys().localizationFile, file);
}

}  // namespace templatenames

NQ_TString TName::GetDefaultLocalizationFile() const {
  const std::lock_guard guard(engine_->lock);
  return engine_->defaultLocalizationFile;
}

const NQ_TString& TName::GetLocalizationFile(const NQ_TString& key) const {
  return templatenames::GetStringAttribute(*engine_, key, Keys().localizationFile);
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
