// Names, their values and their attributes.
#include "NQ_TBoxed.h"
#include "Support.h"

namespace names_test {
namespace {

TEST(Registry, StartsEmpty) {
  TName names;
  EXPECT_EQ(KeysText(names), "");
  EXPECT_EQ(names.GetDefaultLocalizationFile(), S("templates"));
  EXPECT_EQ(names.GetError() + names.SetDebugLevel(3), 0);
  EXPECT_EQ(names.SetDebugLevel(0), 3);
  names.SetError(TName::TName_ErrorServerQueryException);
  EXPECT_EQ(names.GetError(), 11);
}

bool PutFive(const NQ_TString&, NQ_TDict* entry, TName*, NQ_TAny&) {
  (*entry)["Value"] = 5;
  return false;
}

TEST(Registry, ValuesAreCopies) {
  Names names("text A = x; number N = 5; define Q = 2 1; define C = 1 2");
  EXPECT_EQ(names.Increment("N") * 10 + names.Decrement("N"), 65);
  *names.GetValue("A").As<NQ_TString>() = S("changed outside");
  EXPECT_EQ(names.GetValue("A"), NQ_TAny("x"));
  EXPECT_TRUE(names.GetRawData("A").IsIllegal() && !names.IsUserDefined("A"));
  names.SetRawData("A", NQ_TAny());
  Do(names, "userdefined A = 1");
  EXPECT_TRUE(names.GetRawData("A").IsNull() && names.IsUserDefined("A"));

  names.SetLookupHandler("A", PutFive, false);  // a number where a text should be
  EXPECT_EQ(Resolved(names, "<A/>"), "! <A/>");
  EXPECT_EQ(Thrown([&] { names.Increment("A"); }), "NQ_EIncompatibleType: A");

  // Queries have defaults too; a lookup of the test's, so that the entries can be seen whatever a query does.
  for (const char* key : {"Q", "C"}) names.SetLookupHandler(key, PutFive, false);
  const std::string query = " Host= LookupHandler Method=GetBuildNumber Params={} Server=#8088";
  EXPECT_EQ(EntryText(names, "Q"), "Category=misc Format=%d" + query + " Type=2 TypeHandler");
  EXPECT_EQ(EntryText(names, "C"), "Category=misc Format=%s" + query + " Type=1 TypeHandler");
}

TEST(Registry, NamesComeAndGo) {
  Names names("text \xFF = 7");
  EXPECT_EQ(KeysText(names), "\xEF\xBF\xBD");  // bytes that are no UTF-8 become one character
  Do(names, "undefine");
  // Arguments may be the registry's own texts.
  Do(names, "text A = x; category A = A; text B = 1");
  names.SetDescription(names.GetCategory("A"), names.GetCategory("A"));
  EXPECT_TRUE(names.Define(names.GetDescription("A"), TName::TName_TypeNumber, TName::TName_LookupValue));
  EXPECT_EQ(EntryText(names, "A"), "Category=misc Format=%d LookupHandler Type=2 TypeHandler Value=0");
  names.SetCategory("A", "A");
  names.UnDefine(names.GetCategory("A"));
  names.UnDefine(*names.GetTNames().At(0)->As<NQ_TString>());
  EXPECT_EQ(KeysText(names), "");

  // References stay while other names change.
  Do(names, "text A = x; description A = stays");
  const NQ_TString& description = names.GetDescription("A");
  for (int i = 0; i < 2000; ++i) Do(names, "number n" + std::to_string(i) + " = 1");
  for (int i = 0; i < 2000; i += 2) Do(names, "undefine n" + std::to_string(i));
  EXPECT_TRUE(description == S("stays") && &description == &names.GetDescription("A"));
}

}  // namespace
}  // namespace names_test
