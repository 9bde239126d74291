#include "failing.h"

#include <cerrno>
#include <utility>

namespace {

struct Plan {
  std::string_view name;
  int number = 0;
  int error = 0;
  std::function<void()> action;
  bool active = false;
};
Plan plan;
int counted = 0;
bool reached = false;

void begin(Plan next) {
  counted = 0;
  reached = false;
  plan = std::move(next);
}

/// The plan rests meanwhile; one for every call goes on, unless the action has made another.
void act() {
  const Plan own = std::exchange(plan, {});
  own.action();
  if (own.number == failing::kEvery && !plan.active) plan = own;
  reached = true;
}

bool concerns(std::string_view name, bool waits) {
  return plan.active && (plan.name == failing::kAny || plan.name == name) && (plan.error != EINTR || waits);
}

}  // namespace

namespace failing {

void fail(std::string_view name, int number, int error) { begin({name, number, error, nullptr, true}); }

void doBefore(int number, std::function<void()> action) { begin({kAny, number, 0, std::move(action), true}); }

bool stop() {
  plan.active = false;
  return reached;
}

bool isOn() { return plan.active; }

bool mustFail(std::string_view name, bool waits) {
  if (!concerns(name, waits)) return false;
  ++counted;
  if (plan.number != kEvery && counted != plan.number) return false;
  if (plan.action) {
    act();
    return false;
  }
  reached = true;
  errno = plan.error;
  return true;
}

}  // namespace failing
