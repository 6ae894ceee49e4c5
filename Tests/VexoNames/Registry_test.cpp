// Names, their values and their attributes.
#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

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
    std::string numbers, entry;  // an empty entry: the name does not come to be
  } rows[] = {
      {"0 0", "Category=misc Format=%s LookupHandler Type=0 TypeHandler Value="},
      {"1 0", "Category=misc Format=%s LookupHandler Type=1 TypeHandler Value=file://localhost/Temp/unknown.txt"},
      {"2 0", "Category=misc Format=%d LookupHandler Type=2 TypeHandler Value=0"},
      {"4 0", "Category=misc Format=%d LookupHandler Type=4 TypeHandler Value=0"},
      {"3 0", "Category=date Format=%X LookupHandler Type=3 TypeHandler"},
      {"3 1", "Category=date Format=%X LookupHandler Type=3 TypeHandler"},
      {"3 99", "Category=date Format=%X LookupHandler Type=3 TypeHandler"},
      {"0 3", "Category=misc Format=%s LookupHandler Type=0 TypeHandler"},
      {"2 1", "Category=misc Format=%d" + query + " Type=2 TypeHandler"},
      {"1 2", "Category=misc Format=%s" + query + " Type=1 TypeHandler"},
      {"5 0", ""},
      {"-1 0", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.numbers);
    Names names("text A = old; description A = old");
    EXPECT_TRUE(names.Define("A", TName::TName_Type(std::stoi(row.numbers)),
                             TName::TName_Lookup(std::stoi(row.numbers.substr(row.numbers.find(' '))))));
    ASSERT_EQ(names.IsDefined("A"), !row.entry.empty());
    if (row.entry.empty()) continue;
    // A lookup of the test's, so that the entry can be seen whatever a query does.
    if (row.entry.find("Host") != std::string::npos) names.SetLookupHandler("A", NoLookup, false);
    EXPECT_EQ(EntryText(names, "A"), row.entry);
  }
}

TEST(Registry, NamesWithoutAKnownLookupFail) {
  // Among them 4, the time lookup: a definition gives it to the time type only.
  for (const char* script : {"define A = 0 4", "define A = 0 5", "define A = 2 99", "define A = 4 -1"}) {
    Names names(script);
    names.SetDebugLevel(2);
    Output output;
    EXPECT_EQ(ResolvedToken(names, "A"), "!") << script;
    EXPECT_NE(output.Take().find("\tKey: \"A\" No lookup handler defined\n"), std::string::npos) << script;
  }
}

TEST(Registry, ValuesFitTheirType) {
  const struct {
    const char *script, *types, *shown;  // the types that take it
  } rows[] = {{"string A = s", "0", "s"},
              {"int A = -5", "24", "-5"},
              {"link A = file://h/p", "1", "file://h/p"},
              {"moment A = 5", "3", nullptr}};
  for (const auto& row : rows) {
    for (int type = 0; type <= 4; ++type) {
      SCOPED_TRACE(row.script + (" for type " + std::to_string(type)));
      Names names("define A = " + std::to_string(type) + " 0");
      const NQ_TAny before = names.GetValue("A");
      const bool takes = std::string_view(row.types).find(char('0' + type)) != std::string_view::npos;
      EXPECT_EQ(Thrown([&] { Do(names, row.script); }), takes ? "" : "NQ_EIncompatibleType: A");
      const std::string value = Text(names.GetValue("A"));
      EXPECT_EQ(value, !takes ? Text(before) : row.shown != nullptr ? row.shown : value);
      EXPECT_EQ(names.GetValue("A") == before, !takes);
      EXPECT_TRUE(OtherThreadGetsLock(names));
    }
  }
}

TEST(Registry, ValuesComeAndGo) {
  Names names("text A = x; sql Q");
  NQ_TAny copy = names.GetValue("A");
  *copy.As<NQ_TString>() = S("changed outside");
  EXPECT_EQ(names.GetValue("A"), NQ_TAny("x"));
  Do(names, "remove A; remove A");
  EXPECT_FALSE(names.HasValue("A") || names.HasValue("Q"));
  EXPECT_TRUE(names.GetValue("A").IsIllegal());
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  Do(names, "string A = y");
  EXPECT_TRUE(names.HasValue("A"));
  EXPECT_EQ(Resolved(names, "<A/>"), "y");

  EXPECT_TRUE(names.GetRawData("A").IsIllegal());
  NQ_TDict data;
  data["k"] = 1;
  names.SetRawData("A", data);
  data["k"] = 2;
  EXPECT_EQ(Text(names.GetRawData("A")), "{k = 1}");
  names.SetRawData("A", NQ_TAny());
  EXPECT_TRUE(names.GetRawData("A").IsNull());

  EXPECT_FALSE(names.IsUserDefined("A"));
  Do(names, "userdefined A = 1");
  EXPECT_TRUE(names.IsUserDefined("A"));
  Do(names, "userdefined A = 0");
  EXPECT_FALSE(names.IsUserDefined("A"));
}

TEST(Registry, CountsUpAndDown) {
  const struct {
    const char *names, *count, *outcome;  // the value then, or what is thrown
  } rows[] = {
      {"number A = 41", "increment A", "42"},
      {"number A = 0", "decrement A", "-1"},
      {"auto A = 7", "increment A", "8"},
      {"number A = 2147483646", "increment A", "2147483647"},
      {"number A = -2147483647", "decrement A", "-2147483648"},
      {"number A = 2147483647", "increment A", "NQ_ENotAnInt32: A"},
      {"number A = -2147483648", "decrement A", "NQ_ENotAnInt32: A"},
      {"text A = 5", "increment A", "NQ_ENotAnInt32: A"},
      {"text A = 5", "decrement A", "NQ_ENotAnInt32: A"},
      {"url A = file://h/p", "increment A", "NQ_ENotAnInt32: A"},
      {"time A", "increment A", "NQ_ENotAnInt32: A"},
      {"number A = 5; remove A", "increment A", "NQ_ENotAnInt32: A"},
      {"number B = 1", "increment A", "NQ_ENoSuchKey: A"},
      {"number B = 1", "decrement A", "NQ_ENoSuchKey: A"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.names) + ", " + row.count);
    Names names(row.names);
    const NQ_TAny before = names.IsDefined("A") ? names.GetValue("A") : NQ_TAny();
    const std::string thrown = Thrown([&] { Do(names, row.count); });
    EXPECT_EQ(thrown.empty() ? Text(names.GetValue("A")) : thrown, row.outcome);
    EXPECT_TRUE(thrown.empty() || !names.IsDefined("A") || names.GetValue("A") == before);
    EXPECT_TRUE(OtherThreadGetsLock(names));
  }
  Names names("number A = 5");
  EXPECT_EQ(names.Increment("A"), 6);
  EXPECT_EQ(names.Decrement("A"), 5);
}

bool PutFive(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
  (*entry)["Value"] = 5;
  return false;
}

TEST(Registry, CountingANumberOfATextNameIsIncompatible) {
  Names names("text A = x");
  names.SetLookupHandler("A", PutFive, false);
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  EXPECT_EQ(Thrown([&] { names.Increment("A"); }), "NQ_EIncompatibleType: A");
  EXPECT_EQ(names.GetValue("A"), NQ_TAny(5));
}

constexpr struct {
  const char *word, *attribute;  // the word of Do for the setter, none for an attribute that only definitions set
  const NQ_TString& (TName::*get)(const NQ_TString&) const;  // null for those that only an entry shows
} kStrings[] = {
    {"category", "Category", &TName::GetCategory},
    {"description", "Description", &TName::GetDescription},
    {"userdescription", "UserDescription", &TName::GetUserDescription},
    {"userinfo", "UserInfo", &TName::GetUserInfo},
    {"visibility", "Visibility", &TName::GetVisibility},
    {"localization", "Info", &TName::GetLocalization},
    {"", "LocalizationFile", &TName::GetLocalizationFile},
    {"format", "Format", nullptr},
    {"elem", "Elem", nullptr},
    {"extract", "Extract", nullptr},
    {"regex", "RegEx", nullptr},
};

TEST(Registry, StringAttributesGoToTheirKeys) {
  const std::string value = "J\xC3\xB8rg";
  for (const auto& [word, attribute, get] : kStrings) {
    SCOPED_TRACE(attribute);
    Names names("text A = x; text B = x");
    const auto got = [&, getter = get] { return getter == nullptr ? "" : Text((names.*getter)("A")); };
    EXPECT_EQ(got(), std::string_view(word) == "category" ? "misc" : "");
    if (*word == 0) continue;
    Do(names, std::string(word) + " A = first; " + word + " A = " + value);
    EXPECT_EQ(got(), get == nullptr ? "" : value);
    Output messages;
    EXPECT_NE(EntryText(names, "A").find(attribute + ("=" + value)), std::string::npos);
    EXPECT_EQ(EntryText(names, "B"), "Category=misc Format=%s LookupHandler Type=0 TypeHandler Value=x");
  }
}

TEST(Registry, OperationsOnUndefinedNamesThrow) {
  Names names("text a = x");
  const auto check = [&](const std::string& what, auto operation) {
    SCOPED_TRACE(what);
    EXPECT_EQ(Thrown(operation), "NQ_ENoSuchKey: A");
    EXPECT_EQ(KeysText(names), "a");
    EXPECT_EQ(names.GetError(), 0);
    EXPECT_TRUE(OtherThreadGetsLock(names));
  };
  for (const char* script :
       {"get type A", "string A = v", "int A = 1", "moment A = 1", "link A = v", "get value A", "has value A",
        "remove A", "raw A = v", "get raw A", "userdefined A = 1", "is userdefined A", "query A", "no lookup A",
        "no object A", "options A", "lookup A = 0", "lookup A = 99", "no type A"})
    check(script, [&] { Do(names, script); });
  for (const auto& [word, attribute, get] : kStrings) {
    if (*word != 0) check(word, [&, script = word + std::string(" A = v")] { Do(names, script); });
    if (get != nullptr) check(attribute, [&, getter = get] { (names.*getter)("A"); });
  }
}

TEST(Registry, NamesComeAndGo) {
  Names names("text A = 1; text B = 2; text  = 3; text a = 4; text \xF0\x9F\x98\x80 = 5");
  EXPECT_EQ(KeysText(names), "A B  a \xF0\x9F\x98\x80");
  EXPECT_TRUE(names.IsDefined("\xF0\x9F\x98\x80") && names.IsDefined(""));
  Do(names, "undefine nothing; undefine A");
  EXPECT_FALSE(names.IsDefined("A"));
  Do(names, "number A = 6");  // now the youngest
  EXPECT_EQ(KeysText(names), "B  a \xF0\x9F\x98\x80 A");
  // Bytes that are no UTF-8 become one character: the key is what the text became.
  Do(names, "text \xFF = 7");
  EXPECT_TRUE(names.IsDefined("\xEF\xBF\xBD"));
  Do(names, "undefine");
  EXPECT_EQ(names.GetTNames().Count(), 0U);
}

TEST(Registry, ArgumentsMayBeItsOwnTexts) {
  Names names("text A = x; category A = A; text B = 1");
  names.SetCategory("A", names.GetCategory("A"));
  names.SetDescription(names.GetCategory("A"), names.GetCategory("A"));
  EXPECT_EQ(names.GetDescription("A"), S("A"));
  names.SetCategory(names.GetCategory("A"), "A");
  EXPECT_TRUE(names.Define(names.GetDescription("A"), TName::TName_TypeNumber, TName::TName_LookupValue));
  EXPECT_EQ(EntryText(names, "A"), "Category=misc Format=%d LookupHandler Type=2 TypeHandler Value=0");
  names.SetCategory("A", "A");
  names.UnDefine(names.GetCategory("A"));
  EXPECT_EQ(KeysText(names), "B");
  const NQ_TList keys = names.GetTNames();
  names.UnDefine(*keys.At(0)->As<NQ_TString>());
  EXPECT_EQ(KeysText(names), "");
  EXPECT_EQ(keys.Count(), 1U);
}

TEST(Registry, ReferencesStayWhileOtherNamesChange) {
  Names names("text A = x; description A = stays");
  const NQ_TString& description = names.GetDescription("A");
  for (int i = 0; i < 2000; ++i) Do(names, "number n" + std::to_string(i) + " = 1");
  for (int i = 0; i < 2000; i += 2) Do(names, "undefine n" + std::to_string(i));
  Do(names, "string A = y");
  EXPECT_EQ(description, S("stays"));
  EXPECT_EQ(&description, &names.GetDescription("A"));
}

}  // namespace
}  // namespace names_test
