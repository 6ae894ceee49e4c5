// Any file: it is read within the limits or refused with one of the errors, twice the same, and values are found as by
// the XML library's own lists of elements.
//
// Input: a line with the key; the rest is the file.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <xercesc/util/XMLString.hpp>

#include "Fuzz.h"
#include "NQ_EException.h"
#include "NQ_TURL.h"
#include "SimpleXMLValueLookup.h"

namespace {

using fuzz::Check;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLString;

// A file in memory.
class TFile {
 public:
  explicit TFile(std::string_view content) : file_(memfd_create("xml", MFD_CLOEXEC)) {
    Check(write(file_, content.data(), content.size()) == static_cast<ssize_t>(content.size()), "the file is written");
  }
  ~TFile() { close(file_); }
  TFile(const TFile&) = delete;
  TFile& operator=(const TFile&) = delete;
  NQ_TURL Url() const { return NQ_TURL(NQ_TString(("file:///proc/self/fd/" + std::to_string(file_)).c_str())); }

 private:
  int file_;
};

const XMLCh* TextOf(const DOMNode* node) { return xmlvalues::GetFirstTextValue(node); }

// The plain way.
const XMLCh* Find(const DOMElement* root, const XMLCh* key) {
  const auto* const names = root->getElementsByTagName(u"name");
  for (XMLSize_t i = 0; i < names->getLength(); ++i) {
    if (!XMLString::equals(TextOf(names->item(i)), key)) continue;
    const DOMNode* next = names->item(i)->getNextSibling();
    while (next != nullptr && next->getNodeType() != DOMNode::ELEMENT_NODE) next = next->getNextSibling();
    if (next == nullptr || !XMLString::equals(next->getNodeName(), u"value")) continue;
    if (TextOf(next) != nullptr) return TextOf(next);
    break;
  }
  if (XMLString::equals(key, u"*")) return nullptr;  // means every element there
  return TextOf(root->getElementsByTagName(key)->item(0));
}

// What became of the file, as text.
NQ_TString Outcome(const NQ_TURL& url, const NQ_TString& key, const TNameLimits& limits) {
  try {
    const xmlvalues::TDocument document(xmlvalues::LoadXMLDocument(url, limits));
    const DOMElement* const root = document->getDocumentElement();
    NQ_TString value;
    const bool found = xmlvalues::LookupXMLValue(root, key, value);
    const XMLCh* const expected = Find(root, key.WideText());
    Check(found == (expected != nullptr) && value == NQ_TString(expected), "the plain way finds the same");
    return value;
  } catch (const NQ_EException& error) {
    return error.NQ_Message();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const xmlvalues::TXMLPlatform platform;
  fuzz::TInput input(data, size);
  const NQ_TString key(input.Line());
  const TFile file(input.Rest());
  TNameLimits limits;
  limits.xmlEntities = 50;
  limits.xmlDepth = 20;
  const NQ_TString outcome = Outcome(file.Url(), key, limits);
  Check(Outcome(file.Url(), key, limits) == outcome, "reading it again gives the same");
  return 0;
}
