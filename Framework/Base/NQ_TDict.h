// The dictionary.
//
// Maps keys to variants; keys are unique and iteration is in the order in which they were first added. Looking up,
// adding and removing take constant time. Copies share their content until one of them is changed.
//
//   NQ_TDict d;
//   d.Add("Name", NQ_TString("x"));
//   d["Count"] = 5;
//   if (const NQ_TAny* v = std::as_const(d).ValueOfKey("Name")) ...
//
// A value keeps its address while other keys come and go, unless the dictionary is a copy that still shares its
// content: then changing it moves its values. What non-const access gives out never moves. Several threads may read
// one dictionary; changing it needs the owner's lock.
#pragma once

#include "NQ_IIteratable.h"
#include "NQ_TShared.h"

class NQ_EXPORT NQ_TDict : public NQ_TValueOf<NQ_TDict, NQ_TContainer, "NQ_TDict"> {
 public:
  NQ_TDict();
  /// With room for that many keys.
  explicit NQ_TDict(unsigned int capacity);
  NQ_TDict(const NQ_TDict& other);
  /// A copy with room for that many keys.
  NQ_TDict(const NQ_TDict& other, unsigned int capacity);
  NQ_TDict(NQ_TDict&& other) noexcept;
  ~NQ_TDict() override;
  NQ_TDict& operator=(const NQ_TDict& other);
  NQ_TDict& operator=(NQ_TDict&& other) noexcept;
  using NQ_TClassOf::operator=;

  /// Stores the value under the key, in place of an earlier one.
  NQ_TDict& Add(const NQ_IHashable& key, NQ_TAny&& value);
  NQ_TDict& Add(const char* key, NQ_TAny&& value) { return Add(NQ_TString(key), std::move(value)); }
  NQ_TDict& Add(const wchar_t* key, NQ_TAny&& value) { return Add(NQ_TString(key), std::move(value)); }

  bool HasKey(const NQ_IHashable& key) const { return ValueOfKey(key) != nullptr; }
  bool HasKey(const char* key) const { return ValueOfKey(key) != nullptr; }

  /// The stored value, or null when the key is absent.
  const NQ_TAny* ValueOfKey(const NQ_IHashable& key) const;
  const NQ_TAny* ValueOfKey(const char* key) const;
  const NQ_TAny* ValueOfKey(const wchar_t* key) const { return ValueOfKey(NQ_TString(key)); }
  /// The same for a key given as text and its `NQ_TString::HashOf`; makes no string.
  const NQ_TAny* ValueOfText(std::u16string_view key, std::uint64_t hash) const;
  NQ_TAny* ValueOfKey(const NQ_IHashable& key);
  NQ_TAny* ValueOfKey(const char* key) { return ValueOfKey(NQ_TString(key)); }
  NQ_TAny* ValueOfKey(const wchar_t* key) { return ValueOfKey(NQ_TString(key)); }

  /// The stored value; a null one is inserted first when the key is absent.
  NQ_TAny& operator[](const NQ_IHashable& key);
  NQ_TAny& operator[](const char* key) { return (*this)[NQ_TString(key)]; }
  NQ_TAny& operator[](const wchar_t* key) { return (*this)[NQ_TString(key)]; }
  /// The stored value; throws NQ_EException with the key as data when the key is absent.
  const NQ_TAny& At(const NQ_IHashable& key) const;
  const NQ_TAny& At(const char* key) const { return At(NQ_TString(key)); }

  /// The content of the value under the key when it is a T; null when the key is absent or its value something else.
  template <class T>
  const T* Get(const NQ_IHashable& key) const {
    const NQ_TAny* value = ValueOfKey(key);
    return value == nullptr ? nullptr : value->As<T>();
  }
  template <class T>
  const T* Get(const char* key) const {
    const NQ_TAny* value = ValueOfKey(key);
    return value == nullptr ? nullptr : value->As<T>();
  }

  /// Removes the key and its value; an absent key is no error.
  void Remove(const NQ_IHashable& key);
  void Remove(const char* key) { Remove(NQ_TString(key)); }
  void Clear();
  bool IsEmpty() const { return Size() == 0; }
  unsigned int Size() const;

  /// Changes with every key that is added or removed, and never comes back for other keys: while it is unchanged,
  /// addresses of values found earlier are still right, and so is the absence of a key.
  std::uint64_t KeysVersion() const;

  /// Changes with everything that Add and Remove do, and never comes back for another content. 0 when that cannot be
  /// told: the dictionary has no keys yet, or non-const access has given out a value to be written.
  std::uint64_t ContentVersion() const { return shared_.Version(); }

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

  NQ_TShared<TContent> shared_;
};
