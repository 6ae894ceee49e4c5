// Names as people know them.
#pragma once

#include <map>
#include <vector>

#include "TName.h"

/// A text for each name, and the way back: its description where that is unambiguous, else the name itself. A
/// description is ambiguous when another name has it too, when it is a name, or when it holds the prefix, the suffix or
/// a "<" or ">", which would be read as something else on the way back.
class TDisplayed {
 public:
  TDisplayed(const TName& names, const NQ_TString& prefix, const NQ_TString& suffix);

  const std::map<NQ_TString, NQ_TString>& ByKey() const { return byKey_; }
  const std::map<NQ_TString, NQ_TString>& ByText() const { return byText_; }

  /// The tokens of a text that name something, and those that do not: no value is asked for.
  TNameExplanation Explain(const NQ_TString& text) { return shown_.Explain(text); }

 private:
  TName shown_;  // the names alone
  std::map<NQ_TString, NQ_TString> byKey_;
  std::map<NQ_TString, NQ_TString> byText_;
};

/// Translates by one of these maps, and notes what is not in it: such a text stays as it is.
class TMapTranslator final : public TNameTranslator {
 public:
  TMapTranslator(const std::map<NQ_TString, NQ_TString>& texts, const NQ_TString& prefix, const NQ_TString& suffix)
      : texts_(texts), prefix_(prefix), suffix_(suffix) {}

  void TranslateName(const NQ_TString& in, NQ_TString& out) const override;
  NQ_TString GetPrefix() const override { return prefix_; }
  NQ_TString GetSuffix() const override { return suffix_; }

  const std::vector<NQ_TString>& Unknown() const { return unknown_; }

 private:
  const std::map<NQ_TString, NQ_TString>& texts_;
  const NQ_TString prefix_;
  const NQ_TString suffix_;
  mutable std::vector<NQ_TString> unknown_;
};
