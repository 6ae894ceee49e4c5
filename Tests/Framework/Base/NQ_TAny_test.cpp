#include "NQ_TAny.h"

#include <gtest/gtest.h>

#include <string>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"
#include "Support.h"

namespace base_test {
namespace {

TEST(NQ_TAny, HoldsOneObjectOfAnyClass) {
  NQ_TDict dict;
  dict.Add("k", 1);
  NQ_TAny boolean(1), pointer;
  boolean = true;
  pointer = static_cast<void*>(&dict);
  const std::pair<NQ_TAny, std::string> cases[] = {
      {NQ_TAny(), "NQ_TAny (null)"},
      {NQ_TAny::Illegal(), "NQ_TAny (illegal)"},
      {1, "NQ_TInt32 1"},
      {boolean, "NQ_TBool 1"},
      {0.1, "NQ_TDouble 0.1"},
      {L"\u00E9", "NQ_TString \xC3\xA9"},
      {u"\u00EA", "NQ_TString \xC3\xAA"},
      {std::string("s\0", 2), std::string("NQ_TString s\0", 13)},
      {std::string_view("view", 3), "NQ_TString vie"},
      {std::u16string_view(u"\u00EB"), "NQ_TString \xC3\xAB"},
      {NQ_TURL(S("file://h/p")), "NQ_TURL file://h/p"},
      {NQ_TInterval(1'234'500), "NQ_TInterval 1234.5 s"},
      {dict, "NQ_TDict {k = 1}"},
      {NQ_TTree(NQ_TTree(), 1), "NQ_TTree {}"},
      {pointer, "NQ_TPointer " + Printed(pointer)},
      {NQ_EException(S("m"), NQ_TAny(1)), "NQ_EException NQ_EException: m [1]"},
  };
  for (const auto& row : cases) {
    const NQ_TAny& value = row.first;
    const std::string name = value.ClassName();
    EXPECT_EQ(name + " " + Printed(value), row.second);
    for (const auto& other : cases) EXPECT_EQ(value == other.first, &row == &other) << other.second;
    EXPECT_EQ(value.DynamicCast(name.c_str()) != nullptr, name != "NQ_TAny") << name;
    const std::pair<std::string, std::string> reads[] = {
        {"NQ_TInt32", Thrown([&] { static_cast<void>(value.AsInt32()); })},
        {"NQ_TString", Thrown([&] { static_cast<void>(value.AsText()); })},
        {"NQ_TBool", Thrown([&] { static_cast<void>(value.AsBool()); })},
        {"NQ_TDouble", Thrown([&] { static_cast<void>(value.AsDouble()); })},
    };
    for (const auto& [kind, thrown] : reads)
      EXPECT_EQ(thrown.substr(0, thrown.find(':')), name == kind ? "" : "NQ_EIllegalCastFromAny") << name << kind;
  }
  EXPECT_TRUE(NQ_TAny(7).AsInt32() == 7 && NQ_TAny("t").AsText() == "t" && NQ_TAny(true).AsBool() &&
              NQ_TAny(0.5).AsDouble() == 0.5);
  EXPECT_EQ(Thrown([] { static_cast<void>(NQ_TAny(1).AsBool()); }),
            "NQ_EIllegalCastFromAny: The variant holds no boolean");
  EXPECT_EQ(NQ_TAny(dict), NQ_TAny(NQ_TDict().Add("k", 1)));
  EXPECT_EQ(NQ_TAny(NQ_TTree()).As<NQ_TDict>()->Size(), 0U);  // a tree is a dictionary too
  EXPECT_EQ(NQ_TAny(7).ValueOr(NQ_TInt32(1)).Value() + NQ_TAny("x").ValueOr(NQ_TInt32(1)).Value(), 8);
}

int Answer(int question) { return question + 1; }

TEST(NQ_TAny, HoldsThePointersThatAreAssigned) {
  static const volatile int number = 7;
  NQ_TDict dict;
  const NQ_TDict& constant = dict;
  NQ_TAny any;
  const auto held = [&] { return any.As<NQ_TPointer>()->Value(); };
  any = &number;
  EXPECT_EQ(held(), const_cast<int*>(&number));
  any = &constant;
  EXPECT_EQ(held(), &dict);
  any = static_cast<const void*>(&dict);
  EXPECT_EQ(held(), &dict);
  any = Answer;
  EXPECT_EQ(reinterpret_cast<int (*)(int)>(held())(41), 42);
  char text[] = "text";  // characters are text, also those that may be written
  any = text;
  EXPECT_EQ(any, NQ_TAny("text"));
}

TEST(NQ_TAny, HoldsByReferenceWhatItIsGivenAsAPointer) {
  NQ_TString text("x");
  NQ_TAny any(static_cast<const NQ_IInterface*>(&text));
  const NQ_TAny copy = any;
  text.Append(u'y');
  EXPECT_EQ(any.DynamicCast("NQ_TString"), &text);
  EXPECT_TRUE(copy.As<NQ_TString>() == &text && any == copy && !(any == NQ_TAny(text)));
  const NQ_TAny nothing(static_cast<const NQ_IInterface*>(nullptr));
  EXPECT_TRUE(nothing.As<NQ_TString>() == nullptr && !nothing.IsNull() && !(nothing == NQ_TAny::Illegal()));
}

TEST(NQ_TAny, CopiesAreIndependent) {
  NQ_TAny any(S("a"));
  const NQ_TAny before = any;
  auto* const text = any.As<NQ_TString>();
  const NQ_TAny between = any;
  text->Append(u'b');
  EXPECT_EQ(any.DynamicCast("NQ_TString"), text);  // still the one that may be written through
  const NQ_TAny after = any;
  text->Append(u'c');
  EXPECT_EQ(Printed(before) + Printed(between) + Printed(after) + Printed(any), "aaababc");

  NQ_TAny moved = std::move(any);
  any = 1;  // what was moved out of can be used again
  moved = static_cast<const NQ_TAny&>(moved);
  moved = static_cast<NQ_TAny&&>(moved);
  EXPECT_EQ(Printed(moved) + Printed(any), "abc1");
}

// Assigning to a variant, dictionary or array what lies inside it.
TEST(NQ_TAny, TakesWhatLiesInsideIt) {
  NQ_TDict dict;
  dict.Add("inner", NQ_TDict().Add("text", "t").Add("n", 7));
  NQ_TAny any(dict);
  any = std::move(*any.As<NQ_TDict>()->ValueOfKey("inner"));
  EXPECT_EQ(Printed(any), "{text = t, n = 7}");
  any = static_cast<const NQ_TAny&>(*any.As<NQ_TDict>()->ValueOfKey("n"));
  EXPECT_EQ(any, NQ_TAny(7));

  dict = std::move(*dict["inner"].As<NQ_TDict>());
  dict["self"] = dict;
  dict = *std::as_const(dict).Get<NQ_TDict>("self");
  EXPECT_EQ(Printed(dict), "{text = t, n = 7, self = (null)}");

  NQ_TArray array;
  array.Add("text");
  array.Add(array);
  array = std::move(*array.At(1)->As<NQ_TArray>());
  array.Add(*array.At(0));
  EXPECT_EQ(Printed(array), "[text, text]");
}

}  // namespace
}  // namespace base_test
