// The first thing to do with the library: a registry, two names, a template.
#include <iostream>

#include "TName.h"

int main() {
  TName names;
  names.Define("customer", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("customer", "Imprimerie Lefèvre & Fils");
  names.Define("version", TName::TName_TypeNumber, TName::TName_LookupValue);
  names.SetValue("version", 7);

  NQ_TString path;
  const bool all = names.Resolve("out/<<customer/>>_v<<version format=\"%03d\"/>>.pdf", path);
  std::cout << path << (all ? "\n" : " (incomplete)\n");  // out/Imprimerie Lefèvre & Fils_v007.pdf
}
