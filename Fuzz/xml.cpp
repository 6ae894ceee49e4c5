// Any file: it is read within the limits or refused with one of the errors, twice the same, and values are found as the
// plain way finds them.
//
// Input: a line with the key; the rest is the file.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "../Tests/VexoNames/PlainXMLLookup.h"
#include "Fuzz.h"
#include "NQ_EException.h"
#include "NQ_TURL.h"
#include "SimpleXMLValueLookup.h"

namespace {

using fuzz::Check;

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

// What became of the file, as text.
NQ_TString Outcome(const NQ_TURL& url, const NQ_TString& key, const TNameLimits& limits) {
  try {
    const xmlvalues::TDocument document(xmlvalues::LoadXMLDocument(url, limits));
    const xercesc::DOMElement* const root = document->getDocumentElement();
    NQ_TString value;
    const bool found = xmlvalues::LookupXMLValue(root, key, value);
    const XMLCh* const expected = plain_xml::Find(root, key.WideText());
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
