// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Every two functions that may run at the same time do, in many threads: each call gives what it gives alone.
#include <algorithm>
#include <atomic>
#include <map>

#include "calls.h"
#include "crew.h"
#include "output_capture.h"
#include "settled_host.h"
#include "thoroughness.h"

namespace torture {
namespace {

using contract::Lines;
using testing::IsEmpty;

class Functions : public ASettledHost {
 protected:
  Functions() {
    const contract::OutputCapture output(stdout);
    for (const Call &call : allCalls()) alone_[&call] = call.run();
  }

  /// Of the pairs that may run together one of so many; those of which a call gave something else.
  Lines changedBesideOthers(int threads, int one_of) {
    const contract::OutputCapture output(stdout);
    Crew crew(threads);
    Lines changed;
    for (const Call &a : allCalls()) {
      for (const Call *b = &a; b <= &allCalls().back(); ++b) {
        if (!mayRunTogether(a, *b) || (b - &a) % one_of != 0) continue;
        ++pairs;
        if (!staySame(crew, a, *b)) changed.push_back(std::string(a.function) + " beside " + b->function);
      }
    }
    return changed;
  }

  int pairs = 0;

 private:
  bool staySame(Crew &crew, const Call &a, const Call &b) {
    std::atomic<bool> same{true};
    crew.run([&](int member) {
      const Call *call = callOf(member, a, b);
      if (call != nullptr && call->run() != alone_.at(call)) same = false;
    });
    host.journal.clear();
    return same;
  }

  /// Half of the crew calls one, half the other; one that excludes its own kind is left to a single thread.
  static const Call *callOf(int member, const Call &a, const Call &b) {
    const Call &own = member % 2 == 0 ? a : b;
    const Call &other = member % 2 == 0 ? b : a;
    if (member < 2 || own.turn == Turn::free) return &own;
    return other.turn == Turn::free ? &other : nullptr;
  }

  std::map<const Call *, std::string> alone_;
};

TEST_F(Functions, OneAfterTheOtherGiveTheSameAgain) { EXPECT_THAT(changedBesideOthers(1, 1000), IsEmpty()); }

#ifdef __SANITIZE_ADDRESS__  // the other sanitizer is the one for threads
constexpr int kOneOf = 8;
#else
constexpr int kOneOf = 1;
#endif
#ifdef __SANITIZE_THREAD__  // which finds with two threads in each function what it finds with four
constexpr int kThreads = 4;
#else
constexpr int kThreads = 8;
#endif

TEST_F(Functions, InAFewThreadsGiveWhatTheyGiveAlone) {
  const int threads = times(kThreads, 8);
  EXPECT_THAT(changedBesideOthers(threads, times(kOneOf, 1)), IsEmpty());
  report("threads: " + std::to_string(threads) + " threads, " + std::to_string(pairs) +
         " pairs of functions, every call gave what it gives alone");
}

TEST_F(Functions, In32ThreadsGiveWhatTheyGiveAlone) {
  EXPECT_THAT(changedBesideOthers(32, times(48, 1)), IsEmpty());
  report("threads: 32 threads, " + std::to_string(pairs) + " pairs of functions, every call gave what it gives alone");
}

}  // namespace
}  // namespace torture
