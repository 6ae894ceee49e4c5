// Text.
//
// An NQ_TString holds UTF-16; lengths, positions and single characters count UTF-16 code units. Its narrow form is
// UTF-8. Copies share their text until one of them is changed. The text is bounded to 2^31 - 16 units; more throws
// std::length_error.
//
//   NQ_TString name("J\xC3\xB8rgen");          // from UTF-8: a literal, std::string or std::string_view
//   name.Append(", Oslo");                     // so does whatever takes an NQ_TString; UTF-16 is taken as well
//   name.Find(",", 0, false);                  // 6
//   std::puts(name.c_str());                   // UTF-8 again
//
// Invalid UTF-8 on the way in becomes U+FFFD, one per maximal invalid piece; an unpaired surrogate on the way out
// becomes U+FFFD. `wchar_t` text is code points (32 bits here). Several threads may read one string, and each may
// change its own copy; changing a string that another thread uses needs a lock of the caller's.
#pragma once

#include <atomic>
#include <compare>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <string>
#include <string_view>

#include "NQ_TClassOf.h"
#include "NQ_TUniChar.h"

class NQ_EXPORT NQ_TString final : public NQ_TValueOf<NQ_TString, NQ_TValue, "NQ_TString">, public NQ_IHashable {
 public:
  /// The empty string.
  static const NQ_TString sEmpty;

  NQ_TString() = default;
  NQ_TString(const NQ_TString& other) noexcept : text_(Share(other.text_)) {}
  NQ_TString(NQ_TString&& other) noexcept : text_(other.text_) { other.text_ = nullptr; }
  // NOLINTBEGIN(google-explicit-constructor): text goes in without ceremony
  /// From UTF-8; length in bytes, −1: up to the NUL. A null pointer gives the empty string.
  NQ_TString(const char* utf8, int length = -1);
  NQ_TString(std::string_view utf8);
  NQ_TString(const std::string& utf8) : NQ_TString(std::string_view(utf8)) {}
  /// From code points; length in characters, −1: up to the NUL. A null pointer gives the empty string.
  NQ_TString(const wchar_t* wide, int length = -1);
  /// From UTF-16; length in units, −1: up to the NUL. A null pointer gives the empty string.
  NQ_TString(const char16_t* utf16, int length = -1);
  NQ_TString(std::u16string_view utf16);
  // NOLINTEND(google-explicit-constructor)
  ~NQ_TString() override { Release(text_); }

  NQ_TString& operator=(const NQ_TString& other) noexcept;
  NQ_TString& operator=(NQ_TString&& other) noexcept;
  NQ_TString& operator=(const char* utf8);
  NQ_TString& operator=(const wchar_t* wide);
  using NQ_TClassOf::operator=;

  /// Text formatted exactly as printf does. The format must be the program's own, never one that came from outside.
  [[nodiscard]] static NQ_TString Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

  unsigned int Length() const { return text_ == nullptr ? 0 : text_->length; }
  [[nodiscard]] bool Empty() const { return Length() == 0; }
  std::u16string_view StringView() const { return text_ == nullptr ? std::u16string_view() : text_->View(); }
  /// The text as NUL-terminated UTF-8, valid while this string is unchanged. Made at the first call and kept.
  const char* c_str() const { return Narrow().data(); }
  /// The same with its length in bytes.
  std::string_view Narrow() const;
  /// The text as NUL-terminated UTF-16, valid while this string is unchanged.
  const char16_t* WideText() const { return text_ == nullptr ? u"" : text_->Units(); }

  /// The character at an index below the length; the index is not checked.
  NQ_TUniChar CharAt(unsigned int index) const { return NQ_TUniChar(text_->Units()[index]); }
  const char16_t& operator[](unsigned int index) const { return text_->Units()[index]; }

  /// Position of the needle, −1 when there is none. Forward: the smallest position at or after start. Backward
  /// (reverse): the largest position at or before start; a start of −1, or past the end, searches from the end, and
  /// from a smaller one nothing is found.
  [[nodiscard]] int Find(const NQ_TString& needle, int start = 0, bool reverse = false) const;
  [[nodiscard]] int Find(const char* needle, int start = 0, bool reverse = false) const;
  [[nodiscard]] int Find(NQ_TUniChar needle, int start = 0, bool reverse = false) const;
  [[nodiscard]] int Find(char needle, int start = 0, bool reverse = false) const;

  /// Whether the text begins with the prefix, character by character. The flags are accepted and change nothing.
  [[nodiscard]] bool StartsWith(const NQ_TString& prefix, int flags = 0) const;
  [[nodiscard]] bool BeginsWith(const NQ_TString& prefix, int flags = 0) const { return StartsWith(prefix, flags); }
  /// Wildcard match of the whole text: "*" matches any run of characters, everything else itself. The flags change
  /// nothing. Takes time linear in both for a pattern with one "*", and never more than length times pattern.
  [[nodiscard]] bool Match(const NQ_TString& pattern, int flags = 0) const;

  /// At most length characters from start on; length −1: to the end. A start past the end gives the empty string, a
  /// negative one counts as 0.
  [[nodiscard]] NQ_TString Substring(int start, int length = -1) const;
  /// A copy with every occurrence of from replaced by to, left to right, inserted text not looked at again. An empty
  /// from replaces nothing. Flags and count are accepted and change nothing: every occurrence is replaced.
  [[nodiscard]] NQ_TString Replace(const NQ_TString& from, const NQ_TString& to, int flags = 0, int count = 0) const;
  [[nodiscard]] NQ_TString Replace(const char* from, const char* to, int flags = 0, int count = 0) const;

  /// Full Unicode case mapping, independent of language, in place.
  void ToUpper();
  void ToLower();
  /// A lower-case copy.
  [[nodiscard]] NQ_TString Lowered() const;

  NQ_TString& Append(const NQ_TString& other);
  /// The view may lie inside this string.
  NQ_TString& Append(std::u16string_view units);
  NQ_TString& Append(char16_t unit) { return Append(std::u16string_view(&unit, 1)); }
  /// Appends n units to be written by the caller at the returned address before the next use of the string.
  char16_t* AppendUninitialized(unsigned int count);
  /// Makes room for at least that many units in all, so that appending up to it does not allocate.
  void Reserve(unsigned int length);
  /// Drops what follows the first length units.
  void Truncate(unsigned int length);
  /// Makes the string empty; memory that no copy shares is kept for what is appended next.
  void Clear();

  [[nodiscard]] NQ_TString operator+(const NQ_TString& other) const;
  [[nodiscard]] NQ_TString operator+(const char* utf8) const { return *this + NQ_TString(utf8); }

  bool operator==(const NQ_TString& other) const { return text_ == other.text_ || Equals(other.StringView()); }
  bool operator==(const char* utf8) const;
  bool operator==(const wchar_t* wide) const { return *this == NQ_TString(wide); }
  bool operator==(const char16_t* utf16) const;
  /// By code units.
  bool operator<(const NQ_TString& other) const { return StringView() < other.StringView(); }
  bool Equals(std::u16string_view units) const {
    return units.size() == Length() &&
           (units.empty() || std::memcmp(WideText(), units.data(), units.size() * sizeof(char16_t)) == 0);
  }

  /// A hash of the text, the same for equal texts within this run of the program; computed once per text.
  std::uint64_t Hash() const {
    const std::uint64_t known = text_ == nullptr ? 0 : text_->hash.load(std::memory_order_relaxed);
    return known != 0 ? known : ComputeHash();
  }
  /// The hash that a string of these units has.
  static std::uint64_t HashOf(std::u16string_view units);

  void PrintOn(std::ostream& out) const override;
  const NQ_TString& KeyText() const override { return *this; }
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;
  using NQ_TClassOf::NQ_ClassName;
  static NQ_TClass::TInterfaceNames NQ_Interfaces();
  const void* NQ_DynamicInfo(const char* name) const override;

 private:
  /// The UTF-8 form of a text; its bytes, NUL-terminated, follow it in memory.
  struct TNarrow {
    std::size_t size = 0;
    std::size_t capacity = 0;  // bytes, the NUL not counted

    char* Bytes() { return reinterpret_cast<char*>(this + 1); }
  };

  /// One text, shared by all strings that are copies of each other; its units, NUL-terminated, follow it in memory.
  struct TText {
    std::atomic<std::uint32_t> owners{1};
    std::uint32_t length = 0;
    std::uint32_t capacity = 0;             // units, the NUL not counted
    std::atomic<std::uint64_t> hash{0};     // 0: not computed yet
    std::atomic<TNarrow*> narrow{nullptr};  // null: not made yet
    std::atomic<TNarrow*> spare{nullptr};   // memory of an earlier narrow form, to be used again

    char16_t* Units() { return reinterpret_cast<char16_t*>(this + 1); }
    const char16_t* Units() const { return reinterpret_cast<const char16_t*>(this + 1); }
    std::u16string_view View() const { return {Units(), length}; }
    bool Shared() const { return owners.load(std::memory_order_acquire) != 1; }
  };

  static TText* NewText(std::size_t capacity);
  static void Destroy(TText* text) noexcept;
  static TText* Share(TText* text) noexcept {
    if (text != nullptr) text->owners.fetch_add(1, std::memory_order_relaxed);
    return text;
  }
  static void Release(TText* text) noexcept {
    if (text != nullptr && text->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) Destroy(text);
  }
  std::uint64_t ComputeHash() const;
  static TNarrow* MakeNarrow(TText& text);
  static TNarrow* WithRoom(TNarrow* narrow, std::size_t capacity);
  static bool HasDerived(const TText& text) {
    return text.hash.load(std::memory_order_relaxed) != 0 || text.narrow.load(std::memory_order_relaxed) != nullptr;
  }
  static void ForgetDerived(TText* text) noexcept;
  void AssignUtf8(std::string_view utf8);
  void Grow(std::size_t length);
  void MapCase(bool upper);

  TText* text_ = nullptr;
};

inline char16_t* NQ_TString::AppendUninitialized(unsigned int count) {
  const std::size_t length = std::size_t{Length()} + count;
  if (text_ == nullptr || text_->capacity < length || text_->Shared()) Grow(length);
  if (HasDerived(*text_)) ForgetDerived(text_);
  char16_t* const end = text_->Units() + text_->length;
  text_->length = static_cast<std::uint32_t>(length);
  text_->Units()[length] = 0;
  return end;
}
