// Values on the wire.
#pragma once

#include <string>
#include <string_view>

#include "NQM_TGrpcOptions.h"
#include "NQ_TAny.h"

namespace nq::wire {

/// How deep values may lie in values: deeper than anything real, shallow enough for any thread's stack.
inline constexpr int kMaxDepth = 200;

/// The bytes of a Value message. Throws NQ_EException, the message a reason, when the value holds something that
/// cannot travel (an address, an object held by reference that is no packable one) or nests too deep.
std::string FromValue(const NQ_TAny& value);

/// The value that FromValue made the bytes of. The bytes are not trusted: whatever does not fit throws NQ_EException,
/// the message a reason, before it costs more memory than the limits allow.
NQ_TAny ToValue(std::string_view bytes, const NQM_TGrpcLimits& limits);

/// What gRPC is to take at most: a message of that size, and what surrounds it.
int MessageLimit(const NQM_TGrpcLimits& limits);

}  // namespace nq::wire
