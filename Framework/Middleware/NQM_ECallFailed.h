// A call of a service that the middleware could not carry out.
#pragma once

#include "NQM_TAddress.h"
#include "NQ_EException.h"
#include "NQ_TDict.h"

/// Thrown when a service gave no reply: it is not there, took too long, broke down, or what came back is no reply.
/// (An NQ_EException that the service itself throws arrives as what it is, where its class is known.)
///
/// The message says it in one line: Calling "[]" at CFS@srv1: the deadline of 30000 ms passed. The data is an NQ_TDict
/// with "Method", "Address" (NQM_TAddress::Text) and "Cause", one of the words below, all NQ_TString.
class NQ_EXPORT NQM_ECallFailed final : public NQ_TExceptionOf<NQM_ECallFailed, NQ_EException, "NQM_ECallFailed"> {
 public:
  static constexpr const char* kNoAddress = "no address";     ///< the client was never given one
  static constexpr const char* kNoService = "no service";     ///< nothing answers to that name or port
  static constexpr const char* kUnreachable = "unreachable";  ///< no connection, or it broke during the call
  static constexpr const char* kDeadline = "deadline";        ///< no reply in time; the service may have done its work
  static constexpr const char* kRefused = "refused";  ///< request or reply exceed a limit, or the server is overloaded
  static constexpr const char* kServiceFailed =
      "service failed";  ///< the service threw something else than NQ_EException

  using NQ_TExceptionOf::NQ_TExceptionOf;
  NQM_ECallFailed(const NQM_TAddress& address, const NQ_TDict& request, const char* cause, const NQ_TString& reason);

  /// The cause's word; empty when the exception carries none.
  NQ_TString Cause() const;
};
