#include "formatting/ReplacePairs.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "NQ_EException.h"
#include "NQ_TDict.h"
#include "formatting/OptionPlaces.h"
#include "formatting/ReplaceText.h"
#include "formatting/Substitutions.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// ---- the pairs of a list

struct TPairKeys {
  enum TKey : std::size_t { kFind, kReplace, kCount };
  static const std::array<NQ_TString, kCount>& All() {
    static const auto* const keys = new std::array<NQ_TString, kCount>{NQ_TString(u"Find"), NQ_TString(u"Replace")};
    return *keys;
  }
};

using TPairPlaces = TOptionPlaces<TPairKeys>;

// Where the texts of the element lie.
const TPairPlaces& PlacesIn(const NQ_TAny& element) {
  const auto* const pair = element.As<NQ_TDict>();
  if (pair == nullptr) nq::Throw(NQ_EException("An element of CustomEncoding is no dictionary", element));
  const TPairPlaces& places = TPairPlaces::In(*pair);
  for (const auto key : {TPairKeys::kFind, TPairKeys::kReplace}) {
    if (places.Get<NQ_TString>(key) != nullptr) continue;
    nq::Throw(NQ_EException("This value in an element of CustomEncoding is no text", pair->At(TPairKeys::All()[key])));
  }
  return places;
}

// ---- what is made of them

// One replacement after the other. Most lists replace single characters by texts without characters of later pairs:
// such pairs are one step.
class TReplacements {
 public:
  /// Adds what the element says; throws when it lacks something.
  void Add(const NQ_TAny& element) {
    const TPairPlaces& places = PlacesIn(element);
    pairs_.push_back({places, *places.Get<NQ_TString>(TPairKeys::kFind), *places.Get<NQ_TString>(TPairKeys::kReplace)});
    const TPair& pair = pairs_.back();
    const std::u16string_view find = pair.find.StringView(), replace = pair.replace.StringView();
    units_ += find.size() + replace.size();
    const bool follows = !steps_.empty() && steps_.back().together != nullptr;
    if (follows && steps_.back().together->Add(find, replace)) return;
    auto together = std::make_unique<TSubstitutions>();
    const bool single = together->Add(find, replace);
    steps_.push_back({single ? std::move(together) : nullptr, pairs_.size() - 1});
  }

  bool Apply(NQ_TString& value) const {
    for (const auto& [together, number] : steps_) {
      const TPair& pair = pairs_[number];
      const bool done = together != nullptr ? together->Apply(value)
                                            : ReplaceText(pair.find.StringView(), pair.replace.StringView(), value);
      if (!done) return false;
    }
    return true;
  }

  /// Whether the list still says the same, in the same places.
  bool IsOf(const NQ_TArray& list) const {
    if (list.Count() != pairs_.size()) return false;
    for (unsigned int i = 0; i < list.Count(); ++i) {
      const auto* const pair = list.At(i)->As<NQ_TDict>();
      if (pair == nullptr || !pairs_[i].IsOf(*pair)) return false;
    }
    return true;
  }

  /// Whether it holds on to little memory.
  bool IsSmall() const {
    constexpr std::size_t kFewPairs = 64, kFewSteps = 8, kFewUnits = 4096;
    return pairs_.size() <= kFewPairs && steps_.size() <= kFewSteps && units_ <= kFewUnits;
  }

 private:
  struct TPair {
    TPairPlaces places;
    NQ_TString find, replace;  // shares of the texts of the list

    bool IsOf(const NQ_TDict& pair) const {
      if (!places.AreOf(pair)) return false;
      const auto* const itsFind = places.Get<NQ_TString>(TPairKeys::kFind);
      const auto* const itsReplace = places.Get<NQ_TString>(TPairKeys::kReplace);
      return itsFind != nullptr && itsReplace != nullptr && *itsFind == find && *itsReplace == replace;
    }
  };
  struct TStep {
    std::unique_ptr<TSubstitutions> together;  // or else:
    std::size_t number;                        // of the pair
  };

  std::vector<TPair> pairs_;
  std::vector<TStep> steps_;
  std::size_t units_ = 0;
};

constexpr std::size_t kKept = 8;

}  // namespace

bool ReplacePairs(const NQ_TArray& list, NQ_TString& value) {
  auto& kept = TThreadKept<std::array<TReplacements, kKept>>::Mine();
  // Arrays lie at least so far apart.
  TReplacements& replacements = kept[reinterpret_cast<std::uintptr_t>(&list) / 64 % kKept];
  if (replacements.IsOf(list)) return replacements.Apply(value);
  TReplacements made;
  try {
    for (unsigned int i = 0; i < list.Count(); ++i) made.Add(*list.At(i));
  } catch (const NQ_EException&) {
    if (!made.Apply(value)) return false;
    throw;
  }
  if (!made.IsSmall()) return made.Apply(value);
  replacements = std::move(made);
  return replacements.Apply(value);
}

}  // namespace templatenames
