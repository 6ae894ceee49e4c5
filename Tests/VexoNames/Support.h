// What the tests of names share: registries written one line per name, and results, entries and log lines as text.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "NQ_EException.h"
#include "TName.h"

namespace names_test {

inline NQ_TString S(std::string_view utf8) { return NQ_TString(utf8); }
inline std::string Text(const NQ_TString& text) { return std::string(text.Narrow()); }
std::string Text(const NQ_TAny& value);

/// Defines a name, or sets an attribute of it, from one line:
///   text A = x     number N = 7     auto K = 5     url L = file://h/p     time T     sql Q
///   bare B         (a text name without a lookup)
///   format A = %s  elem A = _,1     extract A = 2,-1     regex A = (x)
void Given(TName& names, std::string_view line);

/// A registry made of such lines.
class Names : public TName {
 public:
  Names() = default;
  Names(std::initializer_list<const char*> lines) : Names(std::vector<const char*>(lines)) {}
  explicit Names(const std::vector<const char*>& lines) {
    for (const char* line : lines) Given(*this, line);
  }
};

/// The resolved text; "! " stands before it when a token failed.
std::string Resolved(TName& names, std::string_view text);
/// With markers; what the result held before comes first.
std::string Resolved(TName& names, std::string_view text, std::string_view begin, std::string_view end,
                     std::string_view before = "");
std::string ResolvedToken(TName& names, std::string_view token);

/// An entry's attributes, sorted: "Category=misc Format=%s LookupHandler Type=0 TypeHandler Value=x".
std::string EntryText(TName& names, std::string_view key);
std::string AttributesText(const NQ_TDict& entry);

/// The keys in the registry's order: "A B C".
std::string KeysText(const TName& names);

/// Collects what is written to standard output while it lives.
class Output {
 public:
  Output() { testing::internal::CaptureStdout(); }
  ~Output() {
    if (!taken_) testing::internal::GetCapturedStdout();
  }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  std::string Take() {
    taken_ = true;
    return testing::internal::GetCapturedStdout();
  }

 private:
  bool taken_ = false;
};

/// "NQ_ENoSuchKey: A" for what the action throws; "" when it throws nothing. Also looks at the throw site.
template <class Action>
std::string Thrown(Action action) {
  try {
    action();
    return "";
  } catch (const NQ_EException& error) {
    EXPECT_EQ(Text(error.NQ_ExceptionFile()).find("VexoNames/Private/Source/templatenames/"), 0U)
        << error.NQ_ExceptionFile();
    EXPECT_GT(error.NQ_ExceptionLine(), 0U);
    return std::string(error.ClassName()) + ": " + Text(error.NQ_Message());
  }
}

/// Whether another thread gets the registry's lock within a generous time.
bool OtherThreadGetsLock(TName& names);

/// How often to repeat: less where a sanitizer watches.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define NAMES_TEST_SANITIZED
#endif
#endif
#ifdef NAMES_TEST_SANITIZED
constexpr int Scaled(int count) { return count / 10; }
#else
constexpr int Scaled(int count) { return count; }
#endif

/// What a handler of a test throws.
struct Oops {};

}  // namespace names_test
