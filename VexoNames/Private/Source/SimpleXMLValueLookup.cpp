#include "SimpleXMLValueLookup.h"

#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <mutex>
#include <type_traits>

#include "NQ_EException.h"
#include "NQ_TFileInfo.h"
#include "xml/BoundedParser.h"
#include "xml/Memory.h"

namespace xmlvalues {
namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

static_assert(std::is_same_v<XMLCh, char16_t>, "text goes over as it is");

// The XML library's life. Never destroyed: threads may ask for it while the process ends.
struct TLife {
  std::mutex mutex;
  int platforms = 0;  // not stopped
  int uses = 0;
};
TLife& Life() {
  static TLife& life = *new TLife;
  return life;
}

// Each kind of error has a line of its own: reports tell them apart by it, whatever is edited here.
template <class Exception>
[[noreturn]] void Raise(const NQ_TString& message, unsigned line) {
  nq::Throw(Exception(message), __builtin_FILE(), line);
}

xercesc::DOMDocument* Parse(const NQ_TString& file, const TNameLimits& limits, TMemory& memory) {
  xercesc::HandlerBase handler;  // throws fatal errors; the others are counted
  TBoundedParser parser(limits, memory);
  parser.setErrorHandler(&handler);
  parser.setDoSchema(false);
  parser.setDoNamespaces(false);
  parser.ParseFile(file);
  if (const auto errors = static_cast<int>(parser.getErrorCount()); errors != 0)
    nq::Throw(NQ_EException(NQ_TString::Format("%d parser errors", errors)));
  return parser.adoptDocument();
}

}  // namespace

TXMLPlatform::TXMLPlatform() {
  const std::lock_guard lock(Life().mutex);
  xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale);
  ++Life().platforms;
}

TXMLPlatform::~TXMLPlatform() {
  const std::lock_guard lock(Life().mutex);
  if (Life().uses > 0) return;
  --Life().platforms;
  xercesc::XMLPlatformUtils::Terminate();
}

TXMLUse::TXMLUse() {
  const std::lock_guard lock(Life().mutex);
  if (Life().platforms == 0) nq::Throw(NQ_EException("The XML library is not running"));
  ++Life().uses;
}

TXMLUse::~TXMLUse() {
  const std::lock_guard lock(Life().mutex);
  --Life().uses;
}

xercesc::DOMDocument* LoadXMLDocument(const NQ_TURL& url, const TNameLimits& limits) {
  const NQ_TString file = NQ_TFileInfo(url, false).LocalName();
  std::unique_ptr<TMemory, TFreeAll> memory(&TMemory::Make());  // outside: what the parser throws has its text there
  try {
    xercesc::DOMDocument* const document = Parse(file, limits, *memory);
    memory.release()->LeaveTo(document);
    return document;
  } catch (...) {
    RaiseAsFrameworkError(file);
  }
}

void RaiseAsFrameworkError(const NQ_TString& file) {
  try {
    throw;
  } catch (const xercesc::OutOfMemoryException& error) {
    Raise<NQ_EOutOfMemory>(error.getMessage(), 54);
  } catch (const xercesc::XMLException& error) {
    Raise<NQ_EException>(NQ_TString::Format("XML exception at line %d in file %s:%s", int(error.getSrcLine()),
                                            file.c_str(), NQ_TString(error.getMessage()).c_str()),
                         59);
  } catch (const xercesc::SAXParseException& error) {
    Raise<NQ_EException>(NQ_TString::Format("The XML file '%s' is not well-formed: error at line %d column %d:%s",
                                            file.c_str(), int(error.getLineNumber()), int(error.getColumnNumber()),
                                            NQ_TString(error.getMessage()).c_str()),
                         64);
  } catch (const xercesc::SAXException& error) {
    Raise<NQ_EException>(error.getMessage(), 69);
  } catch (const xercesc::DOMException& error) {
    Raise<NQ_EException>(error.getMessage(), 74);
  }
}

TValueIndex IndexXMLValues(const DOMElement* root) { return {root, u"name", u"value"}; }

bool LookupXMLValue(const TValueIndex& index, const NQ_TString& key, NQ_TString& value) {
  const XMLCh* const text = index.Find(key.WideText(), true);
  value = NQ_TString(text);
  return text != nullptr;
}

bool LookupXMLValue(const DOMElement* root, const NQ_TString& key, NQ_TString& value) {
  return LookupXMLValue(IndexXMLValues(root), key, value);
}

const XMLCh* FindXMLValue(const DOMElement* root, const XMLCh* key, bool fallback, const XMLCh* nameTag,
                          const XMLCh* valueTag) {
  return TValueIndex(root, nameTag, valueTag).Find(key, fallback);
}

const XMLCh* GetFirstTextValue(const DOMNode* node) { return FirstText(node); }

}  // namespace xmlvalues
