// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A host whose answers are plain values.
#pragma once

#include <map>
#include <string>

namespace usbdev {

struct PlainAnswers {
  bool one_channel_limited = false;
  bool may_encode = false;
  std::map<int, std::string> bridges;  // by video node
};

/// What HostAnswers answers.
inline PlainAnswers plain_answers;

}  // namespace usbdev
