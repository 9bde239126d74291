// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/creation_time.h"

#include <cstring>

#include "core/text.h"

namespace usbdev {
namespace {

/// A moment as two numbers, as in 20240305 and 81500.
struct Moment {
  int date = 0;
  int time = 0;
};

bool readMoment(const char *text, Moment &moment) {
  char date[128];
  copyText(date, text);
  char *const blank = std::strchr(date, ' ');
  if (blank == nullptr) return false;
  *blank = '\0';
  removeAll(date, '-');
  removeAll(blank + 1, ':');
  moment.date = toInt(date);
  moment.time = toInt(blank + 1);
  return true;
}

Earlier smallerOf(int first, int second) { return first > second ? Earlier::second : Earlier::first; }

}  // namespace

Earlier earlierOf(const char *first, const char *second) {
  Moment a;
  Moment b;
  if (!readMoment(first, a) || !readMoment(second, b)) return Earlier::first;
  if (a.date != b.date) return smallerOf(a.date, b.date);
  if (a.time != b.time) return smallerOf(a.time, b.time);
  return Earlier::neither;
}

}  // namespace usbdev
