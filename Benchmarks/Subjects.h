// The three ways in which an engine is timed. An engine has Run(), which makes its text once more, and
// Text(), the text made last.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Paired.h"
#include "Workloads.h"

namespace bench {

using Clock = std::chrono::steady_clock;

inline double NanosecondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::nano>(to - from).count();
}

// The compiler must take it that somebody reads all memory here: no run may be optimised away.
inline void ClobberMemory() { asm volatile("" ::: "memory"); }

template <class Engine>
double TimeRuns(Engine& engine, long runs) {
  const auto begin = Clock::now();
  for (long i = 0; i < runs; ++i) {
    engine.Run();
    ClobberMemory();
  }
  return NanosecondsBetween(begin, Clock::now());
}

// Before a slice an engine may get ready; that is not timed.
template <class Engine>
void Renew(Engine& engine) {
  if constexpr (requires { engine.Renew(); }) engine.Renew();
}

// The runs that fill a slice, going by what a run took in the slice before.
class RunLength {
 public:
  template <class Engine>
  long Runs(Engine& engine, double nanoseconds) {
    constexpr double kEnoughToTell = 1e5;
    for (long n = 1; once_ == 0; n *= 2) {
      const double took = TimeRuns(engine, n);
      if (took > kEnoughToTell) once_ = took / double(n);
    }
    return std::max(1L, long(nanoseconds / once_));
  }
  void Took(double nanoseconds, long runs) { once_ = nanoseconds / double(runs); }

 private:
  double once_ = 0;
};

// The same text again and again.
template <class Engine>
class Steady : public Subject {
 public:
  Steady(std::string name, std::size_t tokens, std::string expected, std::unique_ptr<Engine> engine)
      : Subject(std::move(name), tokens), expected_(std::move(expected)), engine_(std::move(engine)) {}

  double Slice(double nanoseconds) override {
    Renew(*engine_);
    engine_->Run();  // warms the caches, which the other subjects have used meanwhile
    const long runs = length_.Runs(*engine_, nanoseconds);
    const double took = TimeRuns(*engine_, runs);
    length_.Took(took, runs);
    return took / double(runs) / Tokens();
  }
  void Check() override {
    engine_->Run();
    Expect(expected_, engine_->Text());
  }

 private:
  std::string expected_;
  std::unique_ptr<Engine> engine_;
  RunLength length_;
};

// The same text again and again on two threads at once, an engine each; the time is that of all tokens
// together.
template <class Engine>
class OnTwoThreads : public Subject {
 public:
  using Make = std::function<std::unique_ptr<Engine>()>;

  OnTwoThreads(std::string name, std::size_t tokens, std::string expected, const Make& make)
      : Subject(std::move(name), tokens), expected_(std::move(expected)), first_(make()) {
    // Made by another thread, the second engine has memory of its own, with no cache line shared by accident.
    std::thread([&] { second_ = make(); }).join();
  }

  double Slice(double nanoseconds) override {
    Renew(*first_);
    first_->Run();
    const long runs = length_.Runs(*first_, nanoseconds);
    std::atomic<int> ready{0};
    Clock::time_point firstEnd, secondEnd;
    const auto work = [&](Engine& engine, Clock::time_point& end) {
      Renew(engine);
      engine.Run();
      ++ready;
      while (ready < 2) {
      }
      const auto begin = Clock::now();
      TimeRuns(engine, runs);
      end = Clock::now();
      return begin;
    };
    std::thread other([&] { work(*second_, secondEnd); });
    const auto begin = work(*first_, firstEnd);
    other.join();
    return NanosecondsBetween(begin, std::max(firstEnd, secondEnd)) / double(2 * runs) / Tokens();
  }
  void Check() override {
    for (Engine* engine : {first_.get(), second_.get()}) {
      engine->Run();
      Expect(expected_, engine->Text());
    }
  }

 private:
  std::string expected_;
  std::unique_ptr<Engine> first_, second_;
  RunLength length_;
};

// A text never seen before in every run; the engine has Resolve(text), which takes its Input. A slice is a batch of
// texts prepared before the clock starts, of the same size for every engine, whatever slice length is asked for.
template <class Engine>
class FirstSight : public Subject {
 public:
  FirstSight(std::string name, const Workload& workload, std::unique_ptr<Engine> engine)
      : Subject(std::move(name), workload.tokens), workload_(workload), engine_(std::move(engine)) {
    constexpr std::size_t kBatchBytes = 256 * 1024;
    batch_.resize(2 + kBatchBytes / workload.Template().size());
  }

  double Slice(double) override {
    for (Input& text : batch_) text = Next();
    engine_->Resolve(batch_.front());
    const auto begin = Clock::now();
    for (std::size_t i = 1; i < batch_.size(); ++i) {
      engine_->Resolve(batch_[i]);
      ClobberMemory();
    }
    const double took = NanosecondsBetween(begin, Clock::now());
    ExpectNumber();
    return took / double(batch_.size() - 1) / Tokens();
  }
  void Check() override {
    engine_->Resolve(Next());
    ExpectNumber();
  }

 private:
  using Input = typename Engine::Input;

  Input Next() { return Input(std::string_view(workload_.Template(Stamped(workload_.pieces, ++number_)))); }
  void ExpectNumber() const { Expect(workload_.Expected(Stamped(workload_.pieces, number_)), engine_->Text()); }

  Workload workload_;
  std::unique_ptr<Engine> engine_;
  unsigned number_ = 0;
  std::vector<Input> batch_;
};

}  // namespace bench
