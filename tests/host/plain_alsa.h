// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A sound card of plain values in place of the ALSA library's: what it is asked for, it answers from here.
#pragma once

#include <string>
#include <vector>

struct PlainElement {
  bool has_volume = true;
  bool has_switch = true;
  long low = 0;
  long high = 10000;
  long level = -7;
  int on = -7;
};

struct PlainAlsa {
  int card = 3;
  std::string name = "Desk Microphone";
  std::vector<bool> devices = {false, true, true};  // whether each can capture
  unsigned fewest_channels = 1;
  unsigned most_channels = 2;
  std::vector<PlainElement> elements = {PlainElement{}};
  std::string failing;  // the function that fails

  std::string recorded_from;  // the device whose channels were asked for
  int open = 0;               // how many handles are open
};

extern PlainAlsa plain_alsa;
