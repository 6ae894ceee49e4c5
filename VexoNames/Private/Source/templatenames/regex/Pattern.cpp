#include "regex/Pattern.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace templatenames {
namespace {

// What machine code and interpreter carry out alike. Other escapes that are letters or digits, other groups and other
// options are left to the interpreter.
constexpr std::string_view kAgreedEscapes = "aAbBcdDefGhHnNopPQrRsStvVwWxzZE0";
constexpr std::string_view kAgreedGroups[] = {":", ">", "=", "!", "<", "P<", "'"};
constexpr std::string_view kAgreedOptions = "imsxU-";
constexpr std::string_view kOptions = "imsxUXJ-";

// The first two decide about later attempts; with these newlines, the place between CR and LF is not attempted.
constexpr std::string_view kTyingVerbs[] = {"COMMIT", "SKIP", "CR", "CRLF", "ANY", "ANYCRLF"};

bool IsLetterOrDigit(char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); }

class TScanner {
 public:
  explicit TScanner(TPattern& pattern) : pattern_(pattern), rest_(pattern.text) {}

  void Scan() {
    while (!rest_.empty()) Item();
  }

 private:
  void Item() {
    switch (Take()) {
      case '\\':
        return Escape();
      case '[':
        return Class();
      case '(':
        return Open();
      case ')':
        return Close();
      case '*':
      case '+':
      case '?':
      case '}':  // at the end of a repeat, "+" forbids to give back: machine code then keeps groups that it should drop
        if (TakeIf("+")) pattern_.interpreted = true;
        return;
      case '#':
        if (extended_) SkipThrough("\n");
        return;
      default:
        return;
    }
  }

  // From here on, what was taken before is the name of the function.
  void Escape() {
    const char c = Take();
    if (c == 'Q') return SkipThrough("\\E");
    if (c == 'c') Take();  // "\c(" is a character
    if (c == 'G') pattern_.text[pattern_.text.size() - rest_.size() - 1] = 'A';
    if (IsLetterOrDigit(c) && kAgreedEscapes.find(c) == kAgreedEscapes.npos) pattern_.interpreted = true;
  }

  void Class() {
    bool negated = false;
    while (TakeIf("\\E") || TakeIf("\\Q\\E") || (!negated && (negated = TakeIf("^")))) {
    }
    do {  // the first member may be "]"
      Member();
    } while (!rest_.empty() && !TakeIf("]"));
  }

  void Member() {
    const char c = Take();
    if (c == '[') return SkipClassName();
    if (c != '\\') return;
    const char escaped = Take();
    if (escaped == 'Q') return SkipThrough("\\E");
    if (escaped == 'c') Take();
  }

  // Of "[:alpha:]" within a class.
  void SkipClassName() {
    if (rest_.substr(0, 1) != ":") return;
    const std::size_t end = rest_.find_first_not_of("abcdefghijklmnopqrstuvwxyz^", 1);
    if (end != rest_.npos && rest_.substr(end, 2) == ":]") rest_.remove_prefix(end + 2);
  }

  void Open() {
    if (TakeIf("?#")) return SkipThrough(")");
    if (TakeIf("*")) return Verb();
    extendedAround_.push_back(extended_);
    if (TakeIf("?")) Special();
  }

  void Close() {
    if (extendedAround_.empty()) return;
    extended_ = extendedAround_.back();
    extendedAround_.pop_back();
  }

  void Verb() {
    const std::string_view name = rest_.substr(0, rest_.find_first_of(":)"));
    pattern_.interpreted = true;
    if (std::find(std::begin(kTyingVerbs), std::end(kTyingVerbs), name) != std::end(kTyingVerbs)) pattern_.tied = true;
    SkipThrough(")");
  }

  void Special() {
    const auto begins = [this](std::string_view text) { return rest_.substr(0, text.size()) == text; };
    const std::size_t end = std::min(rest_.find_first_not_of(kOptions), rest_.size());
    const char after = end < rest_.size() ? rest_[end] : '\0';
    if (after == ')' || (after == ':' && end > 0)) return Options(rest_.substr(0, end), after == ')');
    if (std::none_of(std::begin(kAgreedGroups), std::end(kAgreedGroups), begins)) pattern_.interpreted = true;
  }

  void Options(std::string_view options, bool forTheGroupAround) {
    if (options.find_first_not_of(kAgreedOptions) != options.npos) pattern_.interpreted = true;
    const std::size_t x = options.find('x');
    if (x != options.npos) extended_ = x < options.find('-');
    rest_.remove_prefix(options.size() + 1);
    if (forTheGroupAround) extendedAround_.pop_back();
  }

  // '\0' at the end: patterns hold no such character.
  char Take() {
    if (rest_.empty()) return '\0';
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }
  bool TakeIf(std::string_view text) {
    if (rest_.substr(0, text.size()) != text) return false;
    rest_.remove_prefix(text.size());
    return true;
  }
  // Everything, when it does not occur.
  void SkipThrough(std::string_view text) {
    const std::size_t found = rest_.find(text);
    rest_.remove_prefix(found == rest_.npos ? rest_.size() : found + text.size());
  }

  TPattern& pattern_;
  std::string_view rest_;             // of the pattern's text
  bool extended_ = false;             // option x: white space and comments do not count
  std::vector<bool> extendedAround_;  // what it is again after each open group
};

}  // namespace

TPattern ReadPattern(std::string pattern) {
  TPattern read;
  read.text = std::move(pattern);
  TScanner(read).Scan();
  return read;
}

}  // namespace templatenames
