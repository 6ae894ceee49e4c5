// The XML parser with bounds on what a file may cost.
#pragma once

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_set>

#include "TNameLimits.h"
#include "xml/Memory.h"

class NQ_TString;

namespace xmlvalues {

/// A DOM parser for one untrusted file. Whatever the file refers to outside itself (an external document type
/// declaration, an external entity) is read as if it were empty. Where the file oversteps a limit, parsing ends as it
/// does at a fault in the file, with a SAXParseException:
///
///   more than 500000 elements, attributes and other nodes (limit xmlNodes)
///
/// The XML library says which entity is used only where one stands in the text. In an attribute or a document type
/// declaration all that can be seen is that memory is taken for reading one; there each counts as the longest.
class TBoundedParser : public xercesc::XercesDOMParser, private IMemoryGuard {
 public:
  /// The memory must outlive the parser.
  TBoundedParser(const TNameLimits& limits, TMemory& memory);
  ~TBoundedParser() override;

  void ParseFile(const NQ_TString& file);

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount, bool isEmpty,
                    bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                  const XMLCh* prefix) override;
  void docCharacters(const XMLCh* characters, XMLSize_t length, bool isCData) override;
  void docComment(const XMLCh* comment) override;
  void docPI(const XMLCh* target, const XMLCh* data) override;
  void startEntityReference(const xercesc::XMLEntityDecl& declaration) override;
  void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* publicId, const XMLCh* systemId, bool hasIntSubset,
                   bool hasExtSubset) override;
  void endIntSubset() override;
  void entityDecl(const xercesc::DTDEntityDecl& declaration, bool isParameter, bool isIgnored) override;
  xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

 private:
  /// What is counted, and how much of it there may be.
  struct TBound {
    const char* limit;  // its name in TNameLimits
    const char* what;
    std::int64_t most;
    std::int64_t count = 0;
  };

  xercesc::SAXParseException Refusal(const TBound& bound) const;
  void Count(TBound& bound, std::size_t count);
  /// Notes that an element or attribute of that name was read.
  void CountName(const XMLCh* name);

  bool Allows(std::size_t size, std::size_t inUse) override;
  /// As Count, where nothing may be thrown but that memory ran out.
  bool Fits(TBound& bound, std::size_t count);
  bool CountEntity();

  TMemory& memory_;
  TBound bytes_, nodes_, depth_, attributes_, entities_, expanded_, doctype_, nameSteps_, inUse_;
  std::optional<xercesc::SAXParseException> refusal_;  // why memory ran out
  bool opened_ = false;                                // the file is being read: what is read besides are entities
  bool inDoctype_ = false;
  std::size_t longestEntity_ = 0;
  std::size_t presumed_ = 0;               // length of the entity last used, before it is known
  std::unordered_set<std::size_t> names_;  // hashes of those that were read
  std::size_t identifiers_ = 0;
};

}  // namespace xmlvalues
