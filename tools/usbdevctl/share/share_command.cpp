// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/core.h>
#include <usbdev/web.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "command_line/password.h"
#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"
#include "output/printable.h"
#include "share/share_check.h"
#include "share/share_page.h"
#include "stream/channel_links.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kLongestSharePassword = sizeof(ShareLinkInfo::shrpwd) - 1;

struct ShareOptions {
  CameraArgument camera{CameraName::By::profile};
  bool password = false;
  bool json = false;
};

ShareLinkInfo linkOf(int profile) {
  ShareLinkInfo link = {};
  link.profile = profile;
  return link;
}

Fields describe(const ShareLinkInfo &link) {
  return Fields()
      .add(numberField("profile", link.profile))
      .add(textField("profile_name", fieldText(link.profilename)))
      .add(switchField("sharing", link.shrenable != 0))
      .add(answerField("password", link.pwdenable != 0))
      .add(absentIfEmpty(headed("share id", textField("ssid", fieldText(link.ssid)))))
      .add(absentIfEmpty(textField("token", fieldText(link.token))))
      .add(absentIfEmpty(textField("hash", fieldText(link.hash_string))))
      .add(absentIfEmpty(textField("page", pageOf(link))));
}

ExitStatus show(int profile, const ShareOptions &options) {
  ShareLinkInfo link = linkOf(profile);
  if (vl_get_share_link(&link) != 0) return refusedFor(profile);
  print(recordOutput(describe(link), options.json));
  return ExitStatus::ok;
}

int channelOf(int profile) {
  int channel = -1;
  trsProfiletoPlugCh(profile, &channel);
  return channel;
}

ExitStatus showChanged(int profile, const ChannelLinks &before, const ShareOptions &options) {
  const ExitStatus shown = show(profile, options);
  return shown == ExitStatus::ok ? linksFollowed(channelOf(profile), before) : shown;
}

bool readPasswordInto(ShareLinkInfo &link) {
  const std::optional<std::string> password = readPassword(kLongestSharePassword);
  if (!password) return false;
  link.pwdenable = 1;
  link.shrpwd[password->copy(link.shrpwd, kLongestSharePassword)] = '\0';
  return true;
}

ExitStatus on(int profile, const ShareOptions &options) {
  ShareLinkInfo link = linkOf(profile);
  if (vl_get_share_link(&link) != 0) return refusedFor(profile);
  if (options.password && !readPasswordInto(link)) return ExitStatus::usage;
  const ChannelLinks before = linksOf(channelOf(profile));
  link.shrenable = 1;
  return vl_set_share_link(&link) == 0 ? showChanged(profile, before, options) : refusedFor(profile);
}

// The password is removed with the link, so that a user who shares the profile again chooses a new one.
ExitStatus off(int profile, const ShareOptions &options) {
  ShareLinkInfo before = linkOf(profile);
  if (vl_get_share_link(&before) != 0) return refusedFor(profile);
  const ChannelLinks links = linksOf(channelOf(profile));
  ShareLinkInfo link = linkOf(profile);
  if (vl_set_share_link(&link) != 0) return refusedFor(profile);
  Camera camera;
  const ExitStatus read_again = findCameraOf(profile, camera);
  if (read_again != ExitStatus::ok) return read_again;
  if (vl_get_share_link(&link) != 0 || link.shrenable != 0) return notStoredFor(camera);
  const std::string number = std::to_string(profile);
  print(changeOutput(
      before.shrenable != 0 ? "sharing of profile " + number + " ended" : "profile " + number + " was not shared",
      Fields().add(forPrograms("sharing", false)), camera, options.json));
  return linksFollowed(camera.channel, links);
}

ExitStatus renew(int profile, const ShareOptions &options) {
  ShareLinkInfo link = linkOf(profile);
  const ChannelLinks before = linksOf(channelOf(profile));
  return vl_renew_share_link(&link) == 0 ? showChanged(profile, before, options) : refusedFor(profile);
}

using Operation = ExitStatus (*)(int profile, const ShareOptions &);

ExitStatus run(Operation operation, const ShareOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  return found == ExitStatus::ok ? operation(profile, options) : found;
}

void addOperation(Command &share, const char *name, const char *description, Operation operation) {
  auto options = std::make_shared<ShareOptions>();
  Command &command = share.addCommand(name, description, [options, operation] { return run(operation, *options); });
  addCamera(command, options->camera);
  if (operation == on) {
    command.add("--password-stdin", &options->password,
                "Protect the link by a password, asked for at a terminal or else read from standard input");
  }
  addJsonFlag(command, options->json);
}

}  // namespace

void addShare(Command &program) {
  Command &share = program.addCommand("share", "Show or change the share links of profiles");
  addOperation(share, "show", "Show a profile's link", show);
  addOperation(share, "on", "Share a profile; a link and a password that it has are kept", on);
  addOperation(share, "off", "Take a profile's link and its password away", off);
  addOperation(share, "renew", "Give a profile a new link, so that the old one leads nowhere", renew);
  addShareCheck(share);
}

}  // namespace usbdevctl
