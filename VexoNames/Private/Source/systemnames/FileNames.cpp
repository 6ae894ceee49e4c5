// VexoNameUtils: names of the input file.
#include "EngineAccess.h"
#include "Handlers.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Services/FS_TProxy.h"

using systemnames::Ask;
using systemnames::AttemptIfDefined;
using systemnames::Entry;
using systemnames::Held;
using systemnames::kFileNames;
using systemnames::TEngineAccess;

namespace {

// The text between the first two "/" of the path; empty when there are none, or it begins with one.
void SetFirstFolder(TName& names, const NQ_TString& name, const NQ_TURL& file) {
  names.SetValue(name, NQ_TString());
  const std::u16string_view path = file.Path().StringView();
  const std::size_t first = path.find(u'/');
  const std::size_t second = first == path.npos ? first : path.find(u'/', first + 1);
  if (first != 0 && second != path.npos) names.SetValue(name, NQ_TString(path.substr(first + 1, second - first - 1)));
}

// Handlers are installed in another order than values are set: the log shows both.
constexpr const char* kInstalled[] = {"file", "filespec", "filelocation", "file1stfolder", "filefolder", "fileurl"};
static_assert(std::size(kInstalled) == std::size(systemnames::kFileNames));

}  // namespace

const systemnames::TFileName systemnames::kFileNames[6] = {
    {"file", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.FileName()); }},
    {"filespec", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f); }},
    {"filelocation", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.Location()); }},
    {"fileurl", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.Location()); }},
    {"file1stfolder", SetFirstFolder},
    {"filefolder", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.FolderName()); }},
};

void VexoNameUtils::SetFileLookupHandler(TName& names) const {
  systemnames::InstallAll(names, kInstalled, handlers_->file);
}

void VexoNameUtils::SetFileTypeLookupHandler(TName& names) const {
  systemnames::Install(names, "filetype", handlers_->fileType);
}

void VexoNameUtils::SetVexoIDLookupHandler(TName& names) const {
  systemnames::Install(names, "vexoid", handlers_->vexoId);
}

bool VexoNameUtils::LookupFile(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TAny file = names.GetRawData("filespec");
    CalculateFileVexoNames(Held<NQ_TURL>(file), names);
  });
}

void VexoNameUtils::CalculateFileVexoNames(const NQ_TURL& file, TName& names) {
  for (const auto& row : kFileNames)
    AttemptIfDefined(names, row.name, [&](const NQ_TString& name) { row.set(names, name, file); });
}

bool VexoNameUtils::LookupFileType(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    NQ_TDict wanted;
    wanted.Add("Type", NQ_TAny());
    SetFileAttribute(names, key, wanted, "Type", "UNKNOWN");
  });
}

bool VexoNameUtils::LookupVexoID(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  constexpr int kIdBase = 36;  // digits and letters
  return systemnames::ValueOf(key, names, value, [&] {
    NQ_TDict wanted;
    wanted.Add("VexoID", NQ_TAny(NQ_TAny::Illegal())).Add("VexoIDStr", kIdBase);
    SetFileAttribute(names, key, wanted, "VexoIDStr", "000000");
  });
}

// To the fallback when the file server is not there, fails, or says nothing of use.
void VexoNameUtils::SetFileAttribute(TName& names, const NQ_TString& key, const NQ_TDict& wanted, const char* answer,
                                     const char* fallback) const {
  const NQ_TAny input = names.GetRawData(key);
  const auto& file = Held<NQ_TURL>(input);
  // The fallback would stay.
  if (TEngineAccess::IsPreview(names)) nq::Throw(NQ_EException("Services are not asked in a preview"));
  FS_TProxy* const files = files_;
  const auto ask = [&] {
    const NQ_TAny reply = Ask(names, [&] { return files->Call("Query", file, wanted, false); });
    names.SetValue(key, Entry<NQ_TString>(Held<NQ_TDict>(reply), answer));
  };
  if (files == nullptr || !systemnames::Attempt(ask)) names.SetValue(key, fallback);
}
