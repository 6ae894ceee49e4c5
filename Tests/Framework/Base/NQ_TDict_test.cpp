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

/// The dictionary done the plain way.
struct TPlain {
  std::vector<std::pair<std::string, int>> pairs;

  auto Find(const std::string& key) {
    return std::find_if(pairs.begin(), pairs.end(), [&](const auto& pair) { return pair.first == key; });
  }
  std::string Text() const {
    std::string text;
    for (const auto& [key, value] : pairs) text += (text.empty() ? "{" : ", ") + key + " = " + std::to_string(value);
    return text.empty() ? "{}" : text + "}";
  }
};

TEST(NQ_TDict, AllKindsOfKeysAreTheSameKeys) {
  NQ_TDict dict;
  dict.Add("a", 1).Add(L"a", 2).Add(S("a"), 3);
  EXPECT_EQ(dict.Size(), 1U);
  dict[L"\u00E9"] = 4;
  dict["b"];
  const NQ_TDict& read = dict;
  for (const auto* value : {read.ValueOfKey("a"), read.ValueOfKey(L"a"), read.ValueOfKey(S("a")),
                            static_cast<const NQ_TAny*>(dict.ValueOfKey("a")), &read.At("a"), &read.At(S("a"))})
    EXPECT_EQ(*value, NQ_TAny(3));
  EXPECT_EQ(read.At("\xC3\xA9"), NQ_TAny(4));
  EXPECT_TRUE(read.HasKey("b") && read.At("b").IsNull() && !read.HasKey("A") && !read.HasKey(S("")));
  EXPECT_EQ(read.ValueOfKey("c"), nullptr);
  EXPECT_EQ(dict.ValueOfKey(L"c"), nullptr);
  EXPECT_EQ(dict.Size(), 3U);  // asking adds nothing
  EXPECT_EQ(Thrown([&] { read.At("c"); }), "NQ_EException: The dictionary has no such key");
  dict.Add("", 5).Add(NQ_TString("\0", 1), 6).Add(S(std::string(200, 'k')), 7);
  EXPECT_EQ(read.At(""), NQ_TAny(5));
  EXPECT_EQ(read.At(NQ_TString("\0", 1)), NQ_TAny(6));
  EXPECT_EQ(*read.ValueOfKey(std::string(200, 'k').c_str()), NQ_TAny(7));
  dict.Remove("nothing");
  dict.Clear();
  EXPECT_TRUE(dict.IsEmpty() && !dict.HasKey("b"));
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
    for (int round = 0; round < 6000; ++round) {
      const unsigned which = random.Below(2);
      NQ_TDict& dict = dicts[which];
      TPlain& plain = plains[which];
      const NQ_TString key = KeyOf(random.Below(keys));
      const auto place = plain.Find(key.c_str());
      const auto store = [&](int value) {
        if (place == plain.pairs.end()) {
          plain.pairs.emplace_back(key.c_str(), value);
        } else {
          place->second = value;
        }
      };
      switch (random.Below(32)) {
        case 0:
          dict = dicts[1 - which];
          plain = plains[1 - which];
          break;
        case 1:
          dict = std::move(dicts[1 - which]);
          dicts[1 - which] = NQ_TDict(dict, 100);
          plain = plains[1 - which];
          break;
        case 2:
          if (random.Below(4) == 0) dict.Clear(), plain.pairs.clear();
          break;
        case 3:
          for (NQ_TIterator i(dict); !i.IsDone(); i.Next()) i.Value() = round;
          for (auto& pair : plain.pairs) pair.second = round;
          break;
        case 4:
          if (NQ_TAny* value = dict.ValueOfKey(key)) *value = round;
          if (place != plain.pairs.end()) place->second = round;
          break;
        default:
          if (random.Below(5) < 2) {
            dict.Remove(key);
            if (place != plain.pairs.end()) plain.pairs.erase(place);
          } else if (random.Below(2) == 0) {
            dict.Add(key, round);
            store(round);
          } else {
            dict[key] = round;
            store(round);
          }
      }
      for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(Printed(dicts[i]), plains[i].Text()) << round;
        ASSERT_EQ(dicts[i].Size(), plains[i].pairs.size());
        if (versions[i] != dicts[i].KeysVersion()) found[i].clear();
        versions[i] = dicts[i].KeysVersion();
        for (unsigned k = 0; k < keys; ++k) {
          const NQ_TAny* const value = std::as_const(dicts[i]).ValueOfKey(KeyOf(k));
          ASSERT_EQ(found[i].emplace(KeyOf(k).c_str(), value).first->second, value) << round;
        }
      }
      ASSERT_EQ(dicts[0] == dicts[1], std::map(plains[0].pairs.begin(), plains[0].pairs.end()) ==
                                          std::map(plains[1].pairs.begin(), plains[1].pairs.end()));
    }
  }
}

TEST(NQ_TDict, ReferencesStayRightWhileKeysComeAndGo) {
  NQ_TDict dict;
  NQ_TAny& kept = dict["kept"];
  const NQ_TDict before = dict;
  for (unsigned i = 0; i < 1000; ++i) dict.Add(KeyOf(i), 1);
  for (unsigned i = 0; i < 1000; i += 2) dict.Remove(KeyOf(i));
  const NQ_TDict after = dict;
  kept = "written";
  EXPECT_EQ(dict.At("kept"), NQ_TAny("written"));
  EXPECT_TRUE(before.At("kept").IsNull() && after.At("kept").IsNull());
  dict = static_cast<const NQ_TDict&>(dict);
  kept = "again";
  EXPECT_EQ(dict.At("kept"), NQ_TAny("again"));

  NQ_TDict outer;
  outer.Add("inner", NQ_TDict(dict));
  NQ_TAny& deep = (*outer["inner"].As<NQ_TDict>())["kept"];
  const NQ_TDict copy = outer;
  deep = "deep";
  EXPECT_EQ(copy.Get<NQ_TDict>("inner")->At("kept"), NQ_TAny("again"));
  EXPECT_EQ(outer.Get<NQ_TDict>("inner")->At("kept"), NQ_TAny("deep"));
}

TEST(NQ_TDict, AMillionKeys) {
  constexpr unsigned kCount = 1'000'000;
  NQ_TDict dict;
  for (unsigned i = 0; i < kCount; ++i) dict.Add(KeyOf(i), NQ_TAny());
  for (unsigned i = 0; i < kCount; i += 3) dict.Remove(KeyOf(i));
  NQ_TDict copy = dict;
  copy.Clear();
  unsigned number = 0;
  for (NQ_TConstIterator i(dict); !i.IsDone(); i.Next()) {
    number += number % 3 == 0 ? 1 : 0;
    ASSERT_EQ(i.Key(), KeyOf(number));
    ASSERT_EQ(std::as_const(dict).ValueOfKey(i.Key()), &i.Value());
    ++number;
  }
  EXPECT_EQ(number, kCount - 1);  // the last one is a multiple of three
}

}  // namespace
}  // namespace base_test
