#include "NQ_TAny.h"

#include <memory>
#include <new>
#include <ostream>

#include "NQ_EException.h"
#include "NQ_TBoxed.h"
#include "NQ_TString.h"

/// An object that the variant owns.
struct NQ_TAny::TOwned final : THeld {
  explicit TOwned(std::unique_ptr<NQ_IPackable> packable) : packable_(std::move(packable)) { Describe(*packable_); }
  const NQ_IInterface* Interface() const override { return packable_.get(); }
  NQ_IPackable* Packable() const override { return packable_.get(); }

 private:
  std::unique_ptr<NQ_IPackable> packable_;
};

/// An object of somebody else's.
struct NQ_TAny::TReferred final : THeld {
  explicit TReferred(const NQ_IInterface* referred) : referred_(referred) {
    if (referred != nullptr) Describe(*referred);
  }
  const NQ_IInterface* Interface() const override { return referred_; }
  NQ_IPackable* Packable() const override { return nullptr; }

 private:
  const NQ_IInterface* referred_;
};

const NQ_TAny& NQ_TAny::Null() {
  static const NQ_TAny null;
  return null;
}

// Never destroyed: other objects of static storage may compare with it while the process ends.
const NQ_TAny& NQ_TAny::Illegal() {
  static const NQ_TAny& illegal = *[] {
    auto* const made = new NQ_TAny;
    made->held_ = new TReferred(nullptr);
    return made;
  }();
  return illegal;
}

NQ_TAny::THeld* NQ_TAny::Own(NQ_IPackable* object) {
  if (object == nullptr) throw std::bad_alloc();
  return new TOwned(std::unique_ptr<NQ_IPackable>(object));
}

NQ_TAny::THeld* NQ_TAny::HoldBool(bool value) { return Own(new NQ_TBool(value)); }

NQ_TAny::THeld* NQ_TAny::Share(THeld* held) {
  if (held == nullptr) return nullptr;
  if (held->lent) return Own(held->Packable()->NQ_Clone());
  held->owners.fetch_add(1, std::memory_order_relaxed);
  return held;
}

NQ_TAny::NQ_TAny(int value) : held_(Own(new NQ_TInt32(value))) {}
NQ_TAny::NQ_TAny(double value) : held_(Own(new NQ_TDouble(value))) {}
NQ_TAny::NQ_TAny(const char* utf8) : held_(Own(new NQ_TString(utf8))) {}
NQ_TAny::NQ_TAny(std::string_view utf8) : held_(Own(new NQ_TString(utf8))) {}
NQ_TAny::NQ_TAny(const wchar_t* wide) : held_(Own(new NQ_TString(wide))) {}
NQ_TAny::NQ_TAny(const char16_t* utf16) : held_(Own(new NQ_TString(utf16))) {}
NQ_TAny::NQ_TAny(std::u16string_view utf16) : held_(Own(new NQ_TString(utf16))) {}
NQ_TAny::NQ_TAny(const NQ_IInterface* object) : held_(new TReferred(object)) {}
NQ_TAny::NQ_TAny(const NQ_IPackable& object) : held_(Own(object.NQ_Clone())) {}
NQ_TAny::NQ_TAny(NQ_IPackable&& object) : held_(Own(object.NQ_Move())) {}

NQ_TAny& NQ_TAny::operator=(const NQ_TAny& other) {
  THeld* const shared = Share(other.held_);
  Release(held_);
  held_ = shared;
  return *this;
}

NQ_TAny& NQ_TAny::operator=(void* pointer) { return *this = NQ_TAny(NQ_TPointer(pointer)); }

bool NQ_TAny::operator==(const NQ_TAny& other) const {
  if (held_ == other.held_) return true;
  if (held_ == nullptr || other.held_ == nullptr || IsIllegal() || other.IsIllegal()) return false;
  const NQ_IPackable* const mine = held_->Packable();
  const NQ_IPackable* const theirs = other.held_->Packable();
  if (mine != nullptr && theirs != nullptr) return mine->NQ_IsIdent(*theirs);
  return held_->Interface() == other.held_->Interface();
}

template <class T>
const T& NQ_TAny::Held(const char* kind) const {
  if (const auto* const held = As<T>()) return *held;
  nq::Throw(NQ_EIllegalCastFromAny(NQ_TString("The variant holds no ") + kind, *this));
}

std::int32_t NQ_TAny::AsInt32() const { return Held<NQ_TInt32>("32-bit integer").Value(); }
NQ_TString NQ_TAny::AsText() const { return Held<NQ_TString>("text"); }
bool NQ_TAny::AsBool() const { return Held<NQ_TBool>("boolean").Value(); }
double NQ_TAny::AsDouble() const { return Held<NQ_TDouble>("double").Value(); }

const void* NQ_TAny::DynamicCast(const char* name) const {
  const NQ_IInterface* const held = held_ == nullptr ? nullptr : held_->Interface();
  const auto* const object = dynamic_cast<const NQ_TObject*>(held);
  return object == nullptr ? nullptr : object->DynamicCast(name);
}

void* NQ_TAny::DynamicCast(const char* name) {
  if (std::as_const(*this).DynamicCast(name) == nullptr) return nullptr;
  LendHeld();
  return const_cast<void*>(std::as_const(*this).DynamicCast(name));
}

// Makes the held object this variant's own before it is written through a pointer.
void NQ_TAny::LendHeld() {
  NQ_IPackable* const packable = held_->Packable();
  if (packable == nullptr) return;
  if (held_->owners.load(std::memory_order_acquire) != 1) {
    THeld* const own = Own(packable->NQ_Clone());
    Release(held_);
    held_ = own;
  }
  held_->lent = true;
}

const char* NQ_TAny::ClassName() const {
  const NQ_IInterface* const held = held_ == nullptr ? nullptr : held_->Interface();
  const auto* const object = dynamic_cast<const NQ_TObject*>(held);
  return object == nullptr ? NQ_ClassName() : object->ClassName();
}

void NQ_TAny::PrintOn(std::ostream& out) const {
  if (IsNull()) {
    out << "(null)";
  } else if (IsIllegal()) {
    out << "(illegal)";
  } else if (const auto* printable = dynamic_cast<const NQ_IPrintable*>(held_->Interface())) {
    printable->PrintOn(out);
  } else {
    out << '(' << ClassName() << ')';
  }
}

std::ostream& operator<<(std::ostream& out, const NQ_TAny& value) {
  value.PrintOn(out);
  return out;
}
