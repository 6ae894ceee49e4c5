// A client of the product service.
#pragma once

#include "NQM_TClient.h"

/// Gives access to its middleware client, through which products are asked about. Set its address first.
class NQ_EXPORT P_TProxy {
 public:
  NQM_TClient& Client() { return client_; }

 private:
  NQM_TClient client_;
};
