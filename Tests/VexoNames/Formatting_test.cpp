// Names with formatting options: by the short road of stored values, and by the one that every handler is asked on.
#include "Support.h"
#include "formatting/OptionsText.h"

namespace names_test {
namespace {

using formatting_test::Options;

bool Declines(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny&) { return false; }

// What happened: the resolved text, the error if there was one, and what was logged.
std::string Outcome(TName& names, std::string_view text) {
  Output output;
  std::string resolved;
  const std::string error = Thrown([&] { resolved = Resolved(names, text); });
  const std::string log = output.Take();
  return resolved + (error.empty() ? "" : "{" + error + "}") + (log.empty() ? "" : " log: " + log);
}

// The options are those of A; C has them too where it is defined. At most so many characters may come from values.
TEST(Formatting, BothRoads) {
  const std::string xml = "DataFormat=TEXT|Encoding=XML", unit = "DataFormat=NUMBER|Convert=true";
  const struct {
    std::string script, options, text;
    std::int64_t characters;
    std::string outcome;
  } rows[] = {
      {"text A = a&b", xml, "<A/>-<A/>-<A format=\"(%s)\"/>", 99, "a&amp;b-a&amp;b-(a&amp;b)"},
      {"text A = a_&b; elem A = _,1", xml, "<A/><A elem=\"a,1\" extract=\"1,2\"/>", 99, "&amp;b&amp;b"},
      {"text A = a&b", xml, "<A regex=\"(&)\"/><A elem=\"1\"/>", 99, "! &amp;<A elem=\"1\"/>"},
      {"text A = [<B/>&]; text B = <&", xml, "<A/>", 99, "[&lt;&amp;&amp;]"},
      {"text A = &; text B = (<A/>); text C = <B/>&", xml, "<A/><B/><C/>", 99, "&amp;(&amp;)(&amp;amp;)&amp;"},
      {"text A = a; number N = 1", "DataFormat=TEXT|Transformation=UPPERCASE", "<A/><U/><N/>", 99, "! A<U/>1"},
      {"text A = &&", xml, "<A/>", 10, "&amp;&amp;"},
      {"text A = &&", xml, "<A/><A/>", 11, "! &amp;&amp;<A/>"},
      {"text A = &&", xml, "<A/>", 9, "! <A/>"},
      {"text A =    x", "DataFormat=TEXT|RemoveSpaces=true", "<A/>", 4, "x"},
      {"text A =    x", "DataFormat=TEXT|RemoveSpaces=true", "<A/>", 3, "! <A/>"},
      {"text A = a,b,c; elem A = ,,0", "DataFormat=TEXT|Encoding=CUSTOM|CustomEncoding=b>", "<A/>", 4, "! <A/>"},
      {"number A = 12", "DataFormat=NUMBER|Decimals=1", "<A/><A format=\"%04d\"/><A elem=\"2,0\"/>", 99, "12.012.01.0"},
      {"text A = none", "DataFormat=NUMBER|Decimals=1", "<A/>", 99, "none"},
      {"text A = 1", unit + "|ConvertUnitCategory=?", "x<A/>", 99, "{NQ_ENoSuchUnitCategory: ?}"},
      {"text A = 1", unit + "|ConvertUnitCategory=TIME|ConvertFromUnit=?", "x<A/>", 99, "{NQ_ENoSuchUnit: ?}"},
      {"text A = 2020-10-05", "DataFormat=DATETIME|InputDateTimeFormat=ISO8601|DateTimeFormat=UNIX", "<A/>", 99,
       "1601856000000"},
      {"text A = a", "DataFormat=text|Transformation=UPPERCASE", "<A/>", 99, "a log: Unsupported DataFormat text\n"},
      {"text A = a", "Transformation=UPPERCASE", "<A/>", 99, "a log: Unsupported DataFormat \n"},
      {"text A = ", "DataFormat=?", "(<A/>)", 99, "()"},
      {"text A = a", "", "<A/>", 99, "a"},
  };
  for (const auto& row : rows) {
    for (const TName::TLookupFunction hook : {TName::TLookupFunction(nullptr), &Declines}) {
      SCOPED_TRACE(row.script + " with " + row.options + ": " + row.text + (hook == nullptr ? "" : ", the long way"));
      Names names(row.script);
      for (const char* key : {"A", "C"})
        if (names.IsDefined(key)) names.SetFormattingOptions(key, Options(row.options));
      names.SetUserLookupHandler(hook);
      TNameLimits limits;
      limits.characters = row.characters;
      names.SetLimits(limits);
      for (int time = 1; time <= 3; ++time) EXPECT_EQ(Outcome(names, row.text), row.outcome) << "time " << time;
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

TEST(Formatting, LaterOptionsReplaceEarlierOnes) {
  Names names("text A = a&b");
  names.SetFormattingOptions("A", Options("DataFormat=TEXT|Transformation=UPPERCASE"));
  EXPECT_EQ(Resolved(names, "<A/>"), "A&B");
  NQ_TDict options = Options("DataFormat=TEXT|Encoding=XML");
  names.SetFormattingOptions("A", options);
  options["Encoding"] = "URL";  // the name has a copy
  EXPECT_EQ(Resolved(names, "<A/>"), "a&amp;b");
  names.SetFormattingOptions("A", NQ_TDict());
  EXPECT_EQ(Resolved(names, "<A/>"), "a&b");
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

// A value much longer than what is kept for the next one.
TEST(Formatting, LongValues) {
  Names names("text A = " + Repeated("&", 10'000) + "; text C = &");
  for (const char* key : {"A", "C"}) names.SetFormattingOptions(key, Options("DataFormat=TEXT|Encoding=XML"));
  EXPECT_EQ(Resolved(names, "<A/><C/><A/>"), Repeated("&amp;", 20'001));
}

}  // namespace
}  // namespace names_test
