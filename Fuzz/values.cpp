// Any values that name each other: every resolution ends, within its limits, and leaves the registry as it was.
//
// Input: lines "key=value" up to an empty line; the rest is the template.
#include <cstdint>

#include "Fuzz.h"
#include "TName.h"

namespace {

using fuzz::Check;

NQ_TString Outcome(TName& names, const NQ_TString& text) {
  NQ_TString result;
  const bool ok = names.Resolve(text, result);
  return result + (ok ? " true" : " false");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Quiet();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TInput input(data, size);
  TName names;
  TName plain;  // looks every name up the long way
  plain.SetWarnLookupHandler([](const NQ_TString&, TName*) {});
  for (std::string_view line = input.Line(); !line.empty(); line = input.Line()) {
    const std::size_t equals = line.find('=');
    const NQ_TString key(line.substr(0, equals));
    const NQ_TString value(line.substr(equals == std::string_view::npos ? line.size() : equals + 1));
    for (TName* some : {&names, &plain}) {
      some->Define(key, TName::TName_TypeString, TName::TName_LookupValue);
      some->SetValue(key, value);
    }
  }
  const NQ_TString text(input.Rest());
  TNameLimits limits;
  limits.nestedDepth = 6;
  limits.tokens = 500;
  limits.regexMatch = 10'000;
  limits.regexRecursion = 1'000;
  names.SetLimits(limits);
  plain.SetLimits(limits);
  const NQ_TString free = Outcome(names, text);
  Check(Outcome(plain, text) == free, "the long way gives the same");

  limits.characters = 2'000;
  names.SetLimits(limits);
  const NQ_TString bounded = Outcome(names, text);
  plain.SetLimits(limits);
  Check(Outcome(names, text) == bounded, "another resolution gives the same");
  Check(Outcome(plain, text) == bounded, "the long way ends at the same limits");
  Check(bounded.Length() <= 2'000 + 2 * size + 100, "limits hold");

  names.Define("plain", TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue("plain", "fine");
  Check(Outcome(names, "<<plain/>>") == "fine true", "the next resolution starts afresh");
  return 0;
}
