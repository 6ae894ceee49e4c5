// Looking values up in an XML document the plain way: by the XML library's own lists of elements, and anew for each
// key. What the library's index finds is held to it, in tests and a fuzz target.
#pragma once

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

namespace plain_xml {

inline const XMLCh* TextOf(const xercesc::DOMNode* node) {
  for (node = node == nullptr ? nullptr : node->getFirstChild(); node != nullptr; node = node->getNextSibling())
    if (node->getNodeType() == xercesc::DOMNode::TEXT_NODE) return node->getNodeValue();
  return nullptr;
}

inline const xercesc::DOMNode* NextElement(const xercesc::DOMNode* node) {
  do {
    node = node->getNextSibling();
  } while (node != nullptr && node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE);
  return node;
}

/// The key's value; null when there is none.
inline const XMLCh* Find(const xercesc::DOMElement* root, const XMLCh* key) {
  using xercesc::XMLString;
  const auto* const names = root->getElementsByTagName(u"name");
  for (XMLSize_t i = 0; i < names->getLength(); ++i) {
    if (!XMLString::equals(TextOf(names->item(i)), key)) continue;
    const auto* const next = NextElement(names->item(i));
    if (next == nullptr || !XMLString::equals(next->getNodeName(), u"value")) continue;
    if (TextOf(next) != nullptr) return TextOf(next);
    break;
  }
  if (XMLString::equals(key, u"*")) return nullptr;  // means every element to the list
  return TextOf(root->getElementsByTagName(key)->item(0));
}

}  // namespace plain_xml
