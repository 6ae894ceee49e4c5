// What is written to standard output, line by line, at each debug level.
#include "Support.h"

namespace names_test {
namespace {

using Lines = std::vector<std::string>;  // each after the lowest level that shows it

struct Row {
  const char* script;
  Lines lines;
};

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    for (int level = 0; level <= 3; ++level) {
      SCOPED_TRACE(testing::Message() << row.script << " at level " << level);
      Names names("text A = x; number N = 7; auto K = 1; url L = file://h/p; time T; sql Q; define X = 0 99");
      std::string expected;
      for (const std::string& line : row.lines)
        if (line[0] - '0' <= level) expected += line.substr(1) + "\n";
      names.SetDebugLevel(level);
      Output output;
      Thrown([&] { Do(names, row.script); });
      EXPECT_EQ(output.Take(), expected);
      EXPECT_EQ(names.GetDebugLevel(), level);
    }
  }
}

Lines Join(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST(Log, Registry) {
  const auto defined = [](const char* numbers) {
    return Lines{std::string("2TName::Define: Key = \"B\", ") + numbers, "2TName::SetTypeHandler: Key = \"B\""};
  };
  const Lines lookup{"2TName::SetLookupHandler: Key = \"B\""};
  const std::string time = Text(NQ_TAny(NQ_TTime::FromMilliseconds(0)));
  Check({
      {"define B = 0 0",
       Join({defined("type = 0, lookup = 0"), {"2TName::SetValue: (string) Key = \"B\"; Value = \"\""}, lookup})},
      {"define B = 1 0", Join({defined("type = 1, lookup = 0"),
                               {"2TName::SetValue: (url) Key = \"B\"; Value = \"file://localhost/Temp/unknown.txt\""},
                               lookup})},
      {"define B = 2 0",
       Join({defined("type = 2, lookup = 0"), {"2TName::SetValue: (int) Key = \"B\"; Value = \"0\""}, lookup})},
      {"define B = 3 1", Join({defined("type = 3, lookup = 1"), lookup})},
      {"define B = 0 3", Join({defined("type = 0, lookup = 3"), lookup})},
      {"define B = 0 -7", defined("type = 0, lookup = -7")},
      {"define B = 5 0", {"2TName::Define: Key = \"B\", type = 5, lookup = 0"}},
      {"undefine no", {"2TName::UnDefine: Key = \"no\""}},
      {"undefine", {}},
      {"is defined A\"b", {"2TName::IsDefined: Key = \"A\"b\""}},
      {"keys", {"2TName::GetTNames: method called"}},
      {"string A = J\xC3\xB8", {"2TName::SetValue: (string) Key = \"A\"; Value = \"J\xC3\xB8\""}},
      {"int N = -5", {"2TName::SetValue: (int) Key = \"N\"; Value = \"-5\""}},
      {"int U = 1", {"2TName::SetValue: (int) Key = \"U\"; Value = \"1\""}},  // and then throws
      {"moment T = 0", {"2TName::SetValue: (time) Key = \"T\"; Value = \"" + time + "\""}},
      {"link L = file://a/b", {"2TName::SetValue: (url) Key = \"L\"; Value = \"file://a/b\""}},
      {"increment N", {"2TName::SetValue: (int) Key = \"N\"; Value = \"8\""}},
      {"remove A", {"2TName::RemValue: Key = \"A\""}},
      {"raw A = v", {"2TName::SetRawData: Key = \"A\""}},
      {"userdefined A = 1", {"2TName::SetUserDefined: Key = \"A\"; UserDefined = \"1\""}},
      {"userdefined A = 0", {"2TName::SetUserDefined: Key = \"A\"; UserDefined = \"0\""}},
      {"get value A; has value A; get type A; get raw A; is userdefined A; visibility A = v", {}},
      {"category A = v", {"2TName::SetCategory: Key = \"A\"; Category = \"v\""}},
      {"description A = v", {"2TName::SetDescription: Key = \"A\"; Description = \"v\""}},
      {"userdescription A = v", {"2TName::SetUserDescription: Key = \"A\"; UserDescription = \"v\""}},
      {"userinfo A = v", {"2TName::SetUserInfo: Key = \"A\"; Name = \"v\""}},
      {"localization A = v", {"2TName::SetLocalization: Key = \"A\"; Localization = \"v\""}},
      {"format A = %s%n", {"2TName::SetFormat: Key = \"A\"; Format = \"%s%n\""}},
      {"elem A = v", {"2TName::SetElemValue: Key = \"A\"; Value = \"v\""}},
      {"extract A = v", {"2TName::SetExtractValue: Key = \"A\"; Value = \"v\""}},
      {"regex A = v", {"2TName::SetRegExValue: Key = \"A\"; Value = \"v\""}},
      {"query A", {"2TName::SetServerQuery: Key = \"A\""}},
      {"no lookup A", {"2TName::SetLookupHandler: Key = \"A\""}},
      {"no object A", {"2TName::SetLookupHandler: Key = \"A\""}},
      {"no object U", {"2TName::SetLookupHandler: Key = \"U\""}},
      // A kind's own line, and that of the function form.
      {"lookup A = 0", {"2TName::SetLookupHandler: Key = \"A\"", "2TName::SetLookupHandler: Key = \"A\""}},
      {"lookup A = 99", {"2TName::SetLookupHandler: Key = \"A\""}},
      {"no type A", {"2TName::SetTypeHandler: Key = \"A\""}},
      {"no user", {"2TName::SetUserLookupHandler: method called"}},
      {"no warn", {"2TName::SetWarnLookupHandler: method called"}},
      {"no warn object", {"2TName::SetWarnLookupHandler: method called"}},
      {"no elem", {"2TName::SetElemHandler: method called"}},
      {"no extract", {"2TName::SetExtractHandler: method called"}},
      {"no regex", {"2TName::SetRegExHandler: method called"}},
  });
}

Lines Split(const char* key, const char* format = "", const char* elem = "", const char* extract = "",
            const char* regex = "") {
  return {std::string("2TName::ResolveTokenEx: \tKey: \"") + key + "\"; Format: \"" + format + "\"; Elem: \"" + elem +
          "\"; Extract: \"" + extract + "\" RegEx: \"" + regex + "\""};
}
Lines Value(const std::string& key, const std::string& value) {
  return {"2TName::LookupHandler: Called function", "2TName::LookupHandler: Key = \"" + key + "\", Value = " + value};
}
/// What follows the type handler.
Lines Stages(const std::string& key) {
  return {"2TName::TNameElemHandler: Key = \"" + key + "\"", "2TName::TNameExtractHandler: Key = \"" + key + "\"",
          "2TName::TNameRegexHandler: Key = \"" + key + "\"", "2TName::ApplyFormattingOptions: key = \"" + key + "\""};
}
Lines Begin(const std::string& text) { return {"1TName::Resolve: \"" + text + "\""}; }
Lines End(const std::string& text, const std::string& resolved) {
  return {"1TName::Resolve: \"" + text + "\" = \"" + resolved + "\""};
}
Lines Fails(const std::string& what) { return {"2TName::ResolveTokenEx: \tKey: \"" + what}; }
Lines Stray(const std::string& text) { return {"1TE: Template name syntax error: no begin token found in " + text}; }

TEST(Log, Resolution) {
  const Lines plainX = Join({Begin("x"), End("x", "x")});
  const Lines tokenA = Join({Split("A"), Value("A", "x"), plainX, Stages("A")});
  const Lines templateA = Join({Begin("<A/>"), tokenA, End("<A/>", "x")});
  Check({
      {"resolve <A/>", templateA},
      {"resolve <A/>; resolve <A/>; resolve <A/>", Join({templateA, templateA, templateA})},
      {"resolve x", plainX},
      {"resolve", Join({Begin(""), End("", "")})},
      {"resolve <<CDATA/>><A/>", Begin("<<CDATA/>><A/>")},
      {"resolve </>", Join({Begin("</>"), {"2TName::ApplyFormattingOptions: key = \"\""}, End("</>", "")})},
      {"resolve <A/>/><A/>", Join({Begin("<A/>/><A/>"), tokenA, Stray("<A/>/><A/>"), End("<A/>/><A/>", "x/><A/>")})},
      {"markers {A}}", Join({tokenA, Stray("{A}}"), End("{A}}", "beforex}")})},
      {"resolve <U/>", Join({Begin("<U/>"), Split("U"), Fails("U\" not present"), End("<U/>", "<U/>")})},
      {"token X", Join({Split("X"), Fails("X\" No lookup handler defined")})},
      {"token Q",
       Join({Split("Q"), {"2TName::SQLQueryHandler: Called function"}, Fails("Q\" Lookup function failed")})},
      {"remove A; token A", Join({{"2TName::RemValue: Key = \"A\""},
                                  Split("A"),
                                  {"2TName::LookupHandler: Called function"},
                                  Fails("A\" Lookup function failed")})},
      {"no type N; token N", Join({{"2TName::SetTypeHandler: Key = \"N\""},
                                   Split("N"),
                                   Value("N", "7"),
                                   Fails("N\" No type handler defined")})},
      {"token N format=\"%03d\"", Join({Split("N", "%03d"), Value("N", "7"), Stages("N")})},
      {"token K", Join({Split("K"), Value("K", "1"), Stages("K")})},
      {"token L", Join({Split("L"), Value("L", "file://h/p"), Stages("L")})},
      {"token T", Join({Split("T"), {"2TName::TimeLookupHandler: Called function"}, Stages("T")})},
      {"no elem; token N", Join({{"2TName::SetElemHandler: method called"},
                                 Split("N"),
                                 Value("N", "7"),
                                 {"2TName::ApplyFormattingOptions: key = \"N\""}})},
      {"token N regex=\"(.)\" elem=\"/,0\" extract=\"0,1\"",
       Join(
           {Split("N", "", "/,0", "0,1", "(.)"),
            Value("N", "7"),
            {"2TName::TNameElemHandler: Key = \"N\"", "2TName::TNameElemHandler: elem string = \"/,0\"",
             "2TName::TNameElemHandler: Key = \"N\", value = \"7\"", "2TName::TNameExtractHandler: Key = \"N\"",
             "2TName::TNameExtractHandler: extract string = \"0,1\"",
             "2TName::TNameExtractHandler: Key = \"N\", value = \"7\"", "2TName::TNameRegexHandler: Key = \"N\"",
             "2TName::TNameRegexHandler: RegEx string = \"(.)\"",
             "2TName::TNameRegexHandler: Key = \"N\", value = \"7\"", "2TName::ApplyFormattingOptions: key = \"N\""}})},
      {"token N elem=\"bad\"",
       Join({Split("N", "", "bad"),
             Value("N", "7"),
             {"2TName::TNameElemHandler: Key = \"N\"", "2TName::TNameElemHandler: elem string = \"bad\""}})},
      {"to url //srv/<A/>",
       {"1TName::Resolve (string,url): In = \"//srv/<A/>\"", "2TName::Resolve (string,url): Host = \"srv\"",
        "2TName::Resolve (string,url): Path = \"x\"", "1TName::Resolve (string,url): return code = 1"}},
      {"to url <U/>", {"1TName::Resolve (string,url): In = \"<U/>\"", "1TName::Resolve (string,url): return code = 0"}},
      {"from url ftp://x/<A/>", Join({plainX, templateA})},
  });
}

TEST(Log, Translation) {
  const std::string text = "<A format=\"f\"/></>/>";
  Check({
      {"translate <A format=\"f\"/></>/>",
       {"1TName::Translate: \"" + text + "\"",
        "2TName::TranslateTokenEx: \tKey: \"A\"; Format: \"f\"; Elem: \"\"; Extract: \"\" RegEx: \"\"",
        "2TName::IsDefined: Key = \"A\"", Stray(text)[0], "1TName::Translate: \"" + text + "\" = \"[A!][]/>\""}},
      {"translate <<CDATA/>>x", {"1TName::Translate: \"<<CDATA/>>x\""}},
      {"back [A]]",
       {"1TName::BackTranslate: \"[A]]\"", Stray("[A]]")[0], "1TName::BackTranslate: \"[A]]\" = \"<<A!/>>]\""}},
      {"back a/>", {"1TName::BackTranslate: \"a/>\"", "1TName::BackTranslate: \"a/>\" = \"<<CDATA/>>a/>\""}},
  });
}

}  // namespace
}  // namespace names_test
