#include "formatting/CheckOptions.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "formatting/OptionTable.h"
#include "formatting/OptionValue.h"
#include "formatting/date/CheckDateOptions.h"
#include "formatting/number/NumberOptions.h"
#include "formatting/number/Units.h"
#include "text/Nearest.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

using TKind = TNameProblem::TNameProblem_Kind;
using enum TNameProblem::TNameProblem_Kind;

static_assert(kMaxDecimals == kMaxIntegerLength, "one bound for all counts");

// ---- the table

struct TFormatOfWord {
  std::u16string_view word;
  TOptionReader reader;
};
constexpr TFormatOfWord kFormats[] = {
    {kDataFormatWords[0], TOptionReader::Text},
    {kDataFormatWords[1], TOptionReader::Number},
    {kDataFormatWords[2], TOptionReader::Date},
};

const TFormatOfWord* FormatOf(std::u16string_view word) {
  const auto* const found =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const auto& row) { return row.word == word; });
  return found == std::end(kFormats) ? nullptr : found;
}

std::u16string_view WordOf(TOptionReader reader) {
  for (const TFormatOfWord& row : kFormats)
    if (row.reader == reader) return row.word;
  return {};
}

const TOption* FindOption(std::u16string_view key) {
  for (const TOption& option : kOptions)
    if (option.key == key && option.reader != TOptionReader::Pair) return &option;
  return nullptr;
}

// ---- one dictionary

NQ_TString TextOf(const NQ_TDict& options, const char16_t* key) {
  const auto* const text = options.Get<NQ_TString>(NQ_TString(key));
  return text == nullptr ? NQ_TString() : *text;
}

/// An option and its value; Text is for one that is known to be a text.
struct TGiven {
  const TOption& option;
  const NQ_TAny& value;

  std::u16string_view Text() const { return value.As<NQ_TString>()->StringView(); }
};

class TOptionsCheck {
 public:
  TOptionsCheck(const NQ_TDict& options, TFindings& findings)
      : options_(options), findings_(findings), format_(FormatOf(TextOf(options, u"DataFormat").StringView())) {}

  void Run() {
    for (auto place = options_.FirstPlace(); !options_.AtEnd(place); options_.Advance(place))
      CheckKey(options_.KeyAt(place), options_.ValueAt(place));
    if (!options_.HasKey(NQ_TString(u"DataFormat"))) AddMissingFormat();
    if (format_ != nullptr && format_->reader == TOptionReader::Date) CheckDateOptions(options_, findings_);
    if (format_ != nullptr && format_->reader != TOptionReader::Number) return;
    CheckSeparators(u"InputDecimalSeparator", u"InputThousandsSeparator");
    CheckSeparators(u"DecimalSeparator", u"ThousandsSeparator");
    CheckConversion();
  }

 private:
  void Add(TKind kind, NQ_TString reason, NQ_TString suggestion = {}) {
    findings_.Add(kind, std::move(reason), std::move(suggestion));
  }

  void CheckKey(const NQ_TString& key, const NQ_TAny& value) {
    const TOption* const option = FindOption(key.StringView());
    if (option == nullptr) return AddUnknown(key.StringView());
    if (format_ != nullptr && option->reader != TOptionReader::Choice && option->reader != format_->reader)
      return AddOfOtherFormat(*option);
    CheckValue({*option, value});
  }

  void CheckValue(const TGiven& given);
  void CheckWord(const TGiven& given);
  void CheckDateWord(const TGiven& given);
  void CheckSeparator(const TGiven& given);
  void CheckCount(const TGiven& given);
  void CheckPairs(const TGiven& given);
  void CheckPair(const NQ_TDict& pair, const NQ_TString& name);
  void CheckSeparators(const char16_t* decimal, const char16_t* thousands);
  void CheckConversion();
  void CheckUnit(const NQ_TString& category, const char16_t* key, bool needed);
  void AddUnknown(std::u16string_view key);
  void AddOfOtherFormat(const TOption& option);
  void AddMissingFormat();
  void AddOtherKind(std::u16string_view name, TOptionForm form, const NQ_TAny& value);

  const NQ_TDict& options_;
  TFindings& findings_;
  const TFormatOfWord* const format_;  // null: none of those known
};

// ---- keys

void TOptionsCheck::AddUnknown(std::u16string_view key) {
  std::vector<std::u16string_view> keys = {kOptions[0].key};
  for (const TOption& option : kOptions)
    if (option.reader != TOptionReader::Pair && (format_ == nullptr || option.reader == format_->reader))
      keys.push_back(option.key);
  Add(TNameProblem_KindUnknownOption, Sentence(u"there is no option ", Quoted(key)),
      NQ_TString(NearestWord(key, keys)));
}

void TOptionsCheck::AddOfOtherFormat(const TOption& option) {
  Add(TNameProblem_KindUnknownOption, Sentence(option.key, u" has no effect with DataFormat ", Quoted(format_->word),
                                               u": it is read for ", Quoted(WordOf(option.reader))));
}

// Where all options are those of one format, that is the one meant.
void TOptionsCheck::AddMissingFormat() {
  std::vector<std::u16string_view> formats;
  for (const TFormatOfWord& row : kFormats) {
    const auto isThere = [&](const TOption& option) { return options_.HasKey(NQ_TString(option.key)); };
    const auto rows = OptionsOf(row.reader);
    if (std::any_of(rows.begin(), rows.end(), isThere)) formats.push_back(row.word);
  }
  Add(TNameProblem_KindOptionValue,
      Sentence(u"the options have no effect without DataFormat, which can be ", Choices(kDataFormatWords)),
      formats.size() == 1 ? NQ_TString(formats.front()) : NQ_TString());
}

// ---- values

void TOptionsCheck::AddOtherKind(std::u16string_view name, TOptionForm form, const NQ_TAny& value) {
  Add(TNameProblem_KindOptionKind,
      Sentence(name, u" is ", KindOf(value), u" and has no effect: it has to be ", WantedKind(form)),
      AsKind(value, form));
}

void TOptionsCheck::CheckValue(const TGiven& given) {
  const TOptionForm form = given.option.form;
  if (!IsOfKind(given.value, form)) return AddOtherKind(given.option.key, form, given.value);
  if (form == TOptionForm::Word) CheckWord(given);
  if (form == TOptionForm::DateWord) CheckDateWord(given);
  if (form == TOptionForm::Separator) CheckSeparator(given);
  if (form == TOptionForm::Count) CheckCount(given);
  if (form == TOptionForm::Pairs) CheckPairs(given);
}

// No word at all is a way to say that nothing is wanted, but not of a format.
void TOptionsCheck::CheckWord(const TGiven& given) {
  const auto& [option, value] = given;
  const std::u16string_view word = given.Text();
  if (word.empty() && option.reader != TOptionReader::Choice) return;
  if (std::find(option.words.begin(), option.words.end(), word) != option.words.end()) return;
  Add(TNameProblem_KindOptionValue,
      Sentence(option.key, u" ", Quoted(word), u" has no effect: it can be ", Choices(option.words)),
      NQ_TString(NearestWord(word, option.words)));
}

// Any other word means the custom pattern, so only what was hardly meant so is told: a known word in another case, or a
// word without such a pattern.
void TOptionsCheck::CheckDateWord(const TGiven& given) {
  const auto& [option, value] = given;
  const std::u16string_view word = given.Text();
  if (word.empty() || std::find(option.words.begin(), option.words.end(), word) != option.words.end()) return;
  const std::u16string_view nearest = NearestWord(word, option.words);
  const NQ_TString pattern = Sentence(u"Custom", option.key);
  const bool otherCase = nearest != kDateWords[2] && NQ_TString(nearest).Lowered() == NQ_TString(word).Lowered();
  if (!otherCase && !TextOf(options_, pattern.WideText()).Empty()) return;
  Add(TNameProblem_KindOptionValue,
      Sentence(option.key, u" ", Quoted(word), u" is neither \"ISO8601\" nor \"UNIX\", so ", pattern, u" is used"),
      NQ_TString(nearest));
}

void TOptionsCheck::CheckSeparator(const TGiven& given) {
  const std::u16string_view text = given.Text();
  if (text.size() < 2) return;
  if (text.size() == 2 && U16_IS_LEAD(text[0]))
    return Add(TNameProblem_KindOptionValue,
               Sentence(given.option.key, u" ", Quoted(text), u" cannot separate numbers: it is beyond U+FFFF"));
  Add(TNameProblem_KindOptionValue,
      Sentence(given.option.key, u" ", Quoted(text), u" is more than one character: only the first one counts"),
      NQ_TString(text.substr(0, 1)));
}

void TOptionsCheck::CheckCount(const TGiven& given) {
  const std::int32_t count = given.value.AsInt32();
  if (count >= 0 && count <= kMaxDecimals) return;
  const NQ_TString most = NumberText(kMaxDecimals);
  const NQ_TString found = Sentence(given.option.key, u" ", NumberText(count));
  if (count < 0) return Add(TNameProblem_KindOptionValue, Sentence(found, u" has no effect: it has to be 0 or more"));
  Add(TNameProblem_KindOptionValue, Sentence(found, u" is too large and counts as ", most), most);
}

// ---- lists of pairs

void TOptionsCheck::CheckPairs(const TGiven& given) {
  const auto& pairs = *given.value.As<NQ_TArray>();
  for (unsigned int i = 0; i < pairs.Count(); ++i) {
    const NQ_TString name = Sentence(u"element ", NumberText(i + 1), u" of ", given.option.key);
    if (const auto* const pair = pairs.At(i)->As<NQ_TDict>()) {
      CheckPair(*pair, name);
    } else {
      Add(TNameProblem_KindOptionKind,
          Sentence(name, u" is ", KindOf(*pairs.At(i)), u": it has to be a dictionary with Find and Replace"));
    }
  }
}

void TOptionsCheck::CheckPair(const NQ_TDict& pair, const NQ_TString& name) {
  const auto rows = OptionsOf(TOptionReader::Pair);
  std::vector<std::u16string_view> keys;
  for (const TOption& option : rows) {
    keys.push_back(option.key);
    const NQ_TAny* const value = pair.ValueOfKey(NQ_TString(option.key));
    if (value == nullptr) {
      Add(TNameProblem_KindOptionValue, Sentence(name, u" has no ", option.key));
    } else if (!IsOfKind(*value, option.form)) {
      AddOtherKind(Sentence(option.key, u" in ", name).StringView(), option.form, *value);
    }
  }
  for (auto place = pair.FirstPlace(); !pair.AtEnd(place); pair.Advance(place)) {
    const NQ_TString key = pair.KeyAt(place);
    if (std::find(keys.begin(), keys.end(), key.StringView()) != keys.end()) continue;
    Add(TNameProblem_KindUnknownOption,
        Sentence(Quoted(key.StringView()), u" in ", name, u" is neither Find nor Replace"),
        NQ_TString(NearestWord(key.StringView(), keys)));
  }
}

// ---- numbers: what several options say together

void TOptionsCheck::CheckSeparators(const char16_t* decimal, const char16_t* thousands) {
  const NQ_TString groups = TextOf(options_, thousands);
  const NQ_TString given = TextOf(options_, decimal);
  const NQ_TString point = given.Empty() ? NQ_TString(u".") : given;
  if (groups.Empty() || groups[0] != point[0]) return;
  Add(TNameProblem_KindOptionValue,
      Sentence(thousands, u" ", Quoted(groups.StringView()), u" is the same character as ", decimal,
               given.Empty() ? u", which is \".\" when it is absent" : u""));
}

void TOptionsCheck::CheckConversion() {
  const auto* const convert = options_.Get<NQ_TBool>(NQ_TString(u"Convert"));
  const bool needed = convert != nullptr && convert->Value() && format_ != nullptr;
  const NQ_TString category = TextOf(options_, u"ConvertUnitCategory");
  if (category.Empty() && !needed) return;
  if (!IsUnitCategory(category.StringView()))
    return Add(TNameProblem_KindOptionValue, Sentence(u"ConvertUnitCategory: ", UnknownCategoryReason(category)),
               NearestCategory(category));
  CheckUnit(category, u"ConvertFromUnit", needed);
  CheckUnit(category, u"ConvertToUnit", needed);
}

void TOptionsCheck::CheckUnit(const NQ_TString& category, const char16_t* key, bool needed) {
  const NQ_TString unit = TextOf(options_, key);
  if ((unit.Empty() && !needed) || IsUnit(category.StringView(), unit.StringView())) return;
  Add(TNameProblem_KindOptionValue, Sentence(key, u": ", UnknownUnitReason(category, unit)),
      NearestUnit(category, unit));
}

}  // namespace

void CheckOptions(const NQ_TDict& options, TFindings& findings) {
  if (!options.IsEmpty()) TOptionsCheck(options, findings).Run();
}

}  // namespace templatenames
