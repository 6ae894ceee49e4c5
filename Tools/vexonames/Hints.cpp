#include "Hints.h"

#include <algorithm>

#include "Suggest.h"
#include "Text.h"
#include "Tokens.h"

namespace {

constexpr std::size_t kMostHints = 20;
constexpr std::size_t kLongestName = 200;  // that is looked for between "<" and ">"
constexpr auto kNone = std::u16string_view::npos;

std::string Quoted(std::u16string_view text) {
  return '\'' + Printable(Shortened(NQ_TString(text).Narrow(), 80)) + '\'';
}

/// Collects the names of the tokens that a translation meets.
class TCollector final : public TNameTranslator {
 public:
  void TranslateName(const NQ_TString& in, NQ_TString&) const override {
    if (found_.size() < kMostHints) found_.push_back(in);
  }
  NQ_TString GetPrefix() const override { return {}; }
  NQ_TString GetSuffix() const override { return {}; }
  const std::vector<NQ_TString>& Found() const { return found_; }

 private:
  mutable std::vector<NQ_TString> found_;
};

// "<name>" or "<<name>>" in text between tokens.
void HintAtMissingSlashes(const TName& names, std::u16string_view text, std::vector<std::string>& hints) {
  for (auto end = text.find(u'>'); end != kNone && hints.size() < kMostHints; end = text.find(u'>', end + 1)) {
    const std::size_t from = end - std::min(end, kLongestName);
    const std::size_t begin = text.substr(from, end - from).rfind(u'<');
    if (begin == kNone) continue;
    const std::u16string_view inner = text.substr(from + begin + 1, end - from - begin - 1);
    if (inner.empty() || !names.IsDefined(NQ_TString(inner))) continue;
    const bool isDouble = text.substr(0, from + begin).ends_with(u'<');
    hints.push_back(Quoted(inner) + " is no token here: it would end with '" + (isDouble ? "/>>" : "/>") + '\'');
  }
}

// In a template with double markers.
void HintAtSingleMarkers(const TName& names, std::u16string_view text, std::vector<std::string>& hints) {
  if (text.find(u"/>") == kNone) return;
  TCollector tokens;
  NQ_TString ignored;
  names.Translate(NQ_TString(text), tokens, ignored);
  for (const NQ_TString& key : tokens.Found()) {
    hints.push_back('\'' + Printable(key.Narrow()) +
                    "' stands between '<' and '/>', which is plain text here: the template uses '<<' and '/>>'");
  }
}

// Anything written like an attribute, outside the values of attributes.
void HintAtAttributes(std::u16string_view token, std::vector<std::string>& hints) {
  static const std::vector<NQ_TString> known = {"format", "elem", "extract", "regex"};
  const auto isLetter = [](char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); };
  std::size_t at = 0;
  for (auto equals = token.find(u"=\"", at); equals != kNone && hints.size() < kMostHints;
       equals = token.find(u"=\"", at)) {
    std::size_t begin = equals;
    while (begin > at && isLetter(token[begin - 1])) --begin;
    const NQ_TString name(token.substr(begin, equals - begin));
    if (name.Empty()) {
      hints.emplace_back("an attribute's name stands directly before its '=', as in elem=\"_,1\"");
    } else if (std::ranges::find(known, name) == known.end()) {
      hints.push_back(Quoted(name.StringView()) + " is no attribute" + Suggestion(name, known));
    }
    const std::size_t close = token.find(u'"', equals + 2);
    if (close == kNone) break;
    at = close + 1;
  }
}

}  // namespace

std::vector<std::string> HintsFor(const TName& names, const NQ_TString& text) {
  std::vector<std::string> hints;
  const std::u16string_view units = text.StringView();
  if (TName::IsMarked(text)) return hints;
  const TScan scan = ScanTemplate(units);
  std::size_t done = 0;
  const auto look = [&](std::size_t end) {
    const std::u16string_view between = units.substr(done, end - done);
    if (scan.IsDouble()) HintAtSingleMarkers(names, between, hints);
    HintAtMissingSlashes(names, between, hints);
  };
  for (const TTokenPlace& place : scan.tokens) {
    if (hints.size() >= kMostHints) return hints;
    look(place.begin);
    HintAtAttributes(units.substr(place.textBegin, place.textEnd - place.textBegin), hints);
    done = place.end;
  }
  look(scan.strayEnd.value_or(units.size()));
  if (scan.strayEnd) {
    hints.push_back(Quoted(scan.endMarker) + " at character " + std::to_string(*scan.strayEnd + 1) +
                    " ends no token; from there on everything is plain text");
  }
  return hints;
}

std::vector<std::string> HintsFrom(std::string_view engineSaid) {
  std::vector<std::string> hints;
  const auto takeLine = [&] {
    const std::string_view line = engineSaid.substr(0, engineSaid.find('\n'));
    engineSaid.remove_prefix(std::min(line.size() + 1, engineSaid.size()));
    return line;
  };
  while (!engineSaid.empty() && hints.size() < kMostHints) {
    const std::string_view line = takeLine();
    const bool parametersFailed = line.starts_with("Failed to update Workflow Parameter values from ") ||
                                  line.starts_with("Looking up XML Workflow Parameters failed.");
    if (parametersFailed) {
      const std::string cause = line.ends_with("Caused by:") ? ' ' + Printable(Shortened(takeLine())) : "";
      hints.push_back(Printable(Shortened(line)) + cause);
    }
    const bool matchError = line.find("':match error ") != std::string_view::npos;
    if (line.starts_with("TName:'") && line.find("' does not match regex '") != std::string_view::npos && !matchError)
      hints.push_back(Printable(Shortened(line.substr(6))) + "; the token became empty");
  }
  return hints;
}
