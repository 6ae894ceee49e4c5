// Templates, values and definitions that mean harm: the token fails, the rest goes on, nothing else changes.
#include <climits>

#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

std::string Repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(Limits, HarmfulFormatsFailTheirTokenOnly) {
  const char* const formats[] = {"%n",
                                 "%hhn",
                                 "%*d",
                                 "%*s",
                                 "%.*s",
                                 "%s%s",
                                 "%d%d",
                                 "%s%n",
                                 "%",
                                 "a%",
                                 "%%%",
                                 "%4097s",
                                 "%4097d",
                                 "%.4097d",
                                 "%99999999999999999999d",
                                 "%.99999999999s",
                                 "%5",
                                 "%1$s",
                                 "%1$d",
                                 "%ls",
                                 "%lld",
                                 "%hd",
                                 "%f",
                                 "%p",
                                 "%m",
                                 "%a",
                                 "%C",
                                 "%S",
                                 "%'d",
                                 "%Id",
                                 "% ",
                                 "%s%%%d",
                                 "%jd",
                                 "%zu",
                                 "%Lf",
                                 "%5%",
                                 "%-",
                                 "%\xC3\xB8"};
  for (const char* definition : {"text A = x", "number A = 5", "auto A = 5"}) {
    for (const std::string format : formats) {
      for (const bool inToken : {true, false}) {
        SCOPED_TRACE(std::string(definition) + " as " + format + (inToken ? "" : ", defined"));
        Names names{definition, "number N = 7"};
        const std::string token = inToken ? "<A format=\"" + format + "\"/>" : "<A/>";
        if (!inToken) names.SetFormat("A", S(format));
        const std::string entry = EntryText(names, "A");
        EXPECT_EQ(Resolved(names, token + "<N/>" + token), "! " + token + "7" + token);
        EXPECT_EQ(EntryText(names, "A"), entry);
        EXPECT_EQ(names.GetError(), 0);
      }
    }
  }
}

TEST(Limits, FormatsForTheOtherKindOfValueFail) {
  Names names{"text A = x", "number N = 7"};
  for (const char* format : {"d", "i", "u", "x", "X", "o", "c"})
    EXPECT_EQ(ResolvedToken(names, std::string("A format=\"%") + format + "\""), "!") << format;
  EXPECT_EQ(ResolvedToken(names, "N format=\"%s\""), "!");
  EXPECT_EQ(ResolvedToken(names, "N format=\"%4096d\"").size(), 4096U);
  EXPECT_EQ(ResolvedToken(names, "N format=\"%.4096d\"").size(), 4096U);
  EXPECT_EQ(ResolvedToken(names, "A format=\"%.0s\""), "");
}

TEST(Limits, CountersStopAtTheEnd) {
  Names names{"auto K = 2147483645", "number N = 7"};
  EXPECT_EQ(Resolved(names, "<K/>,<K/>,<K/>,<N/>,<K/>"), "! 2147483646,2147483647,<K/>,7,<K/>");
  EXPECT_EQ(names.GetValue("K"), NQ_TAny(INT_MAX));
}

TEST(Limits, ValuesThatNameThemselvesEnd) {
  const struct {
    std::vector<const char*> lines;
    const char *text, *around, *core;  // the text resolves to so many of one around the other
  } rows[] = {
      {{"text A = <A/>"}, "<A/>", "", "<A/>"},
      {{"text A = x<A/>"}, "<A/>", "x", "<A/>"},
      {{"text A = x<B/>", "text B = x<A/>"}, "<A/>", "x", "<A/>|<B/>"},
      {{"text A = x<<A/>>"}, "<A/>", "x", "<<A/>>"},
      {{"text A = x<A format=\"%s\"/>"}, "<A/>", "x", "<A format=\"%s\"/>"},
      {{"text A = x<A elem=\"_,0\"/>"}, "<A/>", "x", "<A elem=\""},  // the token that is left is cut too
      {{"text A = x<A/>", "format A = %s "}, "<A/>", "x", "<A/>"},
  };
  for (const auto& row : rows) {
    for (const int depth : {64, 5, 1}) {
      SCOPED_TRACE(testing::Message() << row.lines[0] << " at depth " << depth);
      Names names(row.lines);
      Given(names, "number N = 7");
      TNameLimits limits = names.GetLimits();
      EXPECT_EQ(limits.nestedDepth, 64);
      limits.nestedDepth = depth;
      names.SetLimits(limits);
      for (int time = 1; time <= 2; ++time) {
        const std::string resolved = Resolved(names, std::string(row.text) + "<N/>");
        ASSERT_TRUE(resolved.starts_with("! ") && resolved.ends_with("7")) << resolved;
        std::string core = resolved.substr(2, resolved.size() - 3);
        core.resize(core.find_last_not_of(' ') + 1);
        const std::size_t around = std::min(core.find_first_not_of('x'), core.size());
        EXPECT_NE(("|" + std::string(row.core) + "|").find("|" + core.substr(around) + "|"), std::string::npos) << core;
        if (*row.around != 0) {
          EXPECT_NEAR(double(around), depth, 1);
        }
      }
    }
  }
}

TEST(Limits, DeepButFiniteValuesResolve) {
  TName names;
  for (int i = 0; i < 60; ++i) Given(names, "text n" + std::to_string(i) + " = <n" + std::to_string(i + 1) + "/>");
  Given(names, "text n60 = deep");
  EXPECT_EQ(Resolved(names, "<n0/><n0/>"), "deepdeep");
  for (int i = 60; i < 70; ++i) Given(names, "text n" + std::to_string(i) + " = <n" + std::to_string(i + 1) + "/>");
  Given(names, "text n70 = too deep");
  EXPECT_TRUE(Resolved(names, "<n0/>").starts_with("! <n"));
  EXPECT_EQ(Resolved(names, "<n20/>"), "too deep");
}

TNameLimits With(std::int64_t tokens, std::int64_t characters) {
  TNameLimits limits;
  limits.tokens = tokens;
  limits.characters = characters;
  return limits;
}

TEST(Limits, TokensPerCall) {
  Names names{"text A = x", "text B = <A/><A/><A/>"};
  names.SetLimits(With(100, 1'000'000));
  const std::string text = Repeated("<A/>", 150), half = Repeated("x", 100) + Repeated("<A/>", 50);
  for (int time = 1; time <= 3; ++time) EXPECT_EQ(Resolved(names, text), "! " + half) << time;  // each call anew
  EXPECT_EQ(Resolved(names, text, "<", "/>"), "! " + half);
  EXPECT_EQ(Resolved(names, Repeated("<A/>", 100)), Repeated("x", 100));
  EXPECT_EQ(Resolved(names, Repeated("<B/>", 25)), Repeated("xxx", 25));  // those inside values count
  EXPECT_TRUE(Resolved(names, Repeated("<B/>", 26)).starts_with("! " + Repeated("xxx", 25)));
  names.SetLimits(With(0, 1'000'000));
  EXPECT_EQ(Resolved(names, "a<A/>b"), "! a<A/>b");
  names.SetLimits(TNameLimits());
  EXPECT_EQ(Resolved(names, "a<A/>b"), "axb");
}

TEST(Limits, CharactersPerCall) {
  Names names{"text V = ", "text W = <V/><V/>", "number N = 7"};
  names.SetValue("V", S(Repeated("v", 300)));
  names.SetLimits(With(1'000'000, 1000));
  for (const char* token : {"<V/>", "<W/>", "<V format=\"[%s]\"/>", "<V regex=\"(.*)\"/>", "<V extract=\"0,-1\"/>",
                            "<V elem=\"_,0\"/>", "<N format=\"%300d\"/>"}) {
    SCOPED_TRACE(token);
    const std::string once = Resolved(names, token);
    EXPECT_FALSE(once.starts_with("! "));
    const std::string text = Repeated(token, 10), resolved = Resolved(names, text);
    EXPECT_TRUE(resolved.starts_with("! " + once)) << resolved;
    EXPECT_TRUE(resolved.ends_with(token)) << resolved;
    EXPECT_LE(resolved.size(), 1000 + text.size());
  }
  EXPECT_EQ(Resolved(names, Repeated("x", 2000)), Repeated("x", 2000));  // a template's own text is no token
}

TEST(Limits, ValuesThatDoubleEachOtherEndSoon) {
  TName names;
  Given(names, "text d0 = 0123456789");
  for (int i = 1; i <= 60; ++i) {
    const std::string below = "<d" + std::to_string(i - 1) + "/>";
    Given(names, "text d" + std::to_string(i) + " = " + below + below);
  }
  Given(names, "number N = 7");
  for (const auto& limits : {With(10'000, 1'000'000), With(1'000'000, 10'000), With(1000, 1000)}) {
    names.SetLimits(limits);
    const std::string resolved = Resolved(names, "<d55/><N/>");
    EXPECT_TRUE(resolved.starts_with("! "));
    EXPECT_LT(std::int64_t(resolved.size()), 20 * (limits.characters + limits.tokens)) << resolved.size();
    EXPECT_EQ(Resolved(names, "<d5/><N/>"), Repeated("0123456789", 32) + "7");
  }
}

TEST(Limits, HarmfulExpressionsEnd) {
  const std::string many = Repeated("a", 5000);
  const struct {
    std::string value, pattern;
  } rows[] = {
      {many + "b", "(a+)+$"},
      {many + "b", "(a|aa)+$"},
      {many, "(a*)*b"},
      {many + "b", "^(([a-z])+.)+[A-Z]([a-z])+$"},
      {many, "((a?){5000})a{5000}b"},
      {many, Repeated("(a?", 200) + Repeated(")", 200) + "b()"},
      {many + "b", "(((a+)+)+)+c"},
      {many, "((?:a|(?1)a)*)b"},
      {many, "(.*)*(.*)*(.*)*(.*)*x"},
      {"x", Repeated("(", 5000)},
      {"x", "((((a{1,1000}){1,1000}){1,1000}){1,1000})"},
      {"x", Repeated("[", 1000)},
      {"x", "(?P<"},
      {"x", "\\"},
      {"x", "(\\C)\xC3"},
      {"x", "(*NO_START_OPT)((?R))"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.pattern.substr(0, 40));
    Names names{"number N = 7", "text A = "};
    names.SetValue("A", S(row.value));
    names.SetRegExValue("A", S(row.pattern));
    Output messages;
    const std::string resolved = Resolved(names, "<A/><N/>");
    EXPECT_TRUE(resolved == "! <A/>7" || resolved == "7") << resolved;
    EXPECT_LT(messages.Take().size(), 40'000U);
  }
}

TEST(Limits, MatchingErrorsAreTold) {
  Names names{"text A = aaaaaaaaaaaaaaaaaaaaaaaaaaaab"};
  Given(names, "regex A = (a+)+$");
  TNameLimits limits;
  limits.regexMatch = 100;
  names.SetLimits(limits);
  Output output;
  EXPECT_EQ(ResolvedToken(names, "A"), "!");
  const std::string text = output.Take();
  EXPECT_EQ(text.find("TName:'aaaaaaaaaaaaaaaaaaaaaaaaaaaab' does not match regex '(a+)+$':match error -"), 0U) << text;
}

TEST(Limits, LongValuesWithManySeparatorsEnd) {
  Names names{"text A = ", "number N = 7"};
  const int length = Scaled(10'000'000);
  names.SetValue("A", S(std::string(std::size_t(length), 'a')));
  EXPECT_EQ(Resolved(names, "<A elem=\"aa,2147483647\"/><N/>"), "7");
  EXPECT_EQ(Resolved(names, "<A elem=\"aa,1000\"/><N/>"), "7");
  EXPECT_EQ(Resolved(names, "<A elem=\"aab,1\"/><N/>"), "7");
  EXPECT_EQ(Resolved(names, "<A extract=\"" + std::to_string(length - 2) + ",9\"/><N/>"), "aa7");
  const std::string separator = Repeated("a", 3000);
  EXPECT_EQ(Resolved(names, "<A elem=\"" + separator + "b,1\"/><N/>"), "7");
  EXPECT_EQ(Resolved(names, "<A elem=\"" + separator + "," + std::to_string(length - 3000) + "\"/><N/>").size(), 1U);
  EXPECT_EQ(Resolved(names, "<A elem=\"" + separator + "," + std::to_string(length - 2999) + "\"/><N/>").size(), 3000U);
}

TEST(Limits, NumbersOutOfRangeDoNoHarm) {
  Names names{"text A = a_b", "number N = 7"};
  for (const char* number : {"99999999999", "-99999999999", "2147483648", "-2147483648", "18446744073709551617"}) {
    const std::string n = number;
    for (const std::string& token : {"<A elem=\"_," + n + "\"/>", "<A extract=\"" + n + "," + n + "\"/>"}) {
      const std::string resolved = Resolved(names, token + "<N/>");
      EXPECT_TRUE(resolved.ends_with("7") && resolved.size() <= token.size() + 3) << resolved;
    }
  }
}

TEST(Limits, HarmfulTimeFormats) {
  Names names{"time T", "number N = 7"};
  for (const char* format : {"%", "%n%t", "%9999999999d", "%Q", "%E", "%O", "%10000000Y", "%_", "%s%s%s"}) {
    for (const bool inToken : {true, false}) {
      names.SetFormat("T", inToken ? S("%X") : S(format));
      const std::string token = inToken ? std::string("<T format=\"") + format + "\"/>" : "<T/>";
      const std::string resolved = Resolved(names, token + "<N/>");
      EXPECT_TRUE(resolved.ends_with("7") && resolved.size() < 70'000) << format;
    }
  }
}

}  // namespace
}  // namespace names_test
