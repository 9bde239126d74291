// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <sys/stat.h>

#include <fstream>
#include <string>

#include "cards.h"

namespace {

std::string folderOf(int card) { return "/run/usbdev-sim/cards/card" + std::to_string(card); }

bool readNumber(const std::string &path, int &number) { return static_cast<bool>(std::ifstream(path) >> number); }

}  // namespace

namespace simulated_card {

bool exists(int card) {
  struct stat status {};
  return stat(folderOf(card).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool describe(int card, _acard_info &info) {
  std::string folder = folderOf(card);
  std::string name;
  if (!std::getline(std::ifstream(folder + "/name"), name)) return false;
  name.copy(info.name, sizeof info.name - 1);
  return readNumber(folder + "/entry_count", info.entry_count) &&
         readNumber(folder + "/channel_mode", info.channel_mode) &&
         readNumber(folder + "/channel_count", info.channel_count);
}

bool setCaptureVolume(int card, int volume) {
  std::ofstream file(folderOf(card) + "/volume");
  file << volume << '\n';
  file.close();
  return !file.fail();
}

}  // namespace simulated_card
