#include "twin_worlds.h"

#include <sys/shm.h>
#include <usbdev/usbdev.h>

#include <algorithm>

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

void TwinWorlds::begin(unsigned seconds) {
  moment_ += seconds;
  world.now = momentText(moment_);
  host.clock.stopAt(world.now);
  world.next_ssid = format("%08u", ++ids_);
  host.chance.random = static_cast<int>(ids_);
  host.journal.clear();
  world.done.clear();
  world.request_headers.clear();
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
  compareStored();
  compareDone();
  compareCounters();
  for (const std::string &violation : host.journal.violations()) differences_ += "  " + violation + "\n";
  return differences_;
}

void TwinWorlds::compareStored() {
  std::map<std::string, std::string> left = host.config.values();
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
}

void TwinWorlds::compareDone() {
  const contract::Lines done = host.journal.only({"log", "exec", "volume", "notify"});
  for (size_t i = 0; i < std::max(done.size(), world.done.size()); ++i) {
    const std::string library = i < done.size() ? done[i] : "nothing";
    const std::string model = i < world.done.size() ? world.done[i] : "nothing";
    if (library != model) differences_ += "  did \"" + library + "\", the model \"" + model + "\"\n";
  }
  const auto datagrams = host.network.datagrams();
  const size_t sent = world.request_headers.size();
  for (size_t i = 0; i < sent && datagrams.size() >= sent; ++i) {
    const contract::Datagram &datagram = datagrams[datagrams.size() - sent + i];
    wrote("datagram", datagram.bytes.substr(0, 32), "ORDA_VLM2_CFCG_N" + world.request_headers[i]);
    wrote("address", datagram.address + ":" + std::to_string(datagram.port), "127.0.0.1:10171");
  }
  std::map<std::string, std::string> available;
  for (const auto &[path, value] : world.available) available[path] = std::to_string(value);
  if (host.config.values(contract::kProfileStateFile) != available) differences_ += "  profile states differ\n";
}

void TwinWorlds::compareCounters() {
  for (int i = 0; i < USBDEV_PROFILES; ++i) {
    if (counters_[i] != world.timeouts[i]) differences_ += "  time-out counter " + std::to_string(i) + " differs\n";
  }
}

}  // namespace model
