// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "output/printable.h"

namespace usbdevctl {

namespace {

const char *colourOf(Style style) {
  switch (style) {
    case Style::heading:
      return "\033[1m";
    case Style::good:
      return "\033[32m";
    case Style::notice:
      return "\033[33m";
    case Style::bad:
      return "\033[31m";
    case Style::plain:
      break;
  }
  return "";
}

bool isSet(const char *variable) {
  const char *value = std::getenv(variable);
  return value && *value;
}

}  // namespace

void print(const std::string &text) { std::fwrite(text.data(), 1, text.size(), stdout); }

bool flushOutput() { return std::fflush(stdout) == 0 && !std::ferror(stdout); }

void complain(const std::string &message) { std::fprintf(stderr, "usbdevctl: %s\n", withoutHidden(message).c_str()); }

std::size_t outputWidth() {
  if (!isatty(fileno(stdout))) return kEndless;
  const char *wanted = std::getenv("COLUMNS");
  const long columns = wanted ? std::strtol(wanted, nullptr, 10) : 0;
  if (columns > 0) return static_cast<std::size_t>(columns);
  winsize terminal = {};
  const bool known = ioctl(fileno(stdout), TIOCGWINSZ, &terminal) == 0 && terminal.ws_col > 0;
  return known ? terminal.ws_col : kEndless;
}

std::string styled(const std::string &text, Style style, bool colour) {
  if (!colour || style == Style::plain || text.empty()) return text;
  return colourOf(style) + text + "\033[0m";
}

bool outputTakesColour() { return isatty(fileno(stdout)) && isSet("TERM") && !isSet("NO_COLOR"); }

}  // namespace usbdevctl
