#include "xml/FileSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>
#include <xercesc/util/BinInputStream.hpp>

namespace xmlvalues {
namespace {

class TFileStream : public xercesc::BinInputStream {
 public:
  TFileStream(int file, TFileSource::TBytesRead bytesRead) : file_(file), bytesRead_(std::move(bytesRead)) {}
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
    bytesRead_(static_cast<std::size_t>(count));
    return static_cast<XMLSize_t>(count);
  }
  const XMLCh* getContentType() const override { return nullptr; }

 private:
  int file_;
  TFileSource::TBytesRead bytesRead_;
  XMLFilePos position_ = 0;
};

int OpenPlainFile(const NQ_TString& path) {
  if (path.Find(u'\0') >= 0) return -1;  // would cut the path short, and name another file
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  struct stat status {};
  if (file < 0 || (fstat(file, &status) == 0 && S_ISREG(status.st_mode))) return file;
  close(file);
  return -1;
}

}  // namespace

TFileSource::TFileSource(const NQ_TString& file, TBytesRead bytesRead)
    : InputSource(file.WideText()), file_(file), bytesRead_(std::move(bytesRead)) {}

xercesc::BinInputStream* TFileSource::makeStream() const {
  const int file = OpenPlainFile(file_);
  return file < 0 ? nullptr : new TFileStream(file, bytesRead_);
}

}  // namespace xmlvalues
