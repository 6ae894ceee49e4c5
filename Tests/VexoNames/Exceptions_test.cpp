// The exception classes as objects: class tree, views, copies, packed form, and what catches them.
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "CFS/Server/cfs_exceptions.h"
#include "NQ_EIncompatibleType.h"
#include "NQ_ENoSuchKey.h"
#include "NQ_ENoSuchUnit.h"
#include "NQ_ENoSuchUnitCategory.h"
#include "NQ_ENotAnInt32.h"
#include "NQ_EUnknownType.h"
#include "NQ_TPacker.h"
#include "Support.h"

namespace names_test {
namespace {

struct Row {
  const char *name, *parent;
  const char* packed;  // the sections around the root exception's part
  NQ_TClass& (*classObject)();
  const char* (*className)();
  const NQ_TClass* (*parentClass)();
  bool (*isInterface)();
  bool (*hasInterface)(const char*);
  bool (*hasSuperclass)(const char*);
  NQ_TClass::TFactory (*factory)();
  /// Thrown; names the handlers that catch it.
  std::string (*caughtAs)();
};

template <class Base, class E>
std::string Catches(const char* name) {
  try {
    const E exception;
    exception.NQ_Throw();
  } catch (const Base&) {
    return std::string(name) + " ";
  } catch (...) {
    return "";
  }
}

template <class E>
std::string CaughtAs() {
  return Catches<E, E>("own") + Catches<NQ_ENoSuchKey, E>("NoSuchKey") + Catches<NQ_ETEException, E>("TE") +
         Catches<CFS_EConfigException, E>("CFS") + Catches<NQ_EException, E>("NQ") + Catches<NQ_TObject, E>("object") +
         Catches<NQ_IInterface, E>("interface") + Catches<NQ_IThrowable, E>("throwable") +
         Catches<NQ_IPackable, E>("packable") + Catches<NQ_IPrintable, E>("printable");
}

constexpr char kRoot[] = "{NQ_EException }NQ_EException ";
constexpr char kEngine[] = "{NQ_ETEException {NQ_EException }NQ_EException }NQ_ETEException ";
constexpr char kConfig[] = "{CFS_EConfigException {NQ_EException }NQ_EException }CFS_EConfigException ";

template <class E>
Row RowOf(const char* name, const char* parent, const char* packed) {
  return {name,
          parent,
          packed,
          &E::NQ_ClassObject,
          &E::NQ_ClassName,
          &E::NQ_ParentClass,
          &E::NQ_IsInterface,
          &E::NQ_HasInterface,
          &E::NQ_HasSuperclass,
          &E::NQ_Factory,
          &CaughtAs<E>};
}

const Row kRows[] = {
    RowOf<NQ_ETEException>("NQ_ETEException", "NQ_EException", kRoot),
    RowOf<NQ_ENoSuchKey>("NQ_ENoSuchKey", "NQ_ETEException", kEngine),
    RowOf<NQ_EUnknownType>("NQ_EUnknownType", "NQ_ETEException", kEngine),
    RowOf<NQ_EIncompatibleType>("NQ_EIncompatibleType", "NQ_ETEException", kEngine),
    RowOf<NQ_ENotAnInt32>("NQ_ENotAnInt32", "NQ_ETEException", kEngine),
    RowOf<NQ_ENoSuchUnit>("NQ_ENoSuchUnit", "NQ_ETEException", kEngine),
    RowOf<NQ_ENoSuchUnitCategory>("NQ_ENoSuchUnitCategory", "NQ_ETEException", kEngine),
    RowOf<CFS_EConfigException>("CFS_EConfigException", "NQ_EException", kRoot),
    RowOf<CFS_EIllegalPath>("CFS_EIllegalPath", "CFS_EConfigException", kConfig),
    RowOf<CFS_EValueNotSet>("CFS_EValueNotSet", "CFS_EConfigException", kConfig),
};

bool Derives(const Row& row, const Row& other) {
  return std::strcmp(other.name, row.name) == 0 || std::strcmp(other.name, row.parent) == 0;
}

std::unique_ptr<NQ_TObject> Made(const Row& row) { return std::unique_ptr<NQ_TObject>(row.factory()()); }

/// Writes down the sections, not their content.
class Sections : public NQ_IPacking {
 public:
  std::string text;

  void BeginClass(const char* name) override { text += "{" + std::string(name) + " "; }
  void EndClass(const char* name) override { text += "}" + std::string(name) + " "; }
  void PackBool(bool) override {}
  void PackInt32(std::int32_t) override {}
  void PackDouble(double) override {}
  void PackString(const NQ_TString&) override {}
  void PackAny(const NQ_TAny&) override {}
};

TEST(Exceptions, ClassObjectsKnowTheTree) {
  std::set<const void*> classes;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    EXPECT_STREQ(row.className(), row.name);
    EXPECT_STREQ(row.parentClass()->Name(), row.parent);
    EXPECT_EQ(&row.classObject(), NQ_TClass::Find(row.name));
    EXPECT_TRUE(row.classObject().InUse());
    EXPECT_TRUE(classes.insert(&row.classObject()).second);
    EXPECT_FALSE(row.isInterface());
    for (const char* name : {row.name, row.parent, "NQ_EException"}) EXPECT_TRUE(row.hasSuperclass(name)) << name;
    for (const char* name : {"NQ_IThrowable", "NQ_IPackable", "NQ_IPrintable"})
      EXPECT_TRUE(row.hasInterface(name)) << name;
    EXPECT_FALSE(row.hasInterface("NQ_IHashable"));
    for (const Row& other : kRows) {
      EXPECT_EQ(row.hasSuperclass(other.name), Derives(row, other)) << other.name;
    }
  }
}

TEST(Exceptions, ObjectsGiveTheirViews) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const auto object = Made(row);
    ASSERT_NE(object, nullptr);
    EXPECT_STREQ(object->ClassName(), row.name);
    EXPECT_EQ(object->NQ_DynamicInfo(nullptr), &row.classObject());
    const void* const whole = object->NQ_MostDerivedObject();
    EXPECT_EQ(whole, dynamic_cast<void*>(object.get()));
    for (const char* name : {row.name, row.parent, "NQ_EException"})
      EXPECT_EQ(object->NQ_DynamicInfo(name), whole) << name;
    for (const char* name : {"NQ_TString", "", "nq_eexception", "NQ_EExceptio"})
      EXPECT_EQ(object->NQ_DynamicInfo(name), nullptr) << name;
    for (const Row& other : kRows) {
      EXPECT_EQ(object->NQ_DynamicInfo(other.name) != nullptr, Derives(row, other)) << other.name;
    }
    auto* exception = dynamic_cast<NQ_EException*>(object.get());
    ASSERT_NE(exception, nullptr);
    EXPECT_EQ(exception->NQ_Message(), S(""));
    EXPECT_TRUE(exception->NQ_Data().IsNull());
  }
}

TEST(Exceptions, AreCaughtAsThemselvesAndTheirBases) {
  for (const Row& row : kRows) {
    std::string expected = "own ";
    if (std::strcmp(row.name, "NQ_ENoSuchKey") == 0) expected += "NoSuchKey ";
    expected += std::strncmp(row.name, "CFS", 3) == 0 ? "CFS " : "TE ";
    EXPECT_EQ(row.caughtAs(), expected + "NQ object interface throwable packable printable ") << row.name;
  }
}

TEST(Exceptions, TravelAndCopyWithAllTheyCarry) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const auto object = Made(row);
    auto& exception = dynamic_cast<NQ_EException&>(*object);
    exception.NQ_Message() = S("J\xC3\xB8rg");
    exception.NQ_Data() = NQ_TAny("a/path");
    exception.__PREPARE_FOR_THROW__(4711, "some/File.cpp");

    Sections sections;
    exception.NQ_Pack(sections);
    EXPECT_EQ(sections.text, row.packed);

    NQ_TPacker packer;
    exception.NQ_Pack(packer);
    const auto again = Made(row);
    auto& unpacked = dynamic_cast<NQ_EException&>(*again);
    NQ_TUnpacker unpacker(packer.Bytes());
    unpacked.NQ_Unpack(unpacker);
    EXPECT_TRUE(unpacker.AtEnd());

    int other = 0;
    const std::unique_ptr<NQ_IPackable> clone(exception.NQ_Clone(&other));
    ASSERT_NE(clone, nullptr);
    EXPECT_NE(dynamic_cast<void*>(clone.get()), dynamic_cast<void*>(object.get()));

    for (const NQ_EException* copy : {&unpacked, dynamic_cast<NQ_EException*>(clone.get())}) {
      EXPECT_STREQ(copy->ClassName(), row.name);
      EXPECT_EQ(copy->NQ_Message(), S("J\xC3\xB8rg"));
      EXPECT_EQ(copy->NQ_Data(), NQ_TAny("a/path"));
      EXPECT_EQ(copy->NQ_ExceptionFile(), S("some/File.cpp"));
      EXPECT_EQ(copy->NQ_ExceptionLine(), 4711U);
      EXPECT_TRUE(exception.NQ_IsIdent(*copy));
    }
    // In a variant the class goes along.
    NQ_TPacker anyPacker;
    anyPacker.PackAny(NQ_TAny(exception));
    EXPECT_STREQ(NQ_TUnpacker(anyPacker.Bytes()).UnpackAny().ClassName(), row.name);
  }
}

TEST(Exceptions, OfTheEngineCarryTheNameAsGiven) {
  TName names;
  try {
    names.SetCategory(S(" J\xC3\xB8rg <A/>"), S("c"));
    FAIL() << "nothing was thrown";
  } catch (const NQ_ETEException& error) {
    EXPECT_STREQ(error.ClassName(), "NQ_ENoSuchKey");
    EXPECT_EQ(error.NQ_Message(), S(" J\xC3\xB8rg <A/>"));
    EXPECT_TRUE(error.NQ_Data().IsNull());
    EXPECT_EQ(Text(error.NQ_ExceptionFile()), "VexoNames/Private/Source/templatenames/Registry.cpp");
    EXPECT_GT(error.NQ_ExceptionLine(), 1U);
    EXPECT_EQ(error.NQ_StackTrace().Count(), 1U);
  }
}

}  // namespace
}  // namespace names_test
