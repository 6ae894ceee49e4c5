// Reading the same keys of the same dictionaries again and again.
//
// Looking up all options of a formatter takes longer than formatting. Each thread therefore keeps where the values of
// the dictionaries lie that it read last; the values themselves are read anew every time.
//
//   struct TColourKeys {
//     enum TKey : std::size_t { kName, kBright, kCount };
//     static const std::array<NQ_TString, kCount>& All();      // in the order of TKey
//   };
//   const auto& places = TOptionPlaces<TColourKeys>::In(options);
//   places.Text(TColourKeys::kName);
//
// An option that holds a value of another kind counts as absent. Any thread may call; what In returns is the calling
// thread's, valid until its next call with the same keys.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "NQ_TBoxed.h"
#include "NQ_TDict.h"

namespace templatenames {

template <class TKeys>
class TOptionPlaces {
 public:
  static const TOptionPlaces& In(const NQ_TDict& options) {
    constexpr std::size_t kDictionaries = 32;  // a few kilobytes for each thread
    static thread_local constinit std::array<TOptionPlaces, kDictionaries> kept{};
    // A version stands for one set of keys at one address: it is never given out again, not even to another dictionary.
    // 0 is that of a dictionary without content.
    const std::uint64_t version = options.KeysVersion();
    TOptionPlaces& places = kept[version % kDictionaries];
    if (places.version_ != version) places.Find(options, version);
    return places;
  }

  /// Whether these are still the places of those options.
  bool AreOf(const NQ_TDict& options) const { return version_ == options.KeysVersion(); }
  /// The value, or null when there is none of that class.
  template <class T>
  const T* Get(typename TKeys::TKey key) const {
    const NQ_TAny* const value = values_[key];
    return value == nullptr ? nullptr : value->As<T>();
  }
  /// The text; empty when there is none. Valid while the dictionary is unchanged.
  const NQ_TString& Text(typename TKeys::TKey key) const {
    const auto* const text = Get<NQ_TString>(key);
    return text == nullptr ? NQ_TString::sEmpty : *text;
  }
  bool Flag(typename TKeys::TKey key) const {
    const auto* const flag = Get<NQ_TBool>(key);
    return flag != nullptr && flag->Value();
  }
  std::optional<std::int32_t> Number(typename TKeys::TKey key) const {
    const auto* const number = Get<NQ_TInt32>(key);
    return number == nullptr ? std::nullopt : std::optional(number->Value());
  }

 private:
  void Find(const NQ_TDict& options, std::uint64_t version) {
    for (std::size_t key = 0; key < TKeys::kCount; ++key) values_[key] = options.ValueOfKey(TKeys::All()[key]);
    version_ = version;
  }

  std::uint64_t version_ = 0;
  std::array<const NQ_TAny*, TKeys::kCount> values_{};
};

}  // namespace templatenames
