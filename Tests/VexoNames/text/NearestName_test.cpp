// Whether mistakes lead to the name that was meant, and what finding it costs among a million.
#include "text/NearestName.h"

#include <algorithm>
#include <functional>
#include <random>

#include "Support.h"
#include "systemnames/NameTables.h"

namespace templatenames {
namespace {

std::vector<NQ_TString> SystemNames() {
  std::vector<NQ_TString> names;
  for (const auto& row : systemnames::kJobNames) names.emplace_back(row.name);
  for (const auto& row : systemnames::kCustomerNames) names.emplace_back(row.name);
  for (const auto& row : systemnames::kProductNames) names.emplace_back(row.name);
  for (const char* const name : systemnames::kContainerNames) names.emplace_back(name);
  for (const char* const name : systemnames::kTicketNames) names.emplace_back(name);
  for (const auto& row : systemnames::kFileNames) names.emplace_back(row.name);
  for (const char* const name : {"filetype", "vexoid", "jp.Paper", "jp.Copies", "jp.FoldType"})
    names.emplace_back(name);
  return names;
}

TNearestName IndexOf(const std::vector<NQ_TString>& names) {
  TNearestName index;
  for (const NQ_TString& name : names) index.Add(name);
  return index;
}

std::u16string Joined(const std::vector<std::u16string>& words, std::u16string_view with) {
  std::u16string text;
  for (const std::u16string& word : words) (text.empty() ? text : text += with) += word;
  return text;
}

/// Writes names wrong, the same way in every run.
class TMistakes {
 public:
  std::size_t Below(std::size_t end) { return random_() % end; }

  std::u16string Letters(std::size_t count) {
    std::u16string letters;
    while (letters.size() < count) letters += static_cast<char16_t>(u'a' + Below(26));
    return letters;
  }

  std::u16string Edited(std::u16string text) {
    const std::size_t at = Below(text.size());
    switch (text.size() < 2 ? 0 : Below(4)) {
      case 0:
        return text.insert(Below(text.size() + 1), Letters(1));
      case 1:
        return text.erase(at, 1);
      case 2:
        return text.replace(at, 1, Letters(1));
      default:
        std::swap(text[at], text[at > 0 ? at - 1 : 1]);
        return text;
    }
  }

  // Names of one word stay as they are.
  std::u16string Exchanged(std::vector<std::u16string> words) {
    const std::size_t first = Below(words.size());
    if (words.size() > 1) std::swap(words[first], words[(first + 1 + Below(words.size() - 1)) % words.size()]);
    return Joined(words, u"");
  }

 private:
  std::mt19937 random_{20'201'005};
};

// As a person reads them.
std::vector<std::u16string> WordsOf(std::u16string_view name) {
  constexpr std::u16string_view kWords[] = {
      u"category", u"customer", u"product", u"container", u"description", u"location", u"contact", u"project",
      u"status",   u"operator", u"folder",  u"ticket",    u"master",      u"amount",   u"scope",   u"order",
      u"descr",    u"email",    u"vxtpr",   u"short",     u"date",        u"time",     u"mode",    u"omat",
      u"part",     u"name",     u"desc",    u"info",      u"file",        u"spec",     u"type",    u"task",
      u"vexo",     u"due",      u"sub",     u"cus",       u"cat",         u"csr",      u"ref",     u"url",
      u"job",      u"jp",       u"id",      u"wf",        u"1st"};
  std::vector<std::u16string> words;
  while (!name.empty()) {
    const auto* const word =
        std::find_if(std::begin(kWords), std::end(kWords), [&](auto one) { return name.starts_with(one); });
    const std::size_t length = word == std::end(kWords) ? 1 : word->size();
    if (name.front() != u':' && name.front() != u'.') words.emplace_back(name.substr(0, length));
    name.remove_prefix(length);
  }
  return words;
}

struct TRates {
  int asked = 0;
  int right = 0;
  int wrong = 0;

  double Right() const { return 100.0 * right / asked; }
  double Wrong() const { return 100.0 * wrong / asked; }
};

TEST(NearestName, RecognisesMistypedSystemNames) {
  const std::vector<NQ_TString> names = SystemNames();
  const TNearestName index = IndexOf(names);
  TMistakes mistakes;
  const auto edit = [&](int times) {
    return [&mistakes, times](std::u16string text) {
      for (int i = 0; i < times; ++i) text = mistakes.Edited(text);
      return text;
    };
  };
  const auto join = [&](std::u16string_view with) {
    return [with](const std::u16string& name) { return Joined(WordsOf(name), with); };
  };
  const struct {
    const char* what;
    double leastRight;  // per cent
    std::function<std::u16string(std::u16string)> mistake;
  } cases[] = {
      {"one edit", 99, edit(1)},
      {"two edits", 92, edit(2)},
      {"three edits", 80, edit(3)},
      {"words exchanged", 90, [&](const std::u16string& name) { return mistakes.Exchanged(WordsOf(name)); }},
      {"words joined", 90, join(u"")},
      {"words split", 90, join(u"_")},
  };
  TRates all;
  for (const auto& [what, leastRight, mistake] : cases) {
    TRates rates;
    for (const NQ_TString& name : names) {
      for (int i = 0; i < 100; ++i) {
        const NQ_TString key(mistake(std::u16string(name.StringView())));
        if (std::find(names.begin(), names.end(), key) != names.end()) continue;
        const NQ_TString found = index.Nearest(key.StringView());
        ++rates.asked;
        ++(found == name ? rates.right : rates.wrong);
        if (found.Empty()) --rates.wrong;
      }
    }
    EXPECT_GE(rates.Right(), leastRight) << what << ": of " << rates.asked << ", wrong " << rates.Wrong() << " %";
    all.asked += rates.asked;
    all.wrong += rates.wrong;
  }
  EXPECT_LT(all.Wrong(), 3) << "of " << all.asked;
}

// Of three letters, one word in a hundred lies one letter from "id" or "job".
TEST(NearestName, TakesNoRandomLettersForAName) {
  const TNearestName index = IndexOf(SystemNames());
  TMistakes random;
  for (const auto& [shortest, longest, most] : {std::tuple{3U, 3U, 30}, {4U, 6U, 3}, {7U, 15U, 0}}) {
    int taken = 0;
    for (int i = 0; i < 2'000; ++i)
      if (!index.Nearest(random.Letters(shortest + random.Below(longest - shortest + 1))).Empty()) ++taken;
    EXPECT_LE(taken, most) << "of 2000 words of " << shortest << " to " << longest << " letters";
  }
}

TNearestName IndexOfExamples() {
  std::vector<NQ_TString> names = SystemNames();
  for (const char* const name : {"a b", "A.B", "\xC3\x84rger", "_", "jobs"}) names.emplace_back(name);
  return IndexOf(names);
}

const rows_test::RowFile file("text/NearestName.txt", {}, [](const rows_test::Row& row) {
  static const TNearestName index = IndexOfExamples();
  const auto parts = rows_test::Pieces(row.text, " =>");
  const NQ_TString nearest = index.Nearest(NQ_TString(parts.at(0)).StringView());
  EXPECT_EQ(nearest.Empty() ? "" : ' ' + names_test::Text(nearest), parts.at(1));
});

TEST(NearestName, OnlyVisibleNamesAndTextsOfOrdinaryLength) {
  const TNearestName index = IndexOfExamples();
  const auto visible = [](const NQ_TString& name) { return name != NQ_TString("jobs"); };
  EXPECT_EQ(index.Nearest(u"jobz", visible), NQ_TString("job"));
  EXPECT_EQ(index.Nearest(u"jobs", visible), NQ_TString("job"));
  EXPECT_EQ(index.Nearest(std::u16string(1'000'000, u'j')), NQ_TString());
}

TEST(NearestName, WorkIsBoundedAmongAMillionNames) {
  std::vector<NQ_TString> names;
  for (int i = 0; i < 1'000'000; ++i) names.push_back(NQ_TString::Format("customercontact%06d", i));
  TNearestName index = IndexOf(names);
  for (const NQ_TString& name : SystemNames()) index.Add(name);
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"Customer_Contact123456", "customercontact123456"},
      {u"cutsomercontact123456", "customercontact123456"},
      {u"vxtpr:prductpratsttus", "vxtpr:productpartstatus"},
      {u"namejobcustomer", "jobcustomername"},
      {u"customercontact12345x", nullptr},  // many are as near: any
  };
  for (const auto& [key, name] : cases) {
    TNearestName::TWork work;
    const NQ_TString found = index.Nearest(key, {}, &work);
    EXPECT_TRUE(name == nullptr || found == name) << NQ_TString(key) << ": " << found;
    EXPECT_LE(work.lookups, 1'000U) << NQ_TString(key);
    EXPECT_LE(work.postings, 20'000U) << NQ_TString(key);
    EXPECT_LE(work.compared, 100'100U) << NQ_TString(key);
  }
}

}  // namespace
}  // namespace templatenames
