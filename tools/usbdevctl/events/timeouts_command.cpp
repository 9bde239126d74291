// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <sys/shm.h>
#include <usbdev/hostinfo.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr char kAdd[] = "add";
constexpr char kReset[] = "reset";

using Counters = std::array<std::uint32_t, 4>;

struct TimeoutsOptions {
  std::optional<std::string> change;
  CameraArgument camera{CameraName::By::profile};
  bool json = false;
};

/// The counters that all processes share.
class Segment {
 public:
  Segment() : address_(vl_attach_log_shm(vl_create_log_shm())) {}
  ~Segment() {
    if (address_ != nullptr) shmdt(address_);
  }
  Segment(const Segment &) = delete;
  Segment &operator=(const Segment &) = delete;

  explicit operator bool() const { return address_ != nullptr; }

  void reset() const { vl_log_shm_init(address_); }

  Counters read() const {
    Counters counters;
    std::memcpy(counters.data(), address_, sizeof counters);
    return counters;
  }

 private:
  void *address_;
};

FieldRows describe(const Counters &counters) {
  FieldRows rows;
  int profile = 0;
  for (const std::uint32_t counter : counters) {
    Fields row;
    row.add(numberField("profile", profile++));
    row.add({"timeouts", {std::to_string(counter)}, Align::right, "timeouts", static_cast<std::int64_t>(counter)});
    rows.push_back(std::move(row));
  }
  return rows;
}

ExitStatus failed() {
  complain("the shared time-out counters are not available");
  return ExitStatus::failure;
}

ExitStatus misplaced(const std::string &reason) {
  complain(reason);
  return ExitStatus::usage;
}

ExitStatus add(const TimeoutsOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  const Segment segment;
  if (!segment || vl_add_shm_timeout_log(profile) != 0) return failed();
  const Counters counters = segment.read();
  const auto count = counters[static_cast<std::size_t>(profile)];
  const std::string line =
      "time-out of profile " + std::to_string(profile) + " counted: " + std::to_string(count) + " now\n";
  const Fields members = describe(counters)[static_cast<std::size_t>(profile)];
  print(options.json ? recordOutput(members, true) : line);
  return ExitStatus::ok;
}

ExitStatus reset(bool as_json) {
  const Segment segment;
  if (!segment) return failed();
  segment.reset();
  print(as_json ? listOutput("counters", describe(segment.read()), true)
                : "time-out counters of all profiles set to 0\n");
  return ExitStatus::ok;
}

ExitStatus show(bool as_json) {
  const Segment segment;
  if (!segment) return failed();
  print(listOutput("counters", describe(segment.read()), as_json));
  return ExitStatus::ok;
}

ExitStatus timeouts(const TimeoutsOptions &options) {
  if ((options.change == kAdd) != options.camera.isGiven()) {
    return misplaced("a camera belongs after 'add', and nowhere else");
  }
  if (options.change == kAdd) return add(options);
  return options.change == kReset ? reset(options.json) : show(options.json);
}

}  // namespace

void addTimeouts(Command &program) {
  auto options = std::make_shared<TimeoutsOptions>();
  Command &command =
      program.addCommand("timeouts", "Show the profiles' time-out counters; 'add CAMERA' or 'reset' them",
                         [options] { return timeouts(*options); });
  command.add("change", &options->change, "'add' counts a time-out, 'reset' sets all counters to zero")
      .allow({kAdd, kReset})
      .require(false);
  addCamera(command, options->camera).require(false);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
