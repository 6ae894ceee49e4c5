// Values from services: what an entry's query asks, and the reply.
//
// An entry says whom to ask ("Host", "Server"), and what ("Method", "Params"); what names stand in that is resolved
// first. A kept query stores its reply as the entry's "Value", with "CacheFilled" beside it.
#pragma once

#include "engine/Engine.h"

namespace templatenames {

/// Why a query gave nothing.
struct TQueryProblem {
  TLimit limit = TLimit::None;
  NQ_TString said;  // one sentence; empty for a limit
};

/// The stored value if there is one, else the service's reply. Sets the error code when it fails, and throws nothing.
bool Query(TEngine& engine, const NQ_TString& key, NQ_TDict& entry, NQ_TAny& value, TQueryProblem& problem);
/// The same, and keeps the reply.
bool QueryKeeping(TEngine& engine, const NQ_TString& key, NQ_TDict& entry, NQ_TAny& value, TQueryProblem& problem);

/// One request; see TName::DoQueryRPC. `said` tells why there is no reply.
bool DoQuery(TEngine& engine, const NQ_TString& host, const NQ_TString& server, const NQ_TString& method,
             const NQ_TDict& params, NQ_TAny& result, NQ_TString& said);

/// Asks for something within what the call in hand may ask for, on the thread that resolves; elsewhere it is just
/// asked. Throws NQ_EException when a limit is reached or services are not asked in a preview, and what the request
/// throws; what was thrown is remembered, so that the token that fails for it tells it.
template <class TRequest>
auto Ask(TEngine& engine, TRequest request);

/// Counts one request against the budget while it lives; throws as Ask does when there is none left.
class TRequestInHand {
 public:
  explicit TRequestInHand(TEngine& engine);
  TRequestInHand(const TRequestInHand&) = delete;
  TRequestInHand& operator=(const TRequestInHand&) = delete;
  /// Without an answer, what it took counts.
  ~TRequestInHand();
  void Answered() { answered_ = true; }

 private:
  TEngine& engine_;
  const bool counts_;
  const std::int64_t begin_;
  bool answered_ = false;
};

/// Notes what the exception in hand says as the reason why a service failed.
void NoteServiceFailure(TEngine& engine);

template <class TRequest>
auto Ask(TEngine& engine, TRequest request) {
  try {
    TRequestInHand inHand(engine);
    auto reply = request();
    inHand.Answered();
    return reply;
  } catch (...) {
    NoteServiceFailure(engine);
    throw;
  }
}

}  // namespace templatenames
