// The local computer on the network.
#pragma once

#include "NQ_TString.h"

class NQ_EXPORT NQ_TSocket {
 public:
  /// The name of the local computer; with true the fully qualified one where the system knows it. Any thread.
  static NQ_TString HostName(bool qualified);
};
