// The variant.
//
// An NQ_TAny holds exactly one object of any framework class, or is null, or is illegal ("no value"). It has value
// semantics: a copy behaves as if the content were copied; the content is in fact shared until one of the copies is
// about to be changed. Reading one NQ_TAny from several threads is safe; changing it needs the owner's lock.
//
//   NQ_TAny a(5);
//   a.AsInt32();                                   // 5
//   a = "x";                                       // text in any form, numbers, values of the framework's classes
//   a.AsText();                                    // x; AsInt32 would throw NQ_EIllegalCastFromAny now
//   if (const auto* s = std::as_const(a).As<NQ_TString>()) ...   // read without unsharing
//
// A pointer from the non-const As or DynamicCast may be written through until the variant is assigned or destroyed; a
// pointer from the const forms is valid as long.
#pragma once

#include <atomic>
#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "NQ_IPackable.h"
#include "NQ_TObject.h"

/// A pointer that a variant holds as such: to anything, functions too, but characters, which are text.
template <class T>
concept NQ_TPointee = !std::same_as<std::remove_cv_t<T>, char> && !std::same_as<std::remove_cv_t<T>, wchar_t> &&
                      !std::same_as<std::remove_cv_t<T>, char16_t>;

class NQ_EXPORT NQ_TAny {
 public:
  static constexpr const char* NQ_ClassName() { return "NQ_TAny"; }
  static const NQ_TAny& Null();
  static const NQ_TAny& Illegal();

  NQ_TAny() = default;
  NQ_TAny(const NQ_TAny& other) : held_(Share(other.held_)) {}
  NQ_TAny(NQ_TAny&& other) noexcept : held_(std::exchange(other.held_, nullptr)) {}
  // NOLINTBEGIN(google-explicit-constructor): values go in without ceremony
  NQ_TAny(int value);
  NQ_TAny(double value);
  NQ_TAny(const char* utf8);
  NQ_TAny(std::string_view utf8);
  NQ_TAny(const std::string& utf8) : NQ_TAny(std::string_view(utf8)) {}
  NQ_TAny(const wchar_t* wide);
  NQ_TAny(const char16_t* utf16);
  NQ_TAny(std::u16string_view utf16);
  template <std::same_as<bool> B>  // only a real bool, not every pointer
  NQ_TAny(B value) : held_(HoldBool(value)) {}
  /// Holds a copy of the object.
  NQ_TAny(const NQ_IPackable& object);
  /// Holds the object's content, moved out of it.
  NQ_TAny(NQ_IPackable&& object);
  // NOLINTEND(google-explicit-constructor)
  /// Holds the object by reference: it is neither copied nor deleted and must outlive the variant and its copies.
  explicit NQ_TAny(const NQ_IInterface* object);
  ~NQ_TAny() { Release(held_); }

  NQ_TAny& operator=(const NQ_TAny& other);
  /// The other may lie inside the held object: it is emptied before that goes.
  NQ_TAny& operator=(NQ_TAny&& other) noexcept {
    NQ_TAny moved(std::move(other));
    std::swap(held_, moved.held_);
    return *this;
  }
  /// An untyped pointer, held as an NQ_TPointer.
  NQ_TAny& operator=(void* pointer);
  /// The same for any other pointer: the NQ_TPointer has its address, to be cast back to just that type.
  template <NQ_TPointee T>
  NQ_TAny& operator=(T* pointer) {
    if constexpr (std::is_function_v<T>) {
      return *this = reinterpret_cast<void*>(pointer);
    } else {
      return *this = const_cast<void*>(static_cast<const volatile void*>(pointer));
    }
  }
  NQ_TAny& operator=(const NQ_IPackable& object) { return *this = NQ_TAny(object); }
  NQ_TAny& operator=(NQ_IPackable&& object) { return *this = NQ_TAny(std::move(object)); }
  NQ_TAny& operator=(int value) { return *this = NQ_TAny(value); }
  NQ_TAny& operator=(double value) { return *this = NQ_TAny(value); }
  NQ_TAny& operator=(const char* utf8) { return *this = NQ_TAny(utf8); }
  NQ_TAny& operator=(const wchar_t* wide) { return *this = NQ_TAny(wide); }
  template <std::same_as<bool> B>
  NQ_TAny& operator=(B value) {
    return *this = NQ_TAny(value);
  }

  [[nodiscard]] bool IsNull() const { return held_ == nullptr; }
  [[nodiscard]] bool IsIllegal() const { return held_ == Illegal().held_; }
  /// Equal content of the same class; objects held by reference are equal when they are the same object.
  bool operator==(const NQ_TAny& other) const;

  /// Whether what is held can change only when this variant does: it is neither held by reference nor has a pointer to
  /// write through been given out.
  [[nodiscard]] bool IsSteady() const { return held_ != nullptr && !held_->lent && held_->Packable() != nullptr; }

  /// The 32-bit integer; throws NQ_EIllegalCastFromAny when the variant holds none.
  std::int32_t AsInt32() const;
  explicit operator std::int32_t() const { return AsInt32(); }
  /// The same for a text, a boolean and a double: what is held is never turned into another kind.
  NQ_TString AsText() const;
  bool AsBool() const;
  double AsDouble() const;

  /// The held object viewed as the class or interface of that name, to be cast to a pointer to just that; else null.
  const void* DynamicCast(const char* name) const;
  void* DynamicCast(const char* name);
  /// The held object as a T, or null.
  template <class T>
  const T* As() const {
    if (held_ == nullptr || held_->type == nullptr) return nullptr;
    if (held_->type == &typeid(T)) return static_cast<const T*>(held_->object);
    if constexpr (std::is_final_v<T>) {
      return *held_->type == typeid(T) ? static_cast<const T*>(held_->object) : nullptr;
    } else {
      return dynamic_cast<const T*>(held_->Interface());
    }
  }
  template <class T>
  T* As() {
    if (std::as_const(*this).As<T>() == nullptr) return nullptr;
    LendHeld();
    return const_cast<T*>(std::as_const(*this).As<T>());
  }
  /// A copy of the held T, or the given default when the variant holds none.
  template <class T>
  [[nodiscard]] T ValueOr(T fallback) const {
    const T* held = As<T>();
    return held == nullptr ? std::move(fallback) : *held;
  }

  /// The class name of the held object; "NQ_TAny" when the variant is null or illegal.
  const char* ClassName() const;
  /// Prints the held object; "(null)" and "(illegal)" for the two states without one.
  void PrintOn(std::ostream& out) const;

 private:
  /// What all copies of a variant share.
  struct THeld {
    std::atomic<std::uint32_t> owners{1};
    bool lent = false;                     // a pointer to write through is out: copies must not share
    const std::type_info* type = nullptr;  // of the object; null when there is none
    const void* object = nullptr;          // the complete object

    /// Notes what is held.
    void Describe(const NQ_IInterface& held) {
      type = &typeid(held);
      object = dynamic_cast<const void*>(&held);
    }

    virtual ~THeld() = default;
    virtual const NQ_IInterface* Interface() const = 0;
    virtual NQ_IPackable* Packable() const = 0;  // null when held by reference
  };
  struct TOwned;
  struct TReferred;

  template <class T>
  const T& Held(const char* kind) const;
  static THeld* HoldBool(bool value);
  static THeld* Own(NQ_IPackable* object);
  static THeld* Share(THeld* held);
  static void Release(THeld* held) noexcept {
    if (held != nullptr && held->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) delete held;
  }
  void LendHeld();

  THeld* held_ = nullptr;
};

NQ_EXPORT std::ostream& operator<<(std::ostream& out, const NQ_TAny& value);
