#include "Displayed.h"

#include <algorithm>

TDisplayed::TDisplayed(const TName& names, const NQ_TString& prefix, const NQ_TString& suffix) {
  const NQ_TList all = names.GetTNames();
  std::map<NQ_TString, int> uses;
  for (unsigned int i = 0; i < all.Count(); ++i) ++uses[names.GetDescription(*all.At(i)->As<NQ_TString>())];
  const auto isClear = [&](const NQ_TString& text) {
    const NQ_TString* const taken[] = {&prefix, &suffix};
    return !text.Empty() && uses[text] == 1 && !names.IsDefined(text) && text.Find('<') < 0 && text.Find('>') < 0 &&
           std::ranges::none_of(taken, [&](const NQ_TString* marker) { return text.Find(*marker) >= 0; });
  };
  for (unsigned int i = 0; i < all.Count(); ++i) {
    const auto& key = *all.At(i)->As<NQ_TString>();
    const NQ_TString& description = names.GetDescription(key);
    const NQ_TString& text = isClear(description) ? description : key;
    byKey_[key] = text;
    byText_[text] = key;
    shown_.Define(key, TName::TName_TypeString, TName::TName_LookupValue);
    shown_.SetValue(key, NQ_TString());
  }
  for (const auto& [key, text] : byKey_) byText_.try_emplace(key, key);  // a name is understood too
}

void TMapTranslator::TranslateName(const NQ_TString& in, NQ_TString& out) const {
  const auto found = texts_.find(in);
  if (found == texts_.end()) unknown_.push_back(in);
  out = found == texts_.end() ? in : found->second;
}
