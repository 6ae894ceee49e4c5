#include "NQ_TTree.h"

#include "NQ_EException.h"

const NQ_TAny& NQ_TTree::ValueAtPath(const NQ_TString& path, const NQ_TString& separator) const {
  const NQ_TTree* tree = this;
  int begin = 0;
  for (;;) {
    const int end = separator.Empty() ? -1 : path.Find(separator, begin, false);
    const NQ_TAny* const value = tree->ValueOfKey(path.Substring(begin, end < 0 ? -1 : end - begin));
    if (value == nullptr) nq::Throw(NQ_ENoMatchingTreeKey("The tree has no such key", path));
    if (end < 0) return *value;
    tree = value->As<NQ_TTree>();
    if (tree == nullptr) nq::Throw(NQ_EEntryIsNotASubtree("The entry is not a subtree", path));
    begin = end + static_cast<int>(separator.Length());
  }
}
