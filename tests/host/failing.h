// Makes a call of the test program, or of a library that it uses, fail where a test wants it to.
#pragma once

#include <string_view>

namespace failing {

constexpr std::string_view kAny;
constexpr int kEvery = 0;

/// From here on the number-th call of the name, or every one, fails with the error. An interruption (EINTR) concerns
/// only the calls that wait.
void fail(std::string_view name, int number, int error);

/// Returns whether one has failed since.
bool stop();

/// Returns whether it is between the two.
bool isOn();

/// Asked by the functions that stand in for others; sets errno when the answer is yes.
bool mustFail(std::string_view name, bool waits = false);

}  // namespace failing
