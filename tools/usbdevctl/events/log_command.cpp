// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>
#include <optional>

#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "events/event_log.h"
#include "events/event_text.h"
#include "events/stop_request.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr int kPollMilliseconds = 200;  // the database does not notify other processes

struct LogOptions {
  int lines = 20;
  bool follow = false;
  bool json = false;
};

ExitStatus failed(const EventLog &log) {
  complain(log.failure());
  return ExitStatus::failure;
}

// One line for each event, which a program can read at once.
void printLine(const Event &event, bool json) {
  print(json ? addEvent(Json::document(), event).line() : eventText(event, outputTakesColour()));
}

std::string listText(const std::vector<Event> &events) {
  Json list = Json::array();
  for (const Event &event : events) list.append(addEvent(Json::object(), event));
  return Json::document().set("events", std::move(list)).text();
}

ExitStatus show(const LogOptions &options) {
  if (!EventLog::exists(kEventLogFile)) {
    if (options.json) print(listText({}));
    complain(std::string("nothing has been logged: there is no ") + kEventLogFile);
    return ExitStatus::nothing;
  }
  EventLog log(kEventLogFile);
  const std::vector<Event> events = log.last(options.lines);
  if (!log.error().empty()) return failed(log);
  if (options.json) {
    print(listText(events));
  } else {
    for (const Event &event : events) printLine(event, false);
  }
  return ExitStatus::ok;
}

/// Waits until there may be more; otherwise the status to end with.
std::optional<ExitStatus> endWhileWaiting(const StopRequest &stop) {
  const StopRequest::Event event = stop.wait(-1, kPollMilliseconds);
  if (event == StopRequest::Event::stopped) return ExitStatus::ok;
  if (event != StopRequest::Event::failed) return std::nullopt;
  complain("cannot wait for events");
  return ExitStatus::failure;
}

// Prints the events after `newest` and updates it; false when standard output is closed.
bool printNew(const std::vector<Event> &events, std::int64_t &newest, bool json) {
  for (const Event &event : events) {
    printLine(event, json);
    newest = event.id;
  }
  return flushOutput();
}

ExitStatus follow(const LogOptions &options) {
  const StopRequest stop;
  while (!EventLog::exists(kEventLogFile)) {
    if (const std::optional<ExitStatus> end = endWhileWaiting(stop)) return *end;
  }
  EventLog log(kEventLogFile);
  std::int64_t newest = 0;
  std::vector<Event> events = log.last(options.lines);
  while (log.error().empty()) {
    if (!printNew(events, newest, options.json)) return ExitStatus::failure;
    if (const std::optional<ExitStatus> end = endWhileWaiting(stop)) return *end;
    events = log.after(newest);
  }
  return failed(log);
}

}  // namespace

void addLog(Command &program) {
  auto options = std::make_shared<LogOptions>();
  Command &command = program.addCommand("log", "Show the newest events of the host's event log",
                                        [options] { return options->follow ? follow(*options) : show(*options); });
  command.add("--lines", &options->lines, "Events to show, 20 if not given").limit(1);
  command.add("--follow", &options->follow, "Go on with each new event until Ctrl-C");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
