// vexonames names
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Errors.h"
#include "NQ_TBoxed.h"
#include "Records.h"
#include "Streams.h"
#include "Text.h"
#include "TimeText.h"

namespace {

using TJson = nlohmann::ordered_json;
using TRow = std::array<std::string, 5>;

constexpr std::array<const char*, 5> kHeads = {"KEY", "TYPE", "CATEGORY", "DESCRIPTION", "VALUE"};

std::string Utf8(const NQ_TString& text) { return std::string(text.Narrow()); }

// As a context file would give it.
TJson JsonValue(const NQ_TAny& value) {
  if (const auto* text = value.As<NQ_TString>()) return Utf8(*text);
  if (const auto* number = value.As<NQ_TInt32>()) return number->Value();
  if (const auto* time = value.As<NQ_TTime>()) return {{"$time", TimeText(*time)}};
  if (const auto* url = value.As<NQ_TURL>()) return {{"$url", Utf8(url->Text())}};
  return nullptr;
}

std::string TextValue(const NQ_TAny& value) {
  if (const auto* text = value.As<NQ_TString>()) return Utf8(*text);
  if (const auto* number = value.As<NQ_TInt32>()) return std::to_string(number->Value());
  if (const auto* time = value.As<NQ_TTime>()) return Utf8(time->Format("%Y-%m-%d %H:%M:%S"));
  if (const auto* url = value.As<NQ_TURL>()) return Utf8(url->Text());
  return "";
}

TRow RowOf(const TName& names, const NQ_TString& key) {
  TRow row = {Utf8(key), TypeWord(names.GetType(key)), Utf8(names.GetCategory(key)), Utf8(names.GetDescription(key)),
              TextValue(names.GetValue(key))};
  for (std::string& cell : row) cell = Printable(cell);
  return row;
}

void PrintJson(const TName& names, const std::vector<NQ_TString>& keys, TData& data) {
  for (const NQ_TString& key : keys) {
    const TJson line = {{"key", Utf8(key)},
                        {"type", TypeWord(names.GetType(key))},
                        {"category", Utf8(names.GetCategory(key))},
                        {"description", Utf8(names.GetDescription(key))},
                        {"value", JsonValue(names.GetValue(key))}};
    data.Line(PrintableJson(line.dump()));
  }
}

void PrintTabbed(const TName& names, const std::vector<NQ_TString>& keys, TData& data) {
  for (const NQ_TString& key : keys) {
    const TRow row = RowOf(names, key);
    data.Line(row[0] + '\t' + row[1] + '\t' + row[2] + '\t' + row[3] + '\t' + row[4]);
  }
}

void PrintTable(const TName& names, const std::vector<NQ_TString>& keys, TData& data) {
  std::vector<TRow> rows(1);
  std::copy(kHeads.begin(), kHeads.end(), rows[0].begin());
  for (const NQ_TString& key : keys) rows.push_back(RowOf(names, key));
  std::array<std::size_t, 5> widths{};
  for (const TRow& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], DisplayWidth(row[i]));
  }
  for (const TRow& row : rows) {
    std::string line;
    for (std::size_t i = 0; i + 1 < row.size(); ++i) line += Padded(row[i], widths[i] + 2);
    data.Line(line + row.back());
  }
}

}  // namespace

int RunNames(const TName& names, const TOptions& options) {
  std::vector<NQ_TString> keys;
  const NQ_TList all = names.GetTNames();
  for (unsigned int i = 0; i < all.Count(); ++i) keys.push_back(*all.At(i)->As<NQ_TString>());
  TData data;
  const auto usual = TData::IsTerminal() ? TOptions::TForm::Table : TOptions::TForm::Plain;
  switch (options.form.value_or(usual)) {
    case TOptions::TForm::Json:
      PrintJson(names, keys, data);
      break;
    case TOptions::TForm::Table:
      PrintTable(names, keys, data);
      break;
    case TOptions::TForm::Plain:
      PrintTabbed(names, keys, data);
      break;
  }
  return kExitResolved;
}
