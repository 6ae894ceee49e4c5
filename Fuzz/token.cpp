// Tokens with any attributes on any value: the attributes of the token and the same ones of the name give the same, and
// so does the token within a template.
//
// Input: one byte that chooses the type; format, elem, extract, regex, each on a line; the rest is the value.
#include <charconv>
#include <cstdint>

#include "Fuzz.h"
#include "NQ_TTime.h"
#include "TName.h"

namespace {

using fuzz::Check;

constexpr struct {
  const char* word;
  void (TName::*set)(const NQ_TString&, const NQ_TString&);
} kAttributes[] = {{"format", &TName::SetFormat},
                   {"elem", &TName::SetElemValue},
                   {"extract", &TName::SetExtractValue},
                   {"regex", &TName::SetRegExValue}};

void Define(TName& names, unsigned type, std::string_view value) {
  int number = 0;
  std::from_chars(value.data(), value.data() + value.size(), number);
  switch (type) {
    case 1:
      names.Define("v", TName::TName_TypeNumber, TName::TName_LookupValue);
      return names.SetValue("v", number);
    case 2:
      names.Define("v", TName::TName_TypeTime, TName::TName_LookupTime);
      return names.SetValue("v", NQ_TTime::FromMilliseconds(number * 1e6));
    case 3:
      names.Define("v", TName::TName_TypeURL, TName::TName_LookupValue);
      return names.SetValue("v", NQ_TURL(NQ_TString(value)));
    default:
      names.Define("v", TName::TName_TypeString, TName::TName_LookupValue);
      names.SetValue("v", NQ_TString(value));
  }
}

NQ_TString Outcome(TName& names, const NQ_TString& token) {
  NQ_TString result;
  const bool ok = names.ResolveTokenEx(token, result);
  return ok ? result + " true" : NQ_TString("false");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Quiet();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TInput input(data, size);
  const unsigned type = input.Byte() % 4;
  std::string_view values[4];
  for (auto& value : values) value = input.Line();
  TName byToken;
  TName byName;
  TNameLimits limits;
  limits.nestedDepth = 4;
  limits.tokens = 200;
  limits.regexMatch = 10'000;
  limits.regexRecursion = 1'000;
  for (TName* names : {&byToken, &byName}) {
    names->SetLimits(limits);
    Define(*names, type, input.Rest());
  }
  NQ_TString token("v ");
  bool simple = true;  // the attributes can be told apart, and the token from its markers
  for (std::size_t i = 0; i < std::size(values); ++i) {
    if (values[i].empty()) continue;
    const NQ_TString value(values[i]);
    token = token + kAttributes[i].word + "=\"" + value + "\" ";
    (byName.*kAttributes[i].set)("v", value);
    simple = simple && values[i].find_first_of("\"=<>/") == std::string_view::npos;
  }
  const NQ_TString outcome = Outcome(byToken, token);
  Check(Outcome(byToken, token) == outcome, "a second resolution gives the same");
  if (!simple || input.Rest().find("/>") != std::string_view::npos) return 0;
  Check(Outcome(byName, "v") == outcome, "the attributes of the name do what those of the token do");
  const NQ_TString templated = NQ_TString("<<") + token + "/>>";
  for (int round = 0; round < 3; ++round) {
    NQ_TString result;
    const bool ok = byToken.Resolve(templated, result);
    Check(ok ? result + " true" == outcome : outcome == "false", "within a template the token gives the same");
    Check(ok || result == templated, "a token that fails stays as it is");
  }
  return 0;
}
