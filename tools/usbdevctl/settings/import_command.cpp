// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fstream>
#include <memory>

#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "channel/hotplug_lock.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"
#include "output/printable.h"
#include "settings/settings_access.h"

namespace usbdevctl {

namespace {

constexpr std::streamsize kMostBytes = 1 << 20;

struct ImportOptions {
  std::string file;
  bool json = false;
};

ExitStatus notImported(const Refusals &refusals) {
  const ExitStatus status = refuse(refusals, false);
  complain("nothing was changed");
  return status;
}

std::optional<Settings> readFile(const std::string &name) {
  std::ifstream file(name, std::ios::binary);
  std::string text(kMostBytes, '\0');
  file.read(text.data(), kMostBytes);
  text.resize(static_cast<std::size_t>(file.gcount()));
  std::string wrong = file.bad() || text.empty() ? "it cannot be read, or is empty" : "";
  std::optional<Settings> settings = wrong.empty() ? readSettings(text, wrong) : std::nullopt;
  if (!settings) complain(printable(name) + ": " + wrong);
  return settings;
}

std::vector<CameraFacts> readAttached(const ChannelRows &rows) {
  std::vector<CameraFacts> facts;
  for (const Camera &camera : camerasOf(rows)) {
    if (isAttached(camera)) facts.push_back(readFacts(rows, camera));
  }
  return facts;
}

Json texts(const std::vector<Step> &steps, std::size_t first, std::size_t end) {
  Json list = Json::array();
  for (std::size_t i = first; i < end; ++i) list.append(stepText(steps[i]));
  return list;
}

ExitStatus report(const std::vector<Step> &steps, const Applied &applied, bool json) {
  const std::size_t done = applied.steps;
  if (json) {
    print(Json::document().set("done", texts(steps, 0, done)).set("not_done", texts(steps, done, steps.size())).text());
  } else {
    for (std::size_t i = 0; i < done; ++i) print("done: " + stepText(steps[i]) + "\n");
    if (steps.empty()) print("the settings are as they are to be\n");
  }
  if (done == steps.size()) return applied.links;
  complain("failed: " + stepText(steps[done]));
  for (std::size_t i = done + 1; i < steps.size(); ++i) complain("not done: " + stepText(steps[i]));
  return ExitStatus::failure;
}

ExitStatus importSettings(const ImportOptions &options) {
  const HotplugLock lock(kHotplugLockFile);  // so that no camera is plugged in or removed meanwhile
  if (!lock.error().empty()) return notImported({{lock.error()}});
  const std::optional<Settings> settings = readFile(options.file);
  if (!settings) return notImported({});
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  const Plan plan = planImport(*settings, rows, readAttached(rows));
  if (!plan.refusals.empty()) return notImported(plan.refusals);
  return report(plan.steps, applySteps(plan.steps), options.json);
}

}  // namespace

void addImport(Command &program) {
  auto options = std::make_shared<ImportOptions>();
  Command &command = program.addCommand("import", "Apply exported settings to the cameras, if all of them fit",
                                        [options] { return importSettings(*options); });
  command.add("file", &options->file, "File that export wrote");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
