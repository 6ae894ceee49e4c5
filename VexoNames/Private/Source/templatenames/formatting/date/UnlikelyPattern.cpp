#include "formatting/date/UnlikelyPattern.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "formatting/date/DatePatternParts.h"
#include "text/Sentence.h"

namespace templatenames {
namespace {

// Those that ICU reads and writes. Any other letter is an error to the reader, and ends what is written.
constexpr std::u16string_view kKnownLetters = u"GyMdkHmsSEDFwWahKzYeugAZvcLQqVUOXxrbB";

constexpr std::u16string_view kDates = u"dDyYuMLEce";
constexpr std::u16string_view kTimes = u"HhkKms";

bool IsOneOf(char16_t letter, std::u16string_view letters) { return letters.find(letter) != std::u16string_view::npos; }

/// A field of a pattern among the others.
class TField {
 public:
  TField(const std::vector<TDatePart>& parts, std::size_t at) : parts_(parts), at_(at) {}

  std::size_t Count() const { return parts_[at_].text.size(); }
  /// Whether the pattern has one of the letters.
  bool IsWith(std::u16string_view letters) const {
    return std::any_of(parts_.begin(), parts_.end(),
                       [&](const TDatePart& part) { return IsOneOf(part.Letter(), letters); });
  }
  /// The same of the nearest field before this one, and of the one behind it.
  bool IsBehind(std::u16string_view letters) const {
    for (std::size_t i = at_; i-- > 0;)
      if (parts_[i].isField) return IsOneOf(parts_[i].Letter(), letters);
    return false;
  }
  bool IsBefore(std::u16string_view letters) const {
    for (std::size_t i = at_ + 1; i < parts_.size(); ++i)
      if (parts_[i].isField) return IsOneOf(parts_[i].Letter(), letters);
    return false;
  }
  bool IsBeside(std::u16string_view letters) const { return IsBehind(letters) || IsBefore(letters); }

 private:
  const std::vector<TDatePart>& parts_;
  std::size_t at_;
};

/// A letter, when it is probably not meant, and what is.
struct TMixUp {
  char16_t letter;
  bool (*isUnlikely)(const TField& field);
  char16_t meant;
  std::u16string_view is, wanted;
};

constexpr TMixUp kMixUps[] = {
    {u'm', [](const TField& field) { return field.Count() <= 2 && !field.IsBeside(kTimes); }, u'M', u"minutes",
     u"months"},
    {u'M',
     [](const TField& field) { return field.Count() <= 2 && field.IsBeside(u"HhkKs") && !field.IsBeside(kDates); },
     u'm', u"months", u"minutes"},
    {u'D', [](const TField& field) { return field.Count() == 2 || (field.Count() == 1 && field.IsWith(u"MLm")); }, u'd',
     u"the day of the year", u"the day of the month"},
    {u'Y', [](const TField& field) { return !field.IsWith(u"w"); }, u'y', u"the year that the week belongs to",
     u"the year"},
    {u'S', [](const TField& field) { return field.IsBehind(u"mM") && !field.IsWith(u"s"); }, u's',
     u"fractions of a second", u"seconds"},
    {u'h', [](const TField& field) { return !field.IsWith(u"abB"); }, u'H', u"hours of half a day",
     u"hours of the whole day"},
};

NQ_TString WhatItIs(const TMixUp& mixUp, std::u16string_view letters) {
  const std::u16string meant(letters.size(), mixUp.meant);
  return Sentence(letters, u" is ", mixUp.is, u" (", meant, u" is ", mixUp.wanted, u")");
}

NQ_TString WhyUnknown(std::u16string_view letters) {
  return Sentence(letters, u" means nothing (text stands between single quotes)");
}

}  // namespace

TUnlikelyPattern FindUnlikely(const NQ_TString& pattern) {
  const std::vector<TDatePart> parts = PartsOf(pattern.StringView());
  std::vector<TDatePart> meant = parts;
  TUnlikelyPattern result;
  const auto add = [&](const NQ_TString& why) {
    result.reason = result.reason.Empty() ? why : Sentence(result.reason, u", ", why);
  };
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const char16_t letter = parts[i].Letter();
    if (parts[i].isField && !IsOneOf(letter, kKnownLetters)) {
      add(WhyUnknown(parts[i].text));
      meant[i].isField = false;
    }
    for (const TMixUp& mixUp : kMixUps) {
      if (mixUp.letter != letter || !mixUp.isUnlikely(TField(parts, i))) continue;
      add(WhatItIs(mixUp, parts[i].text));
      meant[i].text.assign(parts[i].text.size(), mixUp.meant);
    }
  }
  if (!result.reason.Empty()) result.meant = NQ_TString(PatternOf(meant));
  return result;
}

}  // namespace templatenames
