// The object model: class objects, views by name, exceptions.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "NQ_TBoxed.h"
#include "NQ_TTree.h"
#include "Support.h"

namespace base_test {
namespace {

class TLazy final : public NQ_TBoxed<TLazy, int, "TestLazy"> {
  void PrintOn(std::ostream&) const override {}
  void NQ_Pack(NQ_IPacking&) const override {}
  void NQ_Unpack(NQ_IUnpacking&) override {}
};

TEST(NQ_TClass, IsRegisteredWhenFirstAskedFor) {
  const TLazy lazy;
  EXPECT_EQ(NQ_TClass::Find("TestLazy"), nullptr);
  const auto* const classObject = static_cast<const NQ_TClass*>(lazy.NQ_DynamicInfo(nullptr));
  EXPECT_TRUE(NQ_TClass::Find("TestLazy") == classObject && classObject->InUse());
  EXPECT_EQ(std::unique_ptr<NQ_TObject>(classObject->Factory()())->ClassName(), std::string("TestLazy"));
  NQ_TClass& plain = NQ_TClass::GetClassObject(true, "TestInterface", 8, nullptr, nullptr, nullptr);
  EXPECT_EQ(&NQ_TClass::GetClassObject(false, "TestInterface", 16, &TLazy::NQ_ClassObject(), nullptr, nullptr), &plain);
  EXPECT_TRUE(plain.IsInterface() && plain.Parent() == nullptr && plain.InstanceSize() == 8 && !plain.InUse());
}

TEST(NQ_TObject, IsViewedByName) {
  const NQ_TString text;
  const NQ_TInt32 number;
  const NQ_TTree tree;
  const NQ_ENoMatchingTreeKey error;
  const std::string always = " NQ_TObject NQ_IInterface NQ_IPackable NQ_IPrintable ";
  const std::pair<const NQ_TObject&, std::string> cases[] = {
      {text, " NQ_TString NQ_IHashable" + always},
      {number, " NQ_TInt32" + always},
      {tree, " NQ_TTree NQ_TDict NQ_IIteratable" + always},
      {error, " NQ_ENoMatchingTreeKey NQ_EException NQ_IThrowable" + always},
  };
  for (const auto& [object, views] : cases) {
    for (const std::string name : {"NQ_TString", "NQ_TInt32", "NQ_TTree", "NQ_TDict", "NQ_ENoMatchingTreeKey",
                                   "NQ_EException", "NQ_TObject", "NQ_IInterface", "NQ_IPackable", "NQ_IPrintable",
                                   "NQ_IHashable", "NQ_IIteratable", "NQ_IThrowable", "NQ_", ""}) {
      const bool has = views.find(" " + name + " ") != views.npos, interface = name.starts_with("NQ_I");
      EXPECT_TRUE((object.DynamicCast(name.c_str()) != nullptr) == has &&
                  object.HasInterface(name.c_str()) == (has && interface) &&
                  object.HasSuperclass(name.c_str()) == (has && !interface))
          << object.ClassName() << " as " << name;
    }
    EXPECT_EQ(object.DynamicCast(nullptr), nullptr);
  }
  for (const auto& [name, of] :
       {std::pair(NQ_IPackable::NQ_ClassName(), "NQ_IPackable"),
        std::pair(NQ_IHashable::NQ_ClassName(), "NQ_IHashable"),
        std::pair(NQ_IIteratable::NQ_ClassName(), "NQ_IIteratable"), std::pair(NQ_TAny::NQ_ClassName(), "NQ_TAny"),
        std::pair(NQ_TString::NQ_ClassName(), "NQ_TString")})
    EXPECT_STREQ(name, of);
  // A view is cast to a pointer to just that class or interface.
  EXPECT_EQ(static_cast<const NQ_IHashable*>(text.DynamicCast("NQ_IHashable")), &text);
  EXPECT_EQ(static_cast<const NQ_IIteratable*>(tree.DynamicCast("NQ_IIteratable")), &tree);
  EXPECT_EQ(static_cast<const NQ_TDict*>(tree.DynamicCast("NQ_TDict")), &tree);
  EXPECT_EQ(static_cast<const NQ_IThrowable*>(error.DynamicCast("NQ_IThrowable")), &error);
  EXPECT_FALSE(NQ_TDict().NQ_IsIdent(tree) || tree.NQ_IsIdent(NQ_TDict()));
}

TEST(NQ_EException, IsThrownAsItsOwnClassFromWhereItIsThrown) {
  const std::string site = std::string(__FILE__) + ":" + std::to_string(__LINE__ + 2);
  try {
    nq::Throw(NQ_ENoMatchingTreeKey(S("message"), NQ_TAny(S("data"))));
  } catch (const NQ_EEntryIsNotASubtree&) {
    FAIL();
  } catch (const NQ_IThrowable& caught) {
    const auto& error = dynamic_cast<const NQ_ENoMatchingTreeKey&>(caught);
    EXPECT_EQ(Printed(error), "NQ_ENoMatchingTreeKey: message [data] (" + site + ")");
    NQ_ENoMatchingTreeKey again = error;
    again.__PREPARE_FOR_THROW__(7, error.NQ_ExceptionFile().c_str());
    EXPECT_FALSE(again.NQ_IsIdent(error));
    EXPECT_EQ(Printed(again.NQ_StackTrace()), "(" + site + ", " + __FILE__ + ":7)");
  }
}

TEST(NQ_EException, IsAStandardExceptionToo) {
  try {
    nq::Throw(NQ_EIllegalCastFromAny(S("J\xC3\xB8rg"), NQ_TAny(1)));
  } catch (const std::exception& caught) {
    EXPECT_STREQ(caught.what(), "J\xC3\xB8rg");
    EXPECT_EQ(dynamic_cast<const NQ_EException&>(caught).ClassName(), std::string("NQ_EIllegalCastFromAny"));
  }
  NQ_EException error;
  const std::exception& standard = error;
  EXPECT_STREQ(standard.what(), "");
  error.NQ_Message() = "later";
  EXPECT_STREQ(standard.what(), "later");
  const std::unique_ptr<NQ_IPackable> clone(error.NQ_Clone());
  EXPECT_STREQ(dynamic_cast<const std::exception&>(*clone).what(), "later");
}

}  // namespace
}  // namespace base_test
