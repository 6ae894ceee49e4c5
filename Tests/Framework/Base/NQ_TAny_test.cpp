#include "NQ_TAny.h"

#include <gtest/gtest.h>

#include <string>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TList.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"
#include "Support.h"

namespace base_test {
namespace {

/// A value whose instances are counted.
class TCounted final : public NQ_TValueOf<TCounted, NQ_TValue, "TestCounted"> {
 public:
  TCounted() { ++alive; }
  TCounted(const TCounted&) : TCounted() {}
  TCounted& operator=(const TCounted&) = default;
  ~TCounted() override { --alive; }
  bool operator==(const TCounted&) const { return true; }
  void PrintOn(std::ostream& out) const override { out << "counted"; }
  void NQ_Pack(NQ_IPacking&) const override {}
  void NQ_Unpack(NQ_IUnpacking&) override {}

  static inline int alive = 0;
};

TEST(NQ_TAny, HoldsOneObjectOfAnyClass) {
  const NQ_TTime time = NQ_TTime::FromMilliseconds(1000);
  NQ_TDict dict;
  dict.Add("k", 1);
  NQ_TAny pointer;
  pointer = static_cast<void*>(&dict);
  NQ_TAny fromWide;
  wchar_t wide[] = L"\u00E9";
  fromWide = wide;
  NQ_TAny fromDouble(1);
  fromDouble = 2.5;
  NQ_TAny fromBool(1);
  fromBool = true;
  const struct {
    NQ_TAny value;
    const char* className;
    const char* printed;
  } cases[] = {
      {NQ_TAny(), "NQ_TAny", "(null)"},
      {NQ_TAny::Null(), "NQ_TAny", "(null)"},
      {NQ_TAny::Illegal(), "NQ_TAny", "(illegal)"},
      {-5, "NQ_TInt32", "-5"},
      {true, "NQ_TBool", "1"},
      {0.1, "NQ_TDouble", "0.1"},
      {"J\xC3\xB8rg", "NQ_TString", "J\xC3\xB8rg"},
      {L"\u00E9", "NQ_TString", "\xC3\xA9"},
      {fromWide, "NQ_TString", "\xC3\xA9"},
      {fromDouble, "NQ_TDouble", "2.5"},
      {fromBool, "NQ_TBool", "1"},
      {NQ_TURL(S("file://h/p")), "NQ_TURL", "file://h/p"},
      {time, "NQ_TTime", nullptr},
      {NQ_TInterval(1'234'500), "NQ_TInterval", "1234.5 s"},
      {dict, "NQ_TDict", "{k = 1}"},
      {NQ_TTree(), "NQ_TTree", "{}"},
      {pointer, "NQ_TPointer", nullptr},
      {NQ_EException(S("m"), NQ_TAny(1)), "NQ_EException", "NQ_EException: m [1]"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.className);
    EXPECT_STREQ(row.value.ClassName(), row.className);
    EXPECT_TRUE(row.printed == nullptr || Printed(row.value) == row.printed) << row.value;
    for (const auto& other : cases) {  // equal to what has the same class and text, and to nothing else
      const bool same = &row == &other || (row.printed != nullptr && other.printed != nullptr &&
                                           std::string_view(row.className) == other.className &&
                                           std::string_view(row.printed) == other.printed);
      EXPECT_EQ(row.value == other.value, same) << other.className;
    }
    const bool holds = !row.value.IsNull() && !row.value.IsIllegal();
    EXPECT_EQ(row.value.DynamicCast(row.className) != nullptr, holds);
    EXPECT_EQ(row.value.DynamicCast("NQ_IPackable") != nullptr, holds);
    EXPECT_EQ(row.value.DynamicCast("NQ_TSomethingElse"), nullptr);
    EXPECT_EQ(row.value.DynamicCast(""), nullptr);
    EXPECT_EQ(row.value.As<NQ_IPrintable>() != nullptr, holds);
  }
  EXPECT_EQ(static_cast<const NQ_TPointer*>(pointer.DynamicCast("NQ_TPointer"))->Value(), &dict);
  EXPECT_NE(NQ_TAny(dict), NQ_TAny(NQ_TTree(NQ_TTree(), 1).Add("k", 1)));
  EXPECT_EQ(NQ_TAny(NQ_TTree()).As<NQ_TDict>()->Size(), 0U);  // a tree is a dictionary too
  EXPECT_EQ(NQ_TAny(7).ValueOr(NQ_TInt32(1)).Value() + NQ_TAny("x").ValueOr(NQ_TInt32(1)).Value(), 8);
}

TEST(NQ_TAny, ConvertsIntegersOnly) {
  EXPECT_EQ(NQ_TAny(5).AsInt32(), 5);
  EXPECT_EQ(static_cast<std::int32_t>(NQ_TAny(-2147483647 - 1)), -2147483647 - 1);
  for (const NQ_TAny& other : {NQ_TAny(), NQ_TAny::Illegal(), NQ_TAny("5"), NQ_TAny(5.0), NQ_TAny(true)}) {
    try {
      other.AsInt32();
      ADD_FAILURE() << other;
    } catch (const NQ_EIllegalCastFromAny& error) {
      EXPECT_EQ(error.NQ_Data(), other);
    }
  }
}

TEST(NQ_TAny, HoldsByReferenceWhatItIsGivenAsAPointer) {
  NQ_TString text("x");
  const NQ_TAny any(static_cast<const NQ_IInterface*>(&text));
  const NQ_TAny copy = any;
  text.Append(u'y');
  EXPECT_EQ(any.DynamicCast("NQ_TString"), &text);
  EXPECT_EQ(copy.As<NQ_TString>(), &text);
  EXPECT_EQ(any, copy);
  EXPECT_NE(any, NQ_TAny(text));
  EXPECT_EQ(Printed(copy), "xy");
  const NQ_TAny nothing(static_cast<const NQ_IInterface*>(nullptr));
  EXPECT_STREQ(nothing.ClassName(), "NQ_TAny");
  EXPECT_EQ(nothing.As<NQ_TString>(), nullptr);
  EXPECT_FALSE(nothing.IsNull() || nothing.IsIllegal());
}

TEST(NQ_TAny, CopiesAreIndependent) {
  NQ_TAny any(S("a"));
  const NQ_TAny before = any;
  auto* const text = any.As<NQ_TString>();
  const NQ_TAny between = any;
  text->Append(u'b');
  auto* const again = static_cast<NQ_TString*>(any.DynamicCast("NQ_TString"));
  EXPECT_EQ(again, text);  // still the one that may be written through
  const NQ_TAny after = any;
  again->Append(u'c');
  EXPECT_EQ(Printed(before) + Printed(between) + Printed(after) + Printed(any), "aaababc");

  NQ_TAny moved = std::move(any);
  any = 1;  // what was moved out of can be used again
  moved = static_cast<const NQ_TAny&>(moved);
  moved = static_cast<NQ_TAny&&>(moved);
  EXPECT_EQ(Printed(moved) + Printed(any), "abc1");

  NQ_TString source("s");
  const NQ_TAny copied(source);
  const NQ_TAny taken(std::move(source));
  EXPECT_EQ(copied, taken);
  EXPECT_EQ(NQ_TAny::Illegal(), NQ_TAny(NQ_TAny::Illegal()));
}

// Assigning to a variant, dictionary or array what lies inside it.
TEST(NQ_TAny, TakesWhatLiesInsideIt) {
  const auto nested = [] {
    NQ_TDict inner;
    inner.Add("counted", TCounted()).Add("n", 7);
    NQ_TDict outer;
    outer.Add("inner", std::move(inner)).Add("counted", TCounted());
    return outer;
  };
  {
    NQ_TAny any(nested());
    any = std::move(*any.As<NQ_TDict>()->ValueOfKey("inner"));
    EXPECT_EQ(Printed(any), "{counted = counted, n = 7}");
    any = static_cast<const NQ_TAny&>(*any.As<NQ_TDict>()->ValueOfKey("n"));
    EXPECT_EQ(any, NQ_TAny(7));

    NQ_TDict dict = nested();
    dict = std::move(*dict["inner"].As<NQ_TDict>());
    EXPECT_EQ(dict.Size(), 2U);
    dict["self"] = dict;
    dict = *std::as_const(dict).Get<NQ_TDict>("self");
    EXPECT_EQ(Printed(dict), "{counted = counted, n = 7, self = (null)}");

    NQ_TArray array;
    array.Add(TCounted());
    array.Add(array);
    array = std::move(*array.At(1)->As<NQ_TArray>());
    EXPECT_EQ(Printed(array), "[counted]");
    array.Add(*array.At(0));
    EXPECT_EQ(array.Count(), 2U);
  }
  EXPECT_EQ(TCounted::alive, 0);
}

}  // namespace
}  // namespace base_test
