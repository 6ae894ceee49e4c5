// A formatter of the library on its own, without registry, lock and token: literal texts and formatted values of a
// workload, one after the other.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "NQ_TDict.h"
#include "NQ_TString.h"
#include "Workloads.h"

namespace bench {

class FormatterAlone {
 public:
  using Format = bool (*)(const NQ_TDict& options, NQ_TString& value);

  FormatterAlone(const Workload& w, NQ_TDict options, Format format) : options_(std::move(options)), format_(format) {
    for (const Piece& piece : w.pieces) {
      const std::string value = piece.name < 0 ? "" : w.names[std::size_t(piece.name)].value;
      parts_.push_back({NQ_TString(piece.literal.c_str()), NQ_TString(value.c_str())});
    }
  }
  void Run() {
    out_.Clear();
    for (const Part& part : parts_) {
      out_.Append(part.literal.StringView());
      if (part.value.Empty()) continue;
      value_.Clear();
      value_.Append(part.value.StringView());
      formatted_ &= format_(options_, value_);
      out_.Append(value_.StringView());
    }
  }
  std::string Text() const { return formatted_ ? out_.c_str() : "(not formatted)"; }

 private:
  struct Part {
    NQ_TString literal, value;
  };

  NQ_TDict options_;
  Format format_;
  std::vector<Part> parts_;
  NQ_TString value_, out_;
  bool formatted_ = true;
};

}  // namespace bench
