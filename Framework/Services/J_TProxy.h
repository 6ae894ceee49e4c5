// A client of the job service.
#pragma once

#include "NQM_TClient.h"

/// Gives access to its middleware client, through which jobs are asked about. Set its address first.
class NQ_EXPORT J_TProxy {
 public:
  NQM_TClient& Client() { return client_; }

 private:
  NQM_TClient client_;
};
