#include "Records.h"

#include <string>

#include "KeyTable.h"
#include "OptionsReading.h"
#include "TimeText.h"

namespace {

/// A record while it is read: its name is defined when the keys are gone through.
struct TRecord {
  TName& names;
  NQ_TString key;
  TName::TName_Type type;
};

// ---- values, by type

void ReadText(const TJsonNode& value, TRecord& record) { record.names.SetValue(record.key, value.Text()); }

void ReadNumber(const TJsonNode& value, TRecord& record) { record.names.SetValue(record.key, value.Int32()); }

// {"$url": "file://host/path"}, or just the text.
void ReadUrl(const TJsonNode& value, TRecord& record) {
  const TJson* const wrapped = value.Wrapped("$url");
  const TJson& text = wrapped == nullptr ? value.Value() : *wrapped;
  if (!text.is_string()) value.FailKind("a URL as a string or {\"$url\": ...}");
  const NQ_TString url = TJsonNode(value, "$url", text).Text();
  if (url.Find("://") <= 0) value.Fail("expected a URL such as file://host/path");
  record.names.SetValue(record.key, NQ_TURL(url));
}

// {"$time": "2026-05-17T13:05:00+02:00"}, or milliseconds.
void ReadTime(const TJsonNode& value, TRecord& record) {
  std::optional<NQ_TTime> time;
  if (const TJson* const wrapped = value.Wrapped("$time"); wrapped != nullptr && wrapped->is_string()) {
    time = ParseTime(wrapped->get_ref<const std::string&>());
  } else if (value.Value().is_number()) {
    const auto milliseconds = value.Value().get<double>();
    if (IsSensibleTime(milliseconds)) time = NQ_TTime::FromMilliseconds(milliseconds);
  } else {
    value.FailKind("milliseconds or {\"$time\": ...}");
  }
  if (!time) value.Fail("expected a time such as {\"$time\": \"2026-05-17T13:05:00+02:00\"}");
  record.names.SetValue(record.key, *time);
}

struct TTypeRow {
  const char* word;
  TName::TName_Type type;
  void (*readValue)(const TJsonNode& value, TRecord& record);
};

constexpr TTypeRow kTypes[] = {
    {"Name", TName::TName_TypeString, &ReadText},
    {"URL", TName::TName_TypeURL, &ReadUrl},
    {"Number", TName::TName_TypeNumber, &ReadNumber},
    {"Time", TName::TName_TypeTime, &ReadTime},
    {"AutoNumber", TName::TName_TypeAutoNumber, &ReadNumber},
};

// ---- keys

// null stands for a name whose value is not known yet.
void ReadValue(const TJsonNode& value, TRecord& record) {
  if (value.Value().is_null()) {
    record.names.RemValue(record.key);
    return;
  }
  for (const TTypeRow& row : kTypes) {
    if (row.type == record.type) row.readValue(value, record);
  }
}

template <void (TName::*Set)(const NQ_TString& key, const NQ_TString& value)>
void ReadAttribute(const TJsonNode& value, TRecord& record) {
  (record.names.*Set)(record.key, value.Text());
}

void ReadOptions(const TJsonNode& value, TRecord& record) {
  record.names.SetFormattingOptions(record.key, ReadFormattingOptions(value));
}

void KnownAlready(const TJsonNode&, TRecord&) {}

constexpr TKeyRow<TRecord> kKeys[] = {
    {"Type", &KnownAlready},
    {"Value", &ReadValue},
    {"Format", &ReadAttribute<&TName::SetFormat>},
    {"Category", &ReadAttribute<&TName::SetCategory>},
    {"Elem", &ReadAttribute<&TName::SetElemValue>},
    {"Extract", &ReadAttribute<&TName::SetExtractValue>},
    {"RegEx", &ReadAttribute<&TName::SetRegExValue>},
    {"FormattingOptions", &ReadOptions},
    {"Description", &ReadAttribute<&TName::SetDescription>},
    {"UserDescription", &ReadAttribute<&TName::SetUserDescription>},
    {"UserInfo", &ReadAttribute<&TName::SetUserInfo>},
    {"Visibility", &ReadAttribute<&TName::SetVisibility>},
    {"Info", &ReadAttribute<&TName::SetLocalization>},
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

}  // namespace

void ReadRecord(const TJsonNode& node, TName& names) {
  TRecord record{names, NQ_TString(node.Key()), ReadType(node)};
  if (record.key.Empty()) node.Fail("a name cannot be empty");
  if (!names.Define(record.key, record.type, TName::TName_LookupValue)) node.Fail("cannot be defined");
  names.SetCategory(record.key, "misc");
  ReadMembers(node, kKeys, record);
}

const char* TypeWord(TName::TName_Type type) {
  for (const TTypeRow& row : kTypes) {
    if (row.type == type) return row.word;
  }
  return "";
}
