// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/stop_request.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>

namespace usbdevctl {

StopRequest::StopRequest() : before_(), signals_(-1) {
  sigset_t stopping;
  sigemptyset(&stopping);
  sigaddset(&stopping, SIGINT);
  sigaddset(&stopping, SIGTERM);
  sigprocmask(SIG_BLOCK, &stopping, &before_);
  signals_ = signalfd(-1, &stopping, SFD_CLOEXEC | SFD_NONBLOCK);
}

StopRequest::~StopRequest() {
  if (signals_ >= 0) close(signals_);
  // A signal that was waited for has had its effect; left pending it would end the program now, but is discarded.
  for (const int stopping : {SIGINT, SIGTERM}) std::signal(stopping, std::signal(stopping, SIG_IGN));
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

StopRequest::Event StopRequest::wait(int descriptor, std::optional<int> milliseconds) const {
  pollfd waited[] = {{signals_, POLLIN, 0}, {descriptor, POLLIN, 0}};
  const int ready = poll(waited, 2, milliseconds.value_or(-1));
  if (signals_ < 0 || (ready < 0 && errno != EINTR)) return Event::failed;
  if (ready < 0) return wait(descriptor, milliseconds);
  if (waited[0].revents != 0) return Event::stopped;
  return ready > 0 ? Event::readable : Event::timed_out;
}

}  // namespace usbdevctl
