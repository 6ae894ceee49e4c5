// Reports: random templates resolve with a report, step by step and with the log as they do without, within limits that
// bite in half of them; a report tells where its tokens are, and checking changes nothing.
#include <random>

#include "Support.h"

namespace names_test {
namespace {

template <class Rows>
const auto& Any(std::mt19937& random, const Rows& rows) {
  return rows[random() % std::size(rows)];
}

const auto kKeys = Split("A|A|B|B|C|D|N|N|K|K|L|U|F|");
const auto kAttributes = Split(
    "||| format=\"%s\"| format=\"[%8s]\"| format=\"%03d\"| format=\"%n\"| elem=\"_,1\"| elem=\"_\"| extract=\"1,2\"|"
    " extract=\"-1,2\"| regex=\"([0-9]+)\"| regex=\"(x)?.\"| regex=\"[a-z]+\"| regex=\"(\"");
const auto kTexts = Split("x|_|a b|/|<|>|/>|<<|\xC3\xA9|\xF0\x9F\x96\xA8|<<CDATA/>>");
const auto kChanges = Split(
    "text A = job_0815_cover|text A = abc|text A = |text B = <A/>-<N/>|text B = <<K/>>_<<U/>>|text C = <<C/>>.|"
    "text D = <<B/>><<B/>>|number N = 7|number N = -12|auto K = 5|auto K = 2147483646|url L = file://h/a_b|"
    "elem A = _,1|elem B = bad|regex A = ([a-z]+)|format A = (%s)|format N = %05d|undefine A|"
    "options A = DataFormat=TEXT,Transformation=UPPERCASE|options A = DataFormat=NUMBER,Decimals=2|no type B|"
    "no lookup D|limit tokens = 3|limit tokens = 10000|limit characters = 12|limit characters = 100000|"
    "limit nestedDepth = 1|limit nestedDepth = 6|answer F = many_<<N/>>|sql F");

std::string RandomTemplate(std::mt19937& random) {
  std::string text;
  for (auto pieces = random() % 7; pieces-- > 0;) {
    if (random() % 3 == 0) {
      text += Any(random, kTexts);
      continue;
    }
    const bool doubled = random() % 3 != 0;
    text += (doubled ? "<<" : "<") + Any(random, kKeys) + Any(random, kAttributes) + (doubled ? "/>>" : "/>");
  }
  return text;
}

void ExpectPlaces(const TNameReport& report, const NQ_TString& text) {
  const std::u16string_view units = text.StringView();
  for (const TNameProblem& problem : report.Failures()) {
    ASSERT_LT(problem.Begin(), problem.End()) << text;
    ASSERT_LE(problem.End(), units.size()) << text;
    const auto there = units.substr(problem.Begin(), problem.End() - problem.Begin());
    EXPECT_TRUE(!problem.Within().empty() || problem.Token().Equals(there)) << text << problem.Token();
    EXPECT_FALSE(problem.Reason().Empty()) << text;
    const bool isLimit = problem.KindName() == "limit" || problem.KindName() == "cycle";
    EXPECT_EQ(problem.Limit().Empty(), !isLimit) << text << problem.Reason();
  }
}

/// Registries that are changed alike.
struct Registries {
  TName plain, logging, reporting, explaining;

  void Change(const std::string& script) {
    for (TName* const names : {&plain, &logging, &reporting, &explaining}) Thrown([&] { Do(*names, script); });
  }
};

/// Nobody reads the log while it lives.
struct Unread {
  Unread() {
    TName::SetLogSink([](int, const std::string&) {});
  }
  ~Unread() { TName::SetLogSink(nullptr); }
};

TEST(Reports, TellOfTheSameResolution) {
  const Unread log;
  std::mt19937 random(815);
  Registries all;
  all.Change(
      "text A = x; text B = y; text C = z; text D = w; number N = 1; auto K = 1; url L = file://h/p; text F = f");
  for (int i = 0; i < Scaled(100'000); ++i) {
    if (i % 3 == 0) all.Change(Any(random, kChanges));
    const NQ_TString text = S(RandomTemplate(random));
    NQ_TString plain, logged, reported;
    TNameReport report, checked;
    const bool ok = all.plain.Resolve(text, plain);
    all.logging.SetDebugLevel(2);
    const NQ_TAny counter = all.reporting.GetValue("K");
    all.reporting.Check(text, checked);
    ASSERT_EQ(all.reporting.GetValue("K"), counter) << text;
    ASSERT_EQ(all.logging.Resolve(text, logged), ok) << text;
    all.logging.SetDebugLevel(0);
    ASSERT_EQ(all.reporting.Resolve(text, reported, report), ok) << text;
    const TNameExplanation explained = all.explaining.Explain(text);
    ASSERT_EQ(logged, plain) << text;
    ASSERT_EQ(reported, plain) << text;
    ASSERT_EQ(explained.Result(), plain) << text;
    ASSERT_EQ(report.Failures().empty(), ok) << text;
    ASSERT_EQ(explained.Report().FailureCount(), report.FailureCount()) << text;
    ExpectPlaces(report, text);
    for (TName* const names : {&all.logging, &all.reporting, &all.explaining})
      ASSERT_EQ(names->GetError(), all.plain.GetError()) << text;
  }
}

TEST(Reports, ExplainEachStep) {
  Names names(
      "text A = a_<<B/>>_c; text B = job17x; elem A = _,1; options A = DataFormat=TEXT,Transformation=UPPERCASE");
  const TNameExplanation explained = names.Explain(S("<<A format=\"_%s\" extract=\"0,5\" regex=\"([a-z]+[0-9])\"/>>"));
  ASSERT_EQ(explained.Tokens().size(), 1U);
  std::string steps;
  for (const TNameExplanation::TStep& step : explained.Tokens()[0].steps)
    steps += std::string(step.name) + " " + Text(step.text) + "; ";
  EXPECT_EQ(steps, "value a_<<B/>>_c; nested a_job17x_c; format _a_job17x_c; elem a; extract a; regex ; ");
  EXPECT_EQ(explained.Tokens()[0].nested.at(0).result, S("job17x"));
}

TEST(Reports, PreviewsLoseNothing) {
  Names names("auto K = 5; define Q = 0 1");
  NQ_TString result;
  TNameReport report;
  EXPECT_FALSE(names.Preview("<<K/>> <<Q/>>", result, report));
  EXPECT_EQ(result, "6 <<Q/>>");
  EXPECT_EQ(report.Failures().at(0).KindName(), "service");
  EXPECT_EQ(Do(names, "get value K"), "5");
}

TEST(Reports, PlacesCountAsPeopleDo) {
  const NQ_TString text = S("a\r\n\xC3\xA9\xF0\x9F\x96\xA8x\ry");
  TNamePlaces places(text);
  std::string seen;
  for (std::size_t unit : {0U, 3U, 4U, 6U, 8U, 3U}) {
    const TNamePlace place = places.At(unit);
    seen += std::to_string(place.line) + ":" + std::to_string(place.column) + "@" + std::to_string(place.byte) + " ";
  }
  EXPECT_EQ(seen, "1:1@0 2:1@3 2:2@5 2:3@9 3:1@11 2:1@3 ");
}

TEST(Log, GoesToTheSink) {
  std::vector<std::string> lines;
  TName::SetLogSink([&](int level, const std::string& line) { lines.push_back(std::to_string(level) + line); });
  Names names("text A = abc");
  names.SetDebugLevel(1);
  Output output;
  Resolved(names, "<A regex=\"(x)\"/>");
  TName::SetLogSink(nullptr);
  EXPECT_EQ(output.Take(), "");
  const std::vector<std::string> expected = {
      "1TName::Resolve: \"<A regex=\"(x)\"/>\"", "1TName::Resolve: \"abc\"", "1TName::Resolve: \"abc\" = \"abc\"",
      "0TName:'abc' does not match regex '(x)'", "1TName::Resolve: \"<A regex=\"(x)\"/>\" = \"\""};
  EXPECT_EQ(lines, expected);
}

}  // namespace
}  // namespace names_test
