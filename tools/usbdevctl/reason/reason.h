// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One thing that keeps a camera from streaming, or that its user should know, and what would change it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "output/json.h"

namespace usbdevctl {

enum class Cause {
#define USBDEVCTL_REASON(cause, ...) cause,
#define USBDEVCTL_NOTICE(cause, ...) cause,
#include "reason/reasons.def"
#undef USBDEVCTL_NOTICE
#undef USBDEVCTL_REASON
};

/// What the words have in braces, by its name; printable.
using ReasonValues = std::vector<std::pair<std::string_view, std::string>>;

struct Reason {
  const char *word;  // its name for programs
  std::string why;
  std::string remedy;
  int other = -1;              // the channel that is in the way
  std::string collision = {};  // over what, as a word
  std::string in_short = {};
  bool hinders = true;       // keeps the camera from streaming
  const char *cause = "";    // of those with the same word
  ReasonValues values = {};  // for a program that has words of its own
};

using Reasons = std::vector<Reason>;

Reason reasonFor(Cause cause, const ReasonValues &values = {});

/// Reason and cure as two sentences: "Its port is switched off. 'usbdevctl slot on ch2' switches it on."
std::string sentences(const Reason &reason);

/// Whether something keeps the camera from streaming.
bool anyHinders(const Reasons &reasons);

/// The reason's object for programs.
Json reasonJson(const Reason &reason);

}  // namespace usbdevctl
