// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>
#include <usbdev/web.h>

#include <array>
#include <ctime>
#include <memory>

#include "channel/configuration.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"
#include "output/printable.h"
#include "stream/playlist.h"
#include "stream/view_code.h"

namespace usbdevctl {

namespace {

// The kinds of source process, by which the library looks for the one that runs for a video node.
constexpr int kPipe = 0;
constexpr int kReader = 1;

std::string sourceOf(int video_node) {
  if (video_node < 0) return "";
  if (vl_SourcerStreamingProcess(video_node, kReader) == 1) return "v4l2_read";
  return vl_SourcerStreamingProcess(video_node, kPipe) == 1 ? "HDpipe" : "";
}

std::string cameraOf(int profile) {
  char pidvid[16] = "";
  return vl_get_pidvid(profile, pidvid) == 0 ? fieldText(pidvid) : "";
}

bool hasPlaylist(int profile) {
  int status = 0;
  vl_get_hls_status(profile, &status);
  return status == 1;
}

int viewCodeOf(int profile) {
  int code = kViewOpens;
  vl_validate_chliveview(profile, &code);
  return code;
}

Fields describe(int profile, const _usbdev_entry &entry) {
  const bool bound = entry.usbslot[0] != '\0';
  _profile_info info;
  vl_get_profile_info(profile, &info);
  Fields fields;
  fields.add(numberField("profile", profile))
      .add(headed("name", textField("profile_name", fieldText(entry.profilename))))
      .add(absentIfEmpty(textField("camera", cameraOf(profile))))
      .add(absentIfEmpty(wordField("source", sourceOf(info.vnode))));
  addPlaylist(fields, hasPlaylist(profile), playlistGrows(playlistOf(profile), std::time(nullptr)));
  addView(fields, "live view", "live_view", bound ? std::optional(viewCodeOf(profile)) : std::nullopt);
  return fields;
}

ExitStatus status(bool json) {
  std::array<_usbdev_entry, USBDEV_PROFILES> entries = {};
  if (vl_get_profile_list(entries.data()) != 0) return configurationUnreadable();
  FieldRows rows;
  int profile = 0;
  for (const _usbdev_entry &entry : entries) rows.push_back(describe(profile++, entry));
  print(listOutput("streams", rows, json));
  return ExitStatus::ok;
}

}  // namespace

void addStatus(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command =
      program.addCommand("status", "Show the state of the four profiles' streams", [json] { return status(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
