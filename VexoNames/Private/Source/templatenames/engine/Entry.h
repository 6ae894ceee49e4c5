// The entry of one name: the dictionary of its attributes, which handlers see, with a way to the attributes of value
// production that needs no lookup while no attribute comes or goes.
#pragma once

#include <memory>
#include <optional>

#include "NQ_TDict.h"
#include "text/PrintfFormat.h"

namespace templatenames {

/// The attributes that producing a value reads; each null when the entry has none of that name.
struct TEntrySlots {
  const NQ_TAny* type = nullptr;
  const NQ_TAny* value = nullptr;
  const NQ_TAny* format = nullptr;
  const NQ_TAny* typeHandler = nullptr;
  const NQ_TAny* lookupHandler = nullptr;
  const NQ_TAny* lookupHandler2 = nullptr;
  const NQ_TAny* elem = nullptr;
  const NQ_TAny* extract = nullptr;
  const NQ_TAny* regex = nullptr;
  const NQ_TAny* formattingOptions = nullptr;

  bool HasStages() const { return elem != nullptr || extract != nullptr || regex != nullptr; }
};

/// What the attributes come to when the library's own handlers produce the value: read once, used while no attribute
/// changes.
struct TPlan {
  enum class TKind : std::uint8_t { Handlers, Text, Number };

  TKind kind = TKind::Handlers;  // Handlers: the value is none of the others, they produce it
  bool plain = false;            // of a text: resolving leaves it as it is
  bool asIs = false;       // a plain text that is neither formatted nor cut: the value of a token without attributes
  bool stages = false;     // the entry has stages of its own
  bool options = false;    // the entry has formatting options
  bool anyFormat = false;  // whatever format a token gives, it changes nothing
  std::int32_t number = 0;
  const NQ_TString* text = nullptr;
  std::u16string_view units;              // of the text
  const TPrintfFormat* format = nullptr;  // the entry's, for a token that gives none; null: it is refused
};

/// Used under the registry lock. To everybody else it is an NQ_TDict, by class name too.
class TEntry final : public NQ_TDict {
 public:
  TEntry() = default;
  TEntry(const TEntry& other) : NQ_TDict(other) {}
  TEntry(TEntry&& other) noexcept : NQ_TDict(std::move(other)) {}
  TEntry& operator=(const TEntry&) = delete;
  ~TEntry() override;

  /// Valid until an attribute is added or removed; ask again after every handler call.
  const TEntrySlots& Slots() {
    if (slotsVersion_ != KeysVersion()) FindSlots();
    return slots_;
  }

  /// Whether resolving the name's value, a text, leaves it as it is. Remembered for the last short one.
  bool ValueIsPlain(const NQ_TString& value);

  /// What was planned, as long as it still holds; else null.
  const TPlan* Plan() const { return planVersion_ != 0 && planVersion_ == ContentVersion() ? &plan_ : nullptr; }
  /// Notes a plan. It holds until an attribute changes; not even until then unless those that it was made of are
  /// steady.
  const TPlan& SetPlan(const TPlan& plan, bool steady) {
    planVersion_ = steady ? ContentVersion() : 0;
    ascii_ = nullptr;
    return plan_ = plan;
  }
  /// The planned text as bytes, one a character; null when it is not all ASCII.
  const char* Ascii() { return ascii_ != nullptr ? ascii_ : FindAscii(); }
  /// Keep what a plan is made of.
  const NQ_TString& KeepText(NQ_TString text) { return text_ = std::move(text); }
  const TPrintfFormat* KeepFormat(std::optional<TPrintfFormat> format);

  NQ_IPackable* NQ_Clone(void* = nullptr) const override;
  NQ_IPackable* NQ_Move() override;

 private:
  friend class TNameStore;

  void FindSlots();
  const char* FindAscii();

  int pins_ = 0;  // the registry's: while it is above 0, the entry outlives its removal
  std::uint64_t planVersion_ = 0;
  TPlan plan_;
  const char* ascii_ = nullptr;  // what Ascii found
  NQ_TString text_;              // what was kept for the plan
  std::unique_ptr<const TPrintfFormat> format_;
  TEntrySlots slots_;
  std::uint64_t slotsVersion_ = 0;
  NQ_TString plainValue_;  // a share of the last value that had nothing to resolve: it keeps the address unique
};

}  // namespace templatenames
