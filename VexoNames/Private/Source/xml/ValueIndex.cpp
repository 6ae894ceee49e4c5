#include "xml/ValueIndex.h"

namespace xmlvalues {
namespace {

using xercesc::DOMNode;

// The XML library takes a missing text for an empty one.
std::u16string_view View(const XMLCh* text) { return text == nullptr ? std::u16string_view() : text; }

bool IsElement(const DOMNode* node) { return node->getNodeType() == DOMNode::ELEMENT_NODE; }

// The node after this one in document order, below the root.
const DOMNode* NextBelow(const DOMNode* node, const DOMNode* root) {
  if (const DOMNode* child = node->getFirstChild(); child != nullptr) return child;
  for (; node != root; node = node->getParentNode())
    if (const DOMNode* sibling = node->getNextSibling(); sibling != nullptr) return sibling;
  return nullptr;
}

const DOMNode* FirstTextNode(const DOMNode* node, std::size_t& visited) {
  const DOMNode* child = node->getFirstChild();
  for (; child != nullptr && child->getNodeType() != DOMNode::TEXT_NODE; child = child->getNextSibling()) ++visited;
  return child;
}

const DOMNode* NextSiblingElement(const DOMNode* node, std::size_t& visited) {
  do {
    node = node->getNextSibling();
    ++visited;
  } while (node != nullptr && !IsElement(node));
  return node;
}

}  // namespace

const XMLCh* FirstText(const DOMNode* node) {
  std::size_t visited = 0;
  const DOMNode* const text = node == nullptr ? nullptr : FirstTextNode(node, visited);
  return text == nullptr ? nullptr : text->getNodeValue();
}

TValueIndex::TValueIndex(const xercesc::DOMElement* root, const XMLCh* nameTag, const XMLCh* valueTag) {
  const bool pairs = nameTag != nullptr && valueTag != nullptr;
  for (const DOMNode* node = NextBelow(root, root); node != nullptr; node = NextBelow(node, root)) {
    ++nodesVisited_;
    if (!IsElement(node)) continue;
    const std::u16string_view name = node->getNodeName();
    if (const auto [place, isFirst] = elements_.try_emplace(name, nullptr); isFirst) place->second = TextOf(node);
    if (pairs && name == nameTag) AddPair(node, valueTag);
  }
}

const XMLCh* TValueIndex::TextOf(const DOMNode* element) {
  const DOMNode* const text = FirstTextNode(element, nodesVisited_);
  return text == nullptr ? nullptr : text->getNodeValue();
}

void TValueIndex::AddPair(const DOMNode* name, const XMLCh* valueTag) {
  const DOMNode* const value = NextSiblingElement(name, nodesVisited_);
  if (value == nullptr || value->getNodeName() != std::u16string_view(valueTag)) return;
  const auto [place, isFirst] = pairs_.try_emplace(View(TextOf(name)), nullptr);
  if (isFirst) place->second = TextOf(value);
}

const XMLCh* TValueIndex::Find(std::u16string_view key, bool fallback) const {
  if (const auto found = pairs_.find(key); found != pairs_.end() && found->second != nullptr) return found->second;
  if (!fallback) return nullptr;
  const auto found = elements_.find(key);
  return found == elements_.end() ? nullptr : found->second;
}

}  // namespace xmlvalues
