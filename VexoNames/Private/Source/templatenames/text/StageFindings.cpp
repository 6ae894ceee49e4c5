#include "text/StageFindings.h"

#include <algorithm>

#include "text/Find.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

constexpr auto kEmpty = TNameProblem::TNameProblem_KindEmpty;
constexpr auto kNotANumber = TNameProblem::TNameProblem_KindNotANumber;

std::size_t DigitsAtEnd(std::u16string_view text) {
  const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
  return static_cast<std::size_t>(std::find_if_not(text.rbegin(), text.rend(), isDigit) - text.rbegin());
}

// ---- specifications that cannot be used

// "_" was meant as "_,0", "_2" as "_,2", and ",2" has the comma as its separator.
NQ_TString MeantElem(std::u16string_view spec) {
  if (spec.starts_with(u',')) return Sentence(u",", spec);
  const std::size_t digits = DigitsAtEnd(spec);
  if (digits == spec.size()) return {};
  const std::size_t end = spec.size() - digits;
  return Sentence(spec.substr(0, end), u",", digits == 0 ? u"0" : spec.substr(end));
}

// "3" was meant as "3,-1", and ",2" as "0,2".
NQ_TString MeantExtract(std::u16string_view spec) {
  if (spec.starts_with(u',')) return Sentence(u"0", spec);
  return !spec.empty() && DigitsAtEnd(spec) == spec.size() ? Sentence(spec, u",-1") : NQ_TString();
}

NQ_TString MeantFromBeginning(std::u16string_view spec) { return Sentence(u"0", spec.substr(spec.find(u','))); }

NQ_TString Nothing(std::u16string_view) { return {}; }

struct TErrorRow {
  TStageError error;
  std::u16string_view stage;
  std::u16string_view reason;
  NQ_TString (*meant)(std::u16string_view spec);
};

constexpr TErrorRow kErrors[] = {
    {TStageError::ElemSyntax, u"elem ", u" is not \"separator,index\", such as \"_,1\"", &MeantElem},
    {TStageError::ElemIndex, u"elem ", u" has a negative index; the first element is 0", &Nothing},
    {TStageError::ExtractIndex, u"extract ", u" has a negative start; the first character is 0", &MeantFromBeginning},
    {TStageError::ExtractSyntax, u"extract ", u" is not \"start,length\", such as \"0,3\"", &MeantExtract},
};

const TErrorRow* RowOf(TStageError error) {
  for (const TErrorRow& row : kErrors)
    if (row.error == error) return &row;
  return nullptr;
}

// ---- numbers that are none

void AddNumber(const NQ_TString& name, std::u16string_view text, const TStageNumber& number, const NQ_TString& meant,
               TFindings& findings) {
  if (number.kind == TStageNumber::TKind::Whole) return;
  const std::u16string_view what = number.kind == TStageNumber::TKind::OutOfRange ? u" is out of range and counts as "
                                                                                  : u" is no number and counts as ";
  findings.Add(kNotANumber, Sentence(name, Quoted(text), what, NumberText(number.value)), meant);
}

}  // namespace

NQ_TString StageErrorReason(TStageError error, std::u16string_view spec) {
  const TErrorRow* const row = RowOf(error);
  return row == nullptr ? NQ_TString() : Sentence(row->stage, Quoted(spec), row->reason);
}

NQ_TString StageErrorSuggestion(TStageError error, std::u16string_view spec) {
  const TErrorRow* const row = RowOf(error);
  return row == nullptr ? NQ_TString() : row->meant(spec);
}

void AddElemFindings(std::u16string_view spec, const TElemSpec& parsed, std::u16string_view input,
                     const TElement& element, TFindings& findings) {
  const NQ_TString index = NumberText(parsed.index.value);
  AddNumber(Sentence(u"in elem ", Quoted(spec), u" the index "), spec.substr(parsed.separator.size() + 1), parsed.index,
            Sentence(parsed.separator, u",", index), findings);
  if (input.empty() || !element.text.empty()) return;
  if (element.exists) {
    findings.Add(kEmpty, Sentence(u"element ", index, u" of ", Quoted(input), u" is empty"));
  } else if (element.pieces == 1) {
    findings.Add(kEmpty, Sentence(Quoted(input), u" does not contain ", Quoted(parsed.separator),
                                  u", so it has no element ", index));
  } else {
    // Who counts from 1 asks for the one behind the last.
    const NQ_TString last = NumberText(element.pieces - 1);
    findings.Add(kEmpty, Sentence(Quoted(input), u" has no element ", index, u"; the first is 0 and the last ", last),
                 parsed.index.value == element.pieces ? Sentence(parsed.separator, u",", last) : NQ_TString());
  }
}

void AddExtractFindings(std::u16string_view spec, const TExtractSpec& parsed, std::u16string_view input,
                        const TExtract& extract, TFindings& findings) {
  const std::size_t comma = std::min(spec.find(u','), spec.size() - 1);
  const NQ_TString in = Sentence(u"in extract ", Quoted(spec));
  const NQ_TString meant = Sentence(NumberText(parsed.start.value), u",", NumberText(parsed.length.value));
  AddNumber(Sentence(in, u" the start "), spec.substr(0, comma), parsed.start, meant, findings);
  AddNumber(Sentence(in, u" the length "), spec.substr(comma + 1), parsed.length, meant, findings);
  if (input.empty() || !extract.text.empty()) return;
  const NQ_TString characters = NumberText(static_cast<std::int64_t>(input.size()));
  if (extract.pastEnd) {
    findings.Add(kEmpty,
                 Sentence(Quoted(input), u" has ", characters, u" characters, so nothing is left from position ",
                          NumberText(parsed.start.value), u" on; the first one is 0"));
  } else {
    findings.Add(kEmpty, Sentence(in, u" the length is 0, which leaves nothing; -1 is up to the end"),
                 Sentence(spec.substr(0, comma), u",-1"));
  }
}

}  // namespace templatenames
