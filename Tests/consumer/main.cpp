// What a user of the installed package does first: a name, a template, and an exception that crosses the
// library's border.
#include <cstdio>

#include "NQ_ENoSuchKey.h"
#include "NQ_TString.h"
#include "TName.h"

int main() {
  TName names;
  names.Define("customer", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("customer", NQ_TString("Acme"));
  names.Define("copies", TName::TName_TypeNumber, TName::TName_LookupValue);
  names.SetValue("copies", 7);

  NQ_TString text;
  const bool all = names.Resolve("out/<<customer/>>_<<copies format=\"%03d\"/>>.pdf", text);
  std::printf("%s %s\n", text.c_str(), all ? "complete" : "incomplete");

  try {
    static_cast<void>(names.GetType("nobody"));
    std::puts("nobody is defined");
  } catch (const NQ_ENoSuchKey&) {
    std::puts("nobody is not defined");
  }
}
