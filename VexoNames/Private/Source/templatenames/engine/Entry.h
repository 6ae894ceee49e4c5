// The entry of one name: the dictionary of its attributes, which handlers see, with a way to the attributes of value
// production that needs no lookup while no attribute comes or goes, and what was compiled from them.
#pragma once

#include <memory>
#include <optional>

#include "NQ_TDict.h"
#include "engine/Recipe.h"
#include "text/PrintfFormat.h"

namespace templatenames {

/// Used under the registry lock. To everybody else it is an NQ_TDict, by class name too.
class TEntry final : public NQ_TDict {
 public:
  TEntry() = default;
  TEntry(const TEntry& other) : NQ_TDict(other) {}
  TEntry(TEntry&& other) noexcept : NQ_TDict(std::move(other)) {}
  TEntry& operator=(const TEntry&) = delete;
  ~TEntry() override;

  /// Where the attributes of value production lie. Valid until an attribute is added or removed; ask again after every
  /// handler call.
  const TEntrySlots& Slots() {
    if (slotsVersion_ != KeysVersion()) FindSlots();
    return slots_;
  }

  /// What the attributes come to; compiled anew when one of them has changed. Valid until an attribute changes; ask
  /// again after every handler call.
  const TRecipe& Recipe() {
    return recipeVersion_ != 0 && recipeVersion_ == ContentVersion() ? recipe_ : CompileRecipe();
  }

  /// Whether resolving the name's value, a text, leaves it as it is. Remembered for the last short one.
  bool ValueIsPlain(const NQ_TString& value);
  /// The text of the recipe as bytes, one a character; null when it is not all ASCII.
  const char* Ascii() { return ascii_ != nullptr ? ascii_ : FindAscii(); }
  /// Keep what a recipe is made of.
  const NQ_TString& KeepText(NQ_TString text) { return text_ = std::move(text); }
  const TPrintfFormat* KeepFormat(std::optional<TPrintfFormat> format);

  /// Whether nothing about the formatting options is odd, as far as somebody has looked since an attribute changed.
  bool HasCleanOptions() const { return cleanOptions_ != 0 && cleanOptions_ == ContentVersion(); }
  void SetCleanOptions() { cleanOptions_ = ContentVersion(); }

  NQ_IPackable* NQ_Clone(void* = nullptr) const override;
  NQ_IPackable* NQ_Move() override;

 private:
  friend class TNameStore;

  void FindSlots();
  const TRecipe& CompileRecipe();
  const char* FindAscii();

  int pins_ = 0;  // the registry's: while it is above 0, the entry outlives its removal
  std::uint64_t recipeVersion_ = 0;
  TRecipe recipe_;
  std::uint64_t cleanOptions_ = 0;
  const char* ascii_ = nullptr;  // what Ascii found
  NQ_TString text_;              // what was kept for the recipe
  std::unique_ptr<const TPrintfFormat> format_;
  TEntrySlots slots_;
  std::uint64_t slotsVersion_ = 0;
  NQ_TString plainValue_;  // a share of the last value that had nothing to resolve: it keeps the address unique
};

}  // namespace templatenames
