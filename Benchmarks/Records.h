// Names that come from records: loading 10,000 of them against building the same dictionaries alone, and names whose
// value is the kept reply of a service against names that hold theirs.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "NQ_TTree.h"
#include "VexoEngines.h"

class CFS_TProxy;

namespace bench {

inline constexpr std::size_t kRecords = 10'000;
/// What each of the engines below gives when all records came through.
std::string RecordsExpected();

/// The entries of the names, in a dictionary by name: what a registry holds, and nothing around it.
class DictionariesAlone {
 public:
  DictionariesAlone();
  void Run();
  std::string Text() const;

 private:
  NQ_TTree records_;
  NQ_TDict entries_;
};

/// A tree of records, as the configuration server gives it, loaded into an empty registry.
class RecordsLoaded {
 public:
  RecordsLoaded();
  ~RecordsLoaded();
  void Run();
  std::string Text() const;

 private:
  std::unique_ptr<CFS_TProxy> configuration_;
  std::unique_ptr<TName> names_;
};

/// The workload's names, their values replies that are kept already.
Registry CachedRegistry(const Workload& w);

}  // namespace bench
