// vexonames names and vexonames translate.
#include <gtest/gtest.h>

#include "vexonames/RunTool.h"

namespace {

const char* const kContext = R"json({"names": {
  "customer": {"Type": "Name", "Value": "株式会社\t青空", "Description": "Customer", "Category": "job"},
  "é": {"Type": "Number", "Value": 7, "Description": "Number\n2"},
  "due": {"Type": "Time", "Value": 1778945100250, "Description": "Same"},
  "made": {"Type": "Time", "Description": "Same"},
  "folder": {"Type": "URL", "Value": "file://srv/a", "Description": "<Folder/>"},
  "part": {"Type": "Name", "Value": null, "Description": "customer"},
  "list": {"Type": "Name", "Description": "a]b"}
}})json";

TEST(ToolNames, Lists) {
  const std::string file = FileWith("names.json", kContext);
  struct {
    std::vector<std::string> arguments;
    const char* out;
  } const cases[] = {
      {{},
       "customer\tName\tjob\tCustomer\t株式会社\\t青空\n"
       "é\tNumber\tmisc\tNumber\\n2\t7\n"
       "due\tTime\tmisc\tSame\t2026-05-16 15:25:00\n"
       "made\tTime\tmisc\tSame\t\n"
       "folder\tURL\tmisc\t<Folder/>\tfile://srv/a\n"
       "part\tName\tmisc\tcustomer\t\n"
       "list\tName\tmisc\ta]b\t\n"},
      {{"--json"},
       "{\"key\":\"customer\",\"type\":\"Name\",\"category\":\"job\",\"description\":\"Customer\",\"value\":"
       "\"株式会社\\t青空\"}\n"
       "{\"key\":\"é\",\"type\":\"Number\",\"category\":\"misc\",\"description\":\"Number\\n2\",\"value\":7}\n"
       "{\"key\":\"due\",\"type\":\"Time\",\"category\":\"misc\",\"description\":\"Same\","
       "\"value\":{\"$time\":\"2026-05-16T15:25:00.250Z\"}}\n"
       "{\"key\":\"made\",\"type\":\"Time\",\"category\":\"misc\",\"description\":\"Same\",\"value\":null}\n"
       "{\"key\":\"folder\",\"type\":\"URL\",\"category\":\"misc\",\"description\":\"<Folder/>\","
       "\"value\":{\"$url\":\"file://srv/a\"}}\n"
       "{\"key\":\"part\",\"type\":\"Name\",\"category\":\"misc\",\"description\":\"customer\",\"value\":null}\n"
       "{\"key\":\"list\",\"type\":\"Name\",\"category\":\"misc\",\"description\":\"a]b\",\"value\":\"\"}\n"},
      {{"--table"},
       "KEY       TYPE    CATEGORY  DESCRIPTION  VALUE\n"
       "customer  Name    job       Customer     株式会社\\t青空\n"
       "é         Number  misc      Number\\n2    7\n"
       "due       Time    misc      Same         2026-05-16 15:25:00\n"
       "made      Time    misc      Same         \n"
       "folder    URL     misc      <Folder/>    file://srv/a\n"
       "part      Name    misc      customer     \n"
       "list      Name    misc      a]b          \n"},
  };
  for (const auto& row : cases) {
    std::vector<std::string> arguments = {"names", "--zone", "UTC", "--context", file};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const TRunResult run = RunTool(arguments);
    EXPECT_EQ(run.out, row.out);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.code, 0);
  }
}

TEST(ToolNames, AlignsWideAndCombiningCharacters) {
  const std::string file = FileWith("wide.json", R"json({"names": {
    "青": {"Type": "Number"}, "e\u0301": {"Type": "Number"}, "abc": {"Type": "Number"}}})json");
  EXPECT_EQ(RunTool({"names", "--table", "--context", file}).out,
            "KEY  TYPE    CATEGORY  DESCRIPTION  VALUE\n"
            "青   Number  misc                   0\n"
            "e\u0301    Number  misc                   0\n"
            "abc  Number  misc                   0\n");
}

TEST(ToolTranslate, BothWays) {
  const std::string file = FileWith("names.json", kContext);
  struct {
    const char* what;
    std::vector<std::string> arguments;
    const char* out;
    const char* err = "";
    int code = 0;
  } const cases[] = {
      {"descriptions", {"x/<<customer/>>_<<é/>>"}, "x/[Customer]_[Number\n2]\n"},
      {"unclear descriptions", {"<due/><made/><folder/><part/><list/>"}, "[due][made][folder][part][list]\n"},
      {"attributes",
       {"<due format=\"%d\"/>"},
       "[due]\n",
       "text 1: note: '<due format=\"%d\"/>': its attributes are left out\n"},
      {"unknown name",
       {"<<customer/>><<nope/>>"},
       "[Customer]<<nope/>>\n",
       "text 1: '<<nope/>>' names nothing that is defined\n",
       1},
      {"own markers", {"--prefix", "{{", "--suffix", "}}", "<customer/>"}, "{{Customer}}\n"},
      {"back", {"--back", "x/[Customer]_[due][part]"}, "x/<<customer/>>_<<due/>><<part/>>\n"},
      {"back by name", {"--back", "[customer]"}, "<<customer/>>\n"},
      {"back from unknown",
       {"--back", "[Custmer]"},
       "<<Custmer/>>\n",
       "text 1: no name is called 'Custmer'; did you mean 'Customer'?\n",
       1},
      {"back from a literal", {"--back", "a <b/>"}, "<<CDATA/>>a <b/>\n"},
      {"json",
       {"--json", "<nope/>"},
       "{\"text\":\"<nope/>\",\"result\":\"<nope/>\",\"ok\":false,"
       "\"failures\":[\"'<nope/>' names nothing that is defined\"],\"notes\":[]}\n",
       "",
       1},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    std::vector<std::string> arguments = {"translate", "--context", file};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const TRunResult run = RunTool(arguments);
    EXPECT_EQ(run.out, row.out);
    EXPECT_EQ(run.err, row.err);
    EXPECT_EQ(run.code, row.code);
  }
}

// What is shown can be read back: every name survives the way there and back.
TEST(ToolTranslate, ThereAndBack) {
  const std::string file = FileWith("names.json", kContext);
  std::string tokens;
  for (const char* key : {"customer", "é", "due", "made", "folder", "part", "list"})
    tokens += std::string("<<") + key + "/>>, ";
  std::string shown = RunTool({"translate", "--context", file, tokens}).out;
  shown.pop_back();
  EXPECT_EQ(RunTool({"translate", "--back", "--context", file, shown}).out, tokens + "\n");
}

}  // namespace
