// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which profiles can stream: the list that asks four cameras with the lock held. On a sandboxed host with ten cameras,
// which get the four profiles: see bench/run.
#include <usbdev/profiles.h>

#include <cstdio>
#include <cstdlib>

#include "bare_host.h"
#include "pairs.h"

namespace {

constexpr int kProfiles = 4;

bool bindProfiles() {
  _usbdev_entry rows[bench::kChannels];
  bool bound = vl_get_devpf_list(rows) == 0;
  for (int i = 0; i < kProfiles; ++i) bound = vl_set_usbchn_profile(rows[i].usbslot, i) == 0 && bound;
  char list[16] = "";
  return bound && vl_get_usbdev_list(list) == 0 && list[0] != '\0';
}

void listByLibrary() {
  char list[16] = "";
  vl_get_usbdev_list(list);
}

void listBarely() {
  constexpr bench::Key kState[] = {bench::number("exists"), bench::number("conflictch"),
                                   bench::number("audio", "anode")};
  auto pass = bench::Pass::reading();
  bool encoding_asked = false;
  for (int i = 0; i < bench::kChannels; ++i) {
    if (pass.get(i, bench::number("profile")) == -1) continue;
    pass.getAll(i, kState);
    if (!encoding_asked) bench::askEncoding();
    encoding_asked = true;
    bench::listFormats(pass.get(i, bench::number("video", "vnode")));
  }
}

}  // namespace

int main(int, char **argv) {
  if (!bindProfiles()) {
    std::fputs("needs a sandboxed host with four cameras in its first channels\n", stderr);
    return 1;
  }
  return bench::compare(std::atof(argv[1]), {listByLibrary, listBarely});
}
