// Names with formatting options; most of that stands in Cases.txt.
#include "Support.h"
#include "formatting/OptionsText.h"

namespace names_test {
namespace {

using formatting_test::Options;

// A value much longer than what is kept for the next one; and the name has a copy of its options.
TEST(Formatting, LongValues) {
  Names names("text A = " + Repeated("&", 10'000) + "; text C = &");
  NQ_TDict options = Options("DataFormat=TEXT|Encoding=XML");
  for (const char* key : {"A", "C"}) names.SetFormattingOptions(key, options);
  options["Encoding"] = "URL";
  EXPECT_EQ(Resolved(names, "<A/><C/><A/>"), Repeated("&amp;", 20'001));
}

// By the short way and by the long one, which logs it.
TEST(Formatting, ATokenFailsWhenItsEncodingMakesTooMuch) {
  Names names("text A = ab; number N = 7");
  names.SetFormattingOptions("A", Options("DataFormat=TEXT|Encoding=CUSTOM|CustomEncoding=" + Repeated("a>aa,", 30)));
  EXPECT_EQ(Resolved(names, "<A/><N/>"), "! <A/>7");
  names.SetDebugLevel(2);
  Output log;
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  EXPECT_NE(log.Take().find("Key: \"A\" More characters than the limit allows"), std::string::npos);
}

// A server's threads may still format while what is static has been destroyed. Alone in a process: it counts what is
// made first.
TEST(Formatting, WhileTheProgramEnds) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static Names* names = nullptr;
  static const auto fails = [] { return Resolved(*names, "<A/>") != Repeated("0123456789&amp;", 20); };
  const auto end = [] {
    names = new Names("text A = " + Repeated("0123456789&", 20));
    names->SetFormattingOptions("A", Options("DataFormat=TEXT|Encoding=XML"));
    std::atexit([] {
      if (fails()) std::_Exit(1);
    });
    std::exit(fails() ? 2 : 0);
  };
  EXPECT_EXIT(end(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace names_test
