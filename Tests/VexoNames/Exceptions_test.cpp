// The exception classes as objects: class tree, copies, packed form, and what catches them.
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

/// With the bases from the parent up.
template <class Exception, class... Bases>
void Check(const std::string& name) {
  SCOPED_TRACE(name);
  const NQ_TClass& classObject = Exception::NQ_ClassObject();
  EXPECT_TRUE(&classObject == NQ_TClass::Find(name) && classObject.Implements("NQ_IThrowable"));
  EXPECT_TRUE((classObject.HasSuperclass(Bases::NQ_ClassName()) && ...));
  const std::unique_ptr<NQ_TObject> object(classObject.Factory()()), again(classObject.Factory()());
  auto& exception = dynamic_cast<Exception&>(*object);
  exception.NQ_Message() = S("J\xC3\xB8rg");
  exception.NQ_Data() = NQ_TAny("a/path");
  exception.__PREPARE_FOR_THROW__(4711, "some/File.cpp");
  try {
    exception.NQ_Throw();
    ADD_FAILURE() << "nothing is thrown";
  } catch (const Exception& caught) {
    EXPECT_TRUE(exception.NQ_IsIdent(caught) && (std::is_base_of_v<Bases, Exception> && ...));
  }

  NQ_TPacker packer, begin;
  exception.NQ_Pack(packer);
  NQ_TUnpacker unpacker(packer.Bytes());
  auto& unpacked = dynamic_cast<Exception&>(*again);
  unpacked.NQ_Unpack(unpacker);
  EXPECT_EQ(Text(NQ_TAny(unpacked)), name + ": J\xC3\xB8rg [a/path] (some/File.cpp:4711)");
  EXPECT_EQ(unpacked.NQ_StackTrace().Count(), 1U);
  (begin.BeginClass(Bases::NQ_ClassName()), ...);  // the sections around the root's part
  EXPECT_TRUE(packer.Bytes().starts_with(begin.Bytes() + "s"));
}

TEST(Exceptions, AreObjectsOfTheirClasses) {
  Check<NQ_ETEException, NQ_EException>("NQ_ETEException");
  Check<NQ_ENoSuchKey, NQ_ETEException, NQ_EException>("NQ_ENoSuchKey");
  Check<NQ_EUnknownType, NQ_ETEException, NQ_EException>("NQ_EUnknownType");
  Check<NQ_EIncompatibleType, NQ_ETEException, NQ_EException>("NQ_EIncompatibleType");
  Check<NQ_ENotAnInt32, NQ_ETEException, NQ_EException>("NQ_ENotAnInt32");
  Check<NQ_ENoSuchUnit, NQ_ETEException, NQ_EException>("NQ_ENoSuchUnit");
  Check<NQ_ENoSuchUnitCategory, NQ_ETEException, NQ_EException>("NQ_ENoSuchUnitCategory");
  Check<CFS_EConfigException, NQ_EException>("CFS_EConfigException");
  Check<CFS_EIllegalPath, CFS_EConfigException, NQ_EException>("CFS_EIllegalPath");
  Check<CFS_EValueNotSet, CFS_EConfigException, NQ_EException>("CFS_EValueNotSet");
}

}  // namespace
}  // namespace names_test
