// Replies on the wire: a value, or how the service failed.
#pragma once

#include <functional>

#include "NQM_TGrpcOptions.h"
#include "NQ_TAny.h"
#include "NQ_TString.h"

namespace vexonames::wire {
class Reply;
}

namespace nq::wire {

/// Writes what the service returns or throws. A value is compressed when the caller asked for that. Nothing leaves
/// this function as an exception but a lack of memory.
void WriteReply(const std::function<NQ_TAny()>& service, bool zip, vexonames::wire::Reply& out);

/// Makes the middleware's own exception known to ReadReply; the basic ones are known.
void RegisterExceptions();

/// Gives back the value, or throws what the service threw: an exception of the framework as its own class, where that
/// class is known in this process, else as NQ_EException.
///
/// What else went wrong is for the caller to throw: a reply that is malformed or exceeds the limits throws TUnfit,
/// other failures of the service TFailed.
NQ_TAny ReadReply(const vexonames::wire::Reply& reply, const NQM_TGrpcLimits& limits);

/// The reply cannot be taken; says why.
struct TUnfit {
  NQ_TString reason;
};

/// The service threw something that is no exception of the framework; says what.
struct TFailed {
  NQ_TString reason;
};

}  // namespace nq::wire
