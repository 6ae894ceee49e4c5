// The registry lends its texts.
#include "Support.h"

namespace names_test {
namespace {

TEST(Registry, TakesItsOwnTextsAsArguments) {
  Names names("text A = x; category A = A; text B = 1");
  names.SetDescription(names.GetCategory("A"), names.GetCategory("A"));
  EXPECT_TRUE(names.Define(names.GetDescription("A"), TName::TName_TypeNumber, TName::TName_LookupValue));
  EXPECT_EQ(EntryText(names, "A"), "Category=misc Format=%d LookupHandler Type=2 TypeHandler Value=0");
  names.SetCategory("A", "A");
  names.UnDefine(names.GetCategory("A"));
  names.UnDefine(*names.GetTNames().At(0)->As<NQ_TString>());
  EXPECT_EQ(KeysText(names), "");
}

TEST(Registry, TextsStayWhileOtherNamesChange) {
  Names names("text A = x; description A = stays");
  const NQ_TString& description = names.GetDescription("A");
  for (int i = 0; i < 2000; ++i) Do(names, "number n" + std::to_string(i) + " = 1");
  for (int i = 0; i < 2000; i += 2) Do(names, "undefine n" + std::to_string(i));
  EXPECT_TRUE(description == S("stays") && &description == &names.GetDescription("A"));
}

}  // namespace
}  // namespace names_test
