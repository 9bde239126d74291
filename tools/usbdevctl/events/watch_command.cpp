// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <memory>
#include <optional>

#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "events/notification.h"
#include "events/notification_socket.h"
#include "events/stop_request.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

using Clock = std::chrono::steady_clock;

struct WatchOptions {
  std::optional<int> count;
  std::optional<int> seconds;
  bool json = false;
};

std::optional<Clock::time_point> deadlineOf(const WatchOptions &options) {
  if (!options.seconds) return std::nullopt;
  return Clock::now() + std::chrono::seconds(*options.seconds);
}

std::optional<int> millisecondsUntil(std::optional<Clock::time_point> deadline) {
  if (!deadline) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now());
  return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

// Prints a datagram at once, for a reader that waits for it; false for one that is not a notification.
bool show(const std::string &datagram, bool json) {
  std::string reason;
  const std::optional<Notification> notification = decodeNotification(datagram, reason);
  if (!notification) {
    complain("refused a datagram: " + reason);
    return false;
  }
  print(json ? notificationJson(*notification).line() : notificationText(*notification));
  return true;
}

ExitStatus failed(const std::string &what) {
  complain(what);
  return ExitStatus::failure;
}

ExitStatus receive(const NotificationSocket &socket, const StopRequest &stop, const WatchOptions &options) {
  const std::optional<Clock::time_point> deadline = deadlineOf(options);
  for (int shown = 0; !options.count || shown < *options.count;) {
    const StopRequest::Event event = stop.wait(socket.descriptor(), millisecondsUntil(deadline));
    if (event == StopRequest::Event::stopped) return ExitStatus::ok;
    if (event == StopRequest::Event::failed) return failed("cannot wait for notifications");
    if (event == StopRequest::Event::timed_out) {
      return shown > 0 && !options.count ? ExitStatus::ok : ExitStatus::nothing;
    }
    const std::optional<std::string> datagram = socket.receive();
    if (!datagram) return failed(socket.hasHub() ? "the manager has ended" : "cannot receive notifications");
    if (show(*datagram, options.json)) ++shown;
    if (!flushOutput()) return ExitStatus::failure;
  }
  return ExitStatus::ok;
}

ExitStatus watch(const WatchOptions &options) {
  const StopRequest stop;
  const NotificationSocket socket(kNotificationPort);
  if (!socket.error().empty()) {
    complain(socket.error());
    return ExitStatus::failure;
  }
  complain(socket.hasHub() ? "listening to the manager"
                           : "listening on 127.0.0.1:" + std::to_string(kNotificationPort));
  return receive(socket, stop, options);
}

}  // namespace

void addWatch(Command &program) {
  constexpr int kMostSeconds = 1000000;  // in milliseconds still a number that can be waited for
  auto options = std::make_shared<WatchOptions>();
  Command &command = program.addCommand("watch", "Print the library's change notifications as they arrive",
                                        [options] { return watch(*options); });
  command.add("--count", &options->count, "End after so many notifications").limit(1);
  command.add("--timeout", &options->seconds, "End after so many seconds; status 3 if too few have come by then")
      .limit(1, kMostSeconds);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
