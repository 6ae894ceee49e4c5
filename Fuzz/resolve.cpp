// Any template against a fixed registry: the first resolution, those that find the template already split, and one on
// which every token is looked up the long way agree; limits hold; translating changes nothing.
//
// Input: one byte that chooses the form and the limits; the rest is the template.
#include <cstdint>

#include "Fuzz.h"
#include "NQ_TTime.h"
#include "TName.h"

namespace {

using fuzz::Check;

class TQuotes final : public TNameTranslator {
  void TranslateName(const NQ_TString& in, NQ_TString& out) const override { out = in + "'"; }
  NQ_TString GetPrefix() const override { return "{"; }
  NQ_TString GetSuffix() const override { return "}"; }
};

void DefineText(TName& names, const char* key, const char* value) {
  names.Define(key, TName::TName_TypeString, TName::TName_LookupValue);
  names.SetValue(key, NQ_TString(value));
}

// The values hold no tokens that double each other: a result stays below 100 times the template.
void Fill(TName& names) {
  DefineText(names, "text", "Acme_\xC3\x98rsted_1/2");
  DefineText(names, "empty", "");
  DefineText(names, "nested", "[<<text/>>|<<number format=\"%03d\"/>>|<<none/>>]");
  DefineText(names, "single", "<text/>");
  DefineText(names, "self", ".<<self/>>");
  DefineText(names, "marked", "<<CDATA/>><<text/>>");
  DefineText(names, "cut", "one_two_three");
  names.SetElemValue("cut", "_,1");
  names.SetExtractValue("cut", "0,2");
  names.Define("number", TName::TName_TypeNumber, TName::TName_LookupValue);
  names.SetValue("number", -42);
  names.Define("auto", TName::TName_TypeAutoNumber, TName::TName_LookupValue);
  names.Define("url", TName::TName_TypeURL, TName::TName_LookupValue);
  names.SetValue("url", NQ_TURL(NQ_TString("file://host/a/<<text/>>.pdf")));
  names.Define("time", TName::TName_TypeTime, TName::TName_LookupTime);
  names.Define("bare", TName::TName_TypeString, TName::TName_LookupServerQuery);
}

void SetLimits(TName& names, bool small) {
  TNameLimits limits;
  limits.nestedDepth = 8;
  limits.regexMatch = 10'000;
  limits.regexRecursion = 1'000;
  if (small) {
    limits.tokens = 5;
    limits.characters = 60;
  }
  names.SetLimits(limits);
}

/// The result of one form, on one line with its success.
NQ_TString Outcome(TName& names, unsigned form, const NQ_TString& text) {
  names.SetValue("auto", 7);
  NQ_TString result("before ");
  NQ_TURL url;
  bool ok = false;
  switch (form) {
    case 0:
      ok = names.Resolve(text, text.Substring(0, 1), text.Substring(1, 2), result);
      break;
    case 1:
      ok = names.Resolve(text, "<<", "/>>", result);
      break;
    case 2:
      ok = names.Resolve(text, url);
      result = url.Text();
      break;
    case 3:
      ok = names.Resolve(NQ_TURL(text), url);
      result = url.Text();
      break;
    default:
      ok = names.Resolve(text, result);
  }
  return result + (ok ? " true" : " false");
}

TName& Made(bool plain) {
  auto* const names = new TName;
  Fill(*names);
  // A name is looked up the long way when somebody is to be told of it.
  if (plain) names->SetWarnLookupHandler([](const NQ_TString&, TName*) {});
  return *names;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzz::Quiet();
  NQ_TTime::SetClock([] { return 1.7e12; });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static TName& names = Made(false);
  static TName& plain = Made(true);
  fuzz::TInput input(data, size);
  const unsigned choice = input.Byte();
  const unsigned form = choice % 8;
  const bool small = choice >= 128;
  const NQ_TString text(input.Rest());
  SetLimits(names, small);
  SetLimits(plain, small);

  const NQ_TString first = Outcome(names, form, text);
  Check(Outcome(names, form, text) == first, "a second resolution gives the same");
  Check(Outcome(names, form, text) == first, "a third resolution gives the same");
  Check(Outcome(plain, form, text) == first, "the long way gives the same");
  if (small) Check(first.Length() <= text.Length() + 200, "limits hold");

  NQ_TString translated;
  NQ_TString back;
  names.Translate(text, TQuotes(), translated);
  names.BackTranslate(translated, TQuotes(), back);
  const NQ_TString result = Outcome(names, 7, text);
  if (text.Find('/') < 0) {
    Check(translated == text, "without a token there is nothing to translate");
    Check(result == text + " true", "without a token there is nothing to resolve");
  }
  Check(Outcome(names, form, text) == first, "translating changes nothing");
  return 0;
}
