// Several threads read the same values and change copies of their own; most telling under the thread sanitizer.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "NQ_TTree.h"
#include "Support.h"

namespace base_test {
namespace {

TEST(Threads, ReadSharedValuesAndChangeTheirCopies) {
  NQ_TTree tree;
  NQ_TDict lent;
  lent["k"] = 1;  // given out for writing: copies of it do not share
  for (int i = 0; i < 20; ++i) tree.Add(S("key" + std::to_string(i)), lent);
  const NQ_TTree& shared = tree;
  const NQ_TAny any(shared);
  // Fresh texts in each round: the narrow form and the hash are made by whoever is first.
  std::vector<NQ_TString> texts;
  for (int i = 0; i < 1000; ++i) texts.emplace_back(u"a text of \u00E9 that all share");
  const NQ_TString equal = texts[0];
  std::atomic<int> ready{0};
  const auto work = [&](int thread) {
    ++ready;
    while (ready < 8) std::this_thread::yield();
    for (const NQ_TString& text : texts) {
      NQ_TString own = text;
      EXPECT_TRUE(std::string_view(text.c_str()) == "a text of \xC3\xA9 that all share");
      EXPECT_TRUE(own.Hash() == equal.Hash() && own == equal);
      own.Append(static_cast<char16_t>(u'0' + thread));
      EXPECT_TRUE(own.Narrow().back() == '0' + thread);
    }
    for (int i = 0; i < 200; ++i) {
      NQ_TTree own = shared;
      NQ_TAny copy = any;
      EXPECT_TRUE(copy == any && own == shared && NQ_TAny::Illegal() == NQ_TAny(NQ_TAny::Illegal()));
      (*own["key3"].As<NQ_TDict>())["k"] = thread;
      (*copy.As<NQ_TTree>())["key5"] = own;
      own.Remove("key4");
      EXPECT_TRUE(own.Get<NQ_TDict>("key3")->At("k").AsInt32() == thread && own.Size() == 19);
      EXPECT_TRUE(shared.Get<NQ_TDict>("key3")->At("k").AsInt32() == 1 && shared.HasKey("key4"));
    }
  };
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 8; ++thread) threads.emplace_back(work, thread);
}

}  // namespace
}  // namespace base_test
