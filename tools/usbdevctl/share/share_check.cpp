// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "share/share_check.h"

#include <usbdev/web.h>

#include <memory>

#include "channel/configuration.h"
#include "command_line/password.h"
#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"
#include "stream/view_code.h"

namespace usbdevctl {

namespace {

struct ShareCheckOptions {
  std::string ssid;
  std::string token;
  bool json = false;
};

Fields describe(int code, int profile) {
  Fields fields;
  addView(fields, "opens", "opens", code);
  // Where no profile has the share id, the library leaves the one that it looked at last.
  fields.add(numberField("profile", code == kUnknownShareId ? std::nullopt : std::optional(profile)));
  return fields;
}

ExitStatus check(const ShareCheckOptions &options) {
  const std::optional<std::string> token = secretArgument(options.token, "token");
  if (!token) return ExitStatus::usage;
  int profile = -1;
  int code = kUnknownShareId;
  vl_ssid_auth(options.ssid.c_str(), token->c_str(), &profile, &code);
  if (code == kViewOpens || options.json) print(recordOutput(describe(code, profile), options.json));
  return code == kViewOpens ? ExitStatus::ok : nothingApplies("the link opens nothing: " + viewReason(code));
}

}  // namespace

void addShareCheck(Command &share) {
  auto options = std::make_shared<ShareCheckOptions>();
  Command &command = share.addCommand("check", "Check whether a share link opens a stream, and if not, show why",
                                      [options] { return check(*options); });
  command.add("ssid", &options->ssid, "The link's share id");
  command.add("token", &options->token, "The link's token; - to read it from a pipe");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
