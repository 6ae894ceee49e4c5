// The array, the list, the tree, and walking over them.
#include <gtest/gtest.h>

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
