// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a camera lists: v4l2-ctl's output, and that of the tools that the query also asks.
#include <usbdev/usbdev.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <set>

#include "encoding_host.h"
#include "expect.h"
#include "fuzzed_host.h"
#include "input.h"

namespace {

using fuzz::expect;

constexpr int kNode = 2;

struct Answer {
  int count = 0;
  int over60 = -1;
  _usbfmt_des table[USBDEV_FORMATS];

  Answer() { std::memset(table, 0x5a, sizeof table); }
};

bool isZero(const _usbfmt_des &format) {
  static const _usbfmt_des zero{};
  return std::memcmp(&format, &zero, sizeof format) == 0;
}

bool isUntouched(const Answer &answer) {
  static const Answer untouched;
  return std::memcmp(answer.table, untouched.table, sizeof answer.table) == 0;
}

/// Returns whether every rate is a number that a listing can repeat.
bool expectSize(const _usbres_des &size, bool over60) {
  expect(size.fps_count >= 0 && size.fps_count <= USBDEV_RATES, "a size has at most its table's rates");
  std::set<float> rates;
  for (int i = 0; i < size.fps_count; ++i) {
    if (!std::isfinite(size.fps[i]) || !rates.insert(size.fps[i]).second) return false;
    expect(size.fps[i] <= 60.0F || over60, "a rate over 60 is reported");
  }
  return true;
}

bool expectFormat(const _usbfmt_des &format, bool may_encode, bool over60) {
  expect(format.codec == 1 || (format.codec == 0 && may_encode), "a raw format is kept only where it can be encoded");
  expect(format.res_count >= 0 && format.res_count <= USBDEV_SIZES, "a format has at most its table's sizes");
  std::set<std::pair<int, int>> sizes;
  bool repeatable = true;
  for (int i = 0; i < format.res_count; ++i) {
    expect(sizes.emplace(format.res[i].width, format.res[i].height).second, "a size is listed once");
    repeatable = expectSize(format.res[i], over60) && repeatable;
  }
  return repeatable;
}

bool expectTable(const Answer &answer, bool may_encode) {
  expect(answer.count >= 0 && answer.count <= USBDEV_FORMATS, "a camera has at most its table's formats");
  expect(answer.over60 == 0 || answer.over60 == 1, "the rate over 60 is always set");
  expect(answer.count > 0 || isUntouched(answer), "without a format the table is untouched");
  bool repeatable = true;
  for (int i = 0; i < USBDEV_FORMATS && answer.count > 0; ++i) {
    if (i >= answer.count)
      expect(isZero(answer.table[i]), "the records after the formats are zero");
    else
      repeatable = expectFormat(answer.table[i], may_encode, answer.over60 == 1) && repeatable;
  }
  return repeatable;
}

std::string listingOf(const Answer &answer) {
  std::string text;
  char line[64];
  for (int i = 0; i < answer.count; ++i) {
    const _usbfmt_des &format = answer.table[i];
    std::snprintf(line, sizeof line, "Index: %d\nPixel Format: '%s'\n", format.index,
                  format.codec == 1 ? "MJPG" : "YUYV");
    text += line;
    for (int j = 0; j < format.res_count; ++j) {
      std::snprintf(line, sizeof line, "Size: Discrete %dx%d\n", format.res[j].width, format.res[j].height);
      text += line;
      for (int k = 0; k < format.res[j].fps_count; ++k) {
        std::snprintf(line, sizeof line, "Interval: (%.9g fps)\n", static_cast<double>(format.res[j].fps[k]));
        text += line;
      }
    }
  }
  return text;
}

void ask(contract::Host &host, const std::string &listing, Answer &answer) {
  host.camera(kNode, "3-1").listing(listing);
  answer.count = mn_get_usbchn_fmts(kNode, answer.table, &answer.over60);
}

bool hasMostLines(const std::string &text) { return fuzz::linesOf(text, 256).size() > 1024; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const bool may_encode = input.number(2) == 1;
  fuzz::FuzzedHost host;
  if (may_encode) contract::allowEncoding(host);
  const std::string listing = input.text();
  host.commands.prints(contract::queryProcessCommand(kNode), input.text());
  host.commands.prints(contract::walkCommand(kNode), input.text());
  Answer first;
  ask(host, listing, first);
  if (!expectTable(first, may_encode)) return 0;

  const std::string same = listingOf(first);
  if (hasMostLines(same)) return 0;
  Answer second;
  ask(host, same, second);
  expect(second.count == first.count && std::memcmp(second.table, first.table, sizeof first.table) == 0,
         "the listing of a table gives the same table");
  return 0;
}
