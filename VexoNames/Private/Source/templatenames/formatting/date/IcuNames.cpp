#include "formatting/date/IcuNames.h"

#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/uenum.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formatting/date/IcuText.h"
#include "text/Nearest.h"

namespace templatenames {
namespace {

constexpr std::size_t kLongest = 100;  // of what is compared with every identifier

// Sorted words, which are never freed: threads may look while the program ends.
struct TWords {
  explicit TWords(std::vector<std::u16string> all) : words(std::move(all)) {
    std::sort(words.begin(), words.end());
    views.assign(words.begin(), words.end());
  }
  bool Have(std::u16string_view word) const { return std::binary_search(views.begin(), views.end(), word); }

  std::vector<std::u16string> words;
  std::vector<std::u16string_view> views;
};

std::vector<std::u16string> ZoneIds() {
  std::vector<std::u16string> ids;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> all(icu::TimeZone::createEnumeration(error));
  CheckIcu(all == nullptr ? U_MEMORY_ALLOCATION_ERROR : error, NQ_TString::sEmpty);
  while (const icu::UnicodeString* const id = all->snext(error)) {
    if (FromIcu(*id) != u"Etc/Unknown") ids.emplace_back(FromIcu(*id));
  }
  CheckIcu(error, NQ_TString::sEmpty);
  return ids;
}

// With those that are no longer used, as "iw".
std::vector<std::u16string> LanguageIds() {
  std::vector<std::u16string> ids;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UEnumeration, void (*)(UEnumeration*)> all(
      uloc_openAvailableByType(ULOC_AVAILABLE_WITH_LEGACY_ALIASES, &error), &uenum_close);
  CheckIcu(error, NQ_TString::sEmpty);
  std::int32_t length = 0;
  while (const char16_t* const id = uenum_unext(all.get(), &length, &error))
    ids.emplace_back(id, static_cast<std::size_t>(length));
  CheckIcu(error, NQ_TString::sEmpty);
  return ids;
}

const TWords& Zones() {
  static const auto* const zones = new TWords(ZoneIds());
  return *zones;
}

const TWords& Languages() {
  static const auto* const languages = new TWords(LanguageIds());
  return *languages;
}

// Without case, and with the "_" of identifiers.
std::u16string Folded(std::u16string_view text) {
  std::u16string folded(text);
  const auto fold = [](char16_t unit) { return unit == u' ' || unit == u'-' ? u'_' : FoldedUnit(unit); };
  std::transform(folded.begin(), folded.end(), folded.begin(), fold);
  return folded;
}

}  // namespace

// ---- zones

bool IsListedZone(const NQ_TString& id) { return Zones().Have(id.StringView()); }

bool IsKnownZone(const NQ_TString& id) {
  if (IsListedZone(id)) return true;
  const std::unique_ptr<const icu::TimeZone> zone(icu::TimeZone::createTimeZone(ToIcu(id)));
  return zone != nullptr && *zone != icu::TimeZone::getUnknown();
}

NQ_TString NearestZone(const NQ_TString& id) {
  const std::u16string_view text = id.StringView();
  if (text.size() > kLongest) return {};
  NQ_TString offset = NQ_TString("GMT") + NQ_TString(text.substr(text.starts_with(u"UTC") ? 3 : 0));
  if (IsKnownZone(offset)) return offset;
  const std::u16string folded = Folded(text);
  for (const std::u16string_view zone : Zones().views) {
    const std::u16string other = Folded(zone);
    if (other == folded || other.ends_with(u'/' + folded)) return NQ_TString(zone);
  }
  return NQ_TString(NearestWord(text, Zones().views));
}

// ---- languages

bool IsKnownLanguage(const NQ_TString& id) {
  const icu::Locale locale(id.c_str());
  if (locale.isBogus() != 0) return false;
  const std::string_view language = locale.getLanguage();
  if (language.empty()) return *locale.getBaseName() == '\0';
  return Languages().Have(std::u16string(language.begin(), language.end()));
}

NQ_TString NearestLanguage(const NQ_TString& id) {
  if (id.Length() > kLongest || *icu::Locale(id.c_str()).getLanguage() == '\0') return {};  // a country alone: no guess
  return NQ_TString(NearestWord(Folded(id.StringView()), Languages().views));
}

}  // namespace templatenames
