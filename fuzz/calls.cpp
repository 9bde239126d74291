// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A day of the application: the input is a sequence of calls and events on a small host, and after each the library has
// to return, store, log, link and send what the plain model does.
#include <algorithm>
#include <string>

#include "expect.h"
#include "random_day.h"

namespace {

using fuzz::expect;

constexpr std::size_t kMostOperations = 12;  // a longer day takes longer, and shows no more than several short ones

void expectEverythingClosed(const contract::Host &host) {
  expect(host.config.openHandles() == 0, "every configuration is closed");
  expect(host.commands.leftOpen().empty(), "every command is closed");
  expect(host.files.leftOpen().empty(), "every file is closed");
  expect(host.network.openSockets() == 0, "every socket is closed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const model::History history = model::historyOf(data, std::min(size, 1 + kMostOperations * sizeof(model::Operation)));
  model::RandomDay day(history.kind_of_host);
  for (const model::Operation &operation : history.operations) {
    const std::string difference = day.step(operation);
    expect(difference.empty(), (day.worlds().operation() + "\n" + difference).c_str());
    expectEverythingClosed(day.worlds().host);
  }
  return 0;
}
