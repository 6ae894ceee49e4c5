#include "formatting/text/ReplacePairs.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "NQ_EException.h"
#include "NQ_TDict.h"
#include "formatting/OptionPlaces.h"
#include "formatting/OptionTable.h"
#include "formatting/text/ReplaceText.h"
#include "formatting/text/Substitutions.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

// ---- the pairs of a list

struct TPairKeys {
  enum TKey : std::size_t { kFind, kReplace, kCount };
  static const auto& All() { return OptionKeys<TOptionReader::Pair, kCount>(); }
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

  bool Apply(std::size_t most, NQ_TString& value) const {
    for (const auto& [together, number] : steps_) {
      const TPair& pair = pairs_[number];
      const bool done = together != nullptr
                            ? together->Apply(most, value)
                            : ReplaceText(pair.find.StringView(), pair.replace.StringView(), most, value);
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

  bool IsEmpty() const { return pairs_.empty(); }
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

// ---- what a thread keeps

class TKeptReplacements {
 public:
  /// What is kept of that list, or null.
  const TReplacements* Find(const NQ_TArray& list) const {
    for (const std::size_t place : PlacesOf(list))
      if (kept_[place].IsOf(list)) return &kept_[place];
    return nullptr;
  }

  /// Keeps it in the place that is free; when none is, in one and the other by turns, so that lists that meet in one
  /// place find others.
  const TReplacements& Keep(const NQ_TArray& list, TReplacements&& made) {
    const auto [first, second] = PlacesOf(list);
    const bool takesFirst = kept_[first].IsEmpty() || (!kept_[second].IsEmpty() && ++turns_ % 2 == 0);
    return kept_[takesFirst ? first : second] = std::move(made);
  }

 private:
  static constexpr std::size_t kPlaces = 32;  // most lists take two kilobytes

  // By the address, multiplied by 2^64 divided by the golden ratio: neighbours lie far apart.
  static std::array<std::size_t, 2> PlacesOf(const NQ_TArray& list) {
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(&list) * 0x9E37'79B9'7F4A'7C15;
    return {mixed >> 59, mixed >> 54 & (kPlaces - 1)};
  }

  std::array<TReplacements, kPlaces> kept_;
  unsigned turns_ = 0;
};

}  // namespace

bool ReplacePairs(const NQ_TArray& list, std::size_t most, NQ_TString& value) {
  auto& kept = TThreadKept<TKeptReplacements>::Mine();
  if (const auto* const known = kept.Find(list); known != nullptr) return known->Apply(most, value);
  TReplacements made;
  try {
    for (unsigned int i = 0; i < list.Count(); ++i) made.Add(*list.At(i));
  } catch (const NQ_EException&) {
    if (!made.Apply(most, value)) return false;
    throw;
  }
  return made.IsSmall() ? kept.Keep(list, std::move(made)).Apply(most, value) : made.Apply(most, value);
}

}  // namespace templatenames
