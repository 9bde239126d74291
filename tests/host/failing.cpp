// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "failing.h"

#include <cerrno>
#include <utility>

namespace {

using failing::Then;

struct Plan {
  std::string_view name;
  int number = 0;
  int error = 0;
  Then then = Then::nothing;
  std::function<void()> action;
  bool active = false;
};
Plan plan;
failing::Progress own_progress;
failing::Progress *counts = &own_progress;

void begin(Plan next) {
  *counts = {};
  plan = std::move(next);
}

/// The plan rests meanwhile; one for every call goes on, unless the action has made another.
void act() {
  const Plan own = std::exchange(plan, {});
  own.action();
  if (own.number == failing::kEvery && !plan.active) plan = own;
  ++counts->reached;
}

bool concerns(std::string_view name, bool waits) {
  const bool named = plan.name == name || (plan.name == failing::kAny && name != failing::kMemory);
  return plan.active && named && (plan.error != EINTR || waits);
}

bool isTurnOf(std::string_view name, int number) {
  if (plan.number == failing::kEvery || number == plan.number) return true;
  if (number < plan.number || plan.then == Then::nothing) return false;
  return plan.then == Then::everything || name == counts->first;
}

}  // namespace

namespace failing {

void fail(std::string_view name, int number, int error, Then then) {
  begin({name, number, error, then, nullptr, true});
}

void doBefore(int number, std::function<void()> action) {
  begin({kAny, number, 0, Then::nothing, std::move(action), true});
}

bool stop() {
  plan.active = false;
  return counts->reached > 0;
}

bool isOn() { return plan.active; }

const Progress &progress() { return *counts; }

void countIn(Progress &shared) { counts = &shared; }

bool mustFail(std::string_view name, bool waits) {
  if (!concerns(name, waits) || !isTurnOf(name, ++counts->counted)) return false;
  if (plan.action) {
    act();
    return false;
  }
  if (counts->reached++ == 0) name.copy(counts->first, sizeof counts->first - 1);
  errno = plan.error;
  return true;
}

}  // namespace failing
