#include "xml/BoundedParser.h"

#include <absl/hash/hash.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/internal/XMLReader.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "NQ_TString.h"
#include "xml/FileSource.h"

namespace xmlvalues {
namespace {

using xercesc::XMLString;

// The size of the block by which uses of entities are recognised: the XML library makes an XMLReader for the file and
// for each entity that it reads, behind a pointer to the memory that it comes from. Should that change, the tests with
// entities that hold each other fail.
XMLSize_t ReaderSize() {
  static const XMLSize_t size =
      xercesc::XMLPlatformUtils::alignPointerForNewBlockAllocation(sizeof(xercesc::MemoryManager*)) +
      sizeof(xercesc::XMLReader);
  return size;
}

// What using the entity has the XML library read: its text, or its identifiers when it lies outside the file.
std::size_t LengthOf(const xercesc::XMLEntityDecl& entity) {
  return entity.getValueLen() + XMLString::stringLen(entity.getSystemId()) + XMLString::stringLen(entity.getPublicId());
}

}  // namespace

TBoundedParser::TBoundedParser(const TNameLimits& limits, TMemory& memory)
    : XercesDOMParser(nullptr, &memory),
      memory_(memory),
      bytes_{"xmlBytes", "bytes", limits.xmlBytes},
      nodes_{"xmlNodes", "elements, attributes and other nodes", limits.xmlNodes},
      depth_{"xmlDepth", "elements within each other", limits.xmlDepth},
      attributes_{"xmlAttributes", "attributes of an element", limits.xmlAttributes},
      entities_{"xmlEntities", "uses of entities", limits.xmlEntities},
      expanded_{"xmlBytes", "characters of entities and declared attributes", limits.xmlBytes},
      doctype_{"xmlDoctype", "characters of document type declaration", limits.xmlDoctype},
      nameSteps_{"xmlNameSteps", "comparisons of names", limits.xmlNameSteps},
      inUse_{"xmlMemory", "bytes of memory", limits.xmlMemory} {
  setLoadExternalDTD(false);  // as reading an empty one, where the XML library has had memory faults
  getScanner()->setEntityHandler(this);
  memory.SetGuard(this);
}

TBoundedParser::~TBoundedParser() { memory_.SetGuard(nullptr); }

void TBoundedParser::ParseFile(const NQ_TString& file) {
  try {
    parse(TFileSource(file, [this](std::size_t count) {
      Count(bytes_, count);
      if (inDoctype_) Count(doctype_, count);
    }));
  } catch (const xercesc::OutOfMemoryException&) {
    if (refusal_) throw *refusal_;  // NOLINT(misc-throw-by-value-catch-by-reference): a copy is thrown
    throw;
  }
}

xercesc::SAXParseException TBoundedParser::Refusal(const TBound& bound) const {
  const NQ_TString why =
      NQ_TString::Format("more than %lld %s (limit %s)", static_cast<long long>(bound.most), bound.what, bound.limit);
  return {why.WideText(), *getScanner()->getLocator()};
}

void TBoundedParser::Count(TBound& bound, std::size_t count) {
  bound.count += static_cast<std::int64_t>(count);
  if (bound.count > bound.most) throw Refusal(bound);
}

void TBoundedParser::CountName(const XMLCh* name) {
  names_.insert(absl::Hash<std::u16string_view>()(name));
  Count(nameSteps_, names_.size());
}

bool TBoundedParser::Allows(std::size_t size, std::size_t inUse) {
  if (size == ReaderSize() && std::exchange(opened_, true) && !CountEntity()) return false;
  inUse_.count = static_cast<std::int64_t>(inUse);
  return Fits(inUse_, size);
}

bool TBoundedParser::Fits(TBound& bound, std::size_t count) {
  bound.count += static_cast<std::int64_t>(count);
  if (bound.count <= bound.most) return true;
  if (!refusal_) refusal_ = Refusal(bound);  // the place is lost once the parser has left it
  return false;
}

bool TBoundedParser::CountEntity() {
  presumed_ = longestEntity_;
  return Fits(entities_, 1) && Fits(expanded_, presumed_) && (!inDoctype_ || Fits(doctype_, presumed_));
}

void TBoundedParser::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                                  const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                  const XMLSize_t attributeCount, const bool isEmpty, const bool isRoot) {
  attributes_.count = 0;
  Count(attributes_, attributeCount);
  Count(nodes_, 1 + attributeCount);
  CountName(declaration.getFullName());
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
    CountName(attribute.getQName());
    if (!attribute.getSpecified()) Count(expanded_, XMLString::stringLen(attribute.getValue()));
    if (attribute.getType() == xercesc::XMLAttDef::ID) Count(nameSteps_, ++identifiers_);
  }
  if (declaration.hasAttDefs()) Count(nameSteps_, declaration.getAttDefList().getAttDefCount());
  Count(depth_, 1);
  XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

void TBoundedParser::endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const bool isRoot,
                                const XMLCh* const prefix) {
  --depth_.count;
  XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
}

void TBoundedParser::docCharacters(const XMLCh* const characters, const XMLSize_t length, const bool isCData) {
  Count(nodes_, isCData ? 1 : 0);
  XercesDOMParser::docCharacters(characters, length, isCData);
}

void TBoundedParser::docComment(const XMLCh* const comment) {
  Count(nodes_, 1);
  XercesDOMParser::docComment(comment);
}

void TBoundedParser::docPI(const XMLCh* const target, const XMLCh* const data) {
  Count(nodes_, 1);
  XercesDOMParser::docPI(target, data);
}

void TBoundedParser::startEntityReference(const xercesc::XMLEntityDecl& declaration) {
  Count(nodes_, 1);
  expanded_.count -= static_cast<std::int64_t>(std::exchange(presumed_, 0));
  Count(expanded_, LengthOf(declaration));
  XercesDOMParser::startEntityReference(declaration);
}

void TBoundedParser::doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* const publicId,
                                 const XMLCh* const systemId, const bool hasIntSubset, const bool hasExtSubset) {
  inDoctype_ = hasIntSubset;
  XercesDOMParser::doctypeDecl(root, publicId, systemId, hasIntSubset, hasExtSubset);
}

void TBoundedParser::endIntSubset() {
  inDoctype_ = false;
  XercesDOMParser::endIntSubset();
}

void TBoundedParser::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                                const bool isIgnored) {
  longestEntity_ = std::max(longestEntity_, LengthOf(declaration));
  XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
}

xercesc::InputSource* TBoundedParser::resolveEntity(xercesc::XMLResourceIdentifier* resource) {
  static const XMLByte nothing = 0;
  return new (&memory_) xercesc::MemBufInputSource(&nothing, 0, resource->getSystemId(), false, &memory_);
}

}  // namespace xmlvalues
