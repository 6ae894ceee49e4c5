// Where a service is.
#pragma once

#include <cstdint>

#include "NQ_TString.h"

/// How the transport is to find a service by its name; what other values than 0 mean is the transport's business.
enum TLocationMode : int {
  TLocationMode_Default = 0,  ///< the transport's own way
};

/// A service, addressed by host and port or by host and service name.
struct NQ_EXPORT NQM_TAddress {
  NQ_TString host;                             ///< empty: the local computer
  NQ_TString service;                          ///< empty: whatever answers at the port
  std::uint16_t port = 0;                      ///< 0: the transport finds the service by its name
  TLocationMode mode = TLocationMode_Default;  ///< handed to the transport

  /// Whether there is a service name or a port.
  bool IsSet() const { return port != 0 || !service.Empty(); }
  /// For people: "CFS@srv1", "srv1:8088", "CFS@srv1:8088"; an empty host is written as "localhost".
  NQ_TString Text() const;
};
