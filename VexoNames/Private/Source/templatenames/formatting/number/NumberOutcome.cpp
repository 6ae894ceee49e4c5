#include "formatting/number/NumberOutcome.h"

#include <string_view>

#include "text/Sentence.h"

namespace templatenames {
namespace {

bool IsSpace(char16_t unit) { return unit <= u' ' || unit == u'\u00A0' || unit == u'\u202F'; }

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// What stands between two digits is a separator that the options do not name.
bool BeginsWithSeparator(std::u16string_view rest) { return rest.size() > 1 && !IsDigit(rest[0]) && IsDigit(rest[1]); }

void AddUnreadRest(std::u16string_view text, std::size_t read, TFindings& findings) {
  const std::u16string_view rest = text.substr(read);
  NQ_TString reason = Sentence(u"only ", Quoted(text.substr(0, read)), u" of ", Quoted(text),
                               u" was read as a number, and ", Quoted(rest), u" was dropped");
  if (BeginsWithSeparator(rest))
    reason.Append(Sentence(u"; if ", Quoted(rest.substr(0, 1)),
                           u" belongs to the number, name it as InputDecimalSeparator or InputThousandsSeparator")
                      .StringView());
  findings.Add(TNameProblem::TNameProblem_KindUnreadRest, std::move(reason));
}

}  // namespace

void AddNumberFindings(const NQ_TString& value, const TNumberOutcome& outcome, TFindings& findings) {
  const std::u16string_view text = value.StringView();
  if (outcome.kind == TNumberOutcome::TKind::NotANumber) {
    findings.Add(TNameProblem::TNameProblem_KindUnreadable,
                 Sentence(Quoted(text), u" cannot be read as a number, so it stays as it is"));
    return;
  }
  std::size_t end = text.size();
  while (end > outcome.read && IsSpace(text[end - 1])) --end;
  if (end > outcome.read) AddUnreadRest(text.substr(0, end), outcome.read, findings);
}

}  // namespace templatenames
