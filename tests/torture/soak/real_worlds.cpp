// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "real_worlds.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <platform/xmlcfg.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "private_host.h"

namespace soak {

namespace {

constexpr in_port_t kManagerPort = 10171;
constexpr char kMissing[] = "(missing)";

// "video/vnode" is a key and a sub-key, "exists" a key alone.
struct Path {
  explicit Path(const std::string &path) : key(path.substr(0, path.find('/'))) {
    if (key.size() != path.size()) sub_key = path.substr(key.size() + 1);
  }
  const char *subKey() const { return sub_key.empty() ? nullptr : sub_key.c_str(); }
  std::string key;
  std::string sub_key;
};

class Handle {
 public:
  Handle(int mode, const char *file) {
    if (xmlcfg_open(mode, file, &handle_) != 1) throw std::runtime_error("cannot open a configuration");
  }
  ~Handle() { xmlcfg_close(handle_, 0); }
  Handle(const Handle &) = delete;
  Handle &operator=(const Handle &) = delete;

  std::string read(const std::string &section, const std::string &path) {
    const Path name(path);
    std::array<char, 512> value{};
    xmlcfg_get_str(handle_, kMissing, value.data(), value.size() - 1, "velmora", section.c_str(), name.key.c_str(),
                   name.subKey());
    return value.data();
  }
  void write(const std::string &section, const std::string &path, const std::string &value) {
    const Path name(path);
    xmlcfg_set_str(handle_, value.c_str(), "velmora", section.c_str(), name.key.c_str(), name.subKey());
  }

 private:
  void *handle_ = nullptr;
};

}  // namespace

RealWorlds::RealWorlds(unsigned kind_of_host)
    : TwinWorlds(kind_of_host), manager_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  for (const char *file : {"/etc/config/.usbnosupportlist.dat", "/etc/config/.usbFECam.dat"}) {
    writeFile(file, host.files.content(file));
  }
  makeFolder("/mnt/ext/opt/apps/Velmora2");
  for (const char *file : {contract::kChannelFile, contract::kProfileStateFile}) {
    Handle created(1, file);
    created.write("any", "key", "");
  }
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(kManagerPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(manager_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    throw std::runtime_error("cannot listen as the manager");
  }
}

RealWorlds::~RealWorlds() { close(manager_); }

void RealWorlds::store(int channel, const std::string &key, const std::string &value) {
  world.channels[channel].set(key, value);
  Handle(1, contract::kChannelFile).write("ch" + std::to_string(channel), key, value);
}

void RealWorlds::forget(int, const std::string &) {}

// What the model has, as the file has it.
std::map<std::string, std::string> RealWorlds::stored() {
  std::map<std::string, std::string> values;
  Handle file(0, contract::kChannelFile);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const std::string section = "ch" + std::to_string(n);
    for (const auto &[key, value] : world.channels[n].keys) values[section + "/" + key] = file.read(section, key);
  }
  return values;
}

std::map<std::string, std::string> RealWorlds::storedStates() {
  std::map<std::string, std::string> values;
  Handle file(0, contract::kProfileStateFile);
  for (const auto &[path, value] : world.available) {
    const std::string section = path.substr(0, path.find('/'));
    values[path] = file.read(section, path.substr(section.size() + 1));
  }
  return values;
}

std::vector<std::string> RealWorlds::sent() {
  std::vector<std::string> all;
  char datagram[1024];
  ssize_t size = 0;
  while ((size = recv(manager_, datagram, sizeof datagram, MSG_DONTWAIT)) >= 0) {
    all.emplace_back(datagram, static_cast<size_t>(size));
    ++datagrams_;
  }
  return all;
}

}  // namespace soak
