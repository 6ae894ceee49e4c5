#include "NQ_TString.h"

#include <absl/hash/hash.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>

#include "NQ_Utf.h"

namespace {

// Positions are ints, and ICU's lengths too.
constexpr std::size_t kMaxLength = (std::size_t{1} << 31) - 16;

template <class Char>
std::basic_string_view<Char> Counted(const Char* text, int length) {
  if (text == nullptr) return {};
  return length < 0 ? std::basic_string_view<Char>(text)
                    : std::basic_string_view<Char>(text, static_cast<std::size_t>(length));
}

std::u16string Utf16Of(std::string_view utf8) {
  std::u16string units(utf8.size(), u'\0');
  units.resize(nq::Utf8ToUtf16(utf8, units.data()));
  return units;
}

int FindIn(std::u16string_view text, std::u16string_view needle, int start, bool reverse) {
  constexpr auto kNone = std::u16string_view::npos;
  if (reverse && start < -1) return -1;
  const std::size_t found = reverse ? text.rfind(needle, start < 0 ? kNone : static_cast<std::size_t>(start))
                                    : text.find(needle, start < 0 ? 0 : static_cast<std::size_t>(start));
  return found == kNone ? -1 : static_cast<int>(found);
}

}  // namespace

const NQ_TString NQ_TString::sEmpty;

// ---- the shared text

NQ_TString::TText* NQ_TString::NewText(std::size_t capacity) {
  if (capacity > kMaxLength) throw std::length_error("NQ_TString: text too long");
  void* const memory = std::malloc(sizeof(TText) + (capacity + 1) * sizeof(char16_t));
  if (memory == nullptr) throw std::bad_alloc();
  auto* const text = new (memory) TText;
  text->capacity = static_cast<std::uint32_t>(capacity);
  text->Units()[0] = 0;
  return text;
}

void NQ_TString::Destroy(TText* text) noexcept {
  std::free(text->narrow.load(std::memory_order_acquire));
  std::free(text->spare.load(std::memory_order_acquire));
  text->~TText();
  std::free(text);
}

void NQ_TString::ForgetDerived(TText* text) noexcept {
  text->hash.store(0, std::memory_order_relaxed);
  if (text->narrow.load(std::memory_order_relaxed) == nullptr) return;  // an exchange would take longer than the rest
  TNarrow* const stale = text->narrow.exchange(nullptr, std::memory_order_acq_rel);
  std::free(text->spare.exchange(stale, std::memory_order_acq_rel));
}

// The UTF-8 form of a text, not yet shown to anybody.
NQ_TString::TNarrow* NQ_TString::MakeNarrow(TText& text) {
  const std::u16string_view units = text.View();
  TNarrow* narrow = text.spare.load(std::memory_order_relaxed);
  if (narrow != nullptr) narrow = text.spare.exchange(nullptr, std::memory_order_acq_rel);
  narrow = WithRoom(narrow, units.size());
  // Most texts are ASCII: only when one is not, it is looked at to see how much room it needs.
  narrow->size = nq::AsciiToUtf8(units, narrow->Bytes());
  if (narrow->size != units.size()) {
    narrow = WithRoom(narrow, nq::MostUtf8Bytes(units));
    narrow->size = nq::Utf16ToUtf8(units, narrow->Bytes());
  }
  narrow->Bytes()[narrow->size] = '\0';
  return narrow;
}

// Memory for that many bytes: the given one, which may be null, when it is large enough.
NQ_TString::TNarrow* NQ_TString::WithRoom(TNarrow* narrow, std::size_t capacity) {
  if (narrow != nullptr && narrow->capacity >= capacity) return narrow;
  std::free(narrow);
  void* const memory = std::malloc(sizeof(TNarrow) + capacity + 1);
  if (memory == nullptr) throw std::bad_alloc();
  return new (memory) TNarrow{0, capacity};
}

// Makes the text this string's own, with room for that length; at least doubles, so that appending stays linear.
void NQ_TString::Grow(std::size_t length) {
  const std::size_t old = Length();
  std::size_t capacity = length;
  if (text_ != nullptr && length > text_->capacity) capacity = std::max(length, std::min(old * 2, kMaxLength));
  TText* const own = NewText(std::max<std::size_t>(capacity, 16));
  std::memcpy(own->Units(), WideText(), (old + 1) * sizeof(char16_t));
  own->length = static_cast<std::uint32_t>(old);
  Release(text_);
  text_ = own;
}

void NQ_TString::AssignUtf8(std::string_view utf8) {
  if (utf8.empty()) return;
  text_ = NewText(utf8.size());
  text_->length = static_cast<std::uint32_t>(nq::Utf8ToUtf16(utf8, text_->Units()));
  text_->Units()[text_->length] = 0;
}

// ---- construction and assignment

NQ_TString::NQ_TString(const char* utf8, int length) { AssignUtf8(Counted(utf8, length)); }

NQ_TString::NQ_TString(std::string_view utf8) { AssignUtf8(utf8); }

NQ_TString::NQ_TString(const wchar_t* wide, int length) {
  std::u16string units;
  nq::AppendUtf16(Counted(wide, length), units);
  Append(units);
}

NQ_TString::NQ_TString(const char16_t* utf16, int length) : NQ_TString(Counted(utf16, length)) {}

NQ_TString::NQ_TString(std::u16string_view utf16) {
  if (utf16.empty()) return;
  text_ = NewText(utf16.size());
  std::memcpy(text_->Units(), utf16.data(), utf16.size() * sizeof(char16_t));
  text_->length = static_cast<std::uint32_t>(utf16.size());
  text_->Units()[utf16.size()] = 0;
}

NQ_TString& NQ_TString::operator=(const NQ_TString& other) noexcept {
  TText* const shared = Share(other.text_);
  Release(text_);
  text_ = shared;
  return *this;
}

NQ_TString& NQ_TString::operator=(NQ_TString&& other) noexcept {
  std::swap(text_, other.text_);
  return *this;
}

NQ_TString& NQ_TString::operator=(const char* utf8) { return *this = NQ_TString(utf8); }

NQ_TString& NQ_TString::operator=(const wchar_t* wide) { return *this = NQ_TString(wide); }

NQ_TString NQ_TString::Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string narrow(length < 0 ? 0 : static_cast<std::size_t>(length), '\0');
  if (length > 0) std::vsnprintf(narrow.data(), narrow.size() + 1, format, again);
  va_end(again);
  return NQ_TString(std::string_view(narrow));
}

// ---- reading

std::string_view NQ_TString::Narrow() const {
  if (text_ == nullptr) return "";
  TNarrow* made = text_->narrow.load(std::memory_order_acquire);
  if (made == nullptr) {
    TNarrow* const fresh = MakeNarrow(*text_);
    if (text_->narrow.compare_exchange_strong(made, fresh, std::memory_order_acq_rel)) {
      made = fresh;
    } else {
      std::free(fresh);  // another thread was first
    }
  }
  return {made->Bytes(), made->size};
}

bool NQ_TString::operator==(const char* utf8) const {
  const char* at = utf8 == nullptr ? "" : utf8;
  for (const char16_t unit : StringView()) {  // ASCII needs no conversion
    const auto byte = static_cast<unsigned char>(*at++);
    if (byte >= 0x80) return *this == NQ_TString(utf8);
    if (byte != unit || byte == 0) return false;
  }
  return *at == 0;
}

bool NQ_TString::operator==(const char16_t* utf16) const { return Equals(Counted(utf16, -1)); }

int NQ_TString::Find(const NQ_TString& needle, int start, bool reverse) const {
  return FindIn(StringView(), needle.StringView(), start, reverse);
}

int NQ_TString::Find(const char* needle, int start, bool reverse) const {
  return FindIn(StringView(), Utf16Of(Counted(needle, -1)), start, reverse);
}

int NQ_TString::Find(NQ_TUniChar needle, int start, bool reverse) const {
  const char16_t unit = needle.Unit();
  return FindIn(StringView(), std::u16string_view(&unit, 1), start, reverse);
}

int NQ_TString::Find(char needle, int start, bool reverse) const { return Find(NQ_TUniChar(needle), start, reverse); }

bool NQ_TString::StartsWith(const NQ_TString& prefix, int) const {
  return StringView().starts_with(prefix.StringView());
}

// Each piece between two "*" is taken where it first occurs: a later place could only leave less to the rest.
bool NQ_TString::Match(const NQ_TString& pattern, int) const {
  constexpr auto kNone = std::u16string_view::npos;
  std::u16string_view text = StringView();
  std::u16string_view wild = pattern.StringView();
  std::size_t star = wild.find(u'*');
  if (star == kNone) return text == wild;
  if (!text.starts_with(wild.substr(0, star))) return false;
  text.remove_prefix(star);
  for (;;) {
    wild.remove_prefix(star + 1);
    star = wild.find(u'*');
    if (star == kNone) return text.ends_with(wild);
    const std::size_t found = text.find(wild.substr(0, star));
    if (found == kNone) return false;
    text.remove_prefix(found + star);
  }
}

NQ_TString NQ_TString::Substring(int start, int length) const {
  const std::u16string_view text = StringView();
  const std::size_t from = start < 0 ? 0 : static_cast<std::size_t>(start);
  if (from >= text.size()) return {};
  const std::size_t count = length < 0 ? std::u16string_view::npos : static_cast<std::size_t>(length);
  if (from == 0 && count >= text.size()) return *this;
  return NQ_TString(text.substr(from, count));
}

NQ_TString NQ_TString::Replace(const NQ_TString& from, const NQ_TString& to, int, int) const {
  const std::u16string_view text = StringView();
  const std::u16string_view what = from.StringView();
  std::size_t found = what.empty() ? std::u16string_view::npos : text.find(what);
  if (found == std::u16string_view::npos) return *this;
  NQ_TString result;
  result.Reserve(Length());
  std::size_t done = 0;
  for (; found != std::u16string_view::npos; found = text.find(what, done)) {
    result.Append(text.substr(done, found - done)).Append(to.StringView());
    done = found + what.size();
  }
  return result.Append(text.substr(done));
}

NQ_TString NQ_TString::Replace(const char* from, const char* to, int flags, int count) const {
  return Replace(NQ_TString(from), NQ_TString(to), flags, count);
}

// ---- changing

void NQ_TString::ToUpper() { MapCase(true); }

void NQ_TString::ToLower() { MapCase(false); }

NQ_TString NQ_TString::Lowered() const {
  NQ_TString lowered = *this;
  lowered.ToLower();
  return lowered;
}

void NQ_TString::MapCase(bool upper) {
  const std::u16string_view text = StringView();
  const auto map = upper ? u_strToUpper : u_strToLower;
  const auto length = static_cast<std::int32_t>(text.size());
  NQ_TString mapped;
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t needed = map(nullptr, 0, text.data(), length, "", &status);
  status = U_ZERO_ERROR;
  char16_t* const out = mapped.AppendUninitialized(static_cast<unsigned int>(needed));
  needed = map(out, needed + 1, text.data(), length, "", &status);
  if (U_SUCCESS(status)) *this = std::move(mapped);
}

NQ_TString& NQ_TString::Append(const NQ_TString& other) {
  if (text_ == nullptr) return *this = other;
  return Append(other.StringView());
}

NQ_TString& NQ_TString::Append(std::u16string_view units) {
  if (units.empty()) return *this;
  if (units.size() > kMaxLength) throw std::length_error("NQ_TString: text too long");
  // What lies inside this very text must outlive the growth of it.
  const bool inside = text_ != nullptr && std::less_equal<>()(text_->Units(), units.data()) &&
                      std::less_equal<>()(units.data(), text_->Units() + text_->capacity);
  const std::unique_ptr<TText, decltype(&Release)> keep(inside ? Share(text_) : nullptr, &Release);
  char16_t* const end = AppendUninitialized(static_cast<unsigned int>(units.size()));
  std::memcpy(end, units.data(), units.size() * sizeof(char16_t));
  return *this;
}

void NQ_TString::Reserve(unsigned int length) {
  if (length > 0 && (text_ == nullptr || text_->capacity < length || text_->Shared())) Grow(std::max(length, Length()));
}

void NQ_TString::Truncate(unsigned int length) {
  if (length >= Length()) return;
  if (text_->Shared()) {
    *this = NQ_TString(StringView().substr(0, length));
    return;
  }
  if (HasDerived(*text_)) ForgetDerived(text_);
  text_->length = length;
  text_->Units()[length] = 0;
}

void NQ_TString::Clear() {
  if (text_ == nullptr) return;
  if (text_->Shared()) {
    Release(text_);
    text_ = nullptr;
    return;
  }
  Truncate(0);
}

NQ_TString NQ_TString::operator+(const NQ_TString& other) const {
  if (Empty()) return other;
  if (other.Empty()) return *this;
  NQ_TString sum;
  sum.Reserve(Length() + other.Length());
  sum.Append(StringView()).Append(other.StringView());
  return sum;
}

// ---- hashing, printing, packing

std::uint64_t NQ_TString::HashOf(std::u16string_view units) {
  const absl::string_view bytes(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t));
  const std::uint64_t hash = absl::Hash<absl::string_view>()(bytes);
  return hash == 0 ? 1 : hash;
}

std::uint64_t NQ_TString::ComputeHash() const {
  const std::uint64_t hash = HashOf(StringView());
  if (text_ != nullptr) text_->hash.store(hash, std::memory_order_relaxed);
  return hash;
}

void NQ_TString::PrintOn(std::ostream& out) const { out << Narrow(); }

void NQ_TString::NQ_Pack(NQ_IPacking& packing) const { packing.PackString(*this); }

void NQ_TString::NQ_Unpack(NQ_IUnpacking& unpacking) { *this = unpacking.UnpackString(); }

NQ_TClass::TInterfaceNames NQ_TString::NQ_Interfaces() {
  static constexpr const char* kNames[] = {NQ_IPackable::NQ_ClassName(), NQ_IPrintable::NQ_ClassName(),
                                           NQ_IHashable::NQ_ClassName()};
  return kNames;
}

const void* NQ_TString::NQ_DynamicInfo(const char* name) const {
  if (name != nullptr && std::strcmp(name, NQ_IHashable::NQ_ClassName()) == 0)
    return static_cast<const NQ_IHashable*>(this);
  return NQ_TClassOf::NQ_DynamicInfo(name);
}
