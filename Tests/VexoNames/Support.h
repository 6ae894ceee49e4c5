// What the tests of names share: operations written one line each, and results, entries and log lines as text.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "Framework/Base/Support.h"
#include "NQ_TURL.h"
#include "Rows.h"
#include "TName.h"

namespace names_test {

using base_test::S;
using rows_test::Pieces;
using rows_test::Row;
using rows_test::RowFile;
inline std::string Text(const NQ_TString& text) { return std::string(text.Narrow()); }
inline std::string Text(const NQ_TAny& value) { return base_test::Printed(value); }

/// An operation: what follows its word, as "key = value". The value is empty when there is no " = ".
struct Line {
  NQ_TString key, value;
  std::string whole{};  // with the word
  std::string given{};  // what the operation gives

  int Number() const { return std::stoi(Text(value)); }
  NQ_TURL Url() const { return NQ_TURL(value); }
  /// The two words of the value.
  std::pair<std::string, std::string> Words(const char* otherwise = "") const;
};

/// A word, and what it does. A blank follows a word that ends with a letter.
struct Word {
  std::string_view word;
  std::function<void(TName&, Line&)> act;
};

/// Carries out operations on names, separated by "; ". A backslash before a separator makes it text: "text A = a\\; b".
/// Support.cpp lists the words, to which a test may add its own; the main ones:
///   text A = x; number N = 7; auto K = 5; url L = file://h/p; time T; sql Q     defines, with a value
///   define B = 0 99             of a type and a lookup kind, by their numbers
///   format A = %s; elem A = _,1; category A = c                                 sets an attribute
///   options A = DataFormat=NUMBER|Decimals=2                                     formatting/OptionsText.h
///   undefine A; undefine; remove A; increment N; lookup A = 3; no type A; no elem
///   put A = Value 5; answer A = 5; limit tokens = 3     an attribute, what a lookup gives, a limit
///   resolve <A/>; token A; markers {A}; to url //h/<A/>; from url ftp://h/<A/>; entry A; get value A
/// Returns what the last operation gives, as text: "! " stands before it when a token failed.
std::string Do(TName& names, std::string_view script, std::span<const Word> more = {});

class Names : public TName {
 public:
  explicit Names(std::string_view script) { Do(*this, script); }
};

/// The resolved text; "! " stands before it when a token failed.
std::string Resolved(TName& names, std::string_view text);
/// With markers; what the result held before comes first.
std::string Resolved(TName& names, std::string_view text, std::string_view begin, std::string_view end,
                     std::string_view before = "");
/// The text of a token, "!" when it failed.
std::string ResolvedToken(TName& names, std::string_view token);

/// The entry as handlers see it, to be changed in any way; null for a name without a lookup.
NQ_TDict* EntryOf(TName& names, const NQ_TString& key);
/// An entry's attributes, sorted: "Category=misc Format=%s LookupHandler Type=0 TypeHandler Value=x".
std::string EntryText(TName& names, std::string_view key);
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
  return base_test::Thrown([&] {
    try {
      action();
    } catch (const NQ_EException& error) {
      const std::string file = Text(error.NQ_ExceptionFile());
      EXPECT_TRUE(file.find("VexoNames/Private/Source/templatenames/") != file.npos && error.NQ_ExceptionLine() > 0);
      throw;
    }
  });
}

/// Runs the work on that many threads at a time, each with its number.
template <class Work>
void OnThreads(int count, Work work) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < count; ++thread) threads.emplace_back(work, thread);
}

/// Whether another thread gets the registry's lock within a generous time.
bool OtherThreadGetsLock(TName& names);

/// The pieces between "|".
inline std::vector<std::string> Split(std::string_view text) { return Pieces(text, "|"); }

/// The lines of a file beside the tests; those that begin with "#" are for the reader.
std::vector<std::string> Lines(const std::string& file);

std::string Repeated(std::string_view text, int count);

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

}  // namespace names_test
