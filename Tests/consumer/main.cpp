// What a user of the installed package does first: a name, a template, and an exception that crosses the
// library's border.
#include <cstdio>
#include <memory>
#include <string>

#include "VexoFramework.h"
#include "VexoNames.h"

int main() {
  static_assert(VEXONAMES_VERSION_MAJOR > 0 || VEXONAMES_VERSION_MINOR >= 1);

  const std::string customer = "Acme";
  TName names;
  names.Define("customer", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("customer", customer);
  names.Define("copies", TName::TName_TypeNumber, TName::TName_LookupValue);
  names.SetValue("copies", 7);

  NQ_TString text;
  const bool all = names.Resolve("out/<<customer/>>_<<copies format=\"%03d\"/>>.pdf", text);
  std::printf("%s %s\n", text.c_str(), all ? "complete" : "incomplete");

  try {
    static_cast<void>(names.GetType("nobody"));
    std::puts("nobody is defined");
  } catch (const NQ_ENoSuchKey& error) {
    const std::exception& standard = error;
    std::printf("%s is not defined\n", standard.what());
  }
  const std::unique_ptr<NQ_TObject> made(NQ_EUnknownType::NQ_Create());
  std::printf("%s made\n", made->ClassName());
}
