// What is asked of the job and product services.
#pragma once

#include "NQ_TAny.h"
#include "NQ_TDict.h"

class J_TProxy;
class NQ_TString;
class NQ_TURL;
class P_TProxy;

namespace systemnames {

/// All of these throw what the call throws.

/// The identifier of the job that the URL belongs to; empty when it belongs to none, or the reply does not say.
NQ_TString AskForJobOf(J_TProxy& jobs, const NQ_TURL& url);
/// A job, or a customer by its name; empty when the reply is no dictionary.
NQ_TDict AskForJob(J_TProxy& jobs, const NQ_TString& jobId);
NQ_TDict AskForCustomer(J_TProxy& jobs, const NQ_TString& name);
/// The job's parameters: an array of rows {name, type word, -, value}.
NQ_TAny AskForJobParameters(J_TProxy& jobs, const NQ_TString& jobId);

/// A product part, or parameters by their names; empty when the service has nothing. Throw NQ_EIllegalCastFromAny when
/// the reply is something else than a dictionary.
NQ_TDict AskForProductPart(P_TProxy& products, const NQ_TURL& url);
NQ_TDict AskForProductPart(P_TProxy& products, const NQ_TString& partId);
NQ_TDict AskForProductParameters(P_TProxy& products, const NQ_TString& productId);
NQ_TDict AskForPartParameters(P_TProxy& products, const NQ_TString& partId);

}  // namespace systemnames
