#include "ReferenceEngines.h"

#include <cstdlib>
#include <cstring>

namespace bench {
namespace {

const char* FindChar(const char* from, const char* end, char c) {
  return static_cast<const char*>(std::memchr(from, c, std::size_t(end - from)));
}

const char* FindBegin(const char* from, const char* end) {  // of "<<"
  while ((from = FindChar(from, end, '<')) && !(from + 1 < end && from[1] == '<')) ++from;
  return from;
}

const char* FindEnd(const char* from, const char* end) {  // of "/>>"
  while ((from = FindChar(from, end, '>')) && !(from + 1 < end && from[1] == '>' && from[-1] == '/')) ++from;
  return from ? from - 1 : nullptr;
}

// The width of a format="%0Nd" attribute; 0 when there is none.
int PaddedWidth(std::string_view attributes) {
  constexpr std::string_view opening = "format=\"%0";
  if (attributes.size() < opening.size() + 3 || !attributes.starts_with(opening)) return 0;
  return attributes[opening.size() + 1] == 'd' ? attributes[opening.size()] - '0' : 0;
}

void AppendPadded(long number, int width, std::string& out) {
  char digits[24];
  int at = sizeof digits;
  do digits[--at] = char('0' + number % 10);
  while (number /= 10);
  while (int(sizeof digits) - at < width) digits[--at] = '0';
  out.append(digits + at, sizeof digits - std::size_t(at));
}

}  // namespace

void Memcpy::Run() { std::memcpy(to_.data(), from_.data(), from_.size()); }

Hand8::Hand8(const Workload& w) : in_(w.Template()) {
  for (const Name& name : w.names) {
    values_[name.key] = name.number >= 0 ? std::to_string(name.number) : w.Value(name);
    nesting_ = nesting_ || !name.nested.empty();
  }
  out_.reserve(w.Expected().size() + 64);
}

void Hand8::Resolve(std::string_view text) {
  out_.clear();
  Put(text);
}

void Hand8::Put(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (const char* begin = FindBegin(at, end)) {
    const char* const key = begin + 2;
    const char* const close = FindEnd(key, end);
    if (!close) break;
    const char* stop = key;
    while (stop < close && *stop != ' ') ++stop;
    out_.append(at, std::size_t(begin - at));
    at = close + 3;
    const auto found = values_.find(absl::string_view(key, std::size_t(stop - key)));
    if (found == values_.end()) continue;
    const std::string& value = found->second;
    const int width = stop < close ? PaddedWidth({stop + 1, std::size_t(close - stop - 1)}) : 0;
    if (width > 0)
      AppendPadded(std::strtol(value.c_str(), nullptr, 10), width, out_);
    else if (nesting_ && value.find("<<") != value.npos)
      Put(value);
    else
      out_ += value;
  }
  out_.append(at, std::size_t(end - at));
}

CTemplate::CTemplate(const Workload& w) {
  const auto write = [&w](const Pieces& parts) {
    return w.Write(parts,
                   [](const Name& name, bool) { return (name.nested.empty() ? "{{" : "{{>") + name.key + "}}"; });
  };
  for (const Name& name : w.names) {
    if (!name.nested.empty()) cache_.StringToTemplateCache(name.key, write(name.nested), ctemplate::DO_NOT_STRIP);
  }
  cache_.StringToTemplateCache(key_, write(w.pieces), ctemplate::DO_NOT_STRIP);
  Fill(w, w.pieces, &dictionary_);
  cache_.Freeze();  // no lock from here on
  out_.reserve(w.Expected().size() + 64);
}

void CTemplate::Fill(const Workload& w, const Pieces& parts, ctemplate::TemplateDictionary* dictionary) {
  for (const Piece& piece : parts) {
    if (piece.name < 0) continue;
    const Name& name = w.names[std::size_t(piece.name)];
    if (name.nested.empty()) {
      dictionary->SetValue(name.key, name.value);
    } else {
      ctemplate::TemplateDictionary* included = dictionary->AddIncludeDictionary(name.key);
      included->SetFilename(name.key);
      Fill(w, name.nested, included);
    }
  }
}

void CTemplate::Run() {
  out_.clear();
  cache_.ExpandNoLoad(key_, ctemplate::DO_NOT_STRIP, &dictionary_, nullptr, &out_);
}

}  // namespace bench
