#include "NQ_TFileInfo.h"

NQ_TString NQ_TFileInfo::LocalName() const {
  const bool local = url_.Host().Empty() || url_.Host() == "localhost";
  return (local ? NQ_TString("/") : NQ_TString("//") + url_.Host() + "/") + url_.Path();
}
