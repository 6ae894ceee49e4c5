#include "NQ_TDict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "Support.h"

namespace base_test {
namespace {

NQ_TString KeyOf(unsigned number) { return S("key" + std::to_string(number)); }

using TPlain = std::vector<std::pair<std::string, int>>;  // the dictionary done the plain way

std::string TextOf(const TPlain& pairs) {
  std::string text;
  for (const auto& [key, value] : pairs) text += (text.empty() ? "" : ", ") + key + " = " + std::to_string(value);
  return "{" + text + "}";
}

TEST(NQ_TDict, AllKindsOfKeysAreTheSameKeys) {
  const std::string longer(200, 'k');
  NQ_TDict dict;
  dict.Add("a", 1).Add(L"a", 2).Add(S("a"), 3).Add("", 5).Add(NQ_TString("\0", 1), 6).Add(S(longer), 7);
  dict[L"\u00E9"] = 4;
  const NQ_TAny held("held");
  dict.Add(std::string("h"), held)[u"h"] = held;
  dict.Add(static_cast<const NQ_IHashable&>(S("h")), 8).Remove(std::string_view("h"));
  dict["b"];
  const NQ_TDict& read = dict;
  EXPECT_EQ(Printed(read),
            "{a = 3,  = 5, " + std::string(1, '\0') + " = 6, " + longer + " = 7, \xC3\xA9 = 4, b = (null)}");
  for (const auto* value : {read.ValueOfKey("a"), read.ValueOfKey(L"a"), &read.At("a"), &read.At(S("a"))})
    EXPECT_EQ(*value, NQ_TAny(3));
  EXPECT_EQ(*read.ValueOfKey(longer.c_str()), NQ_TAny(7));
  EXPECT_TRUE(read.HasKey("b") && !read.HasKey("A") && dict.ValueOfKey(L"c") == nullptr && dict.Size() == 6);
  EXPECT_EQ(Thrown([&] { read.At("c"); }), "NQ_EException: The dictionary has no such key");
}

// Random changes to two dictionaries that are copied to each other now and then, below and above the size from which
// there is an index: content, order, addresses and versions against the plain way.
TEST(NQ_TDict, DoesWhatThePlainWayDoes) {
  for (const unsigned keys : {3U, 9U, 40U}) {
    TRandom random(keys);
    NQ_TDict dicts[2];
    TPlain plains[2];
    std::map<std::string, const NQ_TAny*> found[2];  // addresses in that version
    std::uint64_t versions[2] = {0, 0};
    std::map<std::uint64_t, std::string> contents;  // by version
    for (int round = 0; round < 6000; ++round) {
      const unsigned which = random.Below(2);
      NQ_TDict& dict = dicts[which];
      TPlain& plain = plains[which];
      const NQ_TString key = KeyOf(random.Below(keys));
      const auto place =
          std::find_if(plain.begin(), plain.end(), [&](const auto& pair) { return key == pair.first.c_str(); });
      const unsigned what = random.Below(32);
      if (what == 0) {
        dict = dicts[1 - which];
        plain = plains[1 - which];
      } else if (what == 1) {
        dict = std::move(dicts[1 - which]);
        dicts[1 - which] = NQ_TDict(dict, 100);
        plain = plains[1 - which];
      } else if (what == 2) {
        if (random.Below(4) == 0) dict.Clear(), plain.clear();
      } else if (what == 3) {
        for (NQ_TIterator i(dict); !i.IsDone(); i.Next()) i.Value() = round;
        for (auto& pair : plain) pair.second = round;
      } else if (what < 15) {
        dict.Remove(key);
        if (place != plain.end()) plain.erase(place);
      } else {
        what < 24 ? void(dict.Add(key, round)) : void(dict[key] = round);
        place == plain.end() ? void(plain.emplace_back(key.c_str(), round)) : void(place->second = round);
      }
      for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(Printed(dicts[i]), TextOf(plains[i])) << round;
        if (versions[i] != dicts[i].KeysVersion()) found[i].clear();
        versions[i] = dicts[i].KeysVersion();
        if (const std::uint64_t version = dicts[i].ContentVersion(); version != 0) {
          ASSERT_EQ(contents.emplace(version, TextOf(plains[i])).first->second, TextOf(plains[i])) << round;
        }
        for (unsigned k = 0; k < keys; ++k) {
          const NQ_TAny* const value = std::as_const(dicts[i]).ValueOfKey(KeyOf(k));
          ASSERT_EQ(found[i].emplace(KeyOf(k).c_str(), value).first->second, value) << round;
        }
      }
      ASSERT_EQ(dicts[0] == dicts[1],
                std::map(plains[0].begin(), plains[0].end()) == std::map(plains[1].begin(), plains[1].end()));
    }
    EXPECT_GT(contents.size(), 100U);
  }
}

TEST(NQ_TDict, ReferencesStayRightWhileKeysComeAndGo) {
  NQ_TDict dict;
  NQ_TAny& kept = dict["kept"];
  NQ_TAny& deep = (*(dict["inner"] = NQ_TDict()).As<NQ_TDict>())["deep"];
  const NQ_TDict before = dict;
  for (unsigned i = 0; i < 1000; ++i) dict.Add(KeyOf(i), 1);
  for (unsigned i = 0; i < 1000; ++i) dict.Remove(KeyOf(i));
  dict = static_cast<const NQ_TDict&>(dict);
  kept = "written";
  deep = "too";
  EXPECT_EQ(Printed(dict) + Printed(before),
            "{kept = written, inner = {deep = too}}{kept = (null), inner = {deep = (null)}}");
}

}  // namespace
}  // namespace base_test
