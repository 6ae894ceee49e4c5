// The nearest of many names: what a key that is no name was probably meant to be.
//
//   TNearestName names;
//   names.Add(NQ_TString("jobcustomername"));
//   names.Nearest(u"Job_Customer_Name");   // "jobcustomername": case and separators do not count
//   names.Nearest(u"jobcustmername");      // and so it is with up to three edits,
//   names.Nearest(u"jobnamecustomer");     // with words exchanged,
//   names.Nearest(u"jobname");             // or with a part left out
//
// It is an index, so that a question costs bounded work however many names there are. Among a million names that look
// all alike the nearest may therefore be missed, or another near one taken for it.
//
// How: a name is cut into quarters, and each is noted with its position and the length of the name. As three edits
// leave a quarter as it is, nearly always, the names that share one with a key are all that can be near it. The rarest
// quarters are looked up first, and the names that share most are compared first.
//
// Of names that are equally near, one with the digits of the key is taken, or with its first letter, or a longer one,
// or the one that was added first. Names without a letter, or with more than 100, are never suggested. Knows no
// registry. Takes about 150 bytes a name. One thread at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "NQ_TString.h"

namespace templatenames {

class TNearestName {
 public:
  /// Whether a name may be suggested.
  using TFilter = std::function<bool(const NQ_TString&)>;

  /// What a question cost.
  struct TWork {
    std::size_t lookups = 0;   // of pieces of the key
    std::size_t postings = 0;  // of names that share such a piece
    std::size_t compared = 0;  // characters of names that were compared
  };
  static constexpr std::size_t kMostPostings = 20'000;
  static constexpr std::size_t kMostCompared = 100'000;

  /// Each name once. Takes time linear in the name.
  void Add(NQ_TString name);
  void Clear() { *this = TNearestName(); }

  /// The nearest name that the filter lets through, or the empty string. Asks the filter about near names only.
  NQ_TString Nearest(std::u16string_view key, const TFilter& filter = {}, TWork* work = nullptr) const;

 private:
  // The names that hold one piece; names whose pieces have the same hash share a list.
  struct TList {
    std::uint32_t last = 0;  // place in postings_ + 1
    std::uint32_t count = 0;
  };
  struct TPosting {
    std::uint32_t name;
    std::uint32_t before;  // the list's posting before this one: its place + 1
  };
  struct TPiece;

  void Post(std::uint32_t name);
  void Grow();
  std::uint32_t ListOf(const TPiece& piece) const;
  std::vector<std::uint32_t> ListsFor(std::u16string_view letters, TWork& work) const;
  std::vector<std::uint32_t> NamesSharing(std::vector<std::uint32_t> lists, TWork& work) const;

  std::vector<NQ_TString> names_;
  std::vector<TPosting> postings_;
  std::vector<TList> lists_;  // a power of two of them
};

}  // namespace templatenames
