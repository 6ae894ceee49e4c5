#include "Services/A_TProxy.h"

#include "NQ_EException.h"

NQ_TString A_TUser::GetEMail() const {
  const NQ_TAny* const address = account_.ValueOfKey("EMail");
  if (address == nullptr || address->IsNull()) return {};
  if (const auto* const text = address->As<NQ_TString>(); text != nullptr) return *text;
  nq::Throw(NQ_EIllegalCastFromAny("EMail", *address));
}

A_TUser A_TProxy::GetUser(const NQ_TString& name) {
  NQ_TDict request;
  request.Add("M", "GetUser").Add("P1", name);
  const NQ_TAny reply = Call(request);
  if (const auto* const account = reply.As<NQ_TDict>(); account != nullptr) return A_TUser(*account);
  nq::Throw(NQ_EIllegalCastFromAny(NQ_TString("The account of ") + name, reply));
}
