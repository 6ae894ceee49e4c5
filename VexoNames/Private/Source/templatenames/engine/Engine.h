// What stands behind one TName: its registry, hooks, limits and log level, and the budget of the call in hand.
//
// The public operations lock it, call the functions of this folder, and return. Everything is guarded by the lock, but
// for the debug level and the provider of clients, which are read and set without it.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "NQ_TMutex.h"
#include "TName.h"
#include "TNameProxyProvider.h"
#include "engine/Budget.h"
#include "engine/NameStore.h"
#include "engine/NameSuggestions.h"

namespace templatenames {

/// The caller's functions that take part in every token, and the stages.
struct THooks {
  THooks();

  TName::TLookupFunction userLookup = nullptr;
  TName::TWarnFunction warnFunction = nullptr;
  TNameWarnLookupHandler* warnObject = nullptr;
  TName::TStageFunction elem;
  TName::TStageFunction extract;
  TName::TStageFunction regex;
  bool areOwn = true;  // no hook is set, and the stages are the library's own

  /// To be called after a change: asked for every token, `areOwn` is known beforehand.
  void Note();
};

struct TEngine {
  explicit TEngine(TName& owner) : names(owner) {}

  bool Logs(int level) const { return debugLevel.load(std::memory_order_relaxed) >= level; }
  void SetError(TName::TName_Error code) {
    const std::lock_guard guard(lock);
    error = code;
  }
  /// The entry of a name; throws NQ_ENoSuchKey with it when there is none.
  TEntry& EntryOf(const NQ_TString& key);

  TName& names;  // the object that handlers are given
  NQ_TMutex lock;
  std::atomic<int> debugLevel{0};
  TNameStore store;
  TNameSuggestions suggestions;
  THooks hooks;
  TNameLimits limits;
  TBudget budget;
  TName::TName_Error error = TName::TName_ErrorNone;
  NQ_TString errorReason;     // why the last definition failed
  NQ_TString serviceFailure;  // what the last request that failed had to say; a token that fails for it tells it
  NQ_TString defaultLocalizationFile{"templates"};
  std::shared_ptr<TNameProxyProvider> proxyProvider;
};

/// One public call: holds the lock, and gives the outermost call a fresh budget.
class TRun {
 public:
  explicit TRun(TEngine& engine) : engine_(engine), guard_(engine.lock) {
    if (engine_.budget.depth++ == 0) engine_.budget.Begin(engine_.limits);
  }
  TRun(const TRun&) = delete;
  TRun& operator=(const TRun&) = delete;
  ~TRun() { --engine_.budget.depth; }

 private:
  TEngine& engine_;
  std::lock_guard<NQ_TMutex> guard_;
};

}  // namespace templatenames
