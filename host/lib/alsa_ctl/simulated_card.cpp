#include <sys/stat.h>

#include <fstream>
#include <string>

#include "cards.h"

namespace {

std::string folder_of(int card) { return "/run/usbdev-sim/cards/card" + std::to_string(card); }

bool read_number(const std::string &path, int &number) { return static_cast<bool>(std::ifstream(path) >> number); }

}  // namespace

namespace simulated_card {

bool exists(int card) {
  struct stat status {};
  return stat(folder_of(card).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool describe(int card, _acard_info &info) {
  std::string folder = folder_of(card);
  std::string name;
  if (!std::getline(std::ifstream(folder + "/name"), name)) return false;
  name.copy(info.name, sizeof info.name - 1);
  return read_number(folder + "/entry_count", info.entry_count) &&
         read_number(folder + "/channel_mode", info.channel_mode) &&
         read_number(folder + "/channel_count", info.channel_count);
}

bool set_capture_volume(int card, int volume) {
  std::ofstream file(folder_of(card) + "/volume");
  file << volume << '\n';
  file.close();
  return !file.fail();
}

}  // namespace simulated_card
