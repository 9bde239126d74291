// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/web.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "channel/hotplug_lock.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"
#include "settings/settings_access.h"
#include "share/share_page.h"

namespace usbdevctl {

namespace {

struct MoveOptions {
  int profile = 0;
  CameraArgument camera{CameraName::By::channel};
  bool dry_run = false;
  bool json = false;
};

/// A profile on its way from one camera to another.
struct Move {
  ProfileSettings settings;
  Camera source;
  Camera target;
  Plan plan;
};

ExitStatus prepare(const MoveOptions &options, Move &move) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  const ExitStatus source = findCamera({CameraName::By::profile, options.profile, ""}, rows, move.source);
  if (source != ExitStatus::ok) return source;
  const ExitStatus target = findCamera(options.camera.name(), rows, move.target);
  if (target != ExitStatus::ok) return target;
  const std::optional<ProfileSettings> settings = readProfileSettings(options.profile);
  if (!settings) return configurationUnreadable();
  move.settings = *settings;
  move.plan = planMove(move.settings, move.source, readFacts(rows, move.target), rows);
  return ExitStatus::ok;
}

/// Prints what became of a move that failed in the middle.
ExitStatus takeBack(const Move &move, std::size_t done, bool json) {
  const std::vector<Step> &steps = move.plan.steps;
  complain("failed: " + stepText(steps[done]));
  if (done == 0) return refuse({{"nothing was changed", kNotBegun}}, json);
  const Plan back = planReturn(move.settings, move.source, {steps.begin(), steps.begin() + static_cast<long>(done)});
  if (!back.refusals.empty()) {
    for (std::size_t i = 0; i < done; ++i) complain("done: " + stepText(steps[i]));
    return refuse(back.refusals, json);
  }
  const std::size_t returned = applySteps(back.steps).steps;
  if (returned == back.steps.size()) {
    return refuse({{"the profile is with the camera that had it, its links are new", kPutBack}}, json);
  }
  for (std::size_t i = 0; i < returned; ++i) complain("put back: " + stepText(back.steps[i]));
  return refuse({{"it could not be put back, failed: " + stepText(back.steps[returned]), kNotPutBack}}, json);
}

bool readSharePage(int profile, std::string &page) {
  ShareLinkInfo link = {};
  link.profile = profile;
  if (vl_get_share_link(&link) != 0) return false;
  page = pageOf(link);
  return true;
}

Json differenceTexts(const std::vector<StreamDifference> &differences) {
  Json texts = Json::array();
  for (const StreamDifference &difference : differences) texts.append(differenceText(difference));
  return texts;
}

Json changesJson(const std::vector<StreamDifference> &differences) {
  Json changes = Json::array();
  for (const StreamDifference &it : differences) {
    Json change = Json::object().set("setting", it.setting).set("wanted", it.wanted);
    changes.append(std::move(change).set("taken", it.taken ? Json(*it.taken) : Json()));
  }
  return changes;
}

/// Prints the move, which is done or would be.
void printMove(const MoveOptions &options, const Move &move, const std::string &page) {
  Fields members;
  members.add(forPrograms("from_channel", move.source.channel))
      .add(forPrograms("differences", differenceTexts(move.plan.differences)))
      .add(forPrograms("changes", changesJson(move.plan.differences)))
      .add(forPrograms("page", page.empty() ? Json() : Json(page)));
  const std::string moved = options.dry_run ? "would move profile " : "moved profile ";
  print(changeOutput(moved + std::to_string(options.profile), members, move.target, options.json));
  if (options.json) return;
  const std::string changed = options.dry_run ? "would change: " : "changed: ";
  for (const StreamDifference &it : move.plan.differences) print(changed + differenceText(it) + "\n");
}

ExitStatus report(const MoveOptions &options, Move &move) {
  const ExitStatus read_again = readAgain(move.target);
  if (read_again != ExitStatus::ok) return read_again;
  std::string page;
  if (!readSharePage(options.profile, page)) return configurationUnreadable();
  printMove(options, move, page);
  if (!page.empty() && !options.json) print("new share link: " + page + "\n");
  return ExitStatus::ok;
}

ExitStatus plan(const MoveOptions &options, Move &move) {
  const ExitStatus prepared = prepare(options, move);
  if (prepared != ExitStatus::ok) return prepared;
  if (move.source.channel == move.target.channel) {
    return refuse({{cameraText(move.target) + ": it has the profile", kOwnCamera}}, options.json);
  }
  return move.plan.refusals.empty() ? ExitStatus::ok : refuse(move.plan.refusals, options.json);
}

ExitStatus announce(const MoveOptions &options) {
  Move move;
  const ExitStatus planned = plan(options, move);
  if (planned != ExitStatus::ok) return planned;
  printMove(options, move, "");
  if (move.settings.share.enabled && !options.json) print("the share link would be a new one\n");
  return ExitStatus::ok;
}

ExitStatus move(const MoveOptions &options) {
  const HotplugLock lock(kHotplugLockFile);  // so that neither camera is plugged in or removed meanwhile
  if (!lock.error().empty()) return refuse({{lock.error(), kNotLocked}}, options.json);
  Move move;
  const ExitStatus planned = plan(options, move);
  if (planned != ExitStatus::ok) return planned;
  const Applied applied = applySteps(move.plan.steps);
  if (applied.steps != move.plan.steps.size()) return takeBack(move, applied.steps, options.json);
  const ExitStatus reported = report(options, move);
  return reported == ExitStatus::ok ? applied.links : reported;
}

}  // namespace

void addMove(Command &program) {
  auto options = std::make_shared<MoveOptions>();
  Command &command = program.addCommand("move", "Move a profile with its name, settings and sharing to another camera",
                                        [options] { return options->dry_run ? announce(*options) : move(*options); });
  addProfile(command, options->profile);
  addCamera(command, options->camera);
  command.add("--dry-run", &options->dry_run, "Show what the move would change, and change nothing");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
