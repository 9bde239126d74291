// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The functions of libvllog.so and libalsa_ctl.so, over the current host.
#include <platform/alsa_ctl.h>
#include <platform/vllog.h>

#include "host.h"

using contract::Host;

extern "C" {

int vq_sql_set_log(int level, const char *text, int reserved) {
  if (reserved != 0) Host::current()->journal.violation("event log with a third argument");
  if (const std::optional<int> failure = Host::current()->calls.failure("vq_sql_set_log")) return *failure;
  Host::current()->journal.add("log " + std::to_string(level) + " " + text);
  return 0;
}

int ac_get_Acard_info(int card, _acard_info *info) {
  const std::optional<int> failure = Host::current()->calls.failure("ac_get_Acard_info");
  return failure ? *failure : Host::current()->sound.describe(card, info);
}

int ac_set_audio_volume(int card, int volume) {
  const std::optional<int> failure = Host::current()->calls.failure("ac_set_audio_volume");
  return failure ? *failure : Host::current()->sound.setVolume(card, volume);
}

}  // extern "C"
