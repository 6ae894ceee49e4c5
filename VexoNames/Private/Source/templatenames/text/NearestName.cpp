#include "text/NearestName.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "text/NameLikeness.h"
#include "text/Nearest.h"

namespace templatenames {

/// A piece of a name: its letters, and where they stand in a name of how many.
struct TNearestName::TPiece {
  std::size_t length;
  std::size_t at;
  std::u16string_view letters;
};

namespace {

/// Of names that are equally near, the one that was added first is nearer.
struct TNear {
  TNameDistance distance;
  std::uint32_t name;

  auto operator<=>(const TNear&) const = default;  // NOLINT(modernize-use-nullptr): clang-tidy 14 misreads it
};

constexpr std::size_t kLongest = 100;  // letters
constexpr std::size_t kQuarters = 4;
constexpr std::size_t kFewestLists = 1'024;

// Where the quarters of a name of that length begin; the last one is its end.
std::size_t QuarterAt(std::size_t length, std::size_t quarter) { return length * quarter / kQuarters; }

// Each of them once.
std::vector<std::uint32_t> MostFrequentFirst(std::vector<std::uint32_t> values) {
  std::ranges::sort(values);
  std::vector<std::pair<std::size_t, std::uint32_t>> counted;
  for (const std::uint32_t value : values) {
    if (counted.empty() || counted.back().second != value) counted.emplace_back(0, value);
    ++counted.back().first;
  }
  std::ranges::stable_sort(counted, std::ranges::greater{}, &std::pair<std::size_t, std::uint32_t>::first);
  values.clear();
  for (const auto& [count, value] : counted) values.push_back(value);
  return values;
}

}  // namespace

// FNV-1a: the quarters are a few letters long.
std::uint32_t TNearestName::ListOf(const TPiece& piece) const {
  std::uint64_t hash = 0xCBF2'9CE4'8422'2325;
  const auto mix = [&](std::uint64_t value) { hash = (hash ^ value) * 0x0000'0100'0000'01B3; };
  mix(piece.length);
  mix(piece.at);
  for (const char16_t unit : piece.letters) mix(unit);
  hash ^= hash >> 32;
  return static_cast<std::uint32_t>(hash & (lists_.size() - 1));
}

void TNearestName::Add(NQ_TString name) {
  if (postings_.size() + kQuarters >= 2 * lists_.size()) Grow();
  names_.push_back(std::move(name));
  Post(static_cast<std::uint32_t>(names_.size() - 1));
}

// Notes the name's quarters, and the whole of it, which is what finds names that differ in case and separators only
// among any number of others.
void TNearestName::Post(std::uint32_t name) {
  const std::u16string letters = LettersOf(names_[name].StringView());
  const std::size_t length = letters.size();
  if (length == 0 || length > kLongest) return;
  const auto post = [&](std::size_t begin, std::size_t end) {
    if (begin == end) return;
    TList& list = lists_[ListOf({length, begin, std::u16string_view(letters).substr(begin, end - begin)})];
    postings_.push_back({name, list.last});
    list = {static_cast<std::uint32_t>(postings_.size()), list.count + 1};
  };
  for (std::size_t quarter = 0; quarter < kQuarters; ++quarter)
    post(QuarterAt(length, quarter), QuarterAt(length, quarter + 1));
  post(0, length);
}

void TNearestName::Grow() {
  lists_.assign(std::max(kFewestLists, 2 * lists_.size()), {});
  postings_.clear();
  for (std::uint32_t name = 0; name < names_.size(); ++name) Post(name);
}

// The lists that hold the names which share a quarter with the key: of names about as long at about the same place, of
// names as long anywhere (exchanged words), of longer names where a part may have been left out.
std::vector<std::uint32_t> TNearestName::ListsFor(std::u16string_view letters, TWork& work) const {
  std::vector<std::uint32_t> lists;
  const auto look = [&](std::size_t length, std::size_t quarter, std::ptrdiff_t shift) {
    const std::size_t begin = QuarterAt(length, quarter);
    const std::size_t size = QuarterAt(length, quarter + 1) - begin;
    const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(begin) + shift;
    if (size == 0 || at < 0 || static_cast<std::size_t>(at) + size > letters.size()) return;
    ++work.lookups;
    const std::uint32_t list = ListOf({length, begin, letters.substr(static_cast<std::size_t>(at), size)});
    if (lists_[list].count > 0) lists.push_back(list);
  };
  const auto ours = static_cast<std::ptrdiff_t>(letters.size());
  const auto lookAll = [&](std::ptrdiff_t length, std::ptrdiff_t firstShift, std::ptrdiff_t lastShift) {
    for (std::size_t quarter = 0; quarter < kQuarters; ++quarter)
      for (std::ptrdiff_t shift = firstShift; shift <= lastShift; ++shift)
        look(static_cast<std::size_t>(length), quarter, shift);
  };
  constexpr std::ptrdiff_t kEdits = kMostEdits;
  for (std::ptrdiff_t length = std::max<std::ptrdiff_t>(1, ours - kEdits); length <= ours + kEdits; ++length)
    lookAll(length, length == ours ? -ours : -kEdits, length == ours ? ours : kEdits);
  for (std::ptrdiff_t length = ours + kEdits + 1; length <= 2 * ours + 2; ++length) {
    lookAll(length, 0, 0);
    lookAll(length, ours - length, ours - length);
  }
  lists.push_back(ListOf({letters.size(), 0, letters}));
  std::ranges::sort(lists);
  lists.erase(std::unique(lists.begin(), lists.end()), lists.end());
  return lists;
}

// The names in the lists, those in most of them first; of long lists only as much as the work allows.
std::vector<std::uint32_t> TNearestName::NamesSharing(std::vector<std::uint32_t> lists, TWork& work) const {
  std::ranges::sort(lists, {}, [&](std::uint32_t list) { return lists_[list].count; });
  std::vector<std::uint32_t> found;
  for (const std::uint32_t list : lists)
    for (std::uint32_t at = lists_[list].last; at != 0 && found.size() < kMostPostings; at = postings_[at - 1].before)
      found.push_back(postings_[at - 1].name);
  work.postings = found.size();
  return MostFrequentFirst(std::move(found));
}

NQ_TString TNearestName::Nearest(std::u16string_view key, const TFilter& filter, TWork* work) const {
  if (names_.empty() || key.size() > 2 * kLongest) return {};
  const TNameLikeness likeness(key);
  if (likeness.Letters().empty() || likeness.Letters().size() > kLongest) return {};
  TWork spent;
  std::optional<TNear> nearest;
  for (const std::uint32_t place : NamesSharing(ListsFor(likeness.Letters(), spent), spent)) {
    const NQ_TString& name = names_[place];
    if ((spent.compared += name.Length()) > kMostCompared) break;
    const TNear near{likeness.DistanceTo(name.StringView()), place};
    if (near.distance.letters == TNameDistance::kFar || (nearest && *nearest <= near)) continue;
    if (!filter || filter(name)) nearest = near;
  }
  if (work != nullptr) *work = spent;
  return nearest ? names_[nearest->name] : NQ_TString();
}

}  // namespace templatenames
