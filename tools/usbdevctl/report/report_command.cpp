// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <platform/xmlcfg.h>
#include <sys/utsname.h>
#include <usbdev/core.h>
#include <usbdev/devices.h>
#include <usbdev/hostinfo.h>
#include <usbdev/profiles.h>

#include <algorithm>
#include <array>
#include <memory>

#include "channel/channel_query.h"
#include "channel/channel_reset.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "command_line/version.h"
#include "explain/support.h"
#include "format/format_query.h"
#include "output/output.h"
#include "output/printable.h"
#include "profile/profile_query.h"
#include "report/report.h"

namespace usbdevctl {

namespace {

constexpr int kEvents = 200;

std::string yesOrNo(bool yes) { return yes ? "yes" : "no"; }

std::string kernel() {
  utsname name = {};
  if (uname(&name) != 0) return "unknown";
  return std::string(name.sysname) + " " + name.release + " " + name.machine;
}

NamedTexts readHost() {
  char version[256] = "";
  vl_get_nas_version(version);
  char model[256] = "";
  get_nas_info("Internal Model", model);
  BndlInfo codec = {};
  vl_get_bndl_info(kCodecPackage, &codec);
  int encodes = 0;
  validate_hwenc(&encodes);
  return {{"usbdevctl", programVersion()},
          {"library", libraryFile()},
          {"kernel", kernel()},
          {"host version", version},
          {"host model", model},
          {"one channel only", yesOrNo(AMDmodel_oneChannelLimited() != 0)},
          {"codec package", fieldText(codec.version)},
          {"encodes", yesOrNo(encodes != 0)}};
}

std::vector<Event> readEvents() {
  if (!EventLog::exists(kEventLogFile)) return {};
  EventLog log(kEventLogFile);
  std::vector<Event> events = log.last(kEvents);
  if (!log.error().empty()) complain(log.failure());
  return events;
}

std::vector<CameraAnswers> askTools(const ChannelRows &rows) {
  std::vector<CameraAnswers> answers;
  for (const Camera &camera : camerasOf(rows)) {
    if (camera.row.state != ChannelState::plugged || !camera.row.video_node) continue;
    const std::string node = "/dev/video" + std::to_string(*camera.row.video_node);
    answers.push_back({camera, formatListing(*camera.row.video_node),
                       outputOf("/sbin/udevadm info --name=" + node + " --attribute-walk 2>&1")});
  }
  return answers;
}

StoredChannel readStored(void *configuration, int channel) {
  StoredChannel stored = {channel, {}};
  const std::string section = "ch" + std::to_string(channel);
  for (const ResetKey &key : resetKeys()) {
    char value[sizeof(_usbdev_des::devname) + 1] = {};  // the host may leave it unterminated
    xmlcfg_get_str(configuration, "", value, sizeof value - 1, kConfigurationRoot, section.c_str(), key.key,
                   key.sub_key);
    const std::string path = key.sub_key != nullptr ? std::string(key.key) + "/" + key.sub_key : key.key;
    stored.keys.emplace_back(path, value);
  }
  return stored;
}

/// The channels that have anything stored.
bool readConfiguration(std::vector<StoredChannel> &configuration) {
  void *handle = nullptr;
  if (xmlcfg_open(0, kConfigurationFile, &handle) != 1) return false;
  for (int channel = 0; channel < USBDEV_CHANNELS; ++channel) {
    StoredChannel stored = readStored(handle, channel);
    const auto has_value = [](const auto &key) { return !key.second.empty(); };
    if (std::any_of(stored.keys.begin(), stored.keys.end(), has_value)) configuration.push_back(std::move(stored));
  }
  xmlcfg_close(handle, 0);
  return true;
}

ExitStatus report(bool json) {
  Report report;
  if (!readChannels(report.channels) || !readProfiles(report.profiles) || !readConfiguration(report.configuration)) {
    return configurationUnreadable();
  }
  report.host = readHost();
  report.events = readEvents();
  report.cameras = askTools(report.channels);
  report = withoutSecrets(std::move(report));
  print(json ? reportJson(report).text() : reportText(report));
  return ExitStatus::ok;
}

}  // namespace

void addReport(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command = program.addCommand("report", "Print all that a maintainer needs to know, without secrets",
                                        [json] { return report(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
