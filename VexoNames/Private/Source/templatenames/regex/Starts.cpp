#include "regex/Starts.h"

#include <cstdint>

namespace templatenames {
namespace {

template <class T>
T Ask(const pcre* code, const pcre_extra* study, int what) {
  T answer{};
  pcre_fullinfo(code, study, what, &answer);
  return answer;
}

// PCRE does not tell whether it means both cases.
char OtherCase(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'z' ? static_cast<char>(c ^ 0x20) : c;
}

bool IsWithinCharacter(unsigned char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

TStarts::TStarts(const pcre* code, const pcre_extra* study) {
  constexpr int kByte = 1;  // answers of PCRE_INFO_FIRSTCHARACTERFLAGS
  constexpr int kLine = 2;
  const auto options = Ask<unsigned long>(code, study, PCRE_INFO_OPTIONS);
  const bool every = (options & PCRE_NO_START_OPTIMIZE) != 0;
  const int first = every ? 0 : Ask<int>(code, study, PCRE_INFO_FIRSTCHARACTERFLAGS);
  kind_ = (options & PCRE_ANCHORED) != 0 ? TKind::Beginning : first == kLine ? TKind::Lines : TKind::Bytes;
  if (first == kByte) {
    const char c = static_cast<char>(Ask<std::uint32_t>(code, study, PCRE_INFO_FIRSTCHARACTER));
    for (const char either : {c, OtherCase(c)}) first_[static_cast<unsigned char>(either)] = true;
  } else {
    AllowBytes(code, every ? nullptr : study);
  }
  const auto required = Ask<std::uint32_t>(code, study, PCRE_INFO_REQUIREDCHAR);
  if (Ask<int>(code, study, PCRE_INFO_REQUIREDCHARFLAGS) != 0 && required < 0x80)
    required_ = static_cast<char>(required);
}

void TStarts::AllowBytes(const pcre* code, const pcre_extra* study) {
  const auto* const bits = Ask<const unsigned char*>(code, study, PCRE_INFO_FIRSTTABLE);
  atEnd_ = bits == nullptr;
  for (unsigned byte = 0; byte < first_.size(); ++byte) {
    const bool allowed = bits == nullptr || (bits[byte / 8] >> (byte % 8) & 1) != 0;
    first_[byte] = allowed && !IsWithinCharacter(static_cast<unsigned char>(byte));
  }
}

std::size_t TStarts::Next(std::string_view text, std::size_t from) const {
  if (from == 0 && (kind_ == TKind::Beginning || kind_ == TKind::Lines)) return 0;
  if (from > text.size() || kind_ == TKind::Nowhere || kind_ == TKind::Beginning) return kNone;
  if (kind_ == TKind::Lines) {  // the end counts as one
    const std::size_t end = text.find('\n', from - 1);
    return end == text.npos ? text.size() : end + 1;
  }
  while (from < text.size() && !first_[static_cast<unsigned char>(text[from])]) ++from;
  return from < text.size() || atEnd_ ? from : kNone;
}

std::size_t TStarts::Count(std::string_view text, std::size_t most) const {
  std::size_t count = 0;
  for (std::size_t at = Next(text, 0); at != kNone && count <= most; at = Next(text, at + 1)) ++count;
  return count;
}

std::ptrdiff_t TStarts::Last(std::string_view text) const {
  if (required_ == 0) return static_cast<std::ptrdiff_t>(text.size());
  const char either[] = {required_, OtherCase(required_)};
  return static_cast<std::ptrdiff_t>(text.find_last_of(std::string_view(either, 2)));  // npos is −1
}

}  // namespace templatenames
