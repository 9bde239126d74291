// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera on node 2 whose formats listing is read into a capability table.
#pragma once

#include <array>
#include <cstring>
#include <string>

#include "contract_test.h"

namespace contract {

class FormatsTest : public ContractTest {
 protected:
  FormatsTest() { memset(table.data(), kUntouched, sizeof table); }

  int read(const std::string &listing) {
    host.commands.prints(listingCommand(2), listing);
    return query();
  }

  int query() {
    OutputCapture output;
    const int count = mn_get_usbchn_fmts(2, table.data(), &over60);
    message = output.text();
    EXPECT_TRUE(isUntouched(USBDEV_FORMATS)) << "written after the table";
    return count;
  }

  // "#0 codec 1: 1280x720@30,25 640x480@30"
  std::string format(size_t number) const {
    const _usbfmt_des &record = table.at(number);
    std::string text = "#" + std::to_string(record.index) + " codec " + std::to_string(record.codec) + ":";
    for (int i = 0; i < record.res_count && i < USBDEV_SIZES; ++i) text += " " + size(record.res[i]);
    return text;
  }

  bool isUntouched(size_t first_record) const { return isFilledWith(first_record, kUntouched); }
  bool isZero(size_t number) const { return isFilledWith(number, 0); }

  std::array<_usbfmt_des, USBDEV_FORMATS + 1> table;
  int over60 = 7;
  std::string message;

 private:
  static constexpr int kUntouched = 0x5A;

  static std::string size(const _usbres_des &record) {
    std::string text = std::to_string(record.width) + "x" + std::to_string(record.height);
    for (int i = 0; i < record.fps_count && i < USBDEV_RATES; ++i) {
      char rate[32];
      snprintf(rate, sizeof rate, "%c%g", i == 0 ? '@' : ',', static_cast<double>(record.fps[i]));
      text += rate;
    }
    return text;
  }

  bool isFilledWith(size_t number, int byte) const {
    _usbfmt_des expected;
    memset(&expected, byte, sizeof expected);
    return memcmp(&table.at(number), &expected, sizeof expected) == 0;
  }
};

}  // namespace contract
