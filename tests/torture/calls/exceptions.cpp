// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "exceptions.h"

#include <cstring>

namespace calls {
namespace {

const std::string kAny = "*";

bool lists(const std::string &words, const std::string &word) {
  return (" " + words + " ").find(" " + word + " ") != std::string::npos;
}

// A question without an answer: its command or file cannot be opened, or says nothing more.
bool isUnanswered(const std::string &call, const std::string &object) {
  for (const char *kind : {"popen no process: ", "fopen no descriptor: ", "fgets the end: "}) {
    const size_t length = strlen(kind);
    if (call.compare(0, length, kind) == 0) return call.compare(length, object.size(), object) == 0;
  }
  return false;
}

bool concerns(const char *pattern, const std::string &call) {
  constexpr char kUnanswered[] = "unanswered: ";
  constexpr size_t kLength = sizeof kUnanswered - 1;
  if (strncmp(pattern, kUnanswered, kLength) == 0) return isUnanswered(call, pattern + kLength);
  return call.rfind(pattern, 0) == 0;
}

}  // namespace

bool covers(const Exception &exception, const std::string &function, const std::string &call,
            const std::string &aspect) {
  if (!concerns(exception.call, call)) return false;
  const bool of_the_end = aspect != kProcess && aspect != kLeft;
  return (exception.functions == kAny || lists(exception.functions, function)) &&
         ((exception.differs == kAny && of_the_end) || lists(exception.differs, aspect));
}

}  // namespace calls
