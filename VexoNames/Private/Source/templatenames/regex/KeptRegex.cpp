// Compiled patterns that are kept: those of the process behind a lock, and a few per thread in front of them.
#include <array>
#include <mutex>
#include <unordered_map>

#include "regex/Regex.h"
#include "text/ThreadKept.h"

namespace templatenames {
namespace {

using TPointer = std::shared_ptr<const TRegex>;

struct THash {
  std::size_t operator()(const NQ_TString& pattern) const { return static_cast<std::size_t>(pattern.Hash()); }
};

// The process's patterns. When one more would be too many, all are dropped: whoever cycles through more patterns than
// that gains nothing from a finer choice, and everybody else gets here rarely.
class TProcessPatterns {
 public:
  TPointer Find(const NQ_TString& pattern) {
    {
      const std::lock_guard<std::mutex> guard(lock_);
      const auto found = patterns_.find(pattern);
      if (found != patterns_.end()) return found->second;
    }
    // Compiling takes long; if two threads do it at once, the first result stays.
    const auto fresh = std::make_shared<const TRegex>(pattern.StringView());
    const std::size_t bytes = fresh->Bytes() + pattern.Length() * sizeof(char16_t);
    const std::lock_guard<std::mutex> guard(lock_);
    if (patterns_.size() >= kMaxPatterns || bytes_ + bytes > kMaxBytes) {
      patterns_.clear();
      bytes_ = 0;
    }
    const auto [place, added] = patterns_.try_emplace(pattern, fresh);
    if (added) bytes_ += bytes;
    return place->second;
  }

 private:
  static constexpr std::size_t kMaxPatterns = 256;
  static constexpr std::size_t kMaxBytes = 16 * 1024 * 1024;

  std::mutex lock_;
  std::unordered_map<NQ_TString, TPointer, THash> patterns_;
  std::size_t bytes_ = 0;
};

TProcessPatterns& ProcessPatterns() {
  static auto* const patterns = new TProcessPatterns;  // never destroyed: threads may outlive static objects
  return *patterns;
}

// The patterns of a thread. Each has one place, found by its hash, and shares it with those that want the same.
struct TThreadPatterns {
  struct TPlace {
    NQ_TString pattern;
    TPointer regex;
  };

  static constexpr std::size_t kPlaces = 16;
  static constexpr std::size_t kMaxPlaceBytes = 64 * 1024;

  std::array<TPlace, kPlaces> places;
  TPointer large;  // the last one that is too large to be kept here
};

const TPointer& Find(const NQ_TString& pattern) {
  TThreadPatterns& mine = TThreadKept<TThreadPatterns>::Mine();
  TThreadPatterns::TPlace& place = mine.places[pattern.Hash() % TThreadPatterns::kPlaces];
  if (place.regex != nullptr && place.pattern == pattern) return place.regex;
  TPointer found = ProcessPatterns().Find(pattern);
  if (found->Bytes() > TThreadPatterns::kMaxPlaceBytes) return mine.large = std::move(found);
  place.pattern = pattern;
  return place.regex = std::move(found);
}

}  // namespace

std::shared_ptr<const TRegex> FindRegex(const NQ_TString& pattern) { return Find(pattern); }

const TRegex& KeptRegex(const NQ_TString& pattern) { return *Find(pattern); }

TRegexOutcome FirstGroup(const NQ_TString& pattern, const NQ_TString& input, const TRegexLimits& limits) {
  TRegexOutcome outcome;
  static_cast<TRegexResult&>(outcome) = KeptRegex(pattern).AppendFirstGroup(input.StringView(), limits, outcome.group);
  return outcome;
}

}  // namespace templatenames
