#include "SimpleXMLValueLookupParser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include <cerrno>
#include <functional>
#include <string_view>

#include "NQ_TString.h"

namespace xmlvalues {
namespace {

// A document type declaration, apart from what the XML library reads ahead (48 KiB).
constexpr std::uint64_t kMostDoctypeBytes = 64 * 1024;
// What all entities together may hold. Times the entities that may be used, this bounds what they expand to where the
// XML library says so only at the end, in an attribute, to 41 million characters.
constexpr std::uint64_t kMostEntityCharacters = 4 * 1024;
// The XML library sorts the attributes of an element one by one, which takes the square of their number.
constexpr XMLSize_t kMostAttributes = 1'000;
// For an element or attribute the XML library may go through all names and identifiers so far, and all attributes that
// are declared for it. So many steps take about a second; 14,000 elements may each have a name of their own.
constexpr std::uint64_t kMostNameSteps = 100'000'000;

constexpr char kTooLarge[] = "the file is too large";

class TFileStream : public xercesc::BinInputStream {
 public:
  TFileStream(int file, TBoundedParser& parser) : file_(file), parser_(&parser) {}
  ~TFileStream() override { close(file_); }
  TFileStream(const TFileStream&) = delete;
  TFileStream& operator=(const TFileStream&) = delete;

  XMLFilePos curPos() const override { return position_; }
  XMLSize_t readBytes(XMLByte* out, XMLSize_t most) override {
    ssize_t count = 0;
    do {
      count = read(file_, out, most);
    } while (count < 0 && errno == EINTR);
    if (count < 0) count = 0;  // as if the file ended here: then it is not well-formed
    position_ += static_cast<XMLFilePos>(count);
    parser_->CountBytes(static_cast<std::uint64_t>(count));
    return static_cast<XMLSize_t>(count);
  }
  const XMLCh* getContentType() const override { return nullptr; }

 private:
  int file_;
  TBoundedParser* parser_;
  XMLFilePos position_ = 0;
};

// Opens plain files only: a pipe or a device could block, or never end. A NUL in the path would cut it short, and name
// another file.
int OpenPlainFile(const NQ_TString& path) {
  if (path.Find(u'\0') >= 0) return -1;
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  struct stat status {};
  if (file < 0 || (fstat(file, &status) == 0 && S_ISREG(status.st_mode))) return file;
  close(file);
  return -1;
}

class TFileSource : public xercesc::InputSource {
 public:
  TFileSource(const NQ_TString& file, TBoundedParser& parser)
      : InputSource(file.WideText()), file_(file), parser_(&parser) {}

  // None when the file cannot be opened, which the parser reports with the file's name.
  xercesc::BinInputStream* makeStream() const override {
    const int file = OpenPlainFile(file_);
    return file < 0 ? nullptr : new TFileStream(file, *parser_);
  }

 private:
  NQ_TString file_;
  TBoundedParser* parser_;
};

}  // namespace

TBoundedParser::TBoundedParser(const TNameLimits& limits, xercesc::MemoryManager& memory)
    : XercesDOMParser(nullptr, &memory), limits_(limits), mostBytes_(static_cast<std::uint64_t>(limits.xmlBytes)) {
  security_.setEntityExpansionLimit(static_cast<XMLSize_t>(limits.xmlEntities));
  setSecurityManager(&security_);
  getScanner()->setEntityHandler(this);
}

void TBoundedParser::ParseFile(const NQ_TString& file) { parse(TFileSource(file, *this)); }

void TBoundedParser::Refuse(const char* why) const {
  throw xercesc::SAXParseException(NQ_TString(why).WideText(), *getScanner()->getLocator());
}

void TBoundedParser::CountBytes(std::uint64_t count) {
  bytes_ += count;
  if (bytes_ > mostBytes_) Refuse(inDoctype_ ? "its document type declaration is too large" : kTooLarge);
}

void TBoundedParser::CountNodes(std::uint64_t count) {
  nodes_ += count;
  if (nodes_ > static_cast<std::uint64_t>(limits_.xmlNodes)) Refuse("it has too many elements");
}

// Entities make more of a file than its bytes, and so do attributes with a declared value.
void TBoundedParser::CountCharacters(std::uint64_t count) {
  characters_ += count;
  if (characters_ > static_cast<std::uint64_t>(limits_.xmlBytes)) Refuse(kTooLarge);
}

void TBoundedParser::CountName(const XMLCh* name) {
  names_.insert(std::hash<std::u16string_view>()(name));
  nameSteps_ += names_.size();
}

void TBoundedParser::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                  const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  if (attributeCount > kMostAttributes) Refuse("an element has too many attributes");
  CountNodes(1 + attributeCount);
  CountName(declaration.getFullName());
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    CountName(attributes.elementAt(i)->getQName());
    CountCharacters(xercesc::XMLString::stringLen(attributes.elementAt(i)->getValue()));
    if (attributes.elementAt(i)->getType() == xercesc::XMLAttDef::ID) nameSteps_ += ++identifiers_;
  }
  if (declaration.hasAttDefs()) nameSteps_ += declaration.getAttDefList().getAttDefCount();
  if (nameSteps_ > kMostNameSteps) Refuse("it has too many names");
  if (++depth_ > limits_.xmlDepth) Refuse("elements lie too deep within each other");
  XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

void TBoundedParser::endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const bool isRoot,
                                const XMLCh* const prefix) {
  --depth_;
  XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
}

void TBoundedParser::docCharacters(const XMLCh* const characters, const XMLSize_t length, const bool isCData) {
  CountNodes(isCData ? 1 : 0);
  CountCharacters(length);
  XercesDOMParser::docCharacters(characters, length, isCData);
}

void TBoundedParser::docComment(const XMLCh* const comment) {
  CountNodes(1);
  XercesDOMParser::docComment(comment);
}

void TBoundedParser::docPI(const XMLCh* const target, const XMLCh* const data) {
  CountNodes(1);
  XercesDOMParser::docPI(target, data);
}

void TBoundedParser::startEntityReference(const xercesc::XMLEntityDecl& declaration) {
  CountNodes(1);
  XercesDOMParser::startEntityReference(declaration);
}

void TBoundedParser::doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* const publicId,
                                 const XMLCh* const systemId, const bool hasIntSubset, const bool hasExtSubset) {
  inDoctype_ = hasIntSubset && bytes_ + kMostDoctypeBytes < mostBytes_;
  if (inDoctype_) mostBytes_ = bytes_ + kMostDoctypeBytes;
  XercesDOMParser::doctypeDecl(root, publicId, systemId, hasIntSubset, hasExtSubset);
}

void TBoundedParser::endIntSubset() {
  inDoctype_ = false;
  mostBytes_ = static_cast<std::uint64_t>(limits_.xmlBytes);
  XercesDOMParser::endIntSubset();
}

void TBoundedParser::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                                const bool isIgnored) {
  if (isParameter) Refuse("it declares a parameter entity");
  entityCharacters_ += 1 + declaration.getValueLen();
  if (entityCharacters_ > kMostEntityCharacters) Refuse("its entities hold too much");
  XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
}

void TBoundedParser::startAttList(const xercesc::DTDElementDecl& element) {
  if (entityCharacters_ > 0) Refuse("it declares both entities and attributes");
  XercesDOMParser::startAttList(element);
}

xercesc::InputSource* TBoundedParser::resolveEntity(xercesc::XMLResourceIdentifier*) {
  Refuse("it refers to something outside the file");
}

}  // namespace xmlvalues
