// The workflow system's own names.
//
// A VexoNameUtils gives a TName the names of the task that it serves: its job, customer, container, input file, ticket,
// owner, product and parameters. A server makes one, sets the proxies that it has, and for each task:
//
//   VexoNameUtils system;
//   system.SetCFSProxy(&cfs);
//   system.SetJobProxy(&jobs);
//   TName names;
//   system.DefineVexoNames(names, ticket, 1);     // loads the definitions, then resets
//   names.Resolve("<<job/>>_<<file/>>", text);    // asks the job service now, once for all names of the job
//   system.ResetVexoNames(names, ticket, 2);      // the next input of the same task
//
// Values come from the services when a template first needs one; then the whole group of names gets its values. What a
// service does not know, or what cannot be asked, makes the token fail or gives the default that the group documents
// (Docs/system-names.md). A request that failed is made again for the next token, within what `TNameLimits` says of
// queries. Names that are not defined in the TName are left alone, and nothing is asked for them alone.
//
// Lifetimes: proxies and tickets are borrowed. The proxies must outlive this object, this object every TName that it
// defined names in, and a ticket the use of the names that were reset with it.
//
// Threads: any number may share one object, each with a TName of its own. Every member may be called from any thread,
// but for `SetClock`. Definitions are loaded by one thread at a time, which keeps what was read for the others; values
// are looked up on the thread that resolves, with the lock of its TName held. Proxies are called from all these
// threads, and at the same time: their clients allow that, once their addresses are set. A proxy that is replaced may
// still be in use by a lookup that has begun; it can go when no TName is being resolved, reset or defined.
//
// Tests: a proxy is a client of the caller's, with an address of its own; NQM_TServices can stand in for all services
// of the process. Tests that run side by side give each its own host.
//
// Failures of definitions do not throw: `TName::GetErrorReason` tells which resource or record it was, and why.
//
// Log: lines on standard output from the debug level on that stands with the operation. What these operations do to
// the TName is logged by that one, at its own debug level.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "NQ_TDict.h"
#include "NQ_TString.h"
#include "NQ_TTree.h"
#include "NQ_TURL.h"

class A_TProxy;
class AT_TTicket;
class CFS_TProxy;
class CW_TProxy;
class FS_TProxy;
class J_TProxy;
class P_TProxy;
class TM_TProxy;
class TName;

namespace systemnames {
struct TContext;
}  // namespace systemnames

class NQ_EXPORT VexoNameUtils {
 public:
  /// A monotonic clock, in nanoseconds. Called from any thread.
  using TClock = std::int64_t (*)();

  // ---- VexoNameUtils.cpp: the object

  VexoNameUtils();
  ~VexoNameUtils();
  VexoNameUtils(const VexoNameUtils&) = delete;
  VexoNameUtils& operator=(const VexoNameUtils&) = delete;

  /// The services to ask, null for none; names reset before use the new one from their next lookup on.
  void SetCFSProxy(CFS_TProxy* proxy) { cfs_ = proxy; }
  void SetJobProxy(J_TProxy* proxy) { jobs_ = proxy; }
  void SetProductProxy(P_TProxy* proxy) { products_ = proxy; }
  void SetContainerProxy(CW_TProxy* proxy) { containers_ = proxy; }
  void SetFileServerProxy(FS_TProxy* proxy) { files_ = proxy; }
  /// No name asks the task manager.
  void SetTaskProxy(TM_TProxy* proxy) { tasks_ = proxy; }
  void SetAAProxy(A_TProxy* proxy) { accounts_ = proxy; }

  /// How long a user's definitions, once read, are used, in milliseconds; 3000 at first. 0: until `ClearCache`;
  /// negative: they are read each time. Other definitions are used until `ClearCache`.
  int GetCachingPolicy() const { return cachingPolicy_; }
  void SetCachingPolicy(int milliseconds) { cachingPolicy_ = milliseconds; }
  int GetDebugLevel() const { return debugLevel_; }
  /// Returns the level before.
  int SetDebugLevel(int level) { return debugLevel_.exchange(level); }
  /// By which definitions grow old; null: the system's. For repeatable tests: before any other thread uses the object,
  /// and before the first definition.
  void SetClock(TClock clock);

  // ---- TreeCache.cpp: definitions once read

  /// Forgets all definitions read so far; returns how many trees they were. Names that are defined stay. Waits for a
  /// thread that loads definitions.
  std::uint64_t ClearCache();

  // ---- DefineNames.cpp: definitions from the configuration server

  /// Loads the definitions of the global and the user's template names, and those of the task unless its name is empty.
  /// Does nothing without a configuration server. A list of which a tree cannot be read or defined ends there, and the
  /// next list follows; `TName::GetErrorReason` tells the last such failure. Names that are defined already stay as
  /// they are. Throws what asking for the name of the server's tree throws. Logs from level 1 on, each resource from
  /// level 2 on.
  void DefineSystemVexoNames(TName& names, const NQ_TString& taskName);
  /// `DefineSystemVexoNames` for the ticket's task (the empty name without a ticket), then `ResetVexoNames`.
  void DefineVexoNames(TName& names, const AT_TTicket& ticket, unsigned int inputNumber);
  void DefineVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket);
  void DefineVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket, const NQ_TDict& job,
                       const NQ_TDict& product);
  void DefineVexoNames(TName& names, const NQ_TURL& input, const NQ_TDict& job, const NQ_TDict& product);

  // ---- ResetNames.cpp: the next input

  /// Hands the task's context to the system names that are defined and drops the values of the one before. Throws what
  /// the ticket, setting a value, and asking for a job's parameters throw; some names are then still those of the
  /// context before, until a reset that ends well. Logs from level 1 on.
  ///
  /// The input is the ticket's with that number, counted from 1; "file:///" when there is none. The ticket's job is
  /// asked about by its identifier. Parameter names are created when a template first asks for one.
  void ResetVexoNames(TName& names, const AT_TTicket& ticket, unsigned int inputNumber);
  /// The job is the one that the input belongs to.
  void ResetVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket);
  /// Job and product as their services describe them. Their parameter names are created at once.
  void ResetVexoNames(TName& names, const NQ_TURL& input, const AT_TTicket& ticket, const NQ_TDict& job,
                      const NQ_TDict& product);
  void ResetVexoNames(TName& names, const NQ_TURL& input, const NQ_TDict& job, const NQ_TDict& product);

 private:
  template <auto Member>
  class TLookupHandler;
  class TWarnHandler;
  struct THandlers;

  // TreeCache.cpp
  const NQ_TTree& GetCachedTree(CFS_TProxy& cfs, const NQ_TString& path, bool timed);

  // DefineNames.cpp
  void DefineVexoNames(TName& names, const systemnames::TContext& context);
  bool DefineVexoNames(TName& names, CFS_TProxy& cfs, const NQ_TString& listPath, bool user);
  bool DefineResource(TName& names, CFS_TProxy& cfs, const NQ_TString& resource, bool user, bool defines);

  // ResetNames.cpp
  void ResetVexoNames(TName& names, const systemnames::TContext& context);
  void RedefineParameterVexoNames(TName& names, const systemnames::TContext& context, const NQ_TString& jobId) const;
  void SetLookupHandlers(TName& names) const;

  // JobNames.cpp
  void SetJobLookupHandler(TName& names) const;
  bool LookupJobInfo(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  static void CalculateJobVexoNames(const NQ_TDict& job, TName& names);
  NQ_TDict FindJobInfo(TName& names) const;
  NQ_TString FindJID(TName& names) const;

  // CustomerNames.cpp
  void SetCustomerLookupHandler(TName& names) const;
  bool LookupCustomerInfo(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  static void CalculateCustomerVexoNames(const NQ_TDict& customer, TName& names);

  // ContainerNames.cpp
  void SetContainerLookupHandler(TName& names) const;
  bool LookupContainerInfo(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  static void CalculateContainerVexoNames(const NQ_TDict& container, TName& names);

  // FileNames.cpp
  void SetFileLookupHandler(TName& names) const;
  void SetFileTypeLookupHandler(TName& names) const;
  void SetVexoIDLookupHandler(TName& names) const;
  bool LookupFile(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  bool LookupFileType(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  bool LookupVexoID(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  void SetFileAttribute(TName& names, const NQ_TString& key, const NQ_TDict& wanted, const char* answer,
                        const char* fallback) const;
  static void CalculateFileVexoNames(const NQ_TURL& file, TName& names);

  // TicketNames.cpp
  void SetTicketLookupHandler(TName& names) const;
  void SetTaskOwnerLookupHandler(TName& names) const;
  bool LookupTicket(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  bool LookupTaskOwner(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  static void CalculateTicketVexoNames(const AT_TTicket& ticket, TName& names);

  // ProductNames.cpp
  void SetProductLookupHandler(TName& names) const;
  bool LookupProductInfo(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  NQ_TDict FindProductInfo(TName& names) const;

  // ParameterNames.cpp
  void SetWarnLookupHandler(TName& names) const;
  void WarnLookup(const NQ_TString& key, TName& names) const;
  NQ_TDict FindParameters(TName& names, const NQ_TString& id,
                          NQ_TDict (*ask)(P_TProxy& products, const NQ_TString& id)) const;
  void RedefineJobParameterVexoNames(TName& names, const NQ_TString& jobId) const;
  void RedefineProductParameterVexoNames(TName& names, const NQ_TString& productId) const;
  void RedefinePartParameterVexoNames(TName& names, const NQ_TString& partId) const;

  // WorkflowParameters.cpp
  void RedefineWorkflowParameterVexoNames(TName& names, const NQ_TDict& parameters) const;
  bool LookupLiveXMLWorkflowParameter(const NQ_TString& key, NQ_TDict& entry, TName& names, NQ_TAny& value);
  void CalculateLiveWFPVexoNames(const NQ_TDict& parameters, TName& names) const;
  void UpdateWorkflowParametersFromXML(const NQ_TURL& file, const NQ_TDict& parameters, TName& names) const;

  std::atomic<int> debugLevel_{0};
  std::atomic<CFS_TProxy*> cfs_{nullptr};
  std::atomic<J_TProxy*> jobs_{nullptr};
  std::atomic<P_TProxy*> products_{nullptr};
  std::atomic<CW_TProxy*> containers_{nullptr};
  std::atomic<FS_TProxy*> files_{nullptr};
  std::atomic<TM_TProxy*> tasks_{nullptr};
  std::atomic<A_TProxy*> accounts_{nullptr};
  std::unique_ptr<const THandlers> handlers_;
  std::map<NQ_TString, NQ_TTree> trees_;                                // by path; these stay
  std::map<NQ_TString, std::pair<std::int64_t, NQ_TTree>> timedTrees_;  // with the time when each was read
  std::atomic<int> cachingPolicy_{3000};
  TClock clock_;
  std::mutex cacheLock_;  // guards both maps; held while definitions are loaded
};

/// Prepares the libraries that this one is built on, in their order, up to the first that fails; true when all are
/// ready. What succeeded once is not done again; after a failure the next call begins anew. Any thread.
NQ_EXPORT bool __NQ_INITIALIZATION_FUNCTION_VexoNames__();  // NOLINT(bugprone-reserved-identifier)
