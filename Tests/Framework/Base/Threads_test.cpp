// Several threads read the same values and change copies of their own; most telling under the thread sanitizer.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "NQ_TTree.h"
#include "Support.h"

namespace base_test {
namespace {

void OnEightThreads(const std::function<void(int)>& work) {
  std::atomic<int> ready{0};
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&, thread] {
      ++ready;
      while (ready < 8) std::this_thread::yield();
      work(thread);
    });
  }
}

TEST(Threads, ReadSharedTextsAndChangeTheirCopies) {
  std::atomic<int> wrong{0};
  for (int round = 0; round < 30; ++round) {  // fresh texts: the narrow form and the hash are made by whoever is first
    const NQ_TString text(u"a text of \u00E9 that all share");
    const NQ_TString equal(text.StringView());
    OnEightThreads([&](int thread) {
      for (int i = 0; i < 40; ++i) {
        NQ_TString own = text;
        if (std::string_view(text.c_str()) != "a text of \xC3\xA9 that all share") ++wrong;
        if (own.Hash() != equal.Hash() || !(own == equal)) ++wrong;
        own.Append(static_cast<char16_t>(u'0' + thread));
        if (own.Length() != text.Length() + 1 || own.c_str()[own.Narrow().size() - 1] != '0' + thread) ++wrong;
      }
    });
  }
  EXPECT_EQ(wrong, 0);
}

TEST(Threads, ReadSharedContainersAndChangeTheirCopies) {
  NQ_TTree tree;
  NQ_TDict lent;
  lent["k"] = 1;  // given out for writing: copies of it do not share
  for (int i = 0; i < 20; ++i) tree.Add(S("key" + std::to_string(i)), lent);
  tree.Add("lent", std::move(lent));
  const NQ_TTree& shared = tree;
  const NQ_TAny any(shared);
  std::atomic<int> wrong{0};
  OnEightThreads([&](int thread) {
    for (int i = 0; i < 200; ++i) {
      NQ_TTree own = shared;
      NQ_TAny copy = any;
      if (!(copy == any) || !(own == shared)) ++wrong;
      (*own["key3"].As<NQ_TDict>())["k"] = thread;
      (*copy.As<NQ_TTree>())["lent"] = own;
      own.Remove("key4");
      if (own.Get<NQ_TDict>("key3")->At("k").AsInt32() != thread || own.Size() != 20) ++wrong;
      if (shared.Get<NQ_TDict>("key3")->At("k").AsInt32() != 1 || !shared.HasKey("key4")) ++wrong;
      if (!(NQ_TAny::Illegal() == NQ_TAny(NQ_TAny::Illegal())) || !NQ_TAny::Null().IsNull()) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace base_test
