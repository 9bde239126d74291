// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/lines.h"

#include <cstdarg>

namespace usbdev {

bool Lines::next(TextBuffer line) {
  return stream_ != nullptr && std::fgets(line.start, static_cast<int>(line.size), stream_) != nullptr;
}

bool Lines::skipTo(const char *part) {
  char line[256];
  while (next(line)) {
    if (contains(line, part)) return true;
  }
  return false;
}

int Lines::nextNumber(int otherwise) {
  char line[128];
  return next(line) ? toInt(line) : otherwise;
}

CommandLines::CommandLines(const char *pattern, ...) : Lines(nullptr) {
  char command[384];
  va_list arguments;
  va_start(arguments, pattern);
  const int length = std::vsnprintf(command, sizeof command, pattern, arguments);
  va_end(arguments);
  // A failure, -1, is longer than any command.
  if (static_cast<std::size_t>(length) < sizeof command) stream_ = popen(command, "r");
}

CommandLines::~CommandLines() {
  if (stream_ != nullptr) pclose(stream_);
}

FileLines::FileLines(const char *path) : Lines(std::fopen(path, "re")) {}

FileLines::~FileLines() {
  if (stream_ != nullptr) std::fclose(stream_);
}

}  // namespace usbdev
