// What reading a configuration tree can throw.
#pragma once

#include "NQ_EException.h"

/// Root of the configuration-server proxy's exceptions.
class CFS_EConfigException : public NQ_TExceptionOf<CFS_EConfigException, NQ_EException, "CFS_EConfigException"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};

/// A path inside a configuration tree does not lead to an entry of the requested shape; the data is the path.
class CFS_EIllegalPath final : public NQ_TExceptionOf<CFS_EIllegalPath, CFS_EConfigException, "CFS_EIllegalPath"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};

/// The configuration value asked for is not set.
class CFS_EValueNotSet final : public NQ_TExceptionOf<CFS_EValueNotSet, CFS_EConfigException, "CFS_EValueNotSet"> {
 public:
  using NQ_TExceptionOf::NQ_TExceptionOf;
};
