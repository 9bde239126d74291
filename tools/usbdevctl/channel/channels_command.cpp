// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "channel/channel_query.h"
#include "channel/channels.h"
#include "channel/configuration.h"
#include "channel/troubles.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct ChannelsOptions {
  bool json = false;
};

ExitStatus channels(const ChannelsOptions &options) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  const Machine machine;
  addTroubles(rows, machine);
  print(listOutput("channels", channelFields(rows), options.json));
  for (const std::string &port : portsWithoutChannel(rows, machine)) complain(withoutChannelText(port, machine));
  return ExitStatus::ok;
}

}  // namespace

void addChannels(Command &program) {
  auto options = std::make_shared<ChannelsOptions>();
  Command &command = program.addCommand("channels", "Show the ten channels and their devices",
                                        [options] { return channels(*options); });
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
