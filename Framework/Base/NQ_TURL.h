// URLs.
#pragma once

#include "NQ_TString.h"

/// A URL as scheme, host and path. The path is kept as written, neither decoded nor normalised, without the "/" that
/// separates it from the host.
///
///   NQ_TURL url(NQ_TString("file://srv/share/a b.pdf"));
///   url.Host();      // srv
///   url.Path();      // share/a b.pdf
///   url.FileName();  // a b.pdf
class NQ_EXPORT NQ_TURL final : public NQ_TValueOf<NQ_TURL, NQ_TValue, "NQ_TURL"> {
 public:
  NQ_TURL() = default;
  /// Text with "://" is scheme, host (up to the next "/") and path; text without it is a path only.
  explicit NQ_TURL(const NQ_TString& text);
  using NQ_TClassOf::operator=;

  const NQ_TString& Scheme() const { return scheme_; }
  const NQ_TString& Host() const { return host_; }
  const NQ_TString& Path() const { return path_; }
  void SetScheme(const NQ_TString& scheme) { scheme_ = scheme; }
  void SetHost(const NQ_TString& host) { host_ = host; }
  void SetPath(const NQ_TString& path) { path_ = path; }

  /// scheme "://" host "/" path; just the path when there is neither scheme nor host.
  [[nodiscard]] NQ_TString Text() const;
  /// The text after the last "/" of the path.
  [[nodiscard]] NQ_TString FileName() const;
  /// The same URL with the path cut before its last "/", empty when there is none.
  [[nodiscard]] NQ_TURL Location() const;
  /// The last segment of the location's path.
  [[nodiscard]] NQ_TString FolderName() const;

  /// Percent-encodes every byte of the UTF-8 text but the unreserved characters of RFC 3986, section 2.3, and "/".
  [[nodiscard]] static NQ_TString HexEncode(const NQ_TString& text);

  bool operator==(const NQ_TURL& other) const {
    return scheme_ == other.scheme_ && host_ == other.host_ && path_ == other.path_;
  }
  /// Prints the text form.
  void PrintOn(std::ostream& out) const override;
  void NQ_Pack(NQ_IPacking& packing) const override;
  void NQ_Unpack(NQ_IUnpacking& unpacking) override;

 private:
  NQ_TString scheme_;
  NQ_TString host_;
  NQ_TString path_;
};
