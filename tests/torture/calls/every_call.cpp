// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "every_call.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>

#include "exceptions.h"
#include "thoroughness.h"

namespace calls {
namespace {

using contract::lacking;
using contract::Names;

struct Room {
  const char *name;
  Scenarios (*scenarios)();
};

constexpr Room kRooms[] = {
    {"core", coreScenarios},        {"devices", deviceScenarios},         {"conflicts", conflictScenarios},
    {"hotplug", hotplugScenarios},  {"start-up", startUpScenarios},       {"assignment", assignmentScenarios},
    {"profiles", profileScenarios}, {"connections", connectionScenarios}, {"sharing", shareScenarios},
};

void report(const std::string &what, const Findings &findings) {
  const std::string figure = "calls, " + what + ": " + describe(findings);
  std::cout << figure << '\n';
  torture::report(figure);
}

Findings failAll(const Room &room, const Names &failing) {
  Findings findings;
  for (const Scenario &scenario : room.scenarios()) {
    const Undisturbed undisturbed = runUndisturbed(scenario);
    EXPECT_FALSE(scenario.tellsFailure(undisturbed.result)) << scenario.name() << ": " << undisturbed.result;
    runAllTrials(scenario, undisturbed, failing, findings);
  }
  return findings;
}

void expectAllExceptionsNeeded(const Names &failing, const Findings &findings) {
  for (size_t i = 0; i < exceptions().size(); ++i) {
    const Exception &exception = exceptions()[i];
    const std::string call = exception.call;
    const bool own = kOwnExecution.count(call.substr(0, call.find(' '))) != 0;
    if (own != (failing == kOwnExecution) || findings.used_exceptions.count(i) != 0) continue;
    ADD_FAILURE() << "not needed: " << exception.functions << ", " << exception.call << ", " << exception.differs;
  }
}

}  // namespace

Names functionsWithScenario() {
  Names functions;
  for (const Room &room : kRooms) {
    for (const Scenario &scenario : room.scenarios()) functions.insert(scenario.function);
  }
  return functions;
}

void failEvery(const Names &failing, const std::string &whose) {
  Findings all;
  for (const Room &room : kRooms) {
    const Findings findings = failAll(room, failing);
    if (findings.trials != 0) report(whose + ", " + room.name, findings);
    all.add(findings);
  }
  report(whose, all);
  for (const std::string &text : all.texts) ADD_FAILURE() << text;
  EXPECT_THAT(lacking(failing, all.failed), testing::IsEmpty()) << "no scenario makes these calls";
  if (trialStep() == 1) expectAllExceptionsNeeded(failing, all);
}

}  // namespace calls
