// What is written to standard output, line by line, at each debug level.
#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

using Lines = std::vector<std::string>;

struct Row {
  const char* what;
  void (*run)(TName&);
  /// The lines at level 2, each after the lowest level that shows it.
  Lines lines;
};

bool Seven(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny& value) {
  value = 7;
  return true;
}

void Resolve(TName& names, std::string_view text) { Resolved(names, text); }

Lines Join(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Lines Split(const std::string& key, const std::string& format = "", const std::string& elem = "",
            const std::string& extract = "", const std::string& regex = "") {
  return {"2TName::ResolveTokenEx: \tKey: \"" + key + "\"; Format: \"" + format + "\"; Elem: \"" + elem +
          "\"; Extract: \"" + extract + "\" RegEx: \"" + regex + "\""};
}
Lines Value(const std::string& key, const std::string& value) {
  return {"2TName::LookupHandler: Called function", "2TName::LookupHandler: Key = \"" + key + "\", Value = " + value};
}
/// The stages without a specification, and the formatting options.
Lines Stages(const std::string& key) {
  return {"2TName::TNameElemHandler: Key = \"" + key + "\"", "2TName::TNameExtractHandler: Key = \"" + key + "\"",
          "2TName::TNameRegexHandler: Key = \"" + key + "\"", "2TName::ApplyFormattingOptions: key = \"" + key + "\""};
}
Lines Template(const std::string& text) { return {"1TName::Resolve: \"" + text + "\""}; }
Lines Outcome(const std::string& text, const std::string& resolved) {
  return {"1TName::Resolve: \"" + text + "\" = \"" + resolved + "\""};
}
Lines Plain(const std::string& text) { return Join({Template(text), Outcome(text, text)}); }
/// Everything about the token of the name A whose value is x.
Lines TokenOfA() { return Join({Split("A"), Value("A", "x"), Plain("x"), Stages("A")}); }

void Check(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    for (int level = 0; level <= 3; ++level) {
      SCOPED_TRACE(testing::Message() << row.what << " at level " << level);
      Names names{"text A = x", "number N = 7", "auto K = 1", "url L = file://h/p", "time T", "sql Q", "bare X"};
      std::string expected;
      for (const std::string& line : row.lines)
        if (line[0] - '0' <= level) expected += line.substr(1) + "\n";
      names.SetDebugLevel(level);
      Output output;
      row.run(names);
      EXPECT_EQ(output.Take(), expected);
      EXPECT_EQ(names.GetDebugLevel(), level);
    }
  }
}

TEST(Log, Registry) {
  const std::string time = Text(NQ_TAny(NQ_TTime::FromMilliseconds(0)));
  const auto defined = [](const std::string& type, const std::string& lookup) {
    return Lines{"2TName::Define: Key = \"B\", type = " + type + ", lookup = " + lookup,
                 "2TName::SetTypeHandler: Key = \"B\""};
  };
  const Lines lookup{"2TName::SetLookupHandler: Key = \"B\""};
  const auto set = [](const std::string& kind, const std::string& value) {
    return Lines{"2TName::SetValue: (" + kind + ") Key = \"B\"; Value = \"" + value + "\""};
  };
  Check({
      {"Define text", [](TName& n) { n.Define("B", TName::TName_TypeString, TName::TName_LookupValue); },
       Join({defined("0", "0"), set("string", ""), lookup})},
      {"Define url", [](TName& n) { n.Define("B", TName::TName_TypeURL, TName::TName_LookupValue); },
       Join({defined("1", "0"), set("url", "file://localhost/Temp/unknown.txt"), lookup})},
      {"Define number", [](TName& n) { n.Define("B", TName::TName_TypeNumber, TName::TName_LookupValue); },
       Join({defined("2", "0"), set("int", "0"), lookup})},
      {"Define time", [](TName& n) { n.Define("B", TName::TName_TypeTime, TName::TName_LookupServerQuery); },
       Join({defined("3", "1"), lookup})},
      {"Define sql", [](TName& n) { n.Define("B", TName::TName_TypeString, TName::TName_LookupSQLQuery); },
       Join({defined("0", "3"), lookup})},
      {"Define without lookup", [](TName& n) { n.Define("B", TName::TName_TypeString, TName::TName_Lookup(-7)); },
       defined("0", "-7")},
      {"Define of no type",
       [](TName& n) { n.Define("B", TName::TName_Type(5), TName::TName_LookupValue); },
       {"2TName::Define: Key = \"B\", type = 5, lookup = 0"}},
      {"UnDefine", [](TName& n) { n.UnDefine("no"); }, {"2TName::UnDefine: Key = \"no\""}},
      {"UnDefine all", [](TName& n) { n.UnDefine(); }, {}},
      {"IsDefined", [](TName& n) { n.IsDefined("A\"b"); }, {"2TName::IsDefined: Key = \"A\"b\""}},
      {"GetTNames", [](TName& n) { n.GetTNames(); }, {"2TName::GetTNames: method called"}},
      {"SetValue string",
       [](TName& n) { n.SetValue("A", S("J\xC3\xB8")); },
       {"2TName::SetValue: (string) Key = \"A\"; Value = \"J\xC3\xB8\""}},
      {"SetValue int", [](TName& n) { n.SetValue("N", -5); }, {"2TName::SetValue: (int) Key = \"N\"; Value = \"-5\""}},
      {"SetValue time",
       [](TName& n) { n.SetValue("T", NQ_TTime::FromMilliseconds(0)); },
       {"2TName::SetValue: (time) Key = \"T\"; Value = \"" + time + "\""}},
      {"SetValue url",
       [](TName& n) { n.SetValue("L", NQ_TURL(S("file://a/b"))); },
       {"2TName::SetValue: (url) Key = \"L\"; Value = \"file://a/b\""}},
      {"SetValue of an undefined name",
       [](TName& n) { EXPECT_THROW(n.SetValue("U", 1), NQ_EException); },
       {"2TName::SetValue: (int) Key = \"U\"; Value = \"1\""}},
      {"RemValue", [](TName& n) { n.RemValue("A"); }, {"2TName::RemValue: Key = \"A\""}},
      {"SetRawData", [](TName& n) { n.SetRawData("A", 5); }, {"2TName::SetRawData: Key = \"A\""}},
      {"SetUserDefined",
       [](TName& n) { n.SetUserDefined("A", true), n.SetUserDefined("A", false); },
       {"2TName::SetUserDefined: Key = \"A\"; UserDefined = \"1\"",
        "2TName::SetUserDefined: Key = \"A\"; UserDefined = \"0\""}},
      {"no lines of getters",
       [](TName& n) {
         n.GetValue("A"), n.HasValue("A"), n.GetType("A"), n.GetRawData("A"), n.IsUserDefined("A"), n.GetCategory("A");
         n.SetError(TName::TName_ErrorNone), n.SetVisibility("A", "v"), n.GetVisibility("A");
       },
       {}},
      {"SetCategory",
       [](TName& n) { n.SetCategory("A", "v"); },
       {"2TName::SetCategory: Key = \"A\"; Category = \"v\""}},
      {"SetDescription",
       [](TName& n) { n.SetDescription("A", "v"); },
       {"2TName::SetDescription: Key = \"A\"; Description = \"v\""}},
      {"SetUserDescription",
       [](TName& n) { n.SetUserDescription("A", "v"); },
       {"2TName::SetUserDescription: Key = \"A\"; UserDescription = \"v\""}},
      {"SetUserInfo", [](TName& n) { n.SetUserInfo("A", "v"); }, {"2TName::SetUserInfo: Key = \"A\"; Name = \"v\""}},
      {"SetLocalization",
       [](TName& n) { n.SetLocalization("A", "v"); },
       {"2TName::SetLocalization: Key = \"A\"; Localization = \"v\""}},
      {"SetFormat", [](TName& n) { n.SetFormat("A", "%s%n"); }, {"2TName::SetFormat: Key = \"A\"; Format = \"%s%n\""}},
      {"SetElemValue",
       [](TName& n) { n.SetElemValue("A", "v"); },
       {"2TName::SetElemValue: Key = \"A\"; Value = \"v\""}},
      {"SetExtractValue",
       [](TName& n) { n.SetExtractValue("A", "v"); },
       {"2TName::SetExtractValue: Key = \"A\"; Value = \"v\""}},
      {"SetRegExValue",
       [](TName& n) { n.SetRegExValue("A", "v"); },
       {"2TName::SetRegExValue: Key = \"A\"; Value = \"v\""}},
      {"SetServerQuery",
       [](TName& n) { n.SetServerQuery("A", "h", "s", "m", NQ_TDict()); },
       {"2TName::SetServerQuery: Key = \"A\""}},
      {"Increment", [](TName& n) { n.Increment("N"); }, {"2TName::SetValue: (int) Key = \"N\"; Value = \"8\""}},
      {"lookup handlers",
       [](TName& n) {
         n.SetLookupHandler("A", Seven, true);
         n.SetLookupHandler("A", static_cast<const TNameLookupHandler*>(nullptr), true);
         EXPECT_THROW(n.SetLookupHandler("U", Seven, true), NQ_EException);
       },
       {"2TName::SetLookupHandler: Key = \"A\"", "2TName::SetLookupHandler: Key = \"A\"",
        "2TName::SetLookupHandler: Key = \"U\""}},
      {"lookup kinds",
       [](TName& n) {
         n.SetLookupHandler("A", TName::TName_LookupValue);  // and once more from the function form
         n.SetLookupHandler("N", TName::TName_Lookup(99));
       },
       {"2TName::SetLookupHandler: Key = \"A\"", "2TName::SetLookupHandler: Key = \"A\"",
        "2TName::SetLookupHandler: Key = \"N\""}},
      {"other handlers",
       [](TName& n) {
         n.SetTypeHandler("A", nullptr), n.SetUserLookupHandler(nullptr);
         n.SetWarnLookupHandler(static_cast<TName::TWarnFunction>(nullptr));
         n.SetWarnLookupHandler(static_cast<TNameWarnLookupHandler*>(nullptr));
         n.SetElemHandler(nullptr), n.SetExtractHandler(nullptr), n.SetRegExHandler(nullptr);
       },
       {"2TName::SetTypeHandler: Key = \"A\"", "2TName::SetUserLookupHandler: method called",
        "2TName::SetWarnLookupHandler: method called", "2TName::SetWarnLookupHandler: method called",
        "2TName::SetElemHandler: method called", "2TName::SetExtractHandler: method called",
        "2TName::SetRegExHandler: method called"}},
  });
}

TEST(Log, Resolution) {
  const std::string after = "TName::ResolveTokenEx: \tKey: \"";
  const std::string stray = "TE: Template name syntax error: no begin token found in ";
  Check({
      {"a token", [](TName& n) { Resolve(n, "<A/>"); }, Join({Template("<A/>"), TokenOfA(), Outcome("<A/>", "x")})},
      {"a token, again", [](TName& n) { Resolve(n, "<A/>"), Resolve(n, "<A/>"), Resolve(n, "<A/>"); },
       [] {
         const auto once = Join({Template("<A/>"), TokenOfA(), Outcome("<A/>", "x")});
         return Join({once, once, once});
       }()},
      {"no token", [](TName& n) { Resolve(n, "p"), Resolve(n, ""); }, Join({Plain("p"), Plain("")})},
      {"a literal text", [](TName& n) { Resolve(n, "<<CDATA/>><A/>"); }, Template("<<CDATA/>><A/>")},
      {"an empty token", [](TName& n) { Resolve(n, "</>"); }, Join({Template("</>"), Outcome("</>", "")})},
      {"a stray end", [](TName& n) { Resolve(n, "<A/>/><A/>"); },
       Join({Template("<A/>/><A/>"), TokenOfA(), {"1" + stray + "<A/>/><A/>"}, Outcome("<A/>/><A/>", "x/><A/>")})},
      {"markers of the caller", [](TName& n) { Resolved(n, "{A}}", "{", "}", "before"); },
       Join({TokenOfA(), {"1" + stray + "{A}}"}, Outcome("{A}}", "beforex}")})},
      {"an undefined name", [](TName& n) { Resolve(n, "<U/>"); },
       Join({Template("<U/>"), Split("U"), {"2" + after + "U\" not present"}, Outcome("<U/>", "<U/>")})},
      {"no lookup", [](TName& n) { ResolvedToken(n, "X"); },
       Join({Split("X"), {"2" + after + "X\" No lookup handler defined"}})},
      {"lookup fails", [](TName& n) { ResolvedToken(n, "Q"); },
       Join({Split("Q"), {"2TName::SQLQueryHandler: Called function", "2" + after + "Q\" Lookup function failed"}})},
      {"no value", [](TName& n) { n.SetLookupHandler("Q", TName::TName_LookupValue), ResolvedToken(n, "Q"); },
       Join({{"2TName::SetLookupHandler: Key = \"Q\"", "2TName::SetLookupHandler: Key = \"Q\""},
             Split("Q"),
             Lines{"2TName::LookupHandler: Called function", "2" + after + "Q\" Lookup function failed"}})},
      {"no type handler", [](TName& n) { n.SetTypeHandler("N", nullptr), ResolvedToken(n, "N"); },
       Join({{"2TName::SetTypeHandler: Key = \"N\""},
             Split("N"),
             Value("N", "7"),
             Lines{"2" + after + "N\" No type handler defined"}})},
      {"a number", [](TName& n) { ResolvedToken(n, "N format=\"%03d\""); },
       Join({Split("N", "%03d"), Value("N", "7"), Stages("N")})},
      {"a counter", [](TName& n) { ResolvedToken(n, "K"); }, Join({Split("K"), Value("K", "1"), Stages("K")})},
      {"a URL", [](TName& n) { ResolvedToken(n, "L"); }, Join({Split("L"), Value("L", "file://h/p"), Stages("L")})},
      {"a time", [](TName& n) { ResolvedToken(n, "T"); },
       Join({Split("T"), {"2TName::TimeLookupHandler: Called function"}, Stages("T")})},
      {"a user lookup", [](TName& n) { n.SetUserLookupHandler(Seven), ResolvedToken(n, "N"); },
       Join({{"2TName::SetUserLookupHandler: method called"}, Split("N"), Stages("N")})},
      {"stages", [](TName& n) { ResolvedToken(n, "N regex=\"(.)\" elem=\"/,0\" extract=\"0,1\""); },
       Join({Split("N", "", "/,0", "0,1", "(.)"), Value("N", "7"),
             Lines{"2TName::TNameElemHandler: Key = \"N\"", "2TName::TNameElemHandler: elem string = \"/,0\"",
                   "2TName::TNameElemHandler: Key = \"N\", value = \"7\"", "2TName::TNameExtractHandler: Key = \"N\"",
                   "2TName::TNameExtractHandler: extract string = \"0,1\"",
                   "2TName::TNameExtractHandler: Key = \"N\", value = \"7\"", "2TName::TNameRegexHandler: Key = \"N\"",
                   "2TName::TNameRegexHandler: RegEx string = \"(.)\"",
                   "2TName::TNameRegexHandler: Key = \"N\", value = \"7\"",
                   "2TName::ApplyFormattingOptions: key = \"N\""}})},
      {"a stage fails", [](TName& n) { ResolvedToken(n, "N elem=\"bad\""); },
       Join({Split("N", "", "bad"), Value("N", "7"),
             Lines{"2TName::TNameElemHandler: Key = \"N\"", "2TName::TNameElemHandler: elem string = \"bad\""}})},
      {"to a URL",
       [](TName& n) {
         NQ_TURL url;
         n.Resolve(S("//srv/<A/>"), url);
       },
       {"1TName::Resolve (string,url): In = \"//srv/<A/>\"", "2TName::Resolve (string,url): Host = \"srv\"",
        "2TName::Resolve (string,url): Path = \"x\"", "1TName::Resolve (string,url): return code = 1"}},
      {"to no URL",
       [](TName& n) {
         NQ_TURL url;
         n.Resolve(S("<U/>"), url);
       },
       {"1TName::Resolve (string,url): In = \"<U/>\"", "1TName::Resolve (string,url): return code = 0"}},
      {"from a URL",
       [](TName& n) {
         NQ_TURL url;
         n.Resolve(NQ_TURL(S("ftp://h/<A/>")), url);
       },
       Join({Plain("h"), Template("<A/>"), TokenOfA(), Outcome("<A/>", "x")})},
  });
}

class Brackets : public TNameTranslator {
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override { out = in + "!"; }
  NQ_TString GetPrefix() const override { return "["; }
  NQ_TString GetSuffix() const override { return "]"; }
};

TEST(Log, Translation) {
  const std::string stray = "1TE: Template name syntax error: no begin token found in ";
  const std::string split = "2TName::TranslateTokenEx: \tKey: \"";
  Check({
      {"translate",
       [](TName& n) {
         NQ_TString r;
         n.Translate(S("<A format=\"f\"/></>/>"), Brackets(), r);
       },
       {"1TName::Translate: \"<A format=\"f\"/></>/>\"",
        split + "A\"; Format: \"f\"; Elem: \"\"; Extract: \"\" RegEx: \"\"", "2TName::IsDefined: Key = \"A\"",
        stray + "<A format=\"f\"/></>/>", "1TName::Translate: \"<A format=\"f\"/></>/>\" = \"[A!][]/>\""}},
      {"translate a literal text",
       [](TName& n) {
         NQ_TString r;
         n.Translate(S("<<CDATA/>>x"), Brackets(), r);
       },
       {"1TName::Translate: \"<<CDATA/>>x\""}},
      {"translate back",
       [](TName& n) {
         NQ_TString r;
         n.BackTranslate(S("[A]]"), Brackets(), r);
       },
       {"1TName::BackTranslate: \"[A]]\"", stray + "[A]]", "1TName::BackTranslate: \"[A]]\" = \"<<A!/>>]\""}},
      {"translate back, marked",
       [](TName& n) {
         NQ_TString r;
         n.BackTranslate(S("a/>"), Brackets(), r);
       },
       {"1TName::BackTranslate: \"a/>\"", "1TName::BackTranslate: \"a/>\" = \"<<CDATA/>>a/>\""}},
  });
}

}  // namespace
}  // namespace names_test
