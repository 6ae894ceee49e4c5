// The dictionary.
//
// Maps keys to variants; keys are unique and iteration is in the order in which they were first added. Looking up,
// adding and removing take constant time. Copies share their content until one of them is changed.
//
//   NQ_TDict d{{"Name", "x"}, {"Count", 5}};
//   d.Add("Done", true);
//   d["Count"] = 6;
//   if (const NQ_TAny* v = std::as_const(d).ValueOfKey("Name")) ...
//   for (const auto& [key, value] : std::as_const(d)) ...
//
// A key is an NQ_TString, and so may be text in any form; any other NQ_IHashable is filed under its key text.
//
// A value keeps its address while other keys come and go, unless the dictionary is a copy that still shares its
// content: then changing it moves its values. What non-const access gives out never moves. Several threads may read
// one dictionary; changing it needs the owner's lock.
#pragma once

#include <initializer_list>

#include "NQ_IIteratable.h"
#include "NQ_TShared.h"

/// One key of a dictionary and its value.
struct NQ_TDictEntry {
  const NQ_TString key;
  NQ_TAny value;
};

class NQ_EXPORT NQ_TDict : public NQ_TValueOf<NQ_TDict, NQ_TContainer, "NQ_TDict"> {
 public:
  NQ_TDict();
  /// With room for that many keys.
  explicit NQ_TDict(unsigned int capacity);
  NQ_TDict(const NQ_TDict& other);
  /// A copy with room for that many keys.
  NQ_TDict(const NQ_TDict& other, unsigned int capacity);
  NQ_TDict(NQ_TDict&& other) noexcept;
  /// With these entries; of several with one key the last one counts.
  NQ_TDict(std::initializer_list<NQ_TDictEntry> entries);
  ~NQ_TDict() override;
  NQ_TDict& operator=(const NQ_TDict& other);
  NQ_TDict& operator=(NQ_TDict&& other) noexcept;
  using NQ_TClassOf::operator=;

  /// Stores the value under the key, in place of an earlier one.
  NQ_TDict& Add(const NQ_TString& key, NQ_TAny&& value);
  NQ_TDict& Add(const NQ_TString& key, const NQ_TAny& value) { return Add(key, NQ_TAny(value)); }
  NQ_TDict& Add(const NQ_IHashable& key, NQ_TAny value) { return Add(key.KeyText(), std::move(value)); }

  template <class Key>
  [[nodiscard]] bool HasKey(const Key& key) const {
    return ValueOfKey(key) != nullptr;
  }

  /// The stored value, or null when the key is absent.
  [[nodiscard]] const NQ_TAny* ValueOfKey(const NQ_TString& key) const;
  [[nodiscard]] const NQ_TAny* ValueOfKey(const NQ_IHashable& key) const { return ValueOfKey(key.KeyText()); }
  /// The same; makes no string for a key of usual length.
  [[nodiscard]] const NQ_TAny* ValueOfKey(const char* key) const;
  /// The same for a key given as text and its `NQ_TString::HashOf`; makes no string.
  [[nodiscard]] const NQ_TAny* ValueOfText(std::u16string_view key, std::uint64_t hash) const;
  /// The same, to be written through.
  [[nodiscard]] NQ_TAny* ValueOfKey(const NQ_TString& key);
  [[nodiscard]] NQ_TAny* ValueOfKey(const NQ_IHashable& key) { return ValueOfKey(key.KeyText()); }
  [[nodiscard]] NQ_TAny* ValueOfKey(const char* key) { return ValueOfKey(NQ_TString(key)); }

  /// The stored value; a null one is inserted first when the key is absent.
  NQ_TAny& operator[](const NQ_TString& key);
  NQ_TAny& operator[](const NQ_IHashable& key) { return (*this)[key.KeyText()]; }
  /// The stored value; throws NQ_EException with the key as data when the key is absent.
  const NQ_TAny& At(const NQ_TString& key) const;
  const NQ_TAny& At(const NQ_IHashable& key) const { return At(key.KeyText()); }

  /// The content of the value under the key when it is a T; null when the key is absent or its value something else.
  template <class T, class Key>
  [[nodiscard]] const T* Get(const Key& key) const {
    const NQ_TAny* const value = ValueOfKey(key);
    return value == nullptr ? nullptr : value->As<T>();
  }

  /// Removes the key and its value; an absent key is no error.
  void Remove(const NQ_TString& key);
  void Remove(const NQ_IHashable& key) { Remove(key.KeyText()); }
  void Clear();
  [[nodiscard]] bool IsEmpty() const { return Size() == 0; }
  unsigned int Size() const;

  /// Changes with every key that is added or removed, and never comes back for other keys: while it is unchanged,
  /// addresses of values found earlier are still right, and so is the absence of a key.
  std::uint64_t KeysVersion() const;

  /// Changes with everything that Add and Remove do, and never comes back for another content. 0 when that cannot be
  /// told: the dictionary has no keys yet, or non-const access has given out a value to be written.
  std::uint64_t ContentVersion() const { return shared_.Version(); }

  auto begin() const { return TConstWalk({FirstNode()}); }
  auto end() const { return TConstWalk(); }
  auto begin() {
    PrepareToWrite();
    return TWalk({FirstNode()});
  }
  auto end() { return TWalk(); }

  /// Equal keys with equal values, whatever their order.
  bool operator==(const NQ_TDict& other) const;
  /// {key = value, key = value}
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;

  TPlace FirstPlace() const override;
  bool AtEnd(const TPlace& place) const override;
  void Advance(TPlace& place) const override;
  NQ_TString KeyAt(const TPlace& place) const override;
  const NQ_TAny& ValueAt(const TPlace& place) const override;
  void PrepareToWrite() override;

 private:
  class TContent;
  struct TNode : NQ_TDictEntry {
    std::uint64_t hash;
    TNode* next;
    TNode* previous;
  };
  struct TCursor {
    NQ_TDictEntry& Element() const { return *node; }
    void Step() { node = node->next; }
    bool operator==(const TCursor&) const = default;
    TNode* node = nullptr;
  };
  using TWalk = NQ_TForward<NQ_TDictEntry, TCursor>;
  using TConstWalk = NQ_TForward<const NQ_TDictEntry, TCursor>;

  TNode* FirstNode() const;

  NQ_TShared<TContent> shared_;
};
