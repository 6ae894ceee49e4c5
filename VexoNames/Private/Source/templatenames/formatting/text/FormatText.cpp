#include "formatting/text/FormatText.h"

#include <cstddef>
#include <string_view>

#include "NQ_TArray.h"
#include "formatting/OptionPlaces.h"
#include "formatting/OptionTable.h"
#include "formatting/text/EncodeUrl.h"
#include "formatting/text/ReplacePairs.h"
#include "formatting/text/Substitutions.h"

namespace templatenames {
namespace {

struct TTextKeys {
  enum TKey : std::size_t { kRemoveSpaces, kTransformation, kEncoding, kCustomEncoding, kCount };
  static const auto& All() { return OptionKeys<TOptionReader::Text, kCount>(); }
};

using TTextPlaces = TOptionPlaces<TTextKeys>;

// ---- ends and case

void RemoveSpaces(NQ_TString& value) {
  std::u16string_view text = value.StringView();
  while (!text.empty() && text.front() <= u' ') text.remove_prefix(1);
  while (!text.empty() && text.back() <= u' ') text.remove_suffix(1);
  if (text.size() != value.Length()) value = NQ_TString(text);
}

void Transform(const NQ_TString& word, NQ_TString& value) {
  if (word.Equals(u"UPPERCASE")) value.ToUpper();
  if (word.Equals(u"LOWERCASE")) value.ToLower();
}

// ---- encodings

bool EncodeCustom(const TTextPlaces& options, std::size_t most, NQ_TString& value) {
  const auto* const pairs = options.Get<NQ_TArray>(TTextKeys::kCustomEncoding);
  return pairs == nullptr || ReplacePairs(*pairs, most, value);
}

bool EncodeXml(const TTextPlaces&, std::size_t most, NQ_TString& value) {
  // Never destroyed: other threads may still format while the program ends.
  static const auto* const entities = [] {
    auto* const made = new TSubstitutions(u"&\"<>'");
    made->Add(u"&", u"&amp;");
    made->Add(u"\"", u"&quot;");
    made->Add(u"<", u"&lt;");
    made->Add(u">", u"&gt;");
    made->Add(u"'", u"&apos;");
    return made;
  }();
  return entities->Apply(most, value);
}

struct TEncoding {
  std::u16string_view word;
  bool (*encode)(const TTextPlaces& options, std::size_t most, NQ_TString& value);
};

constexpr TEncoding kEncodings[] = {
    {u"XML", EncodeXml},
    {u"URL", [](const TTextPlaces&, std::size_t most, NQ_TString& value) { return EncodeUrl(most, value); }},
    {u"CUSTOM", EncodeCustom},
};

}  // namespace

bool FormatText(const NQ_TDict& options, std::size_t most, NQ_TString& value) {
  const TTextPlaces& places = TTextPlaces::In(options);
  if (places.Flag(TTextKeys::kRemoveSpaces)) RemoveSpaces(value);
  Transform(places.Text(TTextKeys::kTransformation), value);
  const NQ_TString& word = places.Text(TTextKeys::kEncoding);
  for (const TEncoding& encoding : kEncodings)
    if (word.Equals(encoding.word)) return encoding.encode(places, most, value);
  return true;
}

}  // namespace templatenames
