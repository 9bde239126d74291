// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "twin_worlds.h"

#include <sys/shm.h>
#include <usbdev/usbdev.h>

#include <algorithm>
#include <cctype>

#include "catalog.h"
#include "encoding_host.h"
#include "host_camera.h"
#include "stream_links.h"
#include "text.h"

namespace model {

namespace {

const std::string kDriver = "/bin/ls /sys/bus/usb/drivers/";
const std::string kCameraDriver = kDriver + "uvcvideo";
const std::string kCardDriver = kDriver + "snd-usb-audio";
const std::string kInterfaces = " | grep \\: | /bin/awk '{print $1}'";
const std::string kFirstWord = " | /bin/awk '{print $1}'";

std::string nameFile(int node) { return "/sys/class/video4linux/video" + std::to_string(node) + "/name"; }

std::string nodeCommand(const std::string &slot) {
  return kCameraDriver + "/" + slot + ":1.0/video4linux" + kFirstWord;
}
std::string cardCommand(const std::string &slot) { return kCardDriver + "/" + slot + ":1.2/sound" + kFirstWord; }

std::string listingOf(const Camera &camera) {
  contract::Listing listing;
  for (const Format &format : camera.formats) {
    listing.format(format.code);
    for (const Size &size : format.sizes) {
      listing.size(size.width, size.height);
      for (const float rate : size.rates) listing.rate(model::format("%.3f", static_cast<double>(rate)));
    }
  }
  return listing.text();
}

// A UUID of which the library makes hash number n.
std::string uuid(int n) {
  std::string text = World::hashNumber(n);
  for (const size_t at : {20U, 16U, 12U, 8U}) text.insert(at, "-");
  return text + "\n";
}

// "ORDA... event=6 profile=1 video=0 audio=1 flag=0 target=1", every byte of it.
std::vector<std::string> described(const std::vector<std::string> &datagrams) {
  std::vector<std::string> lines;
  for (const std::string &bytes : datagrams) {
    std::string line;
    for (const char byte : bytes.substr(0, 32)) line += std::isalnum(byte) ? std::string(1, byte) : format("%d.", byte);
    int words[6] = {};
    bytes.copy(reinterpret_cast<char *>(words), sizeof words, 32);
    lines.push_back(line + format(" event=%d profile=%d video=%d audio=%d flag=%d target=%d, %zu bytes", words[4],
                                  words[0], words[1], words[2], words[3], words[5], bytes.size()));
  }
  return lines;
}

std::string momentText(time_t moment) {
  tm parts{};
  gmtime_r(&moment, &parts);
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
  return text;
}

}  // namespace

TwinWorlds::TwinWorlds(unsigned kind_of_host) {
  world.host.one_channel = (kind_of_host & 1U) != 0;
  world.host.encoder = (kind_of_host & 2U) != 0;
  world.host.owned = camerasOf(kind_of_host >> 2U);
  world.host.unsupported = {"Listed Cam"};
  world.host.types = {{"046d:0825", "3"}, {"1b3f:2247", "12"}};
  if (world.host.one_channel) host.limitToOneChannel();
  if (world.host.encoder) contract::allowEncoding(host);
  host.files.write("/etc/config/.usbnosupportlist.dat", "Listed Cam\n");
  host.files.write("/etc/config/.usbFECam.dat", "046d:0825=3\n1b3f:2247=12\n");
  host.commands.allowInsideCriticalSection();
  host.commands.prints(contract::kUuidCommand, uuid(hashes_));
  host.journal.watch([this](const std::string &line) { watch(line); });
  host.clock.stopAt(world.now);
  moment_ = host.clock.moment();
  void *const segment = vl_attach_log_shm(vl_create_log_shm());
  vl_log_shm_init(segment);
  counters_ = static_cast<const unsigned *>(segment);
}

TwinWorlds::~TwinWorlds() { shmdt(counters_); }

// What the host does when the library asks it for something: the next hash, a link, no link.
void TwinWorlds::watch(const std::string &line) {
  if (line == std::string("pclose ") + contract::kUuidCommand) {
    host.commands.prints(contract::kUuidCommand, uuid(++hashes_));
  }
  std::istringstream words(line);
  std::string kind;
  std::string program;
  std::string flags;
  std::string path;
  std::string link;
  words >> kind >> program >> flags >> path >> link;
  if (kind == "exec" && program == "/bin/ln") host.files.link(link, path);
  if (kind == "exec" && program == "/bin/rm") host.files.remove(path);
}

void TwinWorlds::attach(int node, const Camera &camera) {
  world.host.cameras[node] = camera;
  contract::HostCamera tools = host.camera(node, camera.slot);
  tools.ids(camera.ids.substr(0, 4), camera.ids.substr(5)).listing(listingOf(camera));
  if (!camera.bridge.empty()) tools.behindBridge(camera.bridge);
  host.commands.prints(nodeCommand(camera.slot), "video" + std::to_string(node) + "\n");
  host.files.write(nameFile(node), camera.name + "\n");
  listCameras();
}

void TwinWorlds::detach(int node) {
  host.commands.prints(nodeCommand(world.host.cameras.at(node).slot), "");
  world.host.cameras.erase(node);
  for (const std::string &command : {contract::walkCommand(node), contract::classCommand(node),
                                     contract::deviceLineCommand(node), contract::listingCommand(node)}) {
    host.commands.prints(command, "");
  }
  host.files.remove(nameFile(node));
  listCameras();
}

// A camera has a second interface, which has no node.
void TwinWorlds::listCameras() {
  std::string lines;
  for (const auto &[node, camera] : world.host.cameras) lines += camera.slot + ":1.0\n" + camera.slot + ":1.1\n";
  host.commands.prints(kCameraDriver + kInterfaces, lines);
}

void TwinWorlds::attachCard(int number, const Card &card) {
  world.host.cards[number] = card;
  host.commands.prints(cardCommand(card.slot), "card" + std::to_string(number) + "\n");
  host.sound.card(number, 1, 1, 1, card.name);
  listCards();
}

void TwinWorlds::detachCard(int number) {
  host.commands.prints(cardCommand(world.host.cards.at(number).slot), "");
  world.host.cards.erase(number);
  host.sound.remove(number);
  listCards();
}

void TwinWorlds::listCards() {
  std::string lines;
  for (const auto &[number, card] : world.host.cards) lines += card.slot + ":1.2\n";
  host.commands.prints(kCardDriver + kInterfaces, lines);
}

void TwinWorlds::store(int channel, const std::string &key, const std::string &value) {
  world.channels[channel].set(key, value);
  host.channel(channel).set(key, value);
}

void TwinWorlds::forget(int channel, const std::string &key) {
  world.channels[channel].keys.erase(key);
  host.config.erase("ch" + std::to_string(channel) + "/" + key);
}

std::map<std::string, std::string> TwinWorlds::stored() { return host.config.values(); }

std::map<std::string, std::string> TwinWorlds::storedStates() {
  return host.config.values(contract::kProfileStateFile);
}

std::vector<std::string> TwinWorlds::sent() {
  std::vector<std::string> since;
  const auto all = host.network.datagrams();
  while (datagrams_ < all.size()) {
    const contract::Datagram &datagram = all[datagrams_++];
    const bool to_manager = datagram.address == "127.0.0.1" && datagram.port == 10171;
    since.push_back(to_manager ? datagram.bytes : "to " + datagram.address);
  }
  return since;
}

void TwinWorlds::begin(unsigned seconds) {
  moment_ += seconds;
  world.now = momentText(moment_);
  host.clock.stopAt(world.now);
  world.next_ssid = format("%08u", ++ids_);
  host.chance.random = static_cast<int>(ids_);
  host.journal.clear();
  world.done.clear();
  world.sent.clear();
  called_.clear();
  differences_.clear();
}

void TwinWorlds::returned(int library, int model) {
  called_ += " = " + std::to_string(library);
  if (library != model) differences_ += "  the model returns " + std::to_string(model) + "\n";
}

void TwinWorlds::wrote(const std::string &what, const std::string &library, const std::string &model) {
  const size_t length = std::min(library.size(), model.size());
  size_t at = 0;
  while (at < length && library[at] == model[at]) ++at;
  if (at == length && library.size() == model.size()) return;
  const auto part = [at](const std::string &all) { return all.substr(at, all.find('\0', at) - at).substr(0, 80); };
  differences_ += "  " + what + " differs at byte " + std::to_string(at) + ": \"" + part(library) + "\", model \"" +
                  part(model) + "\"\n";
}

std::string TwinWorlds::difference() {
  if (looksAtStored()) compareStored();
  compareLists(host.journal.only({"log", "exec", "volume"}), world.done);
  compareLists(described(sent()), described(world.sent));
  compareCounters();
  expectEverythingClosed();
  for (const std::string &violation : host.journal.violations()) differences_ += "  " + violation + "\n";
  return differences_;
}

void TwinWorlds::compareStored() {
  std::map<std::string, std::string> left = stored();
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    for (const auto &[key, value] : world.channels[n].keys) {
      const auto stored = left.find("ch" + std::to_string(n) + "/" + key);
      const std::string library = stored == left.end() ? "missing" : stored->second;
      if (library != value) {
        differences_ +=
            "  ch" + std::to_string(n) + "/" + key + " is \"" + library + "\", in the model \"" + value + "\"\n";
      }
      if (stored != left.end()) left.erase(stored);
    }
  }
  for (const auto &[path, value] : left) differences_ += "  " + path + " is \"" + value + "\", in the model missing\n";
  std::map<std::string, std::string> states;
  for (const auto &[path, value] : world.available) states[path] = std::to_string(value);
  if (storedStates() != states) differences_ += "  profile states differ\n";
}

void TwinWorlds::compareLists(const std::vector<std::string> &library, const std::vector<std::string> &model) {
  for (size_t i = 0; i < std::max(library.size(), model.size()); ++i) {
    const std::string one = i < library.size() ? library[i] : "nothing";
    const std::string other = i < model.size() ? model[i] : "nothing";
    if (one != other) differences_ += "  did \"" + one + "\", the model \"" + other + "\"\n";
  }
}

void TwinWorlds::expectEverythingClosed() {
  contract::Lines left_open = host.files.leftOpen();
  for (const std::string &command : host.commands.leftOpen()) left_open.push_back(command);
  for (const std::string &name : left_open) differences_ += "  left open: " + name + "\n";
  if (host.config.openHandles() != 0) differences_ += "  a configuration is left open\n";
  if (host.network.openSockets() != 0) differences_ += "  a socket is left open\n";
}

void TwinWorlds::compareCounters() {
  for (int i = 0; i < USBDEV_PROFILES; ++i) {
    if (counters_[i] != world.timeouts[i]) differences_ += "  time-out counter " + std::to_string(i) + " differs\n";
  }
}

}  // namespace model
