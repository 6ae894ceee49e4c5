// The exception classes as objects: class tree, views, copies, packed form, and what catches them.
#include <memory>

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

const struct {
  NQ_TClass& (*classObject)();
  std::string name, parent, caughtAs;
} kRows[] = {
    {&NQ_ETEException::NQ_ClassObject, "NQ_ETEException", "NQ_EException", "TE"},
    {&NQ_ENoSuchKey::NQ_ClassObject, "NQ_ENoSuchKey", "NQ_ETEException", "TE"},
    {&NQ_EUnknownType::NQ_ClassObject, "NQ_EUnknownType", "NQ_ETEException", "TE"},
    {&NQ_EIncompatibleType::NQ_ClassObject, "NQ_EIncompatibleType", "NQ_ETEException", "TE"},
    {&NQ_ENotAnInt32::NQ_ClassObject, "NQ_ENotAnInt32", "NQ_ETEException", "TE"},
    {&NQ_ENoSuchUnit::NQ_ClassObject, "NQ_ENoSuchUnit", "NQ_ETEException", "TE"},
    {&NQ_ENoSuchUnitCategory::NQ_ClassObject, "NQ_ENoSuchUnitCategory", "NQ_ETEException", "TE"},
    {&CFS_EConfigException::NQ_ClassObject, "CFS_EConfigException", "NQ_EException", "CFS"},
    {&CFS_EIllegalPath::NQ_ClassObject, "CFS_EIllegalPath", "CFS_EConfigException", "CFS"},
    {&CFS_EValueNotSet::NQ_ClassObject, "CFS_EValueNotSet", "CFS_EConfigException", "CFS"},
};

std::string CaughtAs(const NQ_IThrowable& exception) {
  try {
    exception.NQ_Throw();
  } catch (const NQ_ETEException& caught) {
    return std::string("TE ") + caught.ClassName();
  } catch (const CFS_EConfigException& caught) {
    return std::string("CFS ") + caught.ClassName();
  } catch (const NQ_EException&) {
    return "NQ";
  }
  return "";
}

TEST(Exceptions, AreObjectsOfTheirClasses) {
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    const std::unique_ptr<NQ_TObject> object(row.classObject().Factory()()), again(row.classObject().Factory()());
    for (const auto& other : kRows) {
      const bool derives = other.name == row.name || other.name == row.parent;
      EXPECT_EQ(object->NQ_DynamicInfo(other.name.c_str()), derives ? dynamic_cast<void*>(object.get()) : nullptr);
      EXPECT_EQ(row.classObject().HasSuperclass(other.name.c_str()), derives);
    }
    EXPECT_EQ(object->NQ_DynamicInfo(nullptr), NQ_TClass::Find(row.name));
    EXPECT_TRUE(row.classObject().InUse() && row.classObject().HasSuperclass("NQ_EException"));
    EXPECT_TRUE(row.classObject().Implements("NQ_IThrowable") && !row.classObject().Implements("NQ_IHashable"));

    auto& exception = dynamic_cast<NQ_EException&>(*object);
    exception.NQ_Message() = S("J\xC3\xB8rg");
    exception.NQ_Data() = NQ_TAny("a/path");
    exception.__PREPARE_FOR_THROW__(4711, "some/File.cpp");
    EXPECT_EQ(CaughtAs(exception), row.caughtAs + " " + row.name);
    const std::unique_ptr<NQ_IPackable> clone(exception.NQ_Clone());
    NQ_TPacker packer;
    exception.NQ_Pack(packer);
    NQ_TUnpacker unpacker(packer.Bytes());
    auto& unpacked = dynamic_cast<NQ_EException&>(*again);
    unpacked.NQ_Unpack(unpacker);
    for (const NQ_EException* copy :
         {static_cast<const NQ_EException*>(&unpacked), dynamic_cast<const NQ_EException*>(clone.get())}) {
      EXPECT_TRUE(exception.NQ_IsIdent(*copy) && copy != &exception);
      EXPECT_EQ(Text(NQ_TAny(*copy)), row.name + ": J\xC3\xB8rg [a/path] (some/File.cpp:4711)");
      EXPECT_EQ(copy->NQ_StackTrace().Count(), 1U);
    }
    NQ_TPacker begin;  // the sections around the root's part
    begin.BeginClass(row.parent.c_str());
    if (row.parent != "NQ_EException") begin.BeginClass("NQ_EException");
    EXPECT_TRUE(packer.Bytes().starts_with(begin.Bytes() + "s"));
    // In a variant the class goes along.
    NQ_TPacker any;
    any.PackAny(NQ_TAny(exception));
    EXPECT_STREQ(NQ_TUnpacker(any.Bytes()).UnpackAny().ClassName(), row.name.c_str());
  }
}

}  // namespace
}  // namespace names_test
