// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "bare_host.h"

#include <platform/orda_exec.h>
#include <platform/xmlcfg.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace bench {
namespace {

constexpr char kConfig[] = "/etc/config/usbdev.conf";
constexpr char kRoot[] = "velmora";
constexpr const char *kSections[kChannels] = {"ch0", "ch1", "ch2", "ch3", "ch4", "ch5", "ch6", "ch7", "ch8", "ch9"};

std::string rootPort(const std::string &slot) { return slot.substr(0, slot.find('.')); }

}  // namespace

Pass::Pass(int mode) {
  if (xmlcfg_open(mode, kConfig, &config_) != 1) std::abort();
}

Pass::~Pass() { xmlcfg_close(config_, 0); }

int Pass::get(int channel, const Key &key, int otherwise) const {
  return xmlcfg_get_int(config_, otherwise, kRoot, kSections[channel], key.key, key.sub_key);
}

const char *Pass::getText(int channel, const Key &key) {
  xmlcfg_get_str(config_, "", text_, sizeof text_, kRoot, kSections[channel], key.key, key.sub_key);
  return text_;
}

void Pass::set(int channel, const Key &key, int value) const {
  xmlcfg_set_int(config_, value, kRoot, kSections[channel], key.key, key.sub_key);
}

void Pass::set(int channel, const Key &key, const char *value) const {
  xmlcfg_set_str(config_, value, kRoot, kSections[channel], key.key, key.sub_key);
}

std::vector<std::string> ask(const std::string &command) {
  std::vector<std::string> lines;
  std::FILE *answer = popen(command.c_str(), "r");
  char line[256];
  while (std::fgets(line, sizeof line, answer) != nullptr) lines.emplace_back(line);
  pclose(answer);
  return lines;
}

std::vector<std::string> linesOf(const std::string &path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

void askEncoding() {
  for (const char *field : {"Install_Path", "Enable"}) {
    ask(std::string("/sbin/readcfg \"Halvane\" \"") + field + "\" -c -d READCFG_FAILD -f /etc/config/bndl.conf");
  }
  linesOf("/mnt/ext/opt/apps/Halvane/camera_agent.sh");
  ask("/sbin/readcfg System Model -f /etc/config/Tundrel.conf");
  const std::vector<std::string> gpus = ask("gpuinfo_app -l");
  if (gpus.empty()) return;
  ask("gpuinfo_app -s " + gpus[0].substr(0, gpus[0].find(':')));
  linesOf("/proc/cpuinfo");
}

void makeProcessorFile() {
  if (std::system("/bin/cat /proc/cpuinfo | /bin/grep vendor_id > /tmp/vl_cpu.info") != 0) std::abort();
  linesOf("/tmp/vl_cpu.info");
}

void listFormats(int node) {
  const std::string device = "/dev/video" + std::to_string(node);
  makeProcessorFile();
  ask("/usr/bin/v4l2-ctl -d " + device + " --list-formats-ext");
  ask("/bin/ps | /bin/grep \"v4l2-ctl\" | /bin/grep \"" + device + "\" | /bin/grep -v grep | /bin/awk '{print $1}'");
}

void askCameraType(int node) {
  ask("/sbin/udevadm info --name=/dev/video" + std::to_string(node) + " --attribute-walk");
  linesOf("/etc/config/.usbFECam.dat");
}

void linkStream(int profile, const std::string &name) {
  const std::string root = "/mnt/ext/opt/apps/Velmora2/";
  const std::string target = root + "hls/channel" + std::to_string(profile + 1);
  orda_exec(0, 0, 0, "/bin/ln", "-sf", target.c_str(), (root + name).c_str(), nullptr);
}

void Answers::askOneChannel() {
  if (!one_channel_asked_) makeProcessorFile();
  one_channel_asked_ = true;
}

const std::string &Answers::bridgeOf(int node) {
  const auto found = bridges_.find(node);
  if (found != bridges_.end()) return found->second;
  const std::string walk = "/sbin/udevadm info -a -n /dev/video" + std::to_string(node);
  std::string path;
  for (const std::string &line : ask(walk + " | grep '{class}'")) {
    if (line.find("0x06") == std::string::npos) continue;
    const std::string device = ask(walk + " | grep 'looking at device'").at(0);
    path = device.substr(0, device.find("usb"));
    path.erase(0, path.find("devices"));
    break;
  }
  return bridges_[node] = path;
}

bool Answers::conflict(const Camera &one, const Camera &other) {
  if (rootPort(one.slot) == rootPort(other.slot)) return true;
  askOneChannel();
  const std::string &own = bridgeOf(one.node);
  return !own.empty() && own == bridgeOf(other.node);
}

void plugIn(Answers &answers, int channel, const Camera &camera, const std::vector<Camera> &others) {
  constexpr Key kCompared[] = {number("exists"),     number("profile"),         text("usbslot"),
                               text("devname"),      number("video", "vcodec"), number("slot_switch"),
                               number("conflictch"), number("video", "vnode")};
  constexpr Key kNumbers[] = {number("slot_switch"),       number("exists"),           number("video", "vnode"),
                              number("video", "spsstate"), number("conflictch"),       number("video", "ldspoutput"),
                              number("profile"),           number("video", "venable"), number("video", "vcodec"),
                              number("video", "width"),    number("video", "height"),  number("video", "osdenable"),
                              number("video", "flip"),     number("video", "mirror"),  number("audio", "anode"),
                              number("audio", "aenable")};
  constexpr Key kTexts[] = {text("video", "cap"), text("video", "fetype"), text("usbslot"), text("devname"),
                            text("createtime"),   text("profilename"),     text("hlspath"), text("video", "framerate")};
  {
    Pass pass = Pass::reading();
    for (int i = 0; i < kChannels; ++i) pass.getAll(i, kCompared);
  }
  linesOf("/etc/config/.usbnosupportlist.dat");
  listFormats(camera.node);
  askCameraType(camera.node);
  for (const Camera &other : others) {
    if (answers.conflict(camera, other)) break;
  }
  const Pass pass = Pass::writing();
  for (const Key &key : kNumbers) pass.set(channel, key, 1);
  for (const Key &key : kTexts) pass.set(channel, key, camera.slot.c_str());
}

}  // namespace bench
