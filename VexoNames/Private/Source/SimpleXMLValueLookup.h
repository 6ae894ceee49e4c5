// Values from small XML files.
//
// A file answers one kind of question: what is the value of a key? It says so in one of two ways, the first of which
// wins; the root element itself is never asked:
//
//   <param><name>Customer</name><value>ACME</value></param>     Customer is ACME
//   <Customer>ACME</Customer>                                   so here
//
// An element's text is its first text child, white space included; CDATA sections do not count. Names are compared
// character by character, without namespaces.
//
//   const TXMLUse use;
//   const TDocument document(LoadXMLDocument(url, limits));
//   const TValueIndex index = IndexXMLValues(document->getDocumentElement());
//   bool found = LookupXMLValue(index, "Customer", value);
//
// Files are untrusted: nothing outside the file is read (an external document type declaration or entity counts as
// empty), only plain files are opened, and what a file may cost is bounded (TNameLimits.h). A file that oversteps fails
// to load, as one with a fault does; the message names the limit.
//
// Threads: any, each with documents of its own. A TXMLPlatform must exist before the first load and until the last
// document is released; TXMLUse sees to that where another thread may end the platform.
#pragma once

#include <xercesc/dom/DOM.hpp>

#include <memory>

#include "TNameLimits.h"
#include "xml/ValueIndex.h"

class NQ_TString;
class NQ_TURL;

namespace xmlvalues {

/// Starts the XML library and stops it again, unless a TXMLUse exists then: a thread that still reads a file while the
/// process ends goes on, and the library stays as it is.
class TXMLPlatform {
 public:
  TXMLPlatform();
  ~TXMLPlatform();
  TXMLPlatform(const TXMLPlatform&) = delete;
  TXMLPlatform& operator=(const TXMLPlatform&) = delete;
};

/// Keeps the XML library from being stopped. Throws NQ_EException where there is no TXMLPlatform, or no longer.
class TXMLUse {
 public:
  TXMLUse();
  ~TXMLUse();
  TXMLUse(const TXMLUse&) = delete;
  TXMLUse& operator=(const TXMLUse&) = delete;
};

/// Reads the file that the URL names. The document is the caller's, who releases it. Throws NQ_EException with a
/// message that names the file and the place in it, and NQ_EOutOfMemory.
xercesc::DOMDocument* LoadXMLDocument(const NQ_TURL& url, const TNameLimits& limits = {});

/// Releases a document.
struct TRelease {
  void operator()(xercesc::DOMDocument* document) const { document->release(); }
};
using TDocument = std::unique_ptr<xercesc::DOMDocument, TRelease>;

/// What LookupXMLValue needs to know of a document, found in one walk: for looking up several keys.
TValueIndex IndexXMLValues(const xercesc::DOMElement* root);

/// Stores the key's value; false, and an empty value, when the document has none.
bool LookupXMLValue(const TValueIndex& index, const NQ_TString& key, NQ_TString& value);
bool LookupXMLValue(const xercesc::DOMElement* root, const NQ_TString& key, NQ_TString& value);

/// The text of the first valueTag that follows a nameTag whose text is the key. Else, when asked to fall back, or
/// when such a valueTag is empty, the text of the first element whose name is the key. Null when there is none; it
/// lives as long as the document. Without a tag (null) only the fallback is left.
const XMLCh* FindXMLValue(const xercesc::DOMElement* root, const XMLCh* key, bool fallback, const XMLCh* nameTag,
                          const XMLCh* valueTag);

/// The node's first text child; null when it has none, and for null.
const XMLCh* GetFirstTextValue(const xercesc::DOMNode* node);

/// To be called while an exception of the XML library is caught: throws it as the framework's, with the file's name.
/// Other exceptions go on as they are.
[[noreturn]] void RaiseAsFrameworkError(const NQ_TString& file);

}  // namespace xmlvalues
