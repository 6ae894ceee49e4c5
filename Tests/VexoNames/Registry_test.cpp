// Names, their values and their attributes.
#include <climits>
#include <vector>

#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

constexpr auto kValue = TName::TName_LookupValue;

TEST(Registry, StartsEmpty) {
  TName names;
  EXPECT_EQ(KeysText(names), "");
  EXPECT_EQ(names.GetError(), 0);
  EXPECT_EQ(names.GetDebugLevel(), 0);
  EXPECT_EQ(names.GetDefaultLocalizationFile(), S("templates"));
  EXPECT_EQ(names.SetDebugLevel(3), 0);
  EXPECT_EQ(names.SetDebugLevel(0), 3);
  names.SetError(TName::TName_ErrorServerQueryException);
  EXPECT_EQ(names.GetError(), 11);
}

bool NoLookup(const NQ_TString&, NQ_TDict*, TName*, NQ_TAny&) { return false; }

TEST(Registry, DefinitionsHaveTheDefaultsOfTheirType) {
  const std::string query = " Host= LookupHandler Method=GetBuildNumber Params={} Server=#8088";
  const struct {
    int type, lookup;
    std::string entry;  // "" for a name that does not come to be
  } rows[] = {
      {0, 0, "Category=misc Format=%s LookupHandler Type=0 TypeHandler Value="},
      {1, 0, "Category=misc Format=%s LookupHandler Type=1 TypeHandler Value=file://localhost/Temp/unknown.txt"},
      {2, 0, "Category=misc Format=%d LookupHandler Type=2 TypeHandler Value=0"},
      {4, 0, "Category=misc Format=%d LookupHandler Type=4 TypeHandler Value=0"},
      {3, 0, "Category=date Format=%X LookupHandler Type=3 TypeHandler"},
      {3, 1, "Category=date Format=%X LookupHandler Type=3 TypeHandler"},
      {3, 99, "Category=date Format=%X LookupHandler Type=3 TypeHandler"},
      {0, 3, "Category=misc Format=%s LookupHandler Type=0 TypeHandler"},
      {2, 1, "Category=misc Format=%d" + query + " Type=2 TypeHandler"},
      {1, 2, "Category=misc Format=%s" + query + " Type=1 TypeHandler"},
      {0, 4, "Category=misc Format=%s LookupHandler Type=0 TypeHandler"},
      {0, 99, "Category=misc Format=%s LookupHandler Type=0 TypeHandler"},
      {5, 0, ""},
      {-1, 0, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "type " << row.type << " lookup " << row.lookup);
    Names names{"text A = old"};
    names.SetDescription(S("A"), S("old"));
    EXPECT_TRUE(names.Define(S("A"), TName::TName_Type(row.type), TName::TName_Lookup(row.lookup)));
    EXPECT_EQ(names.IsDefined(S("A")), !row.entry.empty());
    if (row.entry.empty()) continue;
    EXPECT_EQ(names.GetType(S("A")), row.type);
    // A name without a lookup would not show its entry.
    const bool own = row.type != 3 && row.lookup != 0 && row.lookup != 3;
    if (own) names.SetLookupHandler(S("A"), NoLookup, false);
    EXPECT_EQ(EntryText(names, "A"), row.entry);
  }
}

TEST(Registry, NamesWithoutAKnownLookupFail) {
  // Among them 4, the time lookup: a definition gives it to the time type only.
  for (const int lookup : {4, 5, 99, -1}) {
    TName names;
    names.Define(S("A"), TName::TName_TypeString, TName::TName_Lookup(lookup));
    names.SetDebugLevel(2);
    Output output;
    EXPECT_EQ(ResolvedToken(names, "A"), "!");
    EXPECT_NE(output.Take().find("\tKey: \"A\" No lookup handler defined\n"), std::string::npos) << lookup;
  }
}

TEST(Registry, ValuesFitTheirType) {
  using Set = void (*)(TName&, const NQ_TString& key);
  const struct {
    const char* what;
    const char* types;  // those that take it
    Set set;
    const char* shown;
  } rows[] = {
      {"string", "0", [](TName& n, const NQ_TString& k) { n.SetValue(k, S("s")); }, "s"},
      {"int", "24", [](TName& n, const NQ_TString& k) { n.SetValue(k, -5); }, "-5"},
      {"time", "3", [](TName& n, const NQ_TString& k) { n.SetValue(k, NQ_TTime::FromMilliseconds(5)); }, nullptr},
      {"url", "1", [](TName& n, const NQ_TString& k) { n.SetValue(k, NQ_TURL(S("file://h/p"))); }, "file://h/p"},
  };
  for (const auto& row : rows) {
    for (int type = 0; type <= 4; ++type) {
      SCOPED_TRACE(testing::Message() << row.what << " for type " << type);
      TName names;
      names.Define(S("A"), TName::TName_Type(type), kValue);
      const NQ_TAny before = names.GetValue(S("A"));
      const bool takes = std::string(row.types).find(char('0' + type)) != std::string::npos;
      EXPECT_EQ(Thrown([&] { row.set(names, S("A")); }), takes ? "" : "NQ_EIncompatibleType: A");
      EXPECT_TRUE(takes || names.GetValue(S("A")) == before);
      if (takes && row.shown != nullptr) {
        EXPECT_EQ(Text(names.GetValue(S("A"))), row.shown);
      }
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

TEST(Registry, ValuesComeAndGo) {
  Names names{"text A = x", "sql Q"};
  EXPECT_TRUE(names.HasValue(S("A")));
  NQ_TAny copy = names.GetValue(S("A"));
  *copy.As<NQ_TString>() = S("changed outside");
  EXPECT_EQ(names.GetValue(S("A")), NQ_TAny("x"));
  for (int twice = 0; twice < 2; ++twice) {
    names.RemValue(S("A"));
    EXPECT_FALSE(names.HasValue(S("A")));
    EXPECT_TRUE(names.GetValue(S("A")).IsIllegal());
  }
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  names.SetValue(S("A"), S("y"));
  EXPECT_EQ(Resolved(names, "<A/>"), "y");
  EXPECT_FALSE(names.HasValue(S("Q")));

  EXPECT_TRUE(names.GetRawData(S("A")).IsIllegal());
  NQ_TDict data;
  data["k"] = 1;
  names.SetRawData(S("A"), data);
  data["k"] = 2;
  EXPECT_EQ(Text(names.GetRawData(S("A"))), "{k = 1}");
  names.SetRawData(S("A"), NQ_TAny());
  EXPECT_TRUE(names.GetRawData(S("A")).IsNull());

  EXPECT_FALSE(names.IsUserDefined(S("A")));
  names.SetUserDefined(S("A"), true);
  EXPECT_TRUE(names.IsUserDefined(S("A")));
  names.SetUserDefined(S("A"), false);
  EXPECT_FALSE(names.IsUserDefined(S("A")));
}

TEST(Registry, CountsUpAndDown) {
  const struct {
    const char* definition;
    bool up;
    std::string outcome;  // the count, or what is thrown
  } rows[] = {
      {"number A = 41", true, "42"},
      {"number A = 0", false, "-1"},
      {"auto A = 7", true, "8"},
      {"number A = 2147483646", true, "2147483647"},
      {"number A = -2147483647", false, "-2147483648"},
      {"number A = 2147483647", true, "NQ_ENotAnInt32: A"},
      {"number A = -2147483648", false, "NQ_ENotAnInt32: A"},
      {"text A = 5", true, "NQ_ENotAnInt32: A"},
      {"text A = 5", false, "NQ_ENotAnInt32: A"},
      {"url A = file://h/p", true, "NQ_ENotAnInt32: A"},
      {"time A", true, "NQ_ENotAnInt32: A"},
      {"bare A", true, "NQ_ENotAnInt32: A"},
      {"number B = 1", true, "NQ_ENoSuchKey: A"},
      {"number B = 1", false, "NQ_ENoSuchKey: A"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.definition) + (row.up ? " up" : " down"));
    Names names{row.definition};
    const NQ_TAny before = names.IsDefined(S("A")) ? names.GetValue(S("A")) : NQ_TAny();
    std::string outcome;
    const std::string thrown =
        Thrown([&] { outcome = std::to_string(row.up ? names.Increment(S("A")) : names.Decrement(S("A"))); });
    EXPECT_EQ(outcome + thrown, row.outcome);
    if (thrown.empty()) {
      EXPECT_EQ(Text(names.GetValue(S("A"))), row.outcome);
    }
    if (!thrown.empty() && names.IsDefined(S("A"))) {
      EXPECT_EQ(names.GetValue(S("A")), before);
    }
    EXPECT_TRUE(OtherThreadGetsLock(names));
  }
}

bool PutFive(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
  (*entry)["Value"] = 5;
  return false;
}

TEST(Registry, CountingANumberOfATextNameIsIncompatible) {
  Names names{"text A = x"};
  names.SetLookupHandler(S("A"), PutFive, false);
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  EXPECT_EQ(Thrown([&] { names.Increment(S("A")); }), "NQ_EIncompatibleType: A");
  EXPECT_EQ(names.GetValue(S("A")), NQ_TAny(5));
}

using StringSetter = void (TName::*)(const NQ_TString&, const NQ_TString&);
using StringGetter = const NQ_TString& (TName::*)(const NQ_TString&) const;
constexpr struct {
  const char* attribute;
  StringSetter set;
  StringGetter get;  // null for those that only an entry shows
} kStrings[] = {
    {"Category", &TName::SetCategory, &TName::GetCategory},
    {"Description", &TName::SetDescription, &TName::GetDescription},
    {"UserDescription", &TName::SetUserDescription, &TName::GetUserDescription},
    {"UserInfo", &TName::SetUserInfo, &TName::GetUserInfo},
    {"Visibility", &TName::SetVisibility, &TName::GetVisibility},
    {"Info", &TName::SetLocalization, &TName::GetLocalization},
    {"LocalizationFile", nullptr, &TName::GetLocalizationFile},
    {"Format", &TName::SetFormat, nullptr},
    {"Elem", &TName::SetElemValue, nullptr},
    {"Extract", &TName::SetExtractValue, nullptr},
    {"RegEx", &TName::SetRegExValue, nullptr},
};

TEST(Registry, StringAttributesGoToTheirKeys) {
  for (const auto& row : kStrings) {
    SCOPED_TRACE(row.attribute);
    Names names{"text A = x", "text B = x"};
    if (row.get != nullptr && row.set != &TName::SetCategory) {
      EXPECT_EQ((names.*row.get)(S("A")), S(""));
    }
    if (row.set == nullptr) continue;
    (names.*row.set)(S("A"), S("first"));
    (names.*row.set)(S("A"), S("J\xC3\xB8rg"));
    if (row.get != nullptr) {
      EXPECT_EQ((names.*row.get)(S("A")), S("J\xC3\xB8rg"));
    }
    EXPECT_NE(EntryText(names, "A").find(std::string(row.attribute) + "=J\xC3\xB8rg"), std::string::npos);
    EXPECT_EQ(EntryText(names, "B"), "Category=misc Format=%s LookupHandler Type=0 TypeHandler Value=x");
  }
}

TEST(Registry, OperationsOnUndefinedNamesThrow) {
  using Operation = void (*)(TName&, const NQ_TString& key);
  const struct {
    const char* what;
    Operation run;
  } rows[] = {
      {"GetType", [](TName& n, const NQ_TString& k) { n.GetType(k); }},
      {"SetValue string", [](TName& n, const NQ_TString& k) { n.SetValue(k, S("")); }},
      {"SetValue int", [](TName& n, const NQ_TString& k) { n.SetValue(k, 1); }},
      {"SetValue time", [](TName& n, const NQ_TString& k) { n.SetValue(k, NQ_TTime()); }},
      {"SetValue url", [](TName& n, const NQ_TString& k) { n.SetValue(k, NQ_TURL()); }},
      {"GetValue", [](TName& n, const NQ_TString& k) { n.GetValue(k); }},
      {"HasValue", [](TName& n, const NQ_TString& k) { n.HasValue(k); }},
      {"RemValue", [](TName& n, const NQ_TString& k) { n.RemValue(k); }},
      {"SetRawData", [](TName& n, const NQ_TString& k) { n.SetRawData(k, NQ_TAny(1)); }},
      {"GetRawData", [](TName& n, const NQ_TString& k) { n.GetRawData(k); }},
      {"SetUserDefined", [](TName& n, const NQ_TString& k) { n.SetUserDefined(k, true); }},
      {"IsUserDefined", [](TName& n, const NQ_TString& k) { n.IsUserDefined(k); }},
      {"SetServerQuery", [](TName& n, const NQ_TString& k) { n.SetServerQuery(k, "h", "s", "m", NQ_TDict()); }},
      {"SetLookupHandler function", [](TName& n, const NQ_TString& k) { n.SetLookupHandler(k, NoLookup, true); }},
      {"SetLookupHandler object",
       [](TName& n, const NQ_TString& k) {
         n.SetLookupHandler(k, static_cast<const TNameLookupHandler*>(nullptr), true);
       }},
      {"SetLookupHandler kind", [](TName& n, const NQ_TString& k) { n.SetLookupHandler(k, kValue); }},
      {"SetLookupHandler no kind",
       [](TName& n, const NQ_TString& k) { n.SetLookupHandler(k, TName::TName_Lookup(99)); }},
      {"SetTypeHandler", [](TName& n, const NQ_TString& k) { n.SetTypeHandler(k, nullptr); }},
  };
  Names names{"text a = x"};
  const auto check = [&](const char* what, auto operation) {
    SCOPED_TRACE(what);
    EXPECT_EQ(Thrown(operation), "NQ_ENoSuchKey: A");
    EXPECT_EQ(KeysText(names), "a");
    EXPECT_EQ(names.GetError(), 0);
    EXPECT_TRUE(OtherThreadGetsLock(names));
  };
  for (const auto& row : rows) check(row.what, [&] { row.run(names, S("A")); });
  for (const auto& row : kStrings) {
    if (row.set != nullptr) check(row.attribute, [&] { (names.*row.set)(S("A"), S("v")); });
    if (row.get != nullptr) check(row.attribute, [&] { (names.*row.get)(S("A")); });
  }
}

TEST(Registry, NamesComeAndGo) {
  Names names{"text A = 1", "text B = 2", "text  = 3", "text a = 4", "text \xF0\x9F\x98\x80 = 5"};
  EXPECT_EQ(KeysText(names), "A B  a \xF0\x9F\x98\x80");
  EXPECT_TRUE(names.IsDefined(S("\xF0\x9F\x98\x80")));
  names.UnDefine(S("nothing"));
  names.UnDefine(S("A"));
  EXPECT_FALSE(names.IsDefined(S("A")));
  Given(names, "number A = 6");  // now the youngest
  EXPECT_EQ(KeysText(names), "B  a \xF0\x9F\x98\x80 A");
  names.Define(S(""), TName::TName_TypeString, kValue);
  EXPECT_TRUE(names.IsDefined(S("")));
  // Bytes that are no UTF-8 become one character: the key is what the text became.
  names.Define(S("\xFF"), TName::TName_TypeString, kValue);
  EXPECT_TRUE(names.IsDefined(S("\xEF\xBF\xBD")));
  names.UnDefine();
  EXPECT_EQ(KeysText(names), "");
  EXPECT_EQ(names.GetTNames().Count(), 0U);
}

TEST(Registry, ArgumentsMayBeItsOwnTexts) {
  Names names{"text A = x"};
  names.SetCategory(S("A"), S("A"));
  names.SetCategory(S("A"), names.GetCategory(S("A")));
  EXPECT_EQ(names.GetCategory(S("A")), S("A"));
  names.SetDescription(names.GetCategory(S("A")), names.GetCategory(S("A")));
  EXPECT_EQ(names.GetDescription(S("A")), S("A"));
  names.SetCategory(names.GetCategory(S("A")), S("A"));
  EXPECT_TRUE(names.Define(names.GetDescription(S("A")), TName::TName_TypeNumber, kValue));
  EXPECT_EQ(EntryText(names, "A"), "Category=misc Format=%d LookupHandler Type=2 TypeHandler Value=0");
  names.SetCategory(S("A"), S("A"));
  names.UnDefine(names.GetCategory(S("A")));
  EXPECT_EQ(KeysText(names), "");

  Given(names, "text B = 1");
  Given(names, "text C = 2");
  const NQ_TList keys = names.GetTNames();
  names.UnDefine(*keys.At(0)->As<NQ_TString>());
  EXPECT_EQ(KeysText(names), "C");
  EXPECT_EQ(keys.Count(), 2U);
}

TEST(Registry, ReferencesStayWhileOtherNamesChange) {
  Names names{"text A = x"};
  names.SetDescription(S("A"), S("stays"));
  const NQ_TString& description = names.GetDescription(S("A"));
  for (int i = 0; i < 2000; ++i) Given(names, "number n" + std::to_string(i) + " = 1");
  for (int i = 0; i < 2000; i += 2) names.UnDefine(S("n" + std::to_string(i)));
  names.SetValue(S("A"), S("y"));
  EXPECT_EQ(description, S("stays"));
  EXPECT_EQ(&description, &names.GetDescription(S("A")));
}

}  // namespace
}  // namespace names_test
