// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "end_state.h"

#include "children.h"
#include "shared_memory.h"

namespace calls {
namespace {

using contract::Lines;

std::string joined(const Lines &lines) {
  std::string text;
  for (const std::string &line : lines) text += line + "\n";
  return text;
}

// What was run for its effect; the file about the processor is only the way to an answer.
Lines effects(const Host &host) {
  Lines lines;
  for (const std::string &line : host.journal.only({"system", "volume"})) {
    if (line != std::string("system ") + contract::kProcessorCommand) lines.push_back(line);
  }
  return lines;
}

// However many sends it took.
std::string sentBytes(const Host &host) {
  std::string bytes;
  for (const std::string &part : host.network.sent()) bytes += part;
  return bytes;
}

std::string datagrams(const Host &host) {
  std::string text;
  for (const contract::Datagram &datagram : host.network.datagrams()) text += datagram.bytes + "\n";
  return text;
}

std::string text(const contract::FakeConfig::Values &values) {
  std::string all;
  for (const auto &value : values) all += value.first + "=" + value.second + "\n";
  return all;
}

}  // namespace

std::string storedText(const Host &host) {
  return text(host.config.values()) + text(host.config.values(contract::kProfileStateFile));
}

EndState endState(World &world, int result, const Outputs &outputs) {
  const Host &host = world.host;
  return {
      {"result", std::to_string(result)}, {"records", outputs.now()},
      {"stored", storedText(host)},       {"log", joined(host.journal.only({"log"}))},
      {"datagrams", datagrams(host)},     {"links", joined(host.journal.only({"exec"}))},
      {"sent", sentBytes(host)},          {"effects", joined(effects(host))},
      {"counters", countersText()},
  };
}

Lines leftBehind(World &world) {
  Host &host = world.host;
  Lines left = host.journal.violations();
  for (const std::string &file : host.files.leftOpen()) left.push_back("left open: " + file);
  for (const std::string &command : host.commands.leftOpen()) left.push_back("left open: " + command);
  if (host.config.openHandles() != 0) left.push_back("left open: a configuration handle");
  if (host.network.openSockets() != 0) left.push_back("left open: a socket");
  if (isAttached()) left.push_back("left attached: the counters");
  if (hasChildren()) left.push_back("left: a child");
  return left;
}

}  // namespace calls
