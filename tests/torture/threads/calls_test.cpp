// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The calls are of every exported function, and what they state about it is what its header states.
#include "calls.h"

#include <algorithm>
#include <fstream>
#include <set>

#include "header_words.h"
#include "output_capture.h"
#include "settled_host.h"

namespace torture {
namespace {

using contract::Lines;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::set<std::string>;

Names named(const std::function<bool(const Call &)> &chosen) {
  Names names;
  for (const Call &call : allCalls()) {
    if (chosen(call)) names.insert(call.function);
  }
  return names;
}

Names inTurn(Turn turn) {
  return named([turn](const Call &call) { return call.turn == turn; });
}

TEST(TheCalls, AreOfEveryFunctionButTheOneThatEndsTheProcess) {
  Names declared;
  for (const auto &[name, words] : functionWords()) declared.insert(name);
  declared.erase("error");
  EXPECT_EQ(named([](const Call &) { return true; }), declared);
}

TEST(TheCalls, ThatExcludeEachOtherAreThoseThatTheHeaderLists) {
  EXPECT_EQ(inTurn(Turn::device_event), namesBetween("Device events and the synchronisation (", ")"));
  EXPECT_EQ(inTurn(Turn::login), namesBetween("share NVR_CGI: of ", "only one may run"));
}

class TheLock : public ASettledHost {
 protected:
  /// Did the call open one of the files that the lock protects?
  bool isTakenBy(const Call &call) {
    host.journal.clear();
    const contract::OutputCapture output(stdout);
    call.run();
    return !host.journal.only({"open"}).empty();
  }
};

TEST_F(TheLock, IsTakenByTheFunctionsWhoseHeaderSaysSo) {
  const std::map<std::string, Words> words = functionWords();
  Lines different;
  for (const Call &call : allCalls()) {
    if (isTakenBy(call) != takesLock(words.at(call.function))) different.emplace_back(call.function);
  }
  EXPECT_THAT(different, IsEmpty());
}

}  // namespace
}  // namespace torture
