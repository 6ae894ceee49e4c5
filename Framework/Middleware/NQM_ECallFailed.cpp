#include "NQM_ECallFailed.h"

namespace {

constexpr int kShownUnits = 200;  // of a method and of an address: they may come from a record, of any length

NQ_TString MethodOf(const NQ_TDict& request) {
  const auto* const method = request.Get<NQ_TString>("M");
  return method == nullptr ? NQ_TString() : method->Substring(0, kShownUnits);
}

NQ_TString TextOf(const NQM_TAddress& address) { return address.Text().Substring(0, kShownUnits); }

NQ_TString Message(const NQM_TAddress& address, const NQ_TDict& request, const NQ_TString& reason) {
  return NQ_TString("Calling \"") + MethodOf(request) + "\" at " + TextOf(address) + ": " + reason;
}

NQ_TDict Data(const NQM_TAddress& address, const NQ_TDict& request, const char* cause) {
  NQ_TDict data;
  data.Add("Method", MethodOf(request)).Add("Address", TextOf(address)).Add("Cause", cause);
  return data;
}

}  // namespace

NQM_ECallFailed::NQM_ECallFailed(const NQM_TAddress& address, const NQ_TDict& request, const char* cause,
                                 const NQ_TString& reason)
    // NOLINTNEXTLINE(bugprone-throw-keyword-missing): the base, which the check takes for a forgotten throw
    : NQ_TExceptionOf(Message(address, request, reason), NQ_TAny(Data(address, request, cause))) {}

NQ_TString NQM_ECallFailed::Cause() const {
  const auto* const data = NQ_Data().As<NQ_TDict>();
  const auto* const cause = data == nullptr ? nullptr : data->Get<NQ_TString>("Cause");
  return cause == nullptr ? NQ_TString() : *cause;
}
