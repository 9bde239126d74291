#include "failing.h"

#include <cerrno>

namespace {

struct Plan {
  std::string_view name;
  int number = 0;
  int error = 0;
  bool active = false;
};
Plan plan;
int counted = 0;
bool failed = false;

bool concerns(std::string_view name, bool waits) {
  return plan.active && (plan.name == failing::kAny || plan.name == name) && (plan.error != EINTR || waits);
}

}  // namespace

namespace failing {

void fail(std::string_view name, int number, int error) {
  counted = 0;
  failed = false;
  plan = {name, number, error, true};
}

bool stop() {
  plan.active = false;
  return failed;
}

bool isOn() { return plan.active; }

bool mustFail(std::string_view name, bool waits) {
  if (!concerns(name, waits)) return false;
  ++counted;
  if (plan.number != kEvery && counted != plan.number) return false;
  failed = true;
  errno = plan.error;
  return true;
}

}  // namespace failing
