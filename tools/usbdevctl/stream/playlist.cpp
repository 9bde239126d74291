// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/playlist.h"

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "output/reading.h"
#include "stream/live_link.h"

namespace usbdevctl {

namespace {

constexpr char kTargetDuration[] = "#EXT-X-TARGETDURATION:";
constexpr std::size_t kHeadSize = 1024;  // the tag is before the first segment
constexpr double kSegmentsWaitedFor = 3;

/// Nothing for a playlist that cannot be read.
std::optional<std::string> headOf(const std::string &path) {
  char head[kHeadSize];
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  throwOnFailure(file);
  file.read(head, sizeof head);
  return std::string(head, static_cast<std::size_t>(file.gcount()));
}

/// The longest segment's length in seconds; 0 where the playlist does not have it.
long targetDuration(const std::string &head) {
  const std::size_t tag = head.find(kTargetDuration);
  return tag == std::string::npos ? 0 : std::strtol(&head[tag + sizeof kTargetDuration - 1], nullptr, 10);
}

}  // namespace

std::string playlistOf(int profile) {
  return std::string(kApplicationFolder) + "/hls/channel" + std::to_string(profile + 1) + "/playlist.m3u8";
}

std::optional<bool> playlistGrows(const std::string &path, std::time_t now) {
  struct stat found = {};
  if (stat(path.c_str(), &found) != 0) return std::nullopt;
  const std::optional<std::string> head = headOf(path);
  if (!head) return std::nullopt;
  const long target = targetDuration(*head);
  return target > 0 && std::difftime(now, found.st_mtime) <= kSegmentsWaitedFor * static_cast<double>(target);
}

void addPlaylist(Fields &fields, bool exists, std::optional<bool> grows) {
  const Cell stopped = {"stopped", Style::bad};
  fields.add(forPeople("playlist", exists && grows == false ? stopped : Cell{exists ? "yes" : "no"}))
      .add(forPrograms("playlist", exists))
      .add(forPrograms("playlist_grows", exists ? Json(grows) : Json()));
}

}  // namespace usbdevctl
