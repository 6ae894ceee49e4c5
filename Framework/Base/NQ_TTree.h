// The nested dictionary.
#pragma once

#include "NQ_TDict.h"

/// A dictionary whose values may be further trees (definition records, cached configuration). Threads and sharing as
/// for NQ_TDict.
class NQ_EXPORT NQ_TTree final : public NQ_TClassOf<NQ_TTree, NQ_TDict, "NQ_TTree"> {
 public:
  using NQ_TClassOf::NQ_TClassOf;
  NQ_TTree() = default;
  NQ_TTree(const NQ_TTree& other, unsigned int capacity) : NQ_TClassOf(static_cast<const NQ_TDict&>(other), capacity) {}

  /// The value at the end of a path of keys joined by the separator. Throws NQ_ENoMatchingTreeKey when a key is
  /// missing, NQ_EEntryIsNotASubtree when an entry on the way is no tree, each with the path as data.
  const NQ_TAny& ValueAtPath(const NQ_TString& path, const NQ_TString& separator) const;
};
