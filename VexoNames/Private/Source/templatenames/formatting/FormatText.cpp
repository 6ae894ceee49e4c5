#include "formatting/FormatText.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "NQ_EException.h"
#include "NQ_TArray.h"
#include "formatting/EncodeUrl.h"
#include "formatting/OptionPlaces.h"
#include "formatting/ReplaceText.h"
#include "formatting/Substitutions.h"

namespace templatenames {
namespace {

struct TTextKeys {
  enum TKey : std::size_t { kRemoveSpaces, kTransformation, kEncoding, kCustomEncoding, kCount };
  static const std::array<NQ_TString, kCount>& All() {
    static const auto* const keys =
        new std::array<NQ_TString, kCount>{NQ_TString(u"RemoveSpaces"), NQ_TString(u"Transformation"),
                                           NQ_TString(u"Encoding"), NQ_TString(u"CustomEncoding")};
    return *keys;
  }
};

// Of an element of CustomEncoding.
struct TPairKeys {
  enum TKey : std::size_t { kFind, kReplace, kCount };
  static const std::array<NQ_TString, kCount>& All() {
    static const auto* const keys = new std::array<NQ_TString, kCount>{NQ_TString(u"Find"), NQ_TString(u"Replace")};
    return *keys;
  }
};

using TTextPlaces = TOptionPlaces<TTextKeys>;
using TPairPlaces = TOptionPlaces<TPairKeys>;

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

struct TPair {
  std::u16string_view find;
  std::u16string_view replace;
};

// Says what an element lacks.
[[noreturn]] void ThrowFor(const NQ_TAny& element) {
  const auto* const pair = element.As<NQ_TDict>();
  if (pair == nullptr) nq::Throw(NQ_EException("An element of CustomEncoding is no dictionary", element));
  const NQ_TString& find = TPairKeys::All()[TPairKeys::kFind];
  const NQ_TString& wanted = pair->Get<NQ_TString>(find) == nullptr ? find : TPairKeys::All()[TPairKeys::kReplace];
  nq::Throw(NQ_EException("This value in an element of CustomEncoding is no text", pair->At(wanted)));
}

TPair PairIn(const NQ_TAny& element) {
  if (const auto* const pair = element.As<NQ_TDict>()) {
    const TPairPlaces& places = TPairPlaces::In(*pair);
    const auto* const find = places.Get<NQ_TString>(TPairKeys::kFind);
    const auto* const replace = places.Get<NQ_TString>(TPairKeys::kReplace);
    if (find != nullptr && replace != nullptr) return {find->StringView(), replace->StringView()};
  }
  ThrowFor(element);
}

// Most lists replace single characters by texts without characters of later pairs: those pairs are replaced together.
bool EncodeCustom(const TTextPlaces& options, NQ_TString& value) {
  const auto* const pairs = options.Get<NQ_TArray>(TTextKeys::kCustomEncoding);
  const unsigned int count = pairs == nullptr ? 0 : pairs->Count();
  TSubstitutions together;
  for (unsigned int i = 0; i < count; ++i) {
    TPair pair;
    try {
      pair = PairIn(*pairs->At(i));
    } catch (const NQ_EException&) {
      together.Apply(value);
      throw;
    }
    if (together.Add(pair.find, pair.replace)) continue;
    if (!together.Apply(value)) return false;
    together.Clear();
    if (together.Add(pair.find, pair.replace)) continue;
    if (!ReplaceText(pair.find, pair.replace, value)) return false;
  }
  return together.Apply(value);
}

bool EncodeXml(const TTextPlaces&, NQ_TString& value) {
  static const TSubstitutions entities = [] {
    TSubstitutions made;
    made.Add(u"&", u"&amp;");
    made.Add(u"\"", u"&quot;");
    made.Add(u"<", u"&lt;");
    made.Add(u">", u"&gt;");
    made.Add(u"'", u"&apos;");
    return made;
  }();
  return entities.Apply(value);
}

struct TEncoding {
  std::u16string_view word;
  bool (*encode)(const TTextPlaces& options, NQ_TString& value);
};

constexpr TEncoding kEncodings[] = {
    {u"XML", EncodeXml},
    {u"URL", [](const TTextPlaces&, NQ_TString& value) { return EncodeUrl(value); }},
    {u"CUSTOM", EncodeCustom},
};

}  // namespace

bool FormatText(const NQ_TDict& options, NQ_TString& value) {
  const TTextPlaces& places = TTextPlaces::In(options);
  if (places.Flag(TTextKeys::kRemoveSpaces)) RemoveSpaces(value);
  Transform(places.Text(TTextKeys::kTransformation), value);
  const NQ_TString& word = places.Text(TTextKeys::kEncoding);
  for (const TEncoding& encoding : kEncodings)
    if (word.Equals(encoding.word)) return encoding.encode(places, value);
  return true;
}

}  // namespace templatenames
