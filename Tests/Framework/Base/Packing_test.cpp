#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TList.h"
#include "NQ_TPacker.h"
#include "NQ_TTime.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"
#include "Support.h"

namespace base_test {
namespace {

std::string Packed(const NQ_TAny& value) {
  NQ_TPacker packer;
  packer.PackAny(value);
  return packer.Bytes();
}

NQ_TAny Unpacked(std::string_view bytes) {
  NQ_TUnpacker unpacker(bytes);
  NQ_TAny value = unpacker.UnpackAny();
  EXPECT_TRUE(unpacker.AtEnd());
  return value;
}

/// As many arrays in each other as the depth says; beside each an empty one.
NQ_TAny Nested(int depth) {
  NQ_TArray array;
  if (depth > 1) array.Add(NQ_TArray()), array.Add(Nested(depth - 1));
  return array;
}

std::vector<NQ_TAny> Values() {
  NQ_ENoMatchingTreeKey error(S("message"), NQ_TAny(S("data")));
  error.__PREPARE_FOR_THROW__(4'000'000'000U, "folder/file.cpp");
  NQ_TList list;
  for (const NQ_TAny& value : {NQ_TAny(), NQ_TAny::Illegal(), NQ_TAny(error)}) list.Add(NQ_TAny(value));
  NQ_TTree tree;
  tree.Add("list", list).Add("subtree", NQ_TTree(tree)).Add("", NQ_TDict());
  return {true,
          INT_MIN,
          -0.0,
          "",
          NQ_TString(u"a\0\xD800\U0001F4C4", 5),
          NQ_TURL(S("file://h/p q")),
          NQ_TTime::FromMilliseconds(-1.5),
          NQ_TInterval(2),
          NQ_EOutOfMemory(),
          tree,
          NQ_TDict(tree),
          Nested(200)};
}

TEST(Packing, EveryValueComesBackEqual) {
  for (const NQ_TAny& value : Values()) {
    const NQ_TAny again = Unpacked(Packed(value));
    EXPECT_EQ(again, value);  // of the same class, too
    EXPECT_EQ(Packed(again), Packed(value)) << value;
  }
  const NQ_TString referred("x");
  EXPECT_EQ(Unpacked(Packed(NQ_TAny(static_cast<const NQ_IInterface*>(&referred)))), NQ_TAny(referred));
}

// Bytes of a variant that holds an object of a class with this content.
std::string Object(const char* name, const std::string& content) {
  NQ_TPacker begin, end;
  begin.BeginClass(name);
  end.EndClass(name);
  return "*" + begin.Bytes() + content + end.Bytes();
}

TEST(Packing, MalformedBytesAreRefused) {
  const std::string huge("i\xFF\xFF\xFF\x7F", 5);  // 2^31 - 1 elements
  const std::string negative("i\xFF\xFF\xFF\xFF", 5);
  std::string renamed = Packed(NQ_TAny(true));
  renamed.replace(renamed.rfind('B'), 1, "b");
  const std::pair<std::string, std::string> cases[] = {
      {"?", "a variant begins with an unknown tag"},
      {Object("NQ_TNothing", ""), "an object is of an unknown class"},
      {Object("NQ_TObject", ""), "an object is of an unknown class"},  // a class without objects
      {Object("NQ_TInt32", std::string("b\1", 2)), "an item is of another kind"},
      {Object("NQ_TBool", std::string("b\1b\1", 4)), "an item is of another kind"},
      {"*{s\xFF\xFF\xFF\xFF", "it ends too early"},
      {Object("NQ_TArray", huge), "a variant begins with an unknown tag"},
      {Object("NQ_TDict", huge), "an item is of another kind"},
      {Object("NQ_TList", negative), "a negative number of elements"},
      {Packed(Nested(201)), "objects nest too deep"},
      {renamed, "a section ends under another name"},
  };
  for (const auto& [bytes, reason] : cases)
    EXPECT_EQ(Thrown([&b = bytes] { Unpacked(b); }), "NQ_EException: Malformed packed data: " + reason) << bytes;
  EXPECT_EQ(Thrown([] { Packed(NQ_TPointer()); }), "NQ_EException: A pointer cannot be packed");
}

}  // namespace
}  // namespace base_test
