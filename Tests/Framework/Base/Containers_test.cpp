// The array, the list, the tree, and walking over them.
#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TList.h"
#include "NQ_TTree.h"
#include "Support.h"

namespace base_test {
namespace {

TEST(Sequences, PlacesStayRight) {
  NQ_TArray array;
  NQ_TList list;
  EXPECT_EQ(std::as_const(array).At(0), nullptr);
  NQ_TListKey* const first = list.Add(S("a"));
  for (int i = 0; i < 1000; ++i) list.Add(i);
  first->value = "b";
  EXPECT_TRUE(list.Contains("b") && *list.At(1000) == NQ_TAny(999) && !list.Contains("a") && list.At(1001) == nullptr);
  *array.At(0) = "a";
  *array.At(2) = 3;
  EXPECT_EQ(Printed(array), "[a, (null), 3]");
  NQ_TArray more = array;
  more.Add(1);
  EXPECT_TRUE(more == NQ_TArray(more) && !(array == more) && !(more == array));
}

TEST(Iterators, WalkInOrderAndWriteIntoOneCopyOnly) {
  NQ_TDict dict;
  NQ_TList list;
  NQ_TArray array;
  for (const char* word : {"z", "a", "m"}) dict.Add(word, word), list.Add(word), array.Add(word);
  for (NQ_IIteratable* container : {static_cast<NQ_IIteratable*>(&dict), static_cast<NQ_IIteratable*>(&list),
                                    static_cast<NQ_IIteratable*>(&array)}) {
    const auto copy = [&] { return NQ_TAny(dynamic_cast<const NQ_IPackable&>(*container)); };
    const NQ_TAny before = copy();
    std::string walked;
    NQ_TIterator i(*container);
    const NQ_TAny between = copy();
    for (; !i.IsDone(); i.Next()) {
      walked += Printed(i.Key()) + Printed(i.Value());
      i.Value() = Printed(i.Value()).append("!").c_str();
    }
    for (NQ_TConstIterator c(*container); !c.IsDone(); c.Next()) walked += Printed(c.Value());
    EXPECT_EQ(walked, container == &dict ? "zzaammz!a!m!" : "zamz!a!m!");
    EXPECT_TRUE(before == between && !(before == copy()));
  }
}

TEST(Containers, AreMadeOfWhatStandsInBraces) {
  const NQ_TAny held = S("held");
  const NQ_TDict dict{{"a", 1}, {std::string("b"), true}, {u"c", held}, {"a", NQ_TDict{{"d", 0.5}}}};
  const NQ_TTree tree{{"branch", NQ_TTree{{"leaf", "x"}}}};
  const NQ_TArray array{1, "two", held, std::string_view("four")}, copy{array}, nested{NQ_TAny(array), 4};
  const NQ_TList list{array, dict}, none{}, same{list};
  EXPECT_EQ(Printed(dict) + Printed(tree), "{a = {d = 0.5}, b = 1, c = held}{branch = {leaf = x}}");
  EXPECT_EQ(Printed(copy) + Printed(nested), "[1, two, held, four][[1, two, held, four], 4]");
  EXPECT_EQ(Printed(list) + Printed(none), "([1, two, held, four], {a = {d = 0.5}, b = 1, c = held})()");
  EXPECT_TRUE(copy == array && same == list && NQ_TDict{dict} == dict && NQ_TDict{8}.IsEmpty());
}

template <class Container>
std::string Walked(Container& container) {
  std::string walked;
  for (auto& element : container) {
    if constexpr (std::is_base_of_v<NQ_TDict, std::remove_const_t<Container>>) {
      auto& [key, value] = element;
      walked += Printed(key) + Printed(value);
      if constexpr (!std::is_const_v<Container>) value = Printed(value) + "!";
    } else {
      walked += Printed(element);
      if constexpr (!std::is_const_v<Container>) element = Printed(element) + "!";
    }
  }
  return walked;
}

TEST(Containers, AreWalkedByRangeForAndWrittenInOneCopyOnly) {
  const auto check = [](auto container, const std::string& first, const std::string& second) {
    const auto before = container;
    auto empty = decltype(container)();
    EXPECT_EQ(Walked(container), first);
    EXPECT_EQ(Walked(std::as_const(container)), second);
    EXPECT_EQ(Walked(before), first);
    EXPECT_EQ(Walked(empty) + Walked(std::as_const(empty)), "");
    using std::begin, std::end;
    EXPECT_EQ(std::distance(begin(before), end(before)), 3);
    static_assert(std::forward_iterator<decltype(begin(container))> && std::forward_iterator<decltype(begin(before))>);
  };
  check(NQ_TDict{{"z", 1}, {"a", "b"}, {"m", 2}}, "z1abm2", "z1!ab!m2!");
  check(NQ_TTree{{"z", 1}, {"a", "b"}, {"m", 2}}, "z1abm2", "z1!ab!m2!");
  check(NQ_TList{1, "b", 2}, "1b2", "1!b!2!");
  check(NQ_TArray{1, "b", 2}, "1b2", "1!b!2!");
}

/// A value that others can see the end of.
class TObserved final : public NQ_TBoxed<TObserved, std::shared_ptr<int>, "TestObserved"> {
 public:
  using NQ_TBoxed::NQ_TBoxed;
  void PrintOn(std::ostream&) const override {}
  void NQ_Pack(NQ_IPacking&) const override {}
  void NQ_Unpack(NQ_IUnpacking&) override {}
};

template <class Container>
NQ_TAny Around(NQ_TAny&& inner) {
  Container outer;
  if constexpr (std::is_base_of_v<NQ_TDict, Container>) {
    outer.Add("key", std::move(inner)).Add("also", 1);
  } else {
    outer.Add(std::move(inner));
  }
  return NQ_TAny(std::move(outer));
}

// Each container in itself, and all of them in turns; far more than a thread's stack has room for.
TEST(Containers, NestAsDeepAsTheirOwnersLike) {
  constexpr std::size_t kWays = 4;
  NQ_TAny (*const ways[kWays])(NQ_TAny &&) = {Around<NQ_TArray>, Around<NQ_TList>, Around<NQ_TDict>, Around<NQ_TTree>};
  for (std::size_t way = 0; way <= kWays; ++way) {
    const auto innermost = std::make_shared<int>();
    NQ_TAny any{TObserved(innermost)};
    for (std::size_t depth = 0; depth < 200'000; ++depth) any = ways[way < kWays ? way : depth % kWays](std::move(any));
    NQ_TAny copy = any;
    any = 1;
    EXPECT_EQ(innermost.use_count(), 2) << way;
    copy = 1;
    EXPECT_EQ(innermost.use_count(), 1) << way;  // all of it is destroyed by now
  }
}

TEST(NQ_TTree, ValueAtPath) {
  NQ_TTree leaf, branch, tree;
  leaf.Add("c", 7).Add("", "nameless");
  branch.Add("b", leaf).Add("dict", NQ_TDict());
  tree.Add("a", branch).Add("a/b", "slash");
  const struct {
    const char *path, *separator, *result;
  } cases[] = {
      {"a/b/c", "/", "7"},
      {"a::b::c", "::", "7"},
      {"a/b", "", "slash"},
      {"a/b/", "/", "nameless"},
      {"a/x/c", "/", "NQ_ENoMatchingTreeKey: The tree has no such key"},
      {"a/b/c/", "/", "NQ_EEntryIsNotASubtree: The entry is not a subtree"},
      {"a/dict/x", "/", "NQ_EEntryIsNotASubtree: The entry is not a subtree"},  // a plain dictionary is no tree
  };
  for (const auto& row : cases) {
    std::string value;
    value += Thrown([&] { value = Printed(tree.ValueAtPath(row.path, row.separator)); });
    EXPECT_EQ(value, row.result) << row.path;
  }
}

}  // namespace
}  // namespace base_test
