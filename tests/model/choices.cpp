// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "choices.h"

#include <iterator>

namespace model {

int Choices::profile() {
  std::vector<int> held;
  for (const Channel &channel : world_.channels) {
    if (channel.hasProfile()) held.push_back(channel.profile());
  }
  return held.empty() || rarely(8) ? of<int>({0, 1, 2, 3, -1, 4}) : of(held);
}

std::string Choices::port() {
  if (rarely(16)) return of<std::string>({"7-1", "7-2", "9-9"});
  if (world_.host.cameras.empty() || rarely(4)) return of(world_.host.owned).slot;
  auto camera = world_.host.cameras.begin();
  std::advance(camera, below(static_cast<int>(world_.host.cameras.size())));
  return camera->second.slot;
}

}  // namespace model
