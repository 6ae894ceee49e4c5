// Files named by URLs.
#pragma once

#include "NQ_TURL.h"

/// Information about the file that a URL names.
class NQ_EXPORT NQ_TFileInfo {
 public:
  /// The second argument, whether links are followed, changes nothing here: only the name is asked for.
  explicit NQ_TFileInfo(const NQ_TURL& url, bool = false) : url_(url) {}

  /// The path under which this computer knows the file: the URL's path from the root on; for a URL of another host
  /// than "" and "localhost", "//" host "/" path.
  [[nodiscard]] NQ_TString LocalName() const;

 private:
  NQ_TURL url_;
};
