// Lookup handlers as objects.
#pragma once

#include "NQ_IInterface.h"

class NQ_TAny;
class NQ_TDict;
class NQ_TString;
class TName;

/// Computes the value of a name. Register one with `TName::SetLookupHandler`; the caller keeps it alive as long as the
/// `TName` may use it. It runs on the thread that resolves, with that `TName`'s lock held, and may call back into it.
class NQ_EXPORT TNameLookupHandler : public virtual NQ_IInterface {
 public:
  TNameLookupHandler() = default;
  TNameLookupHandler(const TNameLookupHandler&) = default;
  TNameLookupHandler& operator=(const TNameLookupHandler&) = default;
  ~TNameLookupHandler() override;

  /// Stores the value of the name in `value` and returns true; false makes the token fail. The entry holds the name's
  /// attributes, to be read and changed; it stays valid during the call even if the name is undefined meanwhile.
  virtual bool Lookup(const NQ_TString& key, NQ_TDict* entry, TName* names, NQ_TAny& value) const = 0;
};
