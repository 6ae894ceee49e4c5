// Templates, values and definitions that mean harm: the token fails, the rest goes on, nothing else changes.
#include "Support.h"

namespace names_test {
namespace {

TEST(Limits, HarmfulFormatsFailTheirTokenOnly) {
  for (const std::string definition : {"text A = x", "number A = 5", "auto A = 5"}) {
    for (const std::string& format : Split(
             "%n|%hhn|%*d|%.*s|%s%s|%d%d|%s%n|a%|%%%|%4097s|%.4097d|%99999999999999999999d|%.99999999999s|%5|%1$s|%ls|"
             "%lld|%f|%m|%'d|%\xC3\xB8")) {
      for (const bool inToken : {true, false}) {
        SCOPED_TRACE(definition + " as " + format + (inToken ? "" : ", defined"));
        Names names(definition + "; number N = 7");
        if (!inToken) Do(names, "format A = " + format);
        const std::string token = inToken ? "<A format=\"" + format + "\"/>" : "<A/>";
        const std::string entry = EntryText(names, "A");
        EXPECT_EQ(Resolved(names, token + "<N/>" + token), "! " + token + "7" + token);
        EXPECT_TRUE(EntryText(names, "A") == entry && names.GetError() == 0);
      }
    }
  }
  Names names("text A = x; number N = 7; time T");
  EXPECT_EQ(ResolvedToken(names, "N format=\"%4096d\"").size(), 4096U);
  EXPECT_EQ(ResolvedToken(names, "A format=\"%4096s\""), Repeated(" ", 4095) + "x");
  for (const std::string format : {"%", "%n%t", "%9999999999d", "%Q", "%E", "%10000000Y", "%_"}) {
    const std::string resolved = Resolved(names, "<T format=\"" + format + "\"/><N/>");
    EXPECT_TRUE(resolved.ends_with("7") && resolved.size() < 70'000) << format;
  }
}

TEST(Limits, ValuesThatNameThemselvesEnd) {
  const struct {
    const char *names, *left;  // what is left of the token that was too deep, one of those between "|"
  } rows[] = {
      {"text A = x<A/>", "|<A/>|"},
      {"text A = x<B/>; text B = x<A/>", "|<A/>|<B/>|"},
      {"text A = x<A format=\"%s\"/>", "|<A format=\"%s\"/>|"},
      {"text A = x<A elem=\"_,0\"/>", "|<A elem=\"|"},  // itself cut on the way out
  };
  for (const auto& row : rows) {
    for (const int depth : {64, 5, 1}) {
      Names names(std::string(row.names) + "; number N = 7");
      if (depth != 64) names.SetLimits({.nestedDepth = depth});
      for (int time = 1; time <= 2; ++time) {
        SCOPED_TRACE(testing::Message() << row.names << " at depth " << depth << ", time " << time);
        const std::string resolved = Resolved(names, "<A/><N/>");
        ASSERT_TRUE(resolved.starts_with("! ") && resolved.ends_with("7")) << resolved;
        const std::string text = resolved.substr(2, resolved.size() - 3);
        const std::size_t around = std::min(text.find_first_not_of('x'), text.size());
        EXPECT_NEAR(double(around), depth, 1);
        EXPECT_NE(std::string(row.left).find("|" + text.substr(around) + "|"), std::string::npos) << resolved;
      }
    }
  }
}

TEST(Limits, TokensPerCall) {
  Names names("text A = x; text B = <A/><A/><A/>");
  names.SetLimits({.tokens = 100});
  const std::string text = Repeated("<A/>", 150), half = Repeated("x", 100) + Repeated("<A/>", 50);
  for (int time = 1; time <= 3; ++time) EXPECT_EQ(Resolved(names, text), "! " + half) << time;  // each call anew
  EXPECT_EQ(Resolved(names, text, "<", "/>"), "! " + half);
  EXPECT_EQ(Resolved(names, Repeated("<B/>", 25)), Repeated("xxx", 25));  // those inside values count
  EXPECT_TRUE(Resolved(names, Repeated("<B/>", 26)).starts_with("! " + Repeated("xxx", 25)));
  names.SetLimits({.tokens = 0});
  EXPECT_EQ(Resolved(names, "a<A/>b"), "! a<A/>b");
}

TEST(Limits, CharactersPerCall) {
  Names names("text V = " + Repeated("v", 300) + "; text W = <V/><V/>; number N = 7");
  names.SetLimits({.characters = 1000});
  for (const char* token :
       {"<V/>", "<W/>", "<V format=\"[%s]\"/>", "<V regex=\"(.*)\"/>", "<V extract=\"0,-1\"/>", "<V elem=\"_,0\"/>",
        "<V extract=\"0,1\"/>", "<N format=\"%300d\"/>", "<V format=\"%.1s\"/>", "<W format=\"%.1s\"/>"}) {
    SCOPED_TRACE(token);
    const std::string once = Resolved(names, token), text = Repeated(token, 10), resolved = Resolved(names, text);
    EXPECT_TRUE(!once.starts_with("! ") && resolved.starts_with("! " + once) && resolved.ends_with(token)) << resolved;
    EXPECT_LE(resolved.size(), 1000 + text.size());
    // A hook that does nothing changes nothing.
    names.SetWarnLookupHandler([](const NQ_TString&, TName*) {});
    EXPECT_EQ(Resolved(names, text), resolved);
    Do(names, "no warn");
  }
  EXPECT_EQ(Resolved(names, Repeated("x", 2000)), Repeated("x", 2000));  // a template's own text is no token
  // Values that double each other.
  Do(names, "text d0 = 0123456789");
  for (int i = 1; i <= 60; ++i) {
    const std::string below = "<d" + std::to_string(i - 1) + "/>";
    Do(names, "text d" + std::to_string(i) + " = " + below + below);
  }
  for (const TNameLimits& limits : {TNameLimits{.tokens = 10'000}, TNameLimits{.characters = 10'000}}) {
    names.SetLimits(limits);
    const std::string resolved = Resolved(names, "<d55/><N/>");
    EXPECT_TRUE(resolved.starts_with("! ") && resolved.size() < 200'000U);
    EXPECT_EQ(Resolved(names, "<d5/><N/>"), Repeated("0123456789", 32) + "7");
  }
}

TEST(Limits, WorkThatLeavesNoTextCounts) {
  const std::string refused = "<V format=\"%d\"/>", noMatch = "<V regex=\"" + Repeated("x", 300) + "()\"/>";
  const struct {
    const char* what;
    TNameLimits limits;
    std::string text, expected;
  } rows[] = {
      {"empty tokens", {.tokens = 3}, "</></>a</></><N/>", "! a</><N/>"},
      {"empty tokens in values", {.tokens = 8}, Repeated("<E/>", 4), "! </><E/>"},
      {"token texts in values", {.characters = 500}, Repeated("<T/>", 5) + "<N/>", "! 77<T/><T/><T/><N/>"},
      {"values that no format takes",
       {.characters = 500},
       refused + refused + "<N/>",
       "! " + refused + refused + "<N/>"},
      {"messages", {.characters = 1000}, noMatch + noMatch + "<N/>", "! " + noMatch + "<N/>"},
      {"no time", {.regexMilliseconds = 0}, "<V regex=\"(v)\"/><N/>", "! <V regex=\"(v)\"/>7"},
  };
  for (const auto& row : rows) {
    Names names("text V = " + Repeated("v", 300) + "; text E = </></>; number N = 7; text T = <N" + Repeated(" ", 200) +
                "/>");
    names.SetLimits(row.limits);
    const Output messages;
    EXPECT_EQ(Resolved(names, row.text), row.expected) << row.what;
    names.SetWarnLookupHandler([](const NQ_TString&, TName*) {});
    EXPECT_EQ(Resolved(names, row.text), row.expected) << row.what << ", with a hook";
  }
}

// Not one of the searches fails, and each takes its time.
TEST(Limits, SlowExpressionsEndTogether) {
  for (const int length : {4'000, 65'000}) {
    Names names("number N = 7; text A = " + Repeated("x", length));
    names.SetLimits({.regexMilliseconds = 100});
    const Output messages;
    const std::string token = "<A regex=\"()(?=x*[yw])\"/>",
                      resolved = Resolved(names, Repeated(token, 2'000) + "<N/>");
    EXPECT_TRUE(resolved.starts_with("! " + token) && resolved.ends_with(token + "7")) << length;
    EXPECT_LT(resolved.size(), 2'000 * token.size()) << length;
  }
}

TEST(Limits, AddressesNestNoDeeperThanTexts) {
  Names names("text A = x");
  names.SetLimits({.nestedDepth = 0, .characters = 1});
  NQ_TURL url, resolved;
  EXPECT_TRUE(names.Resolve(S("//server/long/<A/>"), url));
  EXPECT_TRUE(names.Resolve(url, resolved));
  EXPECT_EQ(Text(resolved.Text()), "file://server/long/x");
}

// A lookup can keep a pointer to the value of its entry.
NQ_TString* stored = nullptr;

TEST(Limits, ResultsMayBeStoredValues) {
  Names names("text A = xyz");
  names.SetUserLookupHandler([](const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
    stored = entry->ValueOfKey(S("Value"))->As<NQ_TString>();
    return false;
  });
  Resolved(names, "<A/>");
  names.SetUserLookupHandler(nullptr);
  for (const auto& [token, expected] : {std::pair("<A/>", "xyzxyz"),
                                        {"<A elem=\",,0\"/>", "xyzxyz"},
                                        {"<A format=\"%-9s\"/>", "xyzxyz      "},
                                        {"<A regex=\"(.)$\"/>", "xyzz"},
                                        {"<A/><A/>", "xyzxyzxyzxyz"}}) {
    *stored = S("xyz");
    EXPECT_TRUE(names.Resolve(S(token), S("<"), S("/>"), *stored));
    EXPECT_EQ(*stored, S(expected)) << token;
  }
}

TEST(Limits, HarmfulExpressionsEnd) {
  const std::string many = Repeated("a", 3000);
  const std::pair<std::string, std::string> rows[] = {
      {many, "(a*)*b"},
      {many, "((a?){3000})a{3000}b"},
      {many, Repeated("(a?", 200) + Repeated(")", 200) + "b()"},
      {many, "((?:a|(?1)a)*)b"},
      {"x", Repeated("(", 5000)},
      {"x", "((((a{1,1000}){1,1000}){1,1000}){1,1000})"},
      {"x", "(\\C)\xC3"},
  };
  for (const auto& [value, pattern] : rows) {
    Names names("number N = 7; text A = " + value);
    Do(names, "regex A = " + pattern);
    names.SetLimits({.regexMatch = 10'000, .regexRecursion = 1000});
    Output messages;
    const std::string resolved = Resolved(names, "<A/><N/>");
    EXPECT_TRUE(resolved == "! <A/>7" || resolved == "7") << pattern.substr(0, 40) << resolved;
    EXPECT_LT(messages.Take().size(), 40'000U);
  }
  Names names("text A = aaaaaaaaaaaaaaaaaaaaab; regex A = (a+)+$");
  names.SetLimits({.regexMatch = 100});
  Output output;
  EXPECT_EQ(Resolved(names, Repeated("<A/>", 20)), "! " + Repeated("<A/>", 20));
  std::string log = output.Take(), line = log.substr(0, log.find('\n') + 1);
  EXPECT_TRUE(line.starts_with("TName:'aaaaaaaaaaaaaaaaaaaaab' does not match regex '(a+)+$':match error -"));
  EXPECT_EQ(log, Repeated(line, 20));
}

TEST(Limits, LargeNumbersAndLongValuesDoNoHarm) {
  Names names("text A = a_b; number N = 7");
  for (const std::string n : {"99999999999", "-99999999999", "2147483648", "-2147483648", "18446744073709551617"}) {
    for (const std::string& token : {"<A elem=\"_," + n + "\"/>", "<A extract=\"" + n + "," + n + "\"/>"}) {
      const std::string resolved = Resolved(names, token + "<N/>");
      EXPECT_TRUE(resolved.ends_with("7") && resolved.size() <= token.size() + 3) << resolved;
    }
  }
  const int length = Scaled(10'000'000);
  names.SetValue("A", S(std::string(std::size_t(length), 'a')));
  const std::string token = "<A elem=\"" + Repeated("a", 3000);
  EXPECT_EQ(Resolved(names, "<A elem=\"aa,2147483647\"/><N/>" + token + "b,1\"/>"), "7");
  EXPECT_EQ(Resolved(names, token + "," + std::to_string(length - 2999) + "\"/><N/>"), Repeated("a", 2999) + "7");
}

}  // namespace
}  // namespace names_test
