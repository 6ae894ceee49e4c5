#include "Records.h"

#include <optional>
#include <string>

#include "JsonValue.h"
#include "KeyTable.h"
#include "NQ_TArray.h"
#include "NQ_TTree.h"
#include "OptionsReading.h"
#include "Text.h"

namespace {

/// A record while it is read: what the library is to make of it, and what no record says.
struct TRecord {
  TName::TName_Type type;
  NQ_TTree tree{};
  bool valueIsUnknown = false;
  std::optional<NQ_TString> visibility{};

  void Add(const TJsonNode& node, NQ_TAny&& value) { tree.Add(NQ_TString(node.Key()), std::move(value)); }
};

// ---- values, by type

NQ_TAny TextOf(const TJsonNode& value) { return value.Text(); }
NQ_TAny NumberOf(const TJsonNode& value) { return value.Int32(); }
NQ_TAny UrlOf(const TJsonNode& value) { return ReadUrl(value); }
NQ_TAny TimeOf(const TJsonNode& value) { return ReadTime(value); }

struct TTypeRow {
  const char* word;
  TName::TName_Type type;
  const char* valueKey;
  NQ_TAny (*readValue)(const TJsonNode& value);
};

constexpr TTypeRow kTypes[] = {
    {"Name", TName::TName_TypeString, "Value", &TextOf},
    {"URL", TName::TName_TypeURL, "Value:", &UrlOf},
    {"Number", TName::TName_TypeNumber, "Value", &NumberOf},
    {"Time", TName::TName_TypeTime, "Value", &TimeOf},
    {"AutoNumber", TName::TName_TypeAutoNumber, "Value", &NumberOf},
};

const TTypeRow& RowOf(TName::TName_Type type) {
  const TTypeRow* row = kTypes;
  while (row->type != type) ++row;
  return *row;
}

// ---- keys

// null stands for a name whose value is not known yet. Under either key: a record has a URL under "Value:".
void AddValue(const TJsonNode& value, TRecord& record) {
  const TTypeRow& row = RowOf(record.type);
  record.valueIsUnknown = value.Value().is_null();
  if (!record.valueIsUnknown) record.tree.Add(row.valueKey, row.readValue(value));
}

void AddText(const TJsonNode& value, TRecord& record) { record.Add(value, value.Text()); }

void AddOptions(const TJsonNode& value, TRecord& record) { record.Add(value, ReadFormattingOptions(value)); }

void AddAny(const TJsonNode& value, TRecord& record) { record.Add(value, ReadValue(value)); }

void AddParameters(const TJsonNode& value, TRecord& record) {
  value.Members();  // has to be an object
  AddAny(value, record);
}

void AddFlag(const TJsonNode& value, TRecord& record) {
  if (!value.Value().is_boolean()) value.FailKind("true or false");
  AddAny(value, record);
}

void AddNames(const TJsonNode& value, TRecord& record) {
  NQ_TArray names;
  if (!value.Value().is_array()) value.FailKind("an array of names");
  for (const TJson& name : value.Value()) {
    const std::string place = std::to_string(names.Count());
    names.Add(TJsonNode(value, place, name).Text());
  }
  record.Add(value, std::move(names));
}

void SetVisibility(const TJsonNode& value, TRecord& record) { record.visibility = value.Text(); }

constexpr TKeyRow<TRecord> kKeys[] = {
    {"Type", &AddText},
    {"Value", &AddValue},
    {"Value:", &AddValue},
    {"Format", &AddText},
    {"Category", &AddText},
    {"Elem", &AddText},
    {"Extract", &AddText},
    {"RegEx", &AddText},
    {"FormattingOptions", &AddOptions},
    {"Description", &AddText},
    {"UserDescription", &AddText},
    {"UserInfo", &AddText},
    {"Visibility", &SetVisibility},
    {"Info", &AddText},
    {"LocalizationFile", &AddText},
    {"Server", &AddText},
    {"Method", &AddText},
    {"Host", &AddText},
    {"Params", &AddParameters},
    {"P1", &AddAny},
    {"P2", &AddAny},
    {"P3", &AddAny},
    {"P4", &AddAny},
    {"Definition", &AddAny},
    {"Dependencies", &AddNames},
    {"Cached", &AddFlag},
};

// Comes before all other keys, wherever it stands.
TName::TName_Type ReadType(const TJsonNode& record) {
  std::vector<NQ_TString> words;
  for (const auto& [key, value] : record.Members()) {
    if (key != "Type") continue;
    const TJsonNode node(record, key, value);
    const NQ_TString word = node.Text();
    for (const TTypeRow& row : kTypes) {
      if (word == row.word) return row.type;
      words.emplace_back(row.word);
    }
    node.Fail("there is no type \"" + value.get<std::string>() + '"' + Suggestion(word, words));
  }
  record.Fail("\"Type\" is missing");
}

// Half a query is none, and the name would have an empty value.
void CheckQuery(const TJsonNode& node, const NQ_TTree& record) {
  const bool server = record.HasKey("Server");
  if (server != record.HasKey("Method"))
    node.Fail(server ? "\"Server\" needs a \"Method\"" : "\"Method\" needs a \"Server\"");
}

}  // namespace

void ReadRecord(const TJsonNode& node, TName& names) {
  TRecord record{ReadType(node)};
  const NQ_TString key(node.Key());
  if (key.Empty()) node.Fail("a name cannot be empty");
  ReadMembers(node, kKeys, record);
  CheckQuery(node, record.tree);
  if (!names.Define(key, record.tree, false)) node.Fail(Printable(names.GetErrorReason().Narrow()));
  if (record.valueIsUnknown) names.RemValue(key);
  if (record.visibility) names.SetVisibility(key, *record.visibility);
}

const char* TypeWord(TName::TName_Type type) {
  for (const TTypeRow& row : kTypes) {
    if (row.type == type) return row.word;
  }
  return "";
}
