// The values of an XML document, by their keys.
#pragma once

#include <absl/container/flat_hash_map.h>

#include <cstddef>
#include <string_view>
#include <xercesc/dom/DOM.hpp>

namespace xmlvalues {

/// The node's first text child; null when it has none, and for null.
const XMLCh* FirstText(const xercesc::DOMNode* node);

/// Finds the values of all keys in one walk over what lies below the root; looking one up visits no node.
///
///   const TValueIndex index(document->getDocumentElement(), u"name", u"value");
///   const XMLCh* const text = index.Find(u"Customer", true);  // null: no such key
///
/// Views the document's texts: it must not outlive the document, nor see it change. Any thread, once made.
class TValueIndex {
 public:
  /// Without a tag (null) there are no pairs.
  TValueIndex(const xercesc::DOMElement* root, const XMLCh* nameTag, const XMLCh* valueTag);

  /// The text of the valueTag that follows the first nameTag whose text is the key, where one follows. When there is
  /// none, or it is empty, and that is asked for: the text of the first element whose name is the key. Else null.
  const XMLCh* Find(std::u16string_view key, bool fallback) const;

  /// How many nodes were looked at to make it, those more than once counted each time.
  std::size_t NodesVisited() const { return nodesVisited_; }

 private:
  using TTexts = absl::flat_hash_map<std::u16string_view, const XMLCh*>;

  const XMLCh* TextOf(const xercesc::DOMNode* element);
  void AddPair(const xercesc::DOMNode* name, const XMLCh* valueTag);

  TTexts pairs_;     // by the name's text; null where the value is empty
  TTexts elements_;  // by the element's name; null where it is empty
  std::size_t nodesVisited_ = 0;
};

}  // namespace xmlvalues
