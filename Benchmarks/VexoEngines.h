// The library as its callers use it: a registry that holds the workload's names, and TName::Resolve with a
// result that is used again. Several engines may share one registry.
//
//   VexoString  the caller holds its template as an NQ_TString, the workflow system's own text, and takes the result
//               as one; each slice starts with a template that the library has never seen as an object
//   VexoUtf8    the caller hands over UTF-8 each time and reads UTF-8 back; both conversions are timed
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "NQ_TString.h"
#include "TName.h"
#include "Workloads.h"

namespace bench {

using Registry = std::shared_ptr<TName>;

Registry MakeRegistry(const Workload& w);

class VexoString {
 public:
  using Input = NQ_TString;

  VexoString(Registry registry, const std::string& text);
  explicit VexoString(const Workload& w) : VexoString(MakeRegistry(w), w.Template()) {}
  // Another object with the same text, so that nothing is kept with it from earlier slices.
  void Renew() { in_ = NQ_TString(in_.StringView()); }
  void Run() { Resolve(in_); }
  void Resolve(const NQ_TString& text) { resolved_ &= registry_->Resolve(text, out_); }
  std::string Text() const;

 private:
  Registry registry_;
  NQ_TString in_, out_;
  bool resolved_ = true;
};

class VexoUtf8 {
 public:
  using Input = std::string;

  VexoUtf8(Registry registry, std::string text) : registry_(std::move(registry)), in_(std::move(text)) {}
  explicit VexoUtf8(const Workload& w) : VexoUtf8(MakeRegistry(w), w.Template()) {}
  void Run() { Resolve(in_); }
  void Resolve(std::string_view text);
  std::string Text() const;

 private:
  Registry registry_;
  std::string in_;
  NQ_TString out_;
  const char* text_ = "";
  bool resolved_ = true;
};

}  // namespace bench
