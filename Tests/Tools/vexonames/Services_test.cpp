// Services and configuration of a context file: what names get from them, and what is said when they fail.
#include <gtest/gtest.h>

#include "vexonames/RunTool.h"

namespace {

const char* const kContext = R"json({
  "names": {
    "paper": {"Type": "Name", "Value": "A4"},
    "stock": {"Type": "Name", "Server": "warehouse", "Method": "ConditionalStock", "P1": "<<paper/>>", "Cached": true},
    "size": {"Type": "Name", "Server": "warehouse", "Method": "Size", "Dependencies": ["paper"], "Definition": [1, true]},
    "build": {"Type": "Number", "Server": "#8088", "Host": "srv1", "Method": "Build", "Params": {"a": {"b": null}}},
    "operator": {"Type": "Name", "Server": "shift", "Method": "Operator"},
    "other": {"Type": "Name", "Server": "warehouse", "Method": "Other"},
    "nowhere": {"Type": "Name", "Server": "nowhere", "Method": "Any"},
    "host": {"Type": "Name", "Server": "shift", "Host": "<<none/>>", "Method": "Operator"}
  },
  "services": {
    "warehouse": [
      {"Method": "ConditionalStock", "Params": {"P1": "A3"}, "Reply": "no sheets"},
      {"Method": "ConditionalStock", "Params": {"P1": "A4"}, "Reply": "1200 sheets of <<paper/>>"},
      {"Method": "Size", "Params": {"Dependencies": {"paper": "A4"}, "Definition": [1, true]}, "Reply": "297 mm"}
    ],
    "#8088": [{"Method": "Build", "Params": {"a": {"b": null}}, "Reply": 4711}],
    "shift": [{"Method": "Operator", "Failure": "nobody is on duty"}]
  },
  "config": {"Resources": {
    "Shop": {"TemplateNames": {"global": "shop,more", "user": "more", "own": "shop"}, "Bad": {"global": "bad"}, "Lost": {"a": "lost"}},
    "shop": {"press": {"Type": "Name", "Value": "XL 106"}, "paper": {"Type": "Name", "Value": "other"}, "odd": "text"},
    "more": {"site": {"Type": "URL", "Value:": {"$url": "file://h/p"}}, "since": {"Type": "Time", "Value": {"$time": 0}}},
    "bad": {"untyped": {"Value": "x"}}
  }}%s})json";

std::string ContextWith(const std::string& more) {
  std::string text = kContext;
  text.replace(text.find("%s"), 2, more);
  return FileWith("services.json", text);
}

TEST(ToolServices, GiveNamesTheirValues) {
  const std::string file = ContextWith("");
  const struct {
    const char *text, *out, *err;  // err: after "template 1: "
    int code;
  } rows[] = {
      {"<stock/>, <stock/>", "1200 sheets of A4, 1200 sheets of A4\n", "", 0},
      {"<size/> <build format=\"%05d\"/>", "297 mm 04711\n", "", 0},
      {"<operator/>", "<operator/>\n", "<operator/>: shift answered Operator: nobody is on duty\n", 3},
      {"<other/>", "<other/>\n", "<other/>: warehouse answered Other: the context file has no reply to this request\n",
       3},
      {"<nowhere/>", "<nowhere/>\n",
       "<nowhere/>: Calling \"Any\" at nowhere@localhost: this process offers no such service\n", 3},
      {"<host/>", "<host/>\n", "<host/>: the host of the query of 'host' fails\n", 1},
      {"<none/><stock/>", "<none/>1200 sheets of A4\n", "<none/>: there is no name 'none'\n", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const TRunResult run = RunTool({"resolve", "--context", file, row.text});
    EXPECT_EQ(run.out, row.out);
    EXPECT_EQ(run.err, *row.err == 0 ? "" : std::string("template 1: ") + row.err);
    EXPECT_EQ(run.code, row.code);
  }
}

TEST(ToolServices, ConfigurationsDefineNames) {
  const struct {
    const char *load, *keys, *err;
    int code = 0;
  } rows[] = {
      {"", "", ""},
      {R"({"serverTree": "Shop", "nameSet": "TemplateNames"})", "site since press ",
       "vexonames: Duplicate VexoName found: /Resources/shop/paper\n"
       "vexonames: {Type = Name, Value = other}\n"
       "vexonames: Invalid VexoName definition found in CFS: /Resources/shop/odd\nvexonames: \\ttext\n"},
      {R"({"serverTree": "Shop", "nameSet": "TemplateNames", "scope": "user", "name": "site"})", "site ", ""},
      {R"({"serverTree": "Shop", "nameSet": "None"})", "",
       "vexonames: loading the definitions of Shop/None/*: CFS answered []: the configuration has no such path\n", 3},
      {R"({"serverTree": "Shop", "nameSet": "Lost"})", "",
       "vexonames: loading the definitions of Shop/Lost/*: CFS answered []: the configuration has no such path\n", 3},
      {R"({"serverTree": "Shop", "nameSet": "Bad"})", "",
       "vexonames: loading the definitions of Shop/Bad/*: a record has no \"Type\"\n", 2},
      {R"({"serverTree": "Shop", "nameSet": "TemplateNames", "scope": "own", "name": "paper"})", "",
       "vexonames: loading the definitions of Shop/TemplateNames/own: the name is defined already\n", 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.load);
    const TRunResult run = RunTool({"names", "--context", ContextWith(", \"load\": [" + std::string(row.load) + "]")});
    std::string keys;
    for (std::size_t begin = run.out.find("\nhost\t") + 1; begin != 0 && begin < run.out.size();) {
      const std::size_t end = run.out.find('\n', begin);
      const std::string line = run.out.substr(begin, end - begin);
      if (!line.starts_with("host\t")) keys += line.substr(0, line.find('\t')) + ' ';
      begin = end + 1;
    }
    EXPECT_EQ(keys, row.keys);
    EXPECT_EQ(run.err, row.err);
    EXPECT_EQ(run.code, row.code);
  }
}

TEST(ToolServices, RefuseWithThePlace) {
  const struct {
    const char *json, *err;
  } rows[] = {
      {R"({"services": []})", ": services: expected an object, got an array"},
      {R"({"services": {"": []}})", ": services.\"\": a service needs a name, or # and a port"},
      {R"({"services": {"s": {}}})", ": services.s: expected an array of replies, got an object"},
      {R"({"services": {"s": [5]}})", ": services.s.0: expected an object, got 5"},
      {R"({"services": {"s": [{"Reply": 5}]}})", ": services.s.0: \"Method\" is missing"},
      {R"({"services": {"s": [{"Method": "m"}]}})", ": services.s.0: expected either \"Reply\" or \"Failure\""},
      {R"({"services": {"s": [{"Method": "m", "Reply": 1, "Failure": "f"}]}})",
       ": services.s.0: expected either \"Reply\" or \"Failure\""},
      {R"({"services": {"s": [{"Method": "m", "Params": [], "Reply": 1}]}})",
       "Params: expected an object, got an array"},
      {R"({"services": {"s": [{"Method": "m", "reply": 1}]}})", "there is no such key; did you mean 'Reply'?"},
      {R"({"services": {"CFS": []}, "config": {}})", ": config: \"services\" has a service CFS already"},
      {R"({"config": {}, "services": {"CFS": []}})", ": services.CFS: this is the service of \"config\""},
      {R"({"config": []})", ": config: expected an object, got an array"},
      {R"({"config": {"a": {"$time": "never"}}})", ": config.a: expected a time such as"},
      {R"({"config": {"$url": "file://h/p"}})", ": config: expected a tree"},
      {R"({"load": {}})", ": load: expected an array of objects, got an object"},
      {R"({"load": [{"nameSet": "n"}]})", ": load.0: \"serverTree\" is missing"},
      {R"({"load": [{"serverTree": "t"}]})", ": load.0: \"nameSet\" is missing"},
      {R"({"names": {"a": {"Type": "Name", "Cached": 1}}})", ": names.a.Cached: expected true or false, got 1"},
      {R"({"names": {"a": {"Type": "Name", "Dependencies": "b"}}})", "Dependencies: expected an array of names"},
      {R"({"names": {"a": {"Type": "Name", "Dependencies": [5]}}})", "Dependencies.0: expected a string, got 5"},
      {R"({"names": {"a": {"Type": "Name", "Params": 5}}})", ": names.a.Params: expected an object, got 5"},
      {R"({"names": {"a": {"Type": "Name", "Server": 5}}})", ": names.a.Server: expected a string, got 5"},
      {R"({"names": {"a": {"Type": "URL", "Value:": 5}}})", ": names.a.\"Value:\": expected a URL as a string"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.json);
    const std::string file = FileWith("context.json", row.json);
    const TRunResult run = RunTool({"names", "--context", file});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err.rfind("vexonames: " + file, 0), 0U) << run.err;
    EXPECT_NE(run.err.find(row.err), std::string::npos) << run.err;
  }
}

}  // namespace
