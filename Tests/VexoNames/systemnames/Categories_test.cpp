// Which names have a category: always what the entries say, and never by walking over all names for every token.
#include "engine/Engine.h"
#include "systemnames/EngineAccess.h"
#include "systemnames/Office.h"

using names_test::Do;
using names_test::Names;
using names_test::Resolved;
using names_test::S;
using systemnames::TEngineAccess;

namespace {

/// How many entries the index has looked at.
std::uint64_t Visits(TName& names) { return names.Engine().store.Categories().Visits(); }

bool Has(TName& names) { return TEngineAccess::HasCategory(names, "c"); }

std::string Walked(TName& names) {
  std::string keys;
  const NQ_TList all = names.GetTNames();
  for (NQ_TConstIterator i(all); !i.IsDone(); i.Next()) {
    const auto& key = *i.Value().As<NQ_TString>();
    if (names.GetCategory(key) == u"c") keys += names_test::Text(key) + ' ';
  }
  return keys;
}

std::string Known(TName& names) {
  std::string keys;
  for (const NQ_TString& key : TEngineAccess::KeysOfCategory(names, "c")) keys += names_test::Text(key) + ' ';
  EXPECT_EQ(keys.empty(), !Has(names));
  return keys;
}

// Asked after every step, so that what was kept before it must give way.
TEST(Categories, AreWhatAWalkFinds) {
  for (const char* const script : {
           "text a = x; category a = c; category a = d; category a = c; undefine a; text a = y",
           "text a = x; text b = x; category b = c; category a = c; undefine b; undefine",
           "text a = x; category a = c; text a = again; category a = c; number a = 1",
           "define t = 3 4; category t = c; text c = c; category c = t; category t = date",
       }) {
    Names names("");
    EXPECT_EQ(Known(names), "");
    for (std::string_view rest = script; !rest.empty();) {
      const std::size_t end = std::min(rest.find("; "), rest.size());
      Do(names, rest.substr(0, end));
      EXPECT_EQ(Known(names), Walked(names)) << script << " before " << rest.substr(end);
      rest.remove_prefix(std::min(end + 2, rest.size()));
    }
  }
}

bool hadBefore, hadWithin, hadAfterNested;

// Handlers write to entries as to any dictionary, and resolve others meanwhile.
TEST(Categories, OfEntriesThatHandlersChange) {
  Names names("text a = x; text b = <a/>");
  const auto change = [](const NQ_TString&, NQ_TDict* entry, TName* all, NQ_TAny& value) {
    hadBefore = Has(*all);
    entry->Add("Category", "c");
    hadWithin = Has(*all);
    all->GetCategory("b") == u"c" ? void(entry->Remove("Category")) : void();
    value = "v";
    return true;
  };
  const auto nested = [](const NQ_TString&, NQ_TDict* entry, TName* all, NQ_TAny& value) {
    entry->Add("Category", "c");
    hadAfterNested = Resolved(*all, "<a/>") == "v" && Has(*all);
    return value = "v", true;
  };
  names.SetLookupHandler("a", change, false);
  EXPECT_FALSE(Has(names));
  EXPECT_EQ(Resolved(names, "<a/>"), "v");
  EXPECT_TRUE(!hadBefore && hadWithin && Has(names));
  Do(names, "category a = d");
  EXPECT_FALSE(Has(names));
  names.SetLookupHandler("b", nested, false);
  EXPECT_EQ(Resolved(names, "<b/>"), "v");
  EXPECT_TRUE(hadBefore && hadWithin && hadAfterNested && Has(names));
  EXPECT_EQ(Known(names), Walked(names));
}

/// Entries looked at by a reset and by a template that asks for that many parameters of which there are none, over that
/// many names.
std::uint64_t VisitsOf(int tokens, int count) {
  system_test::Office office(R"({"jobs jinfo_cpp": {"JID": "J"}, "jobs jpgetcpp": [], "products LoadProductPart":
      {"p.id": "P", "pp.id": "Q"}, "products LoadProductParameters": {}, "products LoadPartParameters": {}})");
  Names names("text jobid; text vxtpr:productid; text filetype");
  for (int i = 0; i < count; ++i) names.Define(NQ_TString::Format("n%d", i), TName::TName_TypeString, {});
  office.system.ResetVexoNames(names, system_test::Ticket(R"({"JobID": "J", "ProductPartID": "PP"})"), 1);
  TNameLimits limits;
  limits.queries = 3 * tokens + 10;
  names.SetLimits(limits);
  NQ_TString text;
  for (int i = 0; i < tokens; ++i) text.Append(S("<jp.x/><filetype/><pp.x/><ppp.x/>"));
  NQ_TString result;
  EXPECT_FALSE(names.Resolve(text, result));
  return Visits(names);
}

TEST(Categories, AreLookedUpInLinearTime) {
  constexpr int kTokens = 500;
  constexpr int kNames = 2000;
  const std::uint64_t visits = VisitsOf(kTokens, kNames);
  EXPECT_GE(visits, std::uint64_t{4 * kNames}) << "once over all names for each kind of parameter";
  EXPECT_LE(visits, std::uint64_t{5 * kNames + 10 * kTokens});
  EXPECT_LE(VisitsOf(2 * kTokens, 2 * kNames), 2 * visits + 100);
}

}  // namespace
