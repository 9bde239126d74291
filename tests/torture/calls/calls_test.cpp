// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Every outside call of every exported function fails: once, with all after it, with all after it of its name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "every_call.h"
#include "exported_names.h"
#include "ways_to_fail.h"

namespace calls {
namespace {

using contract::lacking;
using contract::Names;
using testing::IsEmpty;

bool startsWith(const std::string &text, const std::string &start) { return text.rfind(start, 0) == 0; }

// What compilers, sanitizers and linkers add.
bool isAdded(const std::string &symbol) {
  for (const char *start :
       {"__asan", "__ubsan", "__tsan", "__sanitizer", "__gcov", "_ITM", "__gmon", "__cxa", "llvm_"}) {
    if (startsWith(symbol, start)) return true;
  }
  return false;
}

// The function that the compiler has put a checking one for: "__printf_chk" is "printf".
std::string withoutCheck(const std::string &symbol) {
  const std::string end = "_chk";
  if (!startsWith(symbol, "__") || symbol.size() < 6 || symbol.substr(symbol.size() - 4) != end) return symbol;
  return symbol.substr(2, symbol.size() - 6);
}

Names neededSymbols() {
  FILE *list = popen("nm --dynamic --undefined-only --portability " LIBRARY, "r");
  Names names;
  char line[512];
  while (fgets(line, sizeof line, list) != nullptr) {
    const std::string symbol(line, strcspn(line, "@ "));
    if (!isAdded(symbol)) names.insert(withoutCheck(symbol));
  }
  EXPECT_EQ(pclose(list), 0);
  return names;
}

Names failableNames() {
  const std::vector<std::string> calls = failableCalls();
  return {calls.begin(), calls.end()};
}

TEST(EveryOutsideCall, MayFailOnceAndForEver) {
  Names failing = failableNames();
  for (const std::string &name : kOwnExecution) failing.erase(name);
  failEvery(failing, "the library");
}

TEST(EveryExportedFunction, HasAScenario) {
  Names named = contract::kNotCalled;
  named.merge(functionsWithScenario());
  EXPECT_THAT(lacking(contract::exportedNames(), named), IsEmpty()) << "exported, without a scenario";
  EXPECT_THAT(lacking(named, contract::exportedNames()), IsEmpty()) << "with a scenario, not exported";
}

TEST(AnOutsideSymbol, CanFailHereOrIsNamedAsOneThatCannot) {
  Names known = failableNames();
  for (const auto &reason : neverFailing()) known.insert(reason.first);
  EXPECT_THAT(lacking(neededSymbols(), known), IsEmpty());
}

TEST(AnOutsideSymbol, ThatCanFailHereIsUsed) { EXPECT_THAT(lacking(failableNames(), neededSymbols()), IsEmpty()); }

}  // namespace
}  // namespace calls
