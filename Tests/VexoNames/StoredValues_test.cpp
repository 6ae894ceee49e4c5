// Values that are written from plans are never those of attributes that others have changed since, in any way.
#include <functional>

#include "Support.h"

namespace names_test {
namespace {

TEST(StoredValues, WhatOthersWriteShowsAtOnce) {
  Names names("text A = x");
  NQ_TString* lent = nullptr;  // lies in the value
  NQ_TString elsewhere;        // referred to by the value
  NQ_TAny before(S("1"));      // its text is written to after it was stored
  NQ_TString* const inside = before.As<NQ_TString>();
  const struct {
    const char* what;
    std::function<void(NQ_TDict& entry)> change;
    const char* resolved;  // of <A/><A regex="(.)$"/>
  } rows[] = {
      {"added", [](NQ_TDict& e) { e.Add("Value", S("yz")); }, "yzz"},
      // Of these the entry itself knows nothing, as long as nothing in it is lent.
      {"held by reference", [&](NQ_TDict& e) { e.Add("Value", NQ_TAny(static_cast<NQ_TObject*>(&elsewhere))); }, ""},
      {"written elsewhere", [&](NQ_TDict&) { elsewhere = "ab"; }, "abb"},
      {"lent before it was stored", [&](NQ_TDict& e) { e.Add("Value", std::move(before)); }, "11"},
      {"written to then", [&](NQ_TDict&) { *inside = "cd"; }, "cdd"},
      {"lent", [&](NQ_TDict& e) { *(lent = e["Value"].As<NQ_TString>()) = "qr"; }, "qrr"},
      {"written to later", [&](NQ_TDict&) { *lent = "st"; }, "stt"},
      {"appended to later", [&](NQ_TDict&) { lent->Append(S("!")); }, "st!!"},
      {"another one", [&](NQ_TDict&) { names.SetValue("A", "yz"); }, "yzz"},
      {"assigned as a whole",
       [](NQ_TDict& e) {
         NQ_TDict copy = e;
         copy.Add("Value", S("ef"));
         e = copy;
         copy.Add("Value", S("of the copy"));
       },
       "eff"},
      {"removed", [](NQ_TDict& e) { e.Remove("Value"); }, "! <A/><A regex=\"(.)$\"/>"},
      {"added again", [](NQ_TDict& e) { e.Add("Value", S("gh")); }, "ghh"},
      {"emptied", [](NQ_TDict& e) { e.Clear(); }, "! <A/><A regex=\"(.)$\"/>"},
  };
  for (const auto& row : rows) {
    Do(names, "seen <A/><A regex=\"(.)$\"/>");
    row.change(*EntryOf(names, "A"));
    EXPECT_EQ(Do(names, "seen <A/><A regex=\"(.)$\"/>"), row.resolved) << row.what;
  }
}

}  // namespace
}  // namespace names_test
