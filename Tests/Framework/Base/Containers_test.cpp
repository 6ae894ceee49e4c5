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

TEST(NQ_TArray, GrowsOnDemandAndCopiesAreIndependent) {
  NQ_TArray array;
  EXPECT_EQ(std::as_const(array).At(0), nullptr);
  array.Add("a");
  *array.At(3) = 3;
  EXPECT_EQ(Printed(array), "[a, (null), (null), 3]");
  EXPECT_EQ(std::as_const(array).At(4), nullptr);
  const NQ_TArray copy = array;
  NQ_TAny* const first = array.At(0);
  const NQ_TArray second = array;
  *first = "b";
  array.Add(1);
  EXPECT_EQ(Printed(copy) + Printed(second), "[a, (null), (null), 3][a, (null), (null), 3]");
  EXPECT_EQ(Printed(array), "[b, (null), (null), 3, 1]");
  EXPECT_TRUE(copy == second && !(copy == array));
}

TEST(NQ_TList, PositionsStayRight) {
  NQ_TList list;
  const NQ_TList empty = list;
  NQ_TListKey* const first = list.Add(S("a"));
  const NQ_TList one = list;
  for (int i = 0; i < 1000; ++i) list.Add(i);
  first->value = "b";
  EXPECT_EQ(Printed(one) + Printed(empty), "(a)()");
  EXPECT_EQ(*list.At(0), NQ_TAny("b"));
  EXPECT_EQ(*list.At(1000), NQ_TAny(999));
  EXPECT_EQ(list.At(1001), nullptr);
  EXPECT_TRUE(list.Contains("b") && list.Contains(999) && !list.Contains("a") && !list.Contains("999"));
  NQ_TList moved = std::move(list);
  list.Add(1);
  EXPECT_EQ(Printed(list), "(1)");
  EXPECT_EQ(moved.Count(), 1001U);
}

TEST(Iterators, WalkInOrderAndWriteIntoOneCopyOnly) {
  NQ_TDict dict;
  NQ_TList list;
  NQ_TArray array;
  for (const char* word : {"z", "a", "m"}) {
    dict.Add(word, word);
    list.Add(word);
    array.Add(word);
  }
  for (NQ_IIteratable* container : {static_cast<NQ_IIteratable*>(&dict), static_cast<NQ_IIteratable*>(&list),
                                    static_cast<NQ_IIteratable*>(&array)}) {
    const NQ_TAny before(dynamic_cast<const NQ_IPackable&>(*container));
    std::string keys;
    std::string values;
    NQ_TIterator i(*container);
    const NQ_TAny between(dynamic_cast<const NQ_IPackable&>(*container));
    for (; !i.IsDone(); i.Next()) {
      keys += i.Key().c_str();
      i.Value() = Printed(i.Value()).append("!").c_str();
    }
    for (NQ_TConstIterator c(*container); !c.IsDone(); c.Next()) values += Printed(c.Value());
    EXPECT_EQ(keys, container == &dict ? "zam" : "");
    EXPECT_EQ(values, "z!a!m!");
    EXPECT_EQ(before, between);
    EXPECT_NE(before, NQ_TAny(dynamic_cast<const NQ_IPackable&>(*container)));
  }
}

TEST(NQ_TTree, ValueAtPath) {
  NQ_TTree leaf;
  leaf.Add("c", 7).Add("", "nameless");
  NQ_TTree branch;
  branch.Add("b", leaf).Add("dict", NQ_TDict());
  NQ_TTree tree;
  tree.Add("a", branch).Add("a/b", "slash").Add("text", "t");
  const struct {
    const char *path, *separator, *result;
  } cases[] = {
      {"a/b/c", "/", "7"},
      {"a::b::c", "::", "7"},
      {"a/b", "", "slash"},
      {"a/b/", "/", "nameless"},
      {"text", "/", "t"},
      {"a/x/c", "/", "NQ_ENoMatchingTreeKey"},
      {"", "/", "NQ_ENoMatchingTreeKey"},
      {"/a", "/", "NQ_ENoMatchingTreeKey"},
      {"a/b/c/", "/", "NQ_EEntryIsNotASubtree"},
      {"text/x", "/", "NQ_EEntryIsNotASubtree"},
      {"a/dict/x", "/", "NQ_EEntryIsNotASubtree"},  // a plain dictionary is no tree
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.path);
    try {
      EXPECT_EQ(Printed(tree.ValueAtPath(row.path, row.separator)), row.result);
    } catch (const NQ_EException& error) {
      EXPECT_STREQ(error.ClassName(), row.result);
      EXPECT_EQ(error.NQ_Data(), NQ_TAny(row.path));
    }
  }
  NQ_TTree copy(tree, 100);
  copy["text"] = 1;
  EXPECT_EQ(tree.At("text"), NQ_TAny("t"));
}

}  // namespace
}  // namespace base_test
