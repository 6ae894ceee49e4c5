// Names from records: what each key does, in which order, and what happens to records that are not as they should be.
#include "Support.h"
#include "TreeText.h"

namespace names_test {
namespace {

/// Collects what is written to standard error while it lives.
class Errors {
 public:
  Errors() { testing::internal::CaptureStderr(); }
  std::string Take() { return testing::internal::GetCapturedStderr(); }
};

TEST(DefinitionRecords, GiveANameItsTypeAndAttributes) {
  const std::string text = " Format=%s LocalizationFile=templates LookupHandler Type=0 TypeHandler UserDefined=0";
  const struct {
    std::string record, entry;
  } rows[] = {
      {"{Type = Name}", "Category=misc" + text + " Value="},
      {"{Type = Name, Value = x}", "Category=misc" + text + " Value=x"},
      {"{Type = Name, Value = \"\"}", "Category=misc" + text + " Value="},
      {"{Type = Name, Category = c}", "Category=c" + text + " Value="},
      {"{Value = x, Category = c, Type = Name}", "Category=c" + text + " Value=x"},
      {"{Type = Name, Unknown = x, Visibility = 0, RawData = x}", "Category=misc" + text + " Value="},
      {"{Type = Name, Format = %5s, LocalizationFile = shop}",
       "Category=misc Format=%5s LocalizationFile=shop LookupHandler Type=0 TypeHandler UserDefined=0 Value="},
      {"{Type = Number, Value = 5, Format = %03d}",
       "Category=misc Format=%03d LocalizationFile=templates LookupHandler Type=2 TypeHandler UserDefined=0 Value=5"},
      {"{Type = Number}",
       "Category=misc Format=%d LocalizationFile=templates LookupHandler Type=2 TypeHandler UserDefined=0 Value=0"},
      {"{Type = AutoNumber, Value = 7}",
       "Category=misc Format=%d LocalizationFile=templates LookupHandler Type=4 TypeHandler UserDefined=0 Value=7"},
      // A time has no value until it gets one, and its category is the usual one too.
      {"{Type = Time, Format = %Y}",
       "Category=misc Format=%Y LocalizationFile=templates LookupHandler Type=3 TypeHandler UserDefined=0"},
      // A URL has its value under a key of its own, and no format.
      {"{Type = URL, Value: = url file://h/p, Value = other, Format = %9s}",
       "Category=misc Format=%s LocalizationFile=templates LookupHandler Type=1 TypeHandler UserDefined=0 "
       "Value=file://h/p"},
      {"{Type = URL, Value = url file://h/p}",
       "Category=misc Format=%s LocalizationFile=templates LookupHandler Type=1 TypeHandler UserDefined=0 "
       "Value=file://localhost/Temp/unknown.txt"},
      {"{Type = Name, Elem = e, Extract = x, RegEx = r, Info = i, FormattingOptions = {DataFormat = TEXT}, "
       "UserInfo = u, Description = d, UserDescription = v}",
       "Category=misc Description=d Elem=e Extract=x Format=%s FormattingOptions={DataFormat = TEXT} Info=i "
       "LocalizationFile=templates LookupHandler RegEx=r Type=0 TypeHandler UserDefined=0 UserDescription=v UserInfo=u "
       "Value="},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.record);
    TName names;
    Errors errors;
    EXPECT_TRUE(names.Define("A", Tree(row.record), false));
    EXPECT_EQ(errors.Take(), "");
    EXPECT_EQ(names.GetError(), TName::TName_ErrorNone);
    EXPECT_EQ(EntryText(names, "A"), row.entry);
  }
}

TEST(DefinitionRecords, AreAppliedInOneOrder) {
  TName names;
  names.SetDebugLevel(2);
  Output output;
  EXPECT_TRUE(names.Define("A",
                           Tree("{UserDescription = v, Description = d, UserInfo = u, FormattingOptions = {}, Info = i,"
                                "RegEx = r, Extract = x, Elem = e, LocalizationFile = f, Category = c, Format = %s,"
                                "Value = w, Type = Name}"),
                           true));
  EXPECT_EQ(output.Take(),
            "TName::IsDefined: Key = \"A\"\n"
            "TName::Define: Key = \"A\", type = 0, lookup = 0\n"
            "TName::SetTypeHandler: Key = \"A\"\n"
            "TName::SetValue: (string) Key = \"A\"; Value = \"\"\n"
            "TName::SetLookupHandler: Key = \"A\"\n"
            "TName::SetValue: (string) Key = \"A\"; Value = \"w\"\n"
            "TName::SetFormat: Key = \"A\"; Format = \"%s\"\n"
            "TName::SetCategory: Key = \"A\"; Category = \"c\"\n"
            "TName::SetElemValue: Key = \"A\"; Value = \"e\"\n"
            "TName::SetExtractValue: Key = \"A\"; Value = \"x\"\n"
            "TName::SetRegExValue: Key = \"A\"; Value = \"r\"\n"
            "TName::SetLocalization: Key = \"A\"; Localization = \"i\"\n"
            "TName::SetUserInfo: Key = \"A\"; Name = \"u\"\n"
            "TName::SetDescription: Key = \"A\"; Description = \"d\"\n"
            "TName::SetUserDescription: Key = \"A\"; UserDescription = \"v\"\n"
            "TName::SetLocalizationFile: Key = \"A\"; FileName = \"f\"\n"
            "TName::SetUserDefined: Key = \"A\"; UserDefined = \"1\"\n");
}

TEST(DefinitionRecords, CountAndShowTimes) {
  TName names;
  EXPECT_TRUE(names.Define("auto", Tree("{Type = AutoNumber, Value = 0}"), false));
  EXPECT_EQ(Resolved(names, "<auto/><auto/>"), "12");
  EXPECT_TRUE(names.Define("time", Tree("{Type = Time, Value = time 0, Format = %Y}"), false));
  EXPECT_EQ(Resolved(names, "<time/>"), Text(NQ_TTime::FromMilliseconds(0).Format("%Y")));
}

TEST(DefinitionRecords, RejectedOnesChangeNothing) {
  const struct {
    const char *name, *record;
    TName::TName_Error error;
  } rows[] = {
      {"A", "{Type = Number, Value = 5}", TName::TName_ErrorAlreadyDefined},
      {"A", "{}", TName::TName_ErrorAlreadyDefined},
      {"B", "{Value = x, Server = s, Method = m}", TName::TName_ErrorNoType},
      {"B", "{Type = name, Value = x}", TName::TName_ErrorUnknownType},
      {"B", "{Type = \"\"}", TName::TName_ErrorUnknownType},
      {"B", "{Type = NameX}", TName::TName_ErrorUnknownType},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.record);
    Names names("text A = old");
    const std::string before = EntryText(names, "A");
    Errors errors;
    EXPECT_FALSE(names.Define(row.name, Tree(row.record), true));
    EXPECT_EQ(errors.Take(), "");
    EXPECT_EQ(names.GetError(), row.error);
    EXPECT_EQ(KeysText(names), "A");
    EXPECT_EQ(EntryText(names, "A"), before);
  }
}

TEST(DefinitionRecords, ValuesOfAnotherClassAreSaidAndFailTheName) {
  const struct {
    const char *record, *key, *holds;  // the class the key should hold
    bool defined = true;               // as far as it got
  } rows[] = {
      {"{Type = 5}", "Type", "NQ_TString", false},
      {"{Type = null}", "Type", "NQ_TString", false},
      {"{Type = Name, Value = 5}", "Value", "NQ_TString"},
      {"{Type = Name, Value = null}", "Value", "NQ_TString"},
      {"{Type = Number, Value = \"5\"}", "Value", "NQ_TInt32"},
      {"{Type = Number, Value = true}", "Value", "NQ_TInt32"},
      {"{Type = AutoNumber, Value = {}}", "Value", "NQ_TInt32"},
      {"{Type = Time, Value = 5}", "Value", "NQ_TTime"},
      {"{Type = URL, Value: = file://h/p}", "Value:", "NQ_TURL"},
      {"{Type = Name, Format = 5}", "Format", "NQ_TString"},
      {"{Type = Name, Category = 5}", "Category", "NQ_TString"},
      {"{Type = Name, Elem = 5}", "Elem", "NQ_TString"},
      {"{Type = Name, Extract = []}", "Extract", "NQ_TString"},
      {"{Type = Name, RegEx = true}", "RegEx", "NQ_TString"},
      {"{Type = Name, Info = {}}", "Info", "NQ_TString"},
      {"{Type = Name, FormattingOptions = TEXT}", "FormattingOptions", "NQ_TDict"},
      {"{Type = Name, UserInfo = 5}", "UserInfo", "NQ_TString"},
      {"{Type = Name, Description = 5}", "Description", "NQ_TString"},
      {"{Type = Name, UserDescription = 5}", "UserDescription", "NQ_TString"},
      {"{Type = Name, LocalizationFile = 5}", "LocalizationFile", "NQ_TString"},
      {"{Type = Name, Server = 5}", "Server", "NQ_TString"},
      {"{Type = Name, Server = s, Method = 5}", "Method", "NQ_TString"},
      {"{Type = Name, Server = s, Method = m, Host = 5}", "Host", "NQ_TString"},
      {"{Type = Name, Server = s, Method = m, Params = []}", "Params", "NQ_TDict"},
      {"{Type = Name, Server = s, Method = m, Cached = 1}", "Cached", "NQ_TBool"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.record);
    TName names;
    Errors errors;
    EXPECT_FALSE(names.Define("A", Tree(row.record), false));
    const std::string said = errors.Take();
    EXPECT_TRUE(said.starts_with("Defining VexoName A failed\nNQ_EIllegalCastFromAny: ")) << said;
    EXPECT_NE(said.find("\"" + std::string(row.key) + "\" holds no " + row.holds), std::string::npos) << said;
    EXPECT_EQ(names.IsDefined("A"), row.defined);
    EXPECT_EQ(names.GetError(), TName::TName_ErrorNone);
    EXPECT_TRUE(OtherThreadGetsLock(names));
  }
}

}  // namespace
}  // namespace names_test
