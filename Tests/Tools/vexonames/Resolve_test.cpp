// vexonames resolve: results, reasons, forms of input and output.
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "vexonames/RunTool.h"

namespace {

using nlohmann::json;
using namespace std::string_literals;

TEST(ToolResolve, PrintsResults) {
  struct {
    const char* what;
    std::vector<std::string> arguments;
    std::string in;
    std::string out;
    std::string err = {};
  } const cases[] = {
      {"arguments", {"<<customer/>>", "<jobnr format=\"%06d\"/>"}, "not read", "Lefèvre & Fils\n004711\n"},
      {"lines", {}, "<<part/>>\n\n<<sheet/>>", "cover\n\n001\n"},
      {"no lines", {}, "", ""},
      {"a file from elsewhere", {}, "\xEF\xBB\xBF<<sheet/>>\r\n<<sheet/>>\r\n", "001\n002\n"},
      {"NUL",
       {},
       "a\0<<jobnr/>>\n"s,
       "a\0"
       "4711\n"s},
      {"invalid UTF-8",
       {},
       "\xFF<<jobnr/>>\xC3\n",
       "\uFFFD4711\uFFFD\n",
       "template 1: note: invalid UTF-8 was replaced"},
      {"brackets are no list", {"[<<jobnr/>>,x]", "[]", "{}", ""}, "", "[4711,x]\n[]\n{}\n\n"},
      {"after --", {"--", "-x", "--json", "--", "[<<jobnr/>>]"}, "", "-x\n--json\n--\n[4711]\n"},
      {"names of commands", {"names", "resolve"}, "", "names\nresolve\n"},
      {"time and place",
       {"--now", "2026-05-17T23:30:00.250-02:00", "--zone", "Asia/Tokyo", "<now/> <folder/>"},
       "",
       "2026-05-18 10:30:00 file://srv/a b/c%20d\n"},
      {"time in milliseconds", {"--now", "-1", "--zone", "UTC", "<now/>"}, "", "1969-12-31 23:59:59\n"},
      {"literal", {"<<CDATA/>><<nope/>> />"}, "", "<<nope/>> />\n"},
      {"empty token", {"a</>b"}, "", "ab\n"},
      {"no match",
       {"x<file regex=\"(zz)\"/>"},
       "",
       "x\n",
       "template 1: note: '4711_cover_v3.pdf' does not match regex '(zz)'; the token became empty\n"},
      {"stray end",
       {"<jobnr/> b/> <jobnr/>"},
       "",
       "4711 b/> <jobnr/>\n",
       "template 1: note: '/>' at character 11 ends no token"},
      {"no slash",
       {"<<customer>>/<<jobnr/>>", "<jobnr>"},
       "",
       "<<customer>>/4711\n<jobnr>\n",
       "template 1: note: 'customer' is no token here: it would end with '/>>'\n"
       "template 2: note: 'jobnr' is no token here: it would end with '/>'\n"},
      {"markers mixed",
       {"<<jobnr/>><jobnr/>"},
       "",
       "4711<jobnr/>\n",
       "template 1: note: 'jobnr' stands between '<' and '/>', which is plain text here"},
      {"attribute misspelt",
       {"<file regexp=\"(v[0-9])\" elem =\"_,1\"/>"},
       "",
       "4711_cover_v3.pdf\n",
       "template 1: note: 'regexp' is no attribute; did you mean 'regex'?\n"
       "template 1: note: an attribute's name stands directly before its '='"},
      {"debug", {"--debug", "1", "<jobnr/>"}, "", "4711\n", "TName::Resolve: \"<jobnr/>\" = \"4711\"\n"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    std::vector<std::string> arguments = {"resolve", "--context", ShopFile()};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const TRunResult run = RunTool(arguments, row.in);
    EXPECT_EQ(run.out, row.out);
    EXPECT_EQ(run.code, 0);
    if (row.err.empty()) {
      EXPECT_EQ(run.err, "");
    } else {
      EXPECT_NE(run.err.find(row.err), std::string::npos) << run.err;
    }
  }
}

// One template each, as one string: "kind [within] token: reason" per failure.
TEST(ToolResolve, SaysWhyTokensFail) {
  struct {
    const char* text;
    std::vector<const char*> failures;
    const char* result = nullptr;  // null: the template
  } const cases[] = {
      {"<<custmer/>>", {"undefined [] <<custmer/>>: there is no name 'custmer'; did you mean 'customer'?"}},
      {"<JobNr/>", {"undefined [] <JobNr/>: there is no name 'JobNr'; did you mean 'jobnr'?"}},
      {"<xyz/>", {"undefined [] <xyz/>: there is no name 'xyz'"}},
      {"< />", {"undefined [] < />: there is no name ''"}},
      {"<unknown/>", {"no-value [] <unknown/>: there is no value for 'unknown'"}},
      {"<jobnr format=\"%s\"/>",
       {"format [] <jobnr format=\"%s\"/>: format \"%s\": the format has a conversion that does not fit the value"}},
      {"<file format=\"%s%n\"/>",
       {"format [] <file format=\"%s%n\"/>: format \"%s%n\": the format has more than one conversion"}},
      {"<file elem=\"2\"/>", {"elem [] <file elem=\"2\"/>: elem \"2\" is not \"separator,index\", such as \"_,1\""}},
      {"<file elem=\"_,-1\"/>",
       {"elem [] <file elem=\"_,-1\"/>: elem \"_,-1\" has a negative index; the first element is 0"}},
      {"<file extract=\"2\"/>",
       {"extract [] <file extract=\"2\"/>: extract \"2\" is not \"start,length\", such as \"0,3\""}},
      {"<file extract=\"-2,1\"/>",
       {"extract [] <file extract=\"-2,1\"/>: extract \"-2,1\" has a negative start; the first character is 0"}},
      {"<file regex=\"(\"/>", {"regex [] <file regex=\"(\"/>: Compilation of regex '(' failed at offset 1: missing )"}},
      {"<file regex=\"v\"/>",
       {"regex [] <file regex=\"v\"/>: '4711_cover_v3.pdf' matches regex 'v', but the number of capturing groups is "
        "0"}},
      {"<slow/>",
       {"regex [] <slow/>: 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa!' does not match regex '(a+)+$':match error -8, "
        "too many steps"}},
      {"<last/>", {"counter [] <last/>: 2147483647 is the last number; it was reached by 'last'"}},
      {"<broken/>", {"undefined [broken] <<nope/>>: there is no name 'nope'"}, "1<<nope/>>2"},
      {"<outer/>", {"undefined [outer broken] <<nope/>>: there is no name 'nope'"}, "[1<<nope/>>2]"},
      {"<<nope/>><<jobnr/>><<broken/>><<broken/>>",
       {"undefined [] <<nope/>>: there is no name 'nope'", "undefined [broken] <<nope/>>: there is no name 'nope'"},
       "<<nope/>>47111<<nope/>>21<<nope/>>2"},
      {"<self/>", {"cycle [self] <<self/>>: the value of 'self' leads back to itself"}, "<<self/>>"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.text);
    const TRunResult run = RunTool({"resolve", "--context", ShopFile(), "--json", row.text});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "");
    const json line = json::parse(run.out);
    EXPECT_EQ(line["template"], row.text);
    EXPECT_EQ(line["result"], row.result == nullptr ? row.text : row.result);
    EXPECT_EQ(line["ok"], false);
    std::vector<std::string> failures;
    for (const json& failure : line["failures"]) {
      std::string within;
      for (const std::string key : failure["within"]) within += (within.empty() ? "" : " ") + key;
      failures.push_back(failure["kind"].get<std::string>() + " [" + within + "] " +
                         failure["token"].get<std::string>() + ": " + failure["reason"].get<std::string>());
    }
    EXPECT_EQ(failures, std::vector<std::string>(row.failures.begin(), row.failures.end()));
  }
}

// Finding out why a token failed must not count anything up.
TEST(ToolResolve, CountsOnlyWhatIsPrinted) {
  const TRunResult run = RunTool({"resolve", "--context", ShopFile()},
                                 "<sheet/> <nope/> <sheet/>\n<counting/>\n<sheet elem=\"x\"/>\n<sheet/>\n");
  EXPECT_EQ(run.out, "001 <nope/> 002\n003 <<nope/>>\n<sheet elem=\"x\"/>\n005\n");
  EXPECT_EQ(run.err,
            "template 1: <nope/>: there is no name 'nope'\n"
            "template 2: in the value of 'counting': <<nope/>>: there is no name 'nope'\n"
            "template 3: <sheet elem=\"x\"/>: elem \"x\" is not \"separator,index\", such as \"_,1\"\n");
  EXPECT_EQ(run.code, 1);
}

// Names that double each other, that lead to each other, that nest deeply; very many failures.
TEST(ToolResolve, HostileContextsFailTheirTokens) {
  std::ostringstream context;
  context << R"({"names": {"n0": {"Type": "Name", "Value": "0123456789"})";
  for (int i = 0; i < 40; ++i)
    context << ", \"n" << i + 1 << R"(": {"Type": "Name", "Value": "<<n)" << i << "/>><<n" << i << R"(/>>"})";
  for (int i = 0; i < 200; ++i)
    context << ", \"d" << i << R"(": {"Type": "Name", "Value": "<<d)" << i + 1 << R"(/>>"})";
  context << "}}";
  const std::string file = FileWith("hostile.json", context.str());
  std::string many;
  for (int i = 0; i < 1000; ++i) many += "<nope/>";
  struct {
    std::string text;
    const char* kind;
    std::size_t failures;
    const char* reason;
    bool more = false;
  } const cases[] = {
      {"<n40/>", "limit", 1, "the template needs more than 10000000 tokens, 16777216 characters, or values nested 64"},
      {"<d0/>", "limit", 1, "values are nested more than 64 deep"},
      {many, "undefined", 100, "there is no name 'nope'", true},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.text.substr(0, 10));
    const TRunResult run = RunTool({"resolve", "--context", file, "--json", row.text});
    ASSERT_EQ(run.code, 1);
    const json line = json::parse(run.out);
    ASSERT_EQ(line["failures"].size(), row.failures);
    EXPECT_EQ(line["failures"][0]["kind"], row.kind);
    EXPECT_EQ(line["failures"][0]["reason"].get<std::string>().rfind(row.reason, 0), 0U) << line["failures"][0];
    EXPECT_EQ(line.contains("moreFailures"), row.more);
  }
}

TEST(ToolResolve, RefusesWhatItCannotUse) {
  struct {
    std::vector<std::string> arguments;
    const char* err;
  } const cases[] = {
      {{}, "A subcommand is required"},
      {{"resolv", "x"}, "there is no command 'resolv'; did you mean 'resolve'?"},
      {{"resolve", "--nope"}, "--nope"},
      {{"resolve", "--now", "2026-05-17", "x"}, "--now: '2026-05-17' is no time"},
      {{"resolve", "--now", "2026-02-29T00:00:00Z", "x"}, "--now: '2026-02-29T00:00:00Z' is no time"},
      {{"resolve", "--now", "2026-05-17T13:05:00", "x"}, "is no time"},
      {{"resolve", "--now", "2026-05-17T24:00:00Z", "x"}, "is no time"},
      {{"resolve", "--now", "2026-05-17T13:05:00.Z", "x"}, "is no time"},
      {{"resolve", "--now", "1e400", "x"}, "is no time"},
      {{"resolve", "--now", "nan", "x"}, "is no time"},
      {{"resolve", "--zone", "Europe/Nowhere", "x"}, "--zone: the system knows no time zone 'Europe/Nowhere'"},
      {{"resolve", "--zone", "../../etc/passwd", "x"}, "--zone: the system knows no time zone"},
      {{"resolve", "--json", "--table", "x"}, "--json excludes --table"},
      {{"resolve", "--debug", "many", "x"}, "--debug"},
      {{"translate", "--suffix", "", "x"}, "--prefix and --suffix cannot be empty"},
      {{"names", "--context", "/nonexistent/x.json"}, "/nonexistent/x.json: cannot be read: No such file"},
      {{"names", "--context", "/"}, "/: cannot be read: Is a directory"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.err);
    const TRunResult run = RunTool(row.arguments, "x\n");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(row.err), std::string::npos) << run.err;
  }
}

TEST(ToolResolve, SaysThatItsOutputCannotBeWritten) {
  const TRunResult run = RunToolInto("/dev/full", {"resolve", "x"}, "");
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.err, "vexonames: standard output cannot be written: No space left on device\n");
}

TEST(ToolResolve, SaysThatNobodyReadsItsOutput) {
  const std::string err = FileWith("pipe", "");
  const std::string pipe = "yes x | " VEXONAMES_TOOL " resolve 2>" + err + " | head -n 1 >" + FileWith("head", "");
  EXPECT_EQ(std::system(pipe.c_str()), 0);
  EXPECT_EQ(ReadAll(err), "vexonames: standard output cannot be written: Broken pipe\n");
}

TEST(ToolResolve, RefusesALineWithoutEnd) {
  const TRunResult run = RunTool({"resolve"}, "x\n" + std::string((std::size_t{64} << 20) + 1, 'a'));
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.out, "x\n");
  EXPECT_EQ(run.err, "vexonames: line 2 of the input is longer than 64 MiB\n");
}

TEST(ToolResolve, ShowsHelpAndVersion) {
  for (const char* option : {"--help", "--version"}) {
    const TRunResult run = RunTool({option});
    EXPECT_EQ(run.code, 0);
    EXPECT_NE(run.out.find("vexonames"), std::string::npos) << run.out;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(RunToolInto("/dev/full", {option}, "").code, 2);
  }
}

}  // namespace
