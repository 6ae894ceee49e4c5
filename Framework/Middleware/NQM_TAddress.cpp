#include "NQM_TAddress.h"

#include <string>

NQ_TString NQM_TAddress::Text() const {
  NQ_TString text = service.Empty() ? service : service + "@";
  text.Append(host.Empty() ? NQ_TString("localhost") : host);
  if (port != 0) text.Append(NQ_TString(':' + std::to_string(port)));
  return text;
}
