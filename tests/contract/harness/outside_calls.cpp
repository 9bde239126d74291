// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "outside_calls.h"

namespace contract {

void OutsideCalls::ask(Judge judge) {
  judge_ = std::move(judge);
  caller_ = std::this_thread::get_id();
}

std::optional<int> OutsideCalls::failure(const char *name, const std::string &object) const {
  return caller_.load() == std::this_thread::get_id() ? judge_(name, object) : std::nullopt;
}

}  // namespace contract
