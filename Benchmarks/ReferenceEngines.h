// What the library is measured against. Each engine holds one workload: Run() makes the text once more,
// Text() is the text made last. Where an engine can reuse its output buffer it does.
//
//   Memcpy     a copy of the finished text: the physical limit
//   Hand8      the hand-written limit: one memchr scan over UTF-8, one hash lookup a token, append
//   CTemplate  ctemplate with its template parsed beforehand
#pragma once

#include <absl/container/flat_hash_map.h>
#include <absl/strings/string_view.h>
#include <ctemplate/template.h>

#include <string>
#include <string_view>

#include "Workloads.h"

namespace bench {

class Memcpy {
 public:
  explicit Memcpy(const Workload& w) : from_(w.Expected()), to_(from_.size(), ' ') {}
  void Run();
  std::string Text() const { return to_; }

 private:
  std::string from_, to_;
};

class Hand8 {
 public:
  using Input = std::string;

  explicit Hand8(const Workload& w);
  void Run() { Resolve(in_); }
  void Resolve(std::string_view text);
  std::string Text() const { return out_; }

 private:
  void Put(std::string_view text);

  std::string in_, out_;
  absl::flat_hash_map<std::string, std::string> values_;
  bool nesting_ = false;
};

class CTemplate {
 public:
  explicit CTemplate(const Workload& w);
  void Run();
  std::string Text() const { return out_; }

 private:
  static void Fill(const Workload& w, const Pieces& parts, ctemplate::TemplateDictionary* dictionary);

  ctemplate::TemplateDictionary dictionary_{"values"};
  ctemplate::TemplateCache cache_;
  ctemplate::TemplateString key_{"the template"};
  std::string out_;
};

}  // namespace bench
