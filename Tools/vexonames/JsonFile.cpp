#include "JsonFile.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <unordered_set>
#include <vector>

#include "Errors.h"
#include "Text.h"

namespace {

/// Builds the value; refuses what the library's own builder would let pass.
class TBuilder final : public TJson::json_sax_t {
 public:
  TBuilder(std::string_view text, const std::string& file) : text_(text), file_(file) {}

  TJson Take() { return std::move(root_); }

  bool null() override { return Put(nullptr); }
  bool boolean(bool value) override { return Put(value); }
  bool number_integer(number_integer_t value) override { return Put(value); }
  bool number_unsigned(number_unsigned_t value) override { return Put(value); }
  bool number_float(number_float_t value, const string_t&) override { return Put(value); }
  bool string(string_t& value) override { return Put(std::move(value)); }
  bool binary(binary_t&) override { return false; }  // JSON text has none

  bool start_object(std::size_t) override { return Open(TJson::object()); }
  bool key(string_t& name) override {
    TLevel& level = levels_.back();
    level.key = name;
    if (!level.keys.insert(name).second) throw TInputError(file_ + ": " + Path() + ": the key appears twice");
    return true;
  }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(TJson::array()); }
  bool end_array() override { return Close(); }

  bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception& error) override {
    // "[json.exception.parse_error.101] parse error at line 1, column 2: what"
    std::string what = error.what();
    const std::size_t place = what.find(", column ");
    const std::size_t begin = place == std::string::npos ? what.find("] ") : what.find(": ", place);
    if (begin != std::string::npos) what.erase(0, begin + 2);
    throw TInputError(file_ + ':' + Place(position) + ": " + Shortened(Printable(what), 300));
  }

 private:
  struct TLevel {
    TJson* container;
    std::string key;
    std::unordered_set<std::string> keys;
  };

  TJson* Add(TJson&& value) {
    if (levels_.empty()) return &(root_ = std::move(value));
    TJson& container = *levels_.back().container;
    if (container.is_array()) {
      container.push_back(std::move(value));
      return &container.back();
    }
    // Past the map's own insertion, which looks through all members: that the key is new is known here.
    auto& members = container.get_ref<TJson::object_t&>();
    static_cast<TJson::object_t::Container&>(members).emplace_back(levels_.back().key, std::move(value));
    return &members.back().second;
  }

  bool Put(TJson&& value) {
    Add(std::move(value));
    return true;
  }

  bool Open(TJson&& container) {
    if (levels_.size() == kDeepestJson) {
      levels_.resize(4);  // enough of the path to find the place
      throw TInputError(file_ + ": " + Path() + "...: nested deeper than " + std::to_string(kDeepestJson) + " levels");
    }
    TJson* const added = Add(std::move(container));
    levels_.push_back({added, {}, {}});
    return true;
  }

  bool Close() {
    levels_.pop_back();
    return true;
  }

  std::string Path() const {
    std::string path;
    for (const TLevel& level : levels_) {
      if (level.container->is_array()) {
        path += '[' + std::to_string(level.container->size() - 1) + ']';
      } else {
        path = PathTo(path, level.key);
      }
    }
    return path;
  }

  // "line:column" of a position that counts the bytes read; columns count characters.
  std::string Place(std::size_t position) const {
    const std::string_view before = text_.substr(0, std::min(std::max<std::size_t>(position, 1) - 1, text_.size()));
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::string_view line = before.substr(before.rfind('\n') + 1);  // npos + 1 is 0
    const auto isBegin = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const auto characters = std::count_if(line.begin(), line.end(), isBegin);
    return std::to_string(lines + 1) + ':' + std::to_string(characters + 1);
  }

  std::string_view text_;
  const std::string& file_;
  TJson root_;
  std::vector<TLevel> levels_;
};

std::string ReadFile(const std::string& file) {
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  std::string text;
  std::vector<char> block(std::size_t{64} * 1024);
  while (in.read(block.data(), static_cast<std::streamsize>(block.size())) || in.gcount() > 0) {
    text.append(block.data(), static_cast<std::size_t>(in.gcount()));
    if (text.size() > kLargestFile) throw TInputError(file + ": larger than 64 MiB");
  }
  if (!in.eof()) throw TInputError(file + ": cannot be read: " + std::strerror(errno));
  return text;
}

}  // namespace

TJson ReadJsonFile(const std::string& file) { return ParseJson(ReadFile(file), file); }

TJson ParseJson(std::string_view text, const std::string& file) {
  TBuilder builder(text, file);
  TJson::sax_parse(text.begin(), text.end(), &builder);  // refuses by exception
  return builder.Take();
}

std::string PathTo(const std::string& path, std::string_view key) {
  const auto isPlain = [](unsigned char c) {
    return std::isalnum(c) != 0 || c >= 0x80 || std::strchr("_-.$", c) != nullptr;
  };
  const bool plain = !key.empty() && std::all_of(key.begin(), key.end(), isPlain);
  const std::string shown = Shortened(Printable(key), 60);
  return path + (path.empty() ? "" : ".") + (plain ? shown : '"' + shown + '"');
}
