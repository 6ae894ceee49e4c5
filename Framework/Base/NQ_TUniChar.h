// One character of a string.
#pragma once

/// One UTF-16 code unit. Converts to `wchar_t`, so that it compares with wide literals.
class NQ_TUniChar {
 public:
  constexpr NQ_TUniChar() = default;
  constexpr explicit NQ_TUniChar(char16_t unit) : unit_(unit) {}
  constexpr explicit NQ_TUniChar(char ascii) : unit_(static_cast<unsigned char>(ascii)) {}

  constexpr char16_t Unit() const { return unit_; }
  constexpr operator wchar_t() const { return static_cast<wchar_t>(unit_); }  // NOLINT(google-explicit-constructor)

 private:
  char16_t unit_ = 0;
};
