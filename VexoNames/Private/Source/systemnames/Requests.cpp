#include "Requests.h"

#include "NQ_TArray.h"
#include "NQ_TBoxed.h"
#include "NQ_TURL.h"
#include "Reading.h"
#include "Services/J_TProxy.h"
#include "Services/P_TProxy.h"

namespace systemnames {
namespace {

NQ_TDict JobRequest(const char* method, const NQ_TAny& parameter) {
  NQ_TDict request;
  request.Add("M", method).Add("ElemType", "job").Add("P1", NQ_TAny(parameter));
  return request;
}

NQ_TDict ProductRequest(const char* method, const NQ_TAny& argument, const char* type) {
  NQ_TArray arguments;
  arguments.Add(argument);
  NQ_TArray types;
  types.Add(type);
  NQ_TDict request;
  request.Add("M", method).Add("ElemType", "product").Add("Parameters", arguments).Add("ParameterTypes", types);
  request.Add("Interface", "com.vemox.nq.core.server.products.vx.session.ProductCpp");
  return request;
}

NQ_TDict AskForProduct(P_TProxy& products, const char* method, const NQ_TAny& argument,
                       const char* type = "java.lang.String") {
  const NQ_TAny reply = products.Client().Call(ProductRequest(method, argument, type));
  return reply.IsNull() || reply.IsIllegal() ? NQ_TDict() : Held<NQ_TDict>(reply);
}

}  // namespace

NQ_TString AskForJobOf(J_TProxy& jobs, const NQ_TURL& url) {
  NQ_TDict request = JobRequest("ij", url);
  request.Add("P2", true).Add("P3", true);
  const NQ_TAny reply = jobs.Client().Call(request);
  const auto* const answer = reply.As<NQ_TArray>();
  if (answer == nullptr || answer->Count() < 3) return {};
  const bool belongs = answer->At(0)->ValueOr(NQ_TBool(false)).Value();
  return belongs ? answer->At(2)->ValueOr(NQ_TString()) : NQ_TString();
}

NQ_TDict AskForJob(J_TProxy& jobs, const NQ_TString& jobId) {
  return jobs.Client().Call(JobRequest("jinfo_cpp", jobId)).ValueOr(NQ_TDict());
}

NQ_TDict AskForCustomer(J_TProxy& jobs, const NQ_TString& name) {
  return jobs.Client().Call(JobRequest("cinfo_cpp", name)).ValueOr(NQ_TDict());
}

NQ_TAny AskForJobParameters(J_TProxy& jobs, const NQ_TString& jobId) {
  return jobs.Client().Call(JobRequest("jpgetcpp", jobId));
}

NQ_TDict AskForProductPart(P_TProxy& products, const NQ_TURL& url) {
  return AskForProduct(products, "GetProductPartFromURL", url, "com.vemox.nq.core.server.nqtypes.NQ_TURL");
}

NQ_TDict AskForProductPart(P_TProxy& products, const NQ_TString& partId) {
  return AskForProduct(products, "LoadProductPart", partId);
}

NQ_TDict AskForProductParameters(P_TProxy& products, const NQ_TString& productId) {
  return AskForProduct(products, "LoadProductParameters", productId);
}

NQ_TDict AskForPartParameters(P_TProxy& products, const NQ_TString& partId) {
  return AskForProduct(products, "LoadPartParameters", partId);
}

}  // namespace systemnames
