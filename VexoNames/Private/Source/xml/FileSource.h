// Where the XML parser reads a file from.
#pragma once

#include <xercesc/sax/InputSource.hpp>

#include <cstddef>
#include <functional>

#include "NQ_TString.h"

namespace xmlvalues {

/// A plain file by its path, given in the framework's text, whatever the locale. Pipes, devices and folders are not
/// opened: they could block, or never end. The parser reports a file that cannot be opened.
class TFileSource : public xercesc::InputSource {
 public:
  /// Told, after each piece, how many bytes were read; may throw, which ends the reading.
  using TBytesRead = std::function<void(std::size_t)>;

  TFileSource(const NQ_TString& file, TBytesRead bytesRead);
  xercesc::BinInputStream* makeStream() const override;

 private:
  NQ_TString file_;
  TBytesRead bytesRead_;
};

}  // namespace xmlvalues
