#include "formatting/date/DateOptions.h"

namespace templatenames {

const std::array<NQ_TString, TDateKeys::kCount>& TDateKeys::All() {
  static const auto* const keys = new std::array<NQ_TString, kCount>{
      NQ_TString(u"InputDateTimeFormat"),
      NQ_TString(u"CustomInputDateTimeFormat"),
      NQ_TString(u"InputTimeZone"),
      NQ_TString(u"InputLanguage"),
      NQ_TString(u"DateTimeFormat"),
      NQ_TString(u"CustomDateTimeFormat"),
      NQ_TString(u"TimeZone"),
      NQ_TString(u"Language"),
  };
  return *keys;
}

const std::array<NQ_TString, 4>& IsoPatterns() {
  static const auto* const patterns =
      new std::array<NQ_TString, 4>{NQ_TString(u"yyyy-MM-dd'T'HH:mm:ss.SSXXX"), NQ_TString(u"yyyy-MM-dd'T'HH:mm:ssXXX"),
                                    NQ_TString(u"yyyy-MM-dd'T'HH:mmXXX"), NQ_TString(u"yyyy-MM-dd")};
  return *patterns;
}

}  // namespace templatenames
