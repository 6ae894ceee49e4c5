// Encoded text tokens against the plain way of doing the same: four lines about jobs, for XML, for a URL, or with four
// characters of one's own replaced, by names with formatting options, by the formatter alone, and by hand, with one
// pass over each line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "NQ_TDict.h"
#include "VexoEngines.h"
#include "Workloads.h"

namespace bench {

struct Encoding {
  NQ_TDict (*options)();
  void (*append)(std::string_view value, std::string& out);  // the hand-written way
  const char* expected;
};

extern const Encoding kXml;
extern const Encoding kUrl;
extern const Encoding kCustom;

Workload FourLines();
Registry TextRegistry(const Encoding& encoding);

class EncodedByHand {
 public:
  explicit EncodedByHand(const Encoding& encoding);
  void Run();
  std::string Text() const { return out_; }

 private:
  void (*append_)(std::string_view value, std::string& out);
  std::vector<std::string> lines_;
  std::string out_;
};

}  // namespace bench
