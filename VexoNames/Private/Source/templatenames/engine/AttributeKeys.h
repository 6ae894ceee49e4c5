// The attribute keys of a name's entry. Each is one string for the whole library, so that looking one up costs no
// conversion and no hashing.
#pragma once

#include "NQ_TString.h"

namespace templatenames {

struct TAttributeKeys {
  const NQ_TString type{u"Type"};
  const NQ_TString value{u"Value"};
  const NQ_TString format{u"Format"};
  const NQ_TString category{u"Category"};
  const NQ_TString typeHandler{u"TypeHandler"};
  const NQ_TString lookupHandler{u"LookupHandler"};
  const NQ_TString lookupHandler2{u"LookupHandler2"};
  const NQ_TString elem{u"Elem"};
  const NQ_TString extract{u"Extract"};
  const NQ_TString regex{u"RegEx"};
  const NQ_TString formattingOptions{u"FormattingOptions"};
  const NQ_TString info{u"Info"};
  const NQ_TString localizationFile{u"LocalizationFile"};
  const NQ_TString description{u"Description"};
  const NQ_TString userDescription{u"UserDescription"};
  const NQ_TString userInfo{u"UserInfo"};
  const NQ_TString visibility{u"Visibility"};
  const NQ_TString userDefined{u"UserDefined"};
  const NQ_TString rawData{u"RawData"};
  const NQ_TString host{u"Host"};
  const NQ_TString server{u"Server"};
  const NQ_TString method{u"Method"};
  const NQ_TString params{u"Params"};
  const NQ_TString cacheFilled{u"CacheFilled"};
  const NQ_TString dependencies{u"Dependencies"};  // of the parameters
  const NQ_TString callMethod{u"M"};               // of a request

  // Of definition records only.
  const NQ_TString urlValue{u"Value:"};
  const NQ_TString p1{u"P1"};
  const NQ_TString p2{u"P2"};
  const NQ_TString p3{u"P3"};
  const NQ_TString p4{u"P4"};
  const NQ_TString definition{u"Definition"};
  const NQ_TString cached{u"Cached"};
};

/// Made on first use, kept until the library unloads. Any thread.
const TAttributeKeys& Keys();

}  // namespace templatenames
