// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Why a command did nothing, for people and for programs.
#pragma once

#include <string>
#include <vector>

#include "command_line/exit_status.h"
#include "output/json.h"

namespace usbdevctl {

// The names for programs of what refuses a move. What refuses an assignment has the names that `check` prints.
constexpr char kOwnCamera[] = "own_camera";
constexpr char kPortOff[] = "port_off";
constexpr char kNoFormat[] = "no_format";
constexpr char kNotLocked[] = "not_locked";
// What else a command refuses: to forget a camera that is attached, and a stream that the camera does not offer.
constexpr char kAttached[] = "attached";
constexpr char kNotOffered[] = "not_offered";
// A step failed: the first one, or a later one.
constexpr char kNotBegun[] = "not_begun";
constexpr char kPutBack[] = "put_back";
constexpr char kNotPutBack[] = "not_put_back";

struct Refusal {
  std::string why;
  std::string reason = {};  // its name for programs; none in an import, which prints text only
  int other = -1;           // the channel that is in the way
  std::string collision = {};
};

using Refusals = std::vector<Refusal>;

/// Complains of each, and also prints them as an object for programs if that is wanted.
ExitStatus refuse(const Refusals &refusals, bool json);

}  // namespace usbdevctl
