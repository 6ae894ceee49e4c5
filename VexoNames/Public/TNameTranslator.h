// Translators: what a token is called elsewhere.
#pragma once

#include "NQ_TString.h"

/// Gives names another text form, and back. `TName::Translate` writes a token as prefix, translated name, suffix;
/// `TName::BackTranslate` looks for such texts. Called on the caller's thread, without any lock of the library.
class NQ_EXPORT TNameTranslator : public virtual NQ_IInterface {
 public:
  TNameTranslator() = default;
  TNameTranslator(const TNameTranslator&) = default;
  TNameTranslator& operator=(const TNameTranslator&) = default;
  ~TNameTranslator() override;

  /// From a name to its other form, or back: `out` takes the translation of `in`.
  virtual void TranslateName(const NQ_TString& in, NQ_TString& out) const = 0;
  /// The text before and the text after a translated name. For the way back they must differ, and neither may occur in
  /// the other or in the rest of the text.
  virtual NQ_TString GetPrefix() const = 0;
  virtual NQ_TString GetSuffix() const = 0;
};
