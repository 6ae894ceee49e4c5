// A client of the user-account service.
#pragma once

#include "NQM_TClient.h"

/// A user's account as the service described it.
class NQ_EXPORT A_TUser {
 public:
  explicit A_TUser(const NQ_TDict& account) : account_(account) {}

  /// The user's e-mail address; empty when the account has none. Throws NQ_EIllegalCastFromAny when it is no text.
  NQ_TString GetEMail() const;

 private:
  NQ_TDict account_;
};

/// Set the address before the first call.
class NQ_EXPORT A_TProxy : public NQM_TClient {
 public:
  /// The account of that user, "name" or "name@domain": sends {"M": "GetUser", "P1": name}, and expects a dictionary
  /// with "EMail". Throws what `Call` throws, and NQ_EIllegalCastFromAny when the reply is no dictionary.
  A_TUser GetUser(const NQ_TString& name);
};
