// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "command_line/refusal.h"
#include "command_line/shared_arguments.h"
#include "events/event_codes.h"
#include "output/output.h"
#include "stream/picture_address.h"
#include "stream/stream_command.h"
#include "stream/stream_notice.h"
#include "stream/stream_outcome.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

struct StreamSetOptions {
  CameraArgument camera{CameraName::By::profile};
  bool json = false;
  StreamChange change;
};

/// The newest event so far, 0 before the first one; nothing where the log cannot be read.
std::optional<std::int64_t> newestEvent() {
  if (!EventLog::exists(kEventLogFile)) return 0;
  EventLog log(kEventLogFile);
  const std::vector<Event> newest = log.last(1);
  if (!log.error().empty()) return std::nullopt;
  return newest.empty() ? 0 : newest.front().id;
}

/// A log that cannot be read leaves the change as it is, and its events unknown.
std::vector<Event> eventsAfter(std::optional<std::int64_t> id) {
  if (!EventLog::exists(kEventLogFile)) return {};
  EventLog log(kEventLogFile);
  std::vector<Event> events = log.after(id.value_or(0));
  if (!log.error().empty()) complain(log.failure());
  if (log.error().empty() && !id) complain("the events before the change could not be read");
  return id ? events : std::vector<Event>();
}

ExitStatus explainRefusal(int profile, const _streaminfo &wanted, bool json) {
  const std::string name = "profile " + std::to_string(profile);
  if (wanted.vnode == -1) return refused(name + " has no camera, without which its stream cannot be set");
  float rate = 0;
  if (findclosedFPS(profile, &wanted, &rate) == 0) return refusedFor(profile);
  const std::string stream = wordFor(videoCodecs(), wanted.vcodec) + " at " + sizeText(wanted.width, wanted.height);
  return refuse({{"the camera of " + name + " does not offer " + stream, kNotOffered}}, json);
}

ExitStatus report(const StreamSetOptions &options, const Camera &camera, const StreamOutcome &outcome) {
  Fields fields;
  fields.add(forPeople("camera", {cameraText(camera)}));
  addCameraMembers(fields, camera);
  const Fields became = outcomeFields(outcome, options.change);
  for (const Field &field : became.all()) fields.add(field);
  const std::string picture = pictureAddress(*camera.row.profile);
  if (!picture.empty()) fields.add(textField("picture", picture));
  print(recordOutput(fields, options.json));
  const std::vector<std::string> in_vain = notStored(outcome.stored, options.change);
  for (const std::string &setting : in_vain) complain(setting + " does not apply to this stream and was not stored");
  return in_vain.empty() ? ExitStatus::ok : ExitStatus::nothing;
}

bool isUnchanged(const _streaminfo &before, const _streaminfo &stored) {
  return stored.framerate == before.framerate && notStored(stored, allSettings(before)).empty();
}

ExitStatus set(const StreamSetOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  _streaminfo before;
  const ExitStatus status = readStream(profile, before);
  if (status != ExitStatus::ok) return status;

  const std::optional<std::int64_t> newest = newestEvent();
  _streaminfo wanted = changed(before, options.change);
  if (vl_set_usbchn_stream(profile, &wanted, &before, kLogChangesOnly) != 0) {
    return explainRefusal(profile, wanted, options.json);
  }
  StreamOutcome outcome;
  outcome.events = eventsAfter(newest);
  ExitStatus read_again = readStream(profile, outcome.stored);
  Camera camera;
  if (isUnchanged(before, outcome.stored)) notifyOfStream(profile);
  if (read_again == ExitStatus::ok) read_again = findCameraOf(profile, camera);
  return read_again == ExitStatus::ok ? report(options, camera, outcome) : read_again;
}

void addChanges(Command &command, StreamChange &change) {
  command.add("--size", &change.size, "Picture size, such as 1280x720").check(checkSize);
  command.add("--fps", &change.rate, "Frames per second; the camera's first listed rate not above it is taken")
      .check(checkRate);
  const std::vector<StreamSetting> &settings = streamSettings();
  for (std::size_t i = 0; i < settings.size(); ++i) {
    Argument &option = command.add(settings[i].option, &change.settings[i], settings[i].help);
    if (settings[i].words.empty()) {
      option.limit(0, 100);
    } else {
      option.allow(settings[i].words);
    }
  }
}

}  // namespace

void addStreamSet(Command &stream) {
  auto options = std::make_shared<StreamSetOptions>();
  Command &command =
      stream.addCommand("set", "Change a profile's stream settings", [options] { return set(*options); });
  addCamera(command, options->camera);
  addChanges(command, options->change);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
