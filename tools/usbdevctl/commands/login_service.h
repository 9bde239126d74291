// Questions to the host's login service, which the library asks.
#pragma once

#include <functional>

namespace usbdevctl {

enum class Answer { yes, no, broken };

/// Asks through a function of the library that returns 0 for yes. What the library prints about it goes to standard
/// error. The question is asked in a process of its own: where a connection breaks, the library ends the process as if
/// all had gone well, and the answer is then Answer::broken.
Answer askLoginService(const std::function<int()> &question);

}  // namespace usbdevctl
