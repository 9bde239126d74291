// Makes a call of the test program, or of a library that it uses, fail where a test wants it to.
#pragma once

#include <functional>
#include <string_view>

namespace failing {

constexpr std::string_view kAny;
constexpr int kEvery = 0;

/// From here on the number-th call of the name, or every one, fails with the error. An interruption (EINTR) concerns
/// only the calls that wait.
void fail(std::string_view name, int number, int error);

/// Does something immediately before the number-th call from here on, or before every one. It may call fail() or
/// doBefore() for what comes after it; its own calls do not count.
void doBefore(int number, std::function<void()> action);

/// Returns whether the moment came.
bool stop();

/// Returns whether it is between the two.
bool isOn();

/// Asked by the functions that stand in for others; sets errno when the answer is yes.
bool mustFail(std::string_view name, bool waits = false);

}  // namespace failing
