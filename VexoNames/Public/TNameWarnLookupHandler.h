// Warn handlers as objects.
#pragma once

#include "NQ_IInterface.h"

class NQ_TString;
class TName;

/// Is told of every token before it is looked up, also of names that are not defined, and may define them. Register
/// one with `TName::SetWarnLookupHandler`; the caller keeps it alive as long as the `TName` may use it. It runs on the
/// thread that resolves, with that `TName`'s lock held.
class NQ_EXPORT TNameWarnLookupHandler : public virtual NQ_IInterface {
 public:
  TNameWarnLookupHandler() = default;
  TNameWarnLookupHandler(const TNameWarnLookupHandler&) = default;
  TNameWarnLookupHandler& operator=(const TNameWarnLookupHandler&) = default;
  ~TNameWarnLookupHandler() override;

  virtual void WarnLookup(const NQ_TString& key, TName* names) = 0;
};
