// The XML parser with bounds on what a file may cost.
#pragma once

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include <cstddef>
#include <cstdint>
#include <unordered_set>

#include "TNameLimits.h"

class NQ_TString;

namespace xmlvalues {

/// A DOM parser for one untrusted file. Where the file oversteps a limit or asks for something outside itself, parsing
/// ends as it does at a fault in the file, with a SAXParseException that names the limit.
///
/// A document type declaration is short, and declares no parameter entities, nor attributes beside entities: those are
/// the places where the XML library expands entities without counting.
class TBoundedParser : public xercesc::XercesDOMParser {
 public:
  TBoundedParser(const TNameLimits& limits, xercesc::MemoryManager& memory);

  /// Reads the file of that path, given in the framework's text, whatever the locale.
  void ParseFile(const NQ_TString& file);
  /// Notes that so many bytes of the file were read.
  void CountBytes(std::uint64_t count);

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
  void startAttList(const xercesc::DTDElementDecl& element) override;
  xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

 private:
  [[noreturn]] void Refuse(const char* why) const;
  void CountNodes(std::uint64_t count);
  void CountCharacters(std::uint64_t count);
  /// Notes that an element or attribute of that name was read.
  void CountName(const XMLCh* name);

  const TNameLimits limits_;
  xercesc::SecurityManager security_;
  std::uint64_t bytes_ = 0;
  std::uint64_t mostBytes_;  // that may be read for now
  std::uint64_t nodes_ = 0;
  std::unordered_set<std::size_t> names_;  // hashes of those that were read
  std::uint64_t identifiers_ = 0;
  std::uint64_t nameSteps_ = 0;  // that looking up both may have taken
  std::uint64_t characters_ = 0;
  std::uint64_t entityCharacters_ = 0;
  int depth_ = 0;
  bool inDoctype_ = false;  // where less may be read
};

}  // namespace xmlvalues
