#include "NQ_TURL.h"

#include <array>
#include <ostream>
#include <string>

namespace {

// RFC 3986, section 2.3, and the path separator.
constexpr std::array<bool, 256> kKept = [] {
  std::array<bool, 256> kept{};
  for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/"))
    kept[static_cast<unsigned char>(c)] = true;
  return kept;
}();

}  // namespace

NQ_TURL::NQ_TURL(const NQ_TString& text) {
  const int colon = text.Find("://");
  if (colon < 0) {
    path_ = text;
    return;
  }
  const int host = colon + 3;
  const int slash = text.Find('/', host);
  scheme_ = text.Substring(0, colon);
  host_ = text.Substring(host, slash < 0 ? -1 : slash - host);
  if (slash >= 0) path_ = text.Substring(slash + 1);
}

NQ_TString NQ_TURL::Text() const {
  if (scheme_.Empty() && host_.Empty()) return path_;
  NQ_TString text;
  text.Reserve(scheme_.Length() + host_.Length() + path_.Length() + 4);
  text.Append(scheme_).Append(std::u16string_view(u"://")).Append(host_).Append(u'/').Append(path_);
  return text;
}

NQ_TString NQ_TURL::FileName() const { return path_.Substring(path_.Find('/', -1, true) + 1); }

NQ_TURL NQ_TURL::Location() const {
  const int slash = path_.Find('/', -1, true);
  NQ_TURL location = *this;
  location.path_ = slash < 0 ? NQ_TString() : path_.Substring(0, slash);
  return location;
}

NQ_TString NQ_TURL::FolderName() const { return Location().FileName(); }

NQ_TString NQ_TURL::HexEncode(const NQ_TString& text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(text.Length());
  for (const char c : text.Narrow()) {
    const auto byte = static_cast<unsigned char>(c);
    if (kKept[byte]) {
      encoded.push_back(c);
    } else {
      encoded.append({'%', kHex[byte >> 4], kHex[byte & 15]});
    }
  }
  return NQ_TString(std::string_view(encoded));
}

void NQ_TURL::PrintOn(std::ostream& out) const { out << Text(); }

void NQ_TURL::NQ_Pack(NQ_IPacking& packing) const {
  packing.PackString(scheme_);
  packing.PackString(host_);
  packing.PackString(path_);
}

void NQ_TURL::NQ_Unpack(NQ_IUnpacking& unpacking) {
  scheme_ = unpacking.UnpackString();
  host_ = unpacking.UnpackString();
  path_ = unpacking.UnpackString();
}
