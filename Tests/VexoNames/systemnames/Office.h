// The services around a VexoNameUtils as a test sees them: what they reply, and what they were asked.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "CFS/Server/cfs_tproxy.h"
#include "NQM_TServices.h"
#include "NQ_TArray.h"
#include "NQ_TTree.h"
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

using Entries = std::initializer_list<std::pair<const char*, NQ_TAny>>;

template <class Dict = NQ_TDict>
Dict D(Entries entries) {
  Dict all;
  for (const auto& [key, value] : entries) all.Add(key, NQ_TAny(value));
  return all;
}
inline NQ_TTree T(Entries entries) { return D<NQ_TTree>(entries); }
inline NQ_TArray A(std::initializer_list<NQ_TAny> values) {
  NQ_TArray all;
  for (const NQ_TAny& value : values) all.Add(value);
  return all;
}
inline NQ_TURL U(const char* text) { return NQ_TURL(S(text)); }

/// Services of this process, with proxies for them in a VexoNameUtils. One that has no reply fails.
class Office {
 public:
  Office();
  ~Office();
  Office(const Office&) = delete;
  Office& operator=(const Office&) = delete;

  /// What a request gets, by service and method ("jobs ij"), or by path ("cfs /Resources/A").
  std::map<std::string, NQ_TAny> replies;
  /// The requests since the last call of this, short: "jobs ij a b; cfs /Resources/A zipped".
  std::string Asked();
  /// The last request in full.
  std::string LastRequest();
  /// How often a request was made in all.
  int Count(const std::string& request);

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

  std::mutex lock_;
  std::string asked_;
  std::string lastRequest_;
  std::map<std::string, int> counts_;
  std::shared_ptr<NQM_ITransport> before_;
};

}  // namespace system_test
