// Context files: what is understood, and what is said about what is not.
#include <gtest/gtest.h>

#include "vexonames/RunTool.h"

namespace {

TEST(ToolContext, RefusesWithThePlace) {
  const std::string deep(100'000, '[');
  struct {
    std::string json;
    const char* err;  // after the file's name
  } const cases[] = {
      {"", ":1:1: syntax error while parsing value - unexpected end of input"},
      {"{\"names\": {}", ":1:13: syntax error while parsing object - unexpected end of input"},
      {"{\n  \"é\": x", ":2:8: syntax error while parsing value - invalid literal"},
      {"{\"names\": {\"a\": \"\xFF\"}}", ":1:18: syntax error while parsing value - invalid string: ill-formed UTF-8"},
      {"{} {}", ":1:4: syntax error while parsing value - unexpected '{'; expected end of input"},
      {"{\"names\": 1e999}", ":1:15: number overflow"},
      {"[]", ": expected an object, got an array"},
      {"{\"nmes\": {}}", ": nmes: there is no such key; did you mean 'names'?"},
      {"{\"names\": {}, \"names\": {}}", ": names: the key appears twice"},
      {"{\"names\": [{\"a\": 1}]}", ": names: expected an object, got an array"},
      {deep, ": [0][0][0][0]...: nested deeper than 64 levels"},
      {"{\"names\": {\"a\": {}}}", ": names.a: \"Type\" is missing"},
      {"{\"names\": {\"a\": null}}", ": names.a: expected an object, got null"},
      {"{\"names\": {\"\": {\"Type\": \"Name\"}}}", ": names.\"\": a name cannot be empty"},
      {"{\"names\": {\"a b\\n\": {\"Type\": 1}}}", ": names.\"a b\\n\".Type: expected a string, got 1"},
      {"{\"names\": {\"a\": {\"Type\": \"Numbr\"}}}",
       ": names.a.Type: there is no type \"Numbr\"; did you mean 'Number'?"},
      {"{\"names\": {\"a\": {\"Type\": \"Name\", \"Value\": \"x\", \"Value\": \"y\"}}}",
       ": names.a.Value: the key appears twice"},
      {"{\"names\": {\"a\": {\"Type\": \"Name\", \"value\": \"x\"}}}",
       ": names.a.value: there is no such key; did you mean 'Value'?"},
      {"{\"names\": {\"a\": {\"Type\": \"Name\", \"Format\": true}}}", ": names.a.Format: expected a string, got true"},
      {"{\"names\": {\"a\": {\"Type\": \"Name\", \"Value\": 7}}}", ": names.a.Value: expected a string, got 7"},
      {"{\"names\": {\"a\": {\"Type\": \"Number\", \"Value\": \"7\"}}}",
       ": names.a.Value: expected an integer, got a string"},
      {"{\"names\": {\"a\": {\"Type\": \"Number\", \"Value\": 7.5}}}", ": names.a.Value: expected an integer, got 7.5"},
      {"{\"names\": {\"a\": {\"Type\": \"Name\", \"FormattingOptions\": {\"Decimals\": 1.5}}}}",
       ": names.a.FormattingOptions.Decimals: expected a string, a boolean, an integer or a list, got 1.5"},
      {"{\"names\": {\"a\": {\"Type\": \"Name\", \"FormattingOptions\": {\"CustomEncoding\": [1]}}}}",
       ": names.a.FormattingOptions.CustomEncoding.0: expected an object, got 1"},
      {"{\"names\": {\"a\": {\"Type\": \"AutoNumber\", \"Value\": 2147483648}}}",
       ": names.a.Value: expected an integer of 32 bits, got 2147483648"},
      {"{\"names\": {\"a\": {\"Type\": \"Number\", \"Value\": -2147483649}}}", "expected an integer of 32 bits"},
      {"{\"names\": {\"a\": {\"Type\": \"Number\", \"Value\": 18446744073709551615}}}",
       "expected an integer of 32 bits"},
      {"{\"names\": {\"a\": {\"Type\": \"Time\", \"Value\": \"2026-05-17\"}}}",
       ": names.a.Value: expected milliseconds or {\"$time\": ...}, got a string"},
      {"{\"names\": {\"a\": {\"Type\": \"Time\", \"Value\": {\"$time\": \"2026-13-01T00:00:00Z\"}}}}",
       ": names.a.Value: expected a time such as"},
      {"{\"names\": {\"a\": {\"Type\": \"Time\", \"Value\": 1e300}}}", ": names.a.Value: expected a time such as"},
      {"{\"names\": {\"a\": {\"Type\": \"URL\", \"Value\": {\"$url\": 1}}}}",
       ": names.a.Value: expected a URL as a string"},
      {"{\"names\": {\"a\": {\"Type\": \"URL\", \"Value\": \"srv/x\"}}}", ": names.a.Value: expected a URL such as"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.json.substr(0, 100));
    const std::string file = FileWith("context.json", row.json);
    const TRunResult run = RunTool({"names", "--context", file});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    const std::string begin = "vexonames: " + file;
    EXPECT_EQ(run.err.rfind(begin, 0), 0U) << run.err;
    EXPECT_NE(run.err.find(row.err), std::string::npos) << run.err;
  }
}

TEST(ToolContext, RefusesLargeFiles) {
  const std::string file = FileWith("context.json", "{" + std::string(std::size_t{64} << 20, ' ') + "}");
  EXPECT_EQ(RunTool({"names", "--context", file}).err, "vexonames: " + file + ": larger than 64 MiB\n");
}

TEST(ToolContext, UnderstandsAllKeysInAnyOrder) {
  const std::string file = FileWith("context.json", R"json({"names": {
    "n": {"Value": -2147483648, "Format": "%+d", "Category": "c", "Info": "i", "Description": "d", "Type": "Number"},
    "s": {"Type": "Name", "Value": "a_b_c", "Elem": "_,1", "UserDescription": "u", "UserInfo": "i", "Visibility": "0"},
    "e": {"Type": "Name", "Value": "abcdef", "Extract": "1,2"},
    "r": {"Type": "Name", "Value": "x\u0000y42", "RegEx": "([0-9]+)"},
    "t": {"Type": "Time", "Value": 86400000, "Format": "%d.%m.%Y"},
    "z": {"Type": "Time", "Value": {"$time": "2026-05-17 00:30+05:30"}, "Format": "%H:%M"},
    "u": {"Type": "URL", "Value": "file://srv/x"},
    "d": {"Type": "Name"}, "f": {"Type": "URL"}, "0": {"Type": "Number"}
  }})json");
  const TRunResult run =
      RunTool({"resolve", "--context", file, "--zone", "UTC", "<n/> <s/> <e/> <r/> <t/> <z/> <u/> <d/> <f/> <0/>"});
  EXPECT_EQ(run.out, "-2147483648 b bc 42 02.01.1970 19:00 file://srv/x  file://localhost/Temp/unknown.txt 0\n");
  EXPECT_EQ(run.err, "");
}

}  // namespace
