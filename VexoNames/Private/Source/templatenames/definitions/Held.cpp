#include "definitions/Held.h"

#include "NQ_TArray.h"

namespace templatenames {
namespace {

constexpr int kMostShown = 60;  // units: a sentence, not the value

NQ_TString Cut(const NQ_TString& text) {
  return text.Length() <= kMostShown ? text : text.Substring(0, kMostShown) + "...";
}

template <class T>
bool Is(const NQ_TAny& value) {
  return value.As<T>() != nullptr;
}

NQ_TString Text(const NQ_TAny& value) { return NQ_TString("the text ") + Quoted(*value.As<NQ_TString>()); }
NQ_TString Number(const NQ_TAny& value) {
  return NQ_TString::Format("the number %d", int{value.As<NQ_TInt32>()->Value()});
}
NQ_TString Truth(const NQ_TAny& value) { return value.As<NQ_TBool>()->Value() ? "true" : "false"; }
NQ_TString Url(const NQ_TAny& value) { return NQ_TString("the URL ") + Cut(value.As<NQ_TURL>()->Text()); }

constexpr struct {
  bool (*fits)(const NQ_TAny& value);
  NQ_TString (*show)(const NQ_TAny& value);
} kClasses[] = {
    {Is<NQ_TString>, Text},
    {Is<NQ_TInt32>, Number},
    {Is<NQ_TBool>, Truth},
    {Is<NQ_TURL>, Url},
    {Is<NQ_TTime>, [](const NQ_TAny&) { return NQ_TString("a time"); }},
    {Is<NQ_TTree>, [](const NQ_TAny&) { return NQ_TString("a tree"); }},
    {Is<NQ_TDict>, [](const NQ_TAny&) { return NQ_TString("a dictionary"); }},
    {Is<NQ_TArray>, [](const NQ_TAny&) { return NQ_TString("a list"); }},
};

}  // namespace

NQ_TString Quoted(const NQ_TString& text) { return NQ_TString("\"") + Cut(text) + "\""; }

NQ_TString Shown(const NQ_TAny& value) {
  if (value.IsNull() || value.IsIllegal()) return "nothing";
  for (const auto& row : kClasses)
    if (row.fits(value)) return row.show(value);
  return "something else";
}

}  // namespace templatenames
