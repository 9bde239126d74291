// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"
#include "output/printable.h"
#include "settings/settings_access.h"

namespace usbdevctl {

namespace {

struct ExportOptions {
  std::string file;
  bool json = false;
};

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

bool writeAll(int file, const std::string &text) {
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t bytes = write(file, text.data() + written, text.size() - written);
    if (bytes < 0 && errno != EINTR) return false;
    if (bytes > 0) written += static_cast<std::size_t>(bytes);
  }
  return fsync(file) == 0;
}

/// Replaces the file as a whole by one that its owner alone can read: it may hold passwords.
bool replaceFile(const std::string &name, const std::string &text) {
  std::string draft = name + ".XXXXXX";
  const int file = mkostemp(draft.data(), O_CLOEXEC);
  if (file < 0) return false;
  const bool written = fchmod(file, kOwnerOnly) == 0 && writeAll(file, text);
  const bool closed = close(file) == 0;
  if (written && closed && std::rename(draft.c_str(), name.c_str()) == 0) return true;
  const int error = errno;
  unlink(draft.c_str());
  errno = error;
  return false;
}

bool readCamera(const Camera &camera, Settings &settings) {
  const ChannelRow &row = camera.row;
  if (row.state != ChannelState::plugged && !row.profile) return true;  // keeps a place, and nothing that can be set
  CameraSettings wanted = {row.slot, row.device, row.slot_switch != false, std::nullopt};
  if (row.profile) {
    wanted.profile = readProfileSettings(*row.profile);
    if (!wanted.profile) return false;
  }
  settings.push_back(std::move(wanted));
  return true;
}

ExitStatus report(const ExportOptions &options, const Settings &settings) {
  int passwords = 0;
  for (const CameraSettings &camera : settings) {
    if (camera.profile && !camera.profile->share.password.empty()) ++passwords;
  }
  const auto cameras = static_cast<int>(settings.size());
  Fields fields;
  fields.add(forPrograms("file", options.file))
      .add(forPrograms("cameras", cameras))
      .add(forPrograms("passwords", passwords));
  const std::string text = "exported " + std::to_string(cameras) + " cameras to " + printable(options.file) +
                           (passwords > 0 ? ", with " + std::to_string(passwords) + " share passwords" : "") + "\n";
  print(options.json ? recordOutput(fields, true) : text);
  return ExitStatus::ok;
}

ExitStatus exportSettings(const ExportOptions &options) {
  Cameras cameras;
  const ExitStatus found = readCameras(cameras);
  if (found != ExitStatus::ok) return found;
  Settings settings;
  for (const Camera &camera : cameras) {
    if (!readCamera(camera, settings)) return refused("the settings of " + cameraText(camera) + " cannot be read");
  }
  if (replaceFile(options.file, settingsText(settings))) return report(options, settings);
  complain("cannot write " + printable(options.file) + ": " + std::strerror(errno));
  return ExitStatus::failure;
}

}  // namespace

void addExport(Command &program) {
  auto options = std::make_shared<ExportOptions>();
  Command &command = program.addCommand("export", "Write the settings of all cameras to a file, share passwords too",
                                        [options] { return exportSettings(*options); });
  command.add("file", &options->file, "File, which only its owner can read afterwards");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
