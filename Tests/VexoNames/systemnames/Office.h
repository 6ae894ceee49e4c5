// The services around a VexoNameUtils as a test sees them: what they reply, and what they were asked.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "CFS/Server/cfs_tproxy.h"
#include "NQM_TServices.h"
#include "NQ_TArray.h"
#include "Services/A_TProxy.h"
#include "Services/CW_TProxy.h"
#include "Services/FS_TProxy.h"
#include "Services/J_TProxy.h"
#include "Services/P_TProxy.h"
#include "Services/TM_TProxy.h"
#include "Support.h"
#include "Ticket/AT_TDictTicket.h"
#include "VexoNameUtils.h"

namespace system_test {

using names_test::Names;
using names_test::Output;
using names_test::Resolved;
using names_test::S;
using names_test::Text;

/// A value written as JSON. {"$url": "file://h/a"}, {"$time": 0}, {"$tree": {...}} and {"$illegal": 0} are what JSON
/// has not.
NQ_TAny J(std::string_view json);
inline NQ_TDict Dict(std::string_view json) { return *J(json).As<NQ_TDict>(); }
inline AT_TDictTicket Ticket(std::string_view json) { return AT_TDictTicket(Dict(json)); }
inline NQ_TURL U(std::string_view text) { return NQ_TURL(S(text)); }

/// Services of this process, with proxies for them in a VexoNameUtils. One that has no reply fails.
class Office {
 public:
  /// Replies as the other form takes them.
  explicit Office(std::string_view json = "{}");
  ~Office();
  Office(const Office&) = delete;
  Office& operator=(const Office&) = delete;

  /// What a request gets, by service and method ("jobs ij"), or by path ("cfs /Resources/A").
  void Reply(const std::string& request, const NQ_TAny& reply) { replies_[request] = reply; }
  /// The requests since the last call of this, short: "jobs ij a b; cfs /Resources/A zipped".
  std::string Asked() { return std::exchange(asked_, ""); }
  /// The last request in full.
  std::string LastRequest() { return lastRequest_; }
  /// How often a request was made in all.
  int Count(const std::string& request) { return counts_[request]; }

  CFS_TProxy cfs;
  J_TProxy jobs;
  P_TProxy products;
  CW_TProxy containers;
  FS_TProxy files;
  TM_TProxy tasks;
  A_TProxy accounts;
  VexoNameUtils system;

 private:
  NQ_TAny Answer(const std::string& service, const NQ_TDict& request);

  std::map<std::string, NQ_TAny> replies_;
  std::mutex lock_;  // services may be asked by several threads
  std::string asked_;
  std::string lastRequest_;
  std::map<std::string, int> counts_;
  std::shared_ptr<NQM_ITransport> before_;
};

}  // namespace system_test
