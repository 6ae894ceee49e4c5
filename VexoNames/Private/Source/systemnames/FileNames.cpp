// VexoNameUtils: names of the input file.
#include "Asking.h"
#include "Handlers.h"
#include "NameGroups.h"
#include "NameTables.h"
#include "Reading.h"
#include "Services/FS_TProxy.h"

using systemnames::Attempt;
using systemnames::Entry;
using systemnames::Held;
using systemnames::kFileNames;

namespace {

// The text between the first two "/" of the path; none when it begins with one.
NQ_TString FirstFolder(const NQ_TURL& file) {
  const std::u16string_view path = file.Path().StringView();
  const std::size_t first = path.find(u'/');
  const std::size_t second = first == path.npos ? first : path.find(u'/', first + 1);
  return first == 0 || second == path.npos ? NQ_TString() : NQ_TString(path.substr(first + 1, second - first - 1));
}

}  // namespace

const systemnames::TFileName systemnames::kFileNames[6] = {
    {"file", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.FileName()); }},
    {"filespec", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f); }},
    {"filelocation", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.Location()); }},
    {"fileurl", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.Location()); }},
    {"file1stfolder", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, FirstFolder(f)); }},
    {"filefolder", [](TName& n, const NQ_TString& name, const NQ_TURL& f) { n.SetValue(name, f.FolderName()); }},
};

void VexoNameUtils::SetFileLookupHandler(TName& names) const {
  for (const auto& row : kFileNames) systemnames::Install(names, row.name, handlers_->file);
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
  for (const auto& row : kFileNames) {
    const NQ_TString name(row.name);
    if (names.IsDefined(name)) Attempt([&] { row.set(names, name, file); });
  }
}

// The fallback when the file server is not there, fails, or says nothing of use.
NQ_TString VexoNameUtils::FindFileAttribute(TName& names, const NQ_TURL& file, const NQ_TDict& wanted,
                                            const char* answer, const char* fallback) const {
  NQ_TString text(fallback);
  FS_TProxy* const files = files_;
  if (files == nullptr) return text;
  Attempt([&] {
    const NQ_TAny reply = Ask(names, [&] { return files->Call("Query", file, wanted, false); });
    text = Entry<NQ_TString>(Held<NQ_TDict>(reply), answer);
  });
  return text;
}

bool VexoNameUtils::LookupFileType(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TAny file = names.GetRawData("filetype");
    NQ_TDict wanted;
    wanted.Add("Type", NQ_TAny());
    names.SetValue(key, FindFileAttribute(names, Held<NQ_TURL>(file), wanted, "Type", "UNKNOWN"));
  });
}

bool VexoNameUtils::LookupVexoID(const NQ_TString& key, NQ_TDict&, TName& names, NQ_TAny& value) {
  constexpr int kIdBase = 36;  // digits and letters
  return systemnames::ValueOf(key, names, value, [&] {
    const NQ_TAny file = names.GetRawData("vexoid");
    NQ_TDict wanted;
    wanted.Add("VexoID", NQ_TAny(NQ_TAny::Illegal())).Add("VexoIDStr", kIdBase);
    names.SetValue(key, FindFileAttribute(names, Held<NQ_TURL>(file), wanted, "VexoIDStr", "000000"));
  });
}
