// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Questions to the host's login service, which the library asks.
#pragma once

#include <functional>

#include "command_line/command.h"

namespace usbdevctl {

enum class Answer { yes, no, broken, late };

constexpr int kUsualPatience = 30;  // seconds

/// Adds the option for how long to wait for an answer.
void addTimeout(Command &command, int &seconds);

/// Asks through a function of the library that returns 0 for yes. What the library prints about it goes to standard
/// error. The question is asked in a process of its own: where a connection breaks, the library ends the process as if
/// all had gone well, and the answer is then Answer::broken; and where a service does not answer, it waits for minutes.
Answer askLoginService(int seconds, const std::function<int()> &question);

/// Complains that there was no answer, or none in time.
ExitStatus complainWithout(Answer answer, int seconds);

}  // namespace usbdevctl
