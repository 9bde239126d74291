// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <algorithm>

#include "text.h"
#include "world.h"

namespace model {

namespace {

const std::string kApplication = "/mnt/ext/opt/apps/Velmora2/";

}  // namespace

std::string World::hashNumber(int n) { return format("%032x", n); }

int World::channelOf(int profile) const {
  if (profile < 0 || profile > 3) return -1;
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (channels[n].profile() == profile) return n;
  }
  return -1;
}

int World::trsProfiletoPlugCh(int profile, int *channel) const {
  if (channelOf(profile) == -1) return -1;
  *channel = channelOf(profile);
  return 0;
}

int World::vl_getDevName(int profile, char *name) const {
  const int n = channelOf(profile);
  if (n == -1) return -1;
  snprintf(name, 256, "%s", channels[n].name().c_str());
  return 0;
}

void World::notify(int event, int profile, int video, int audio, int flag, int target, const std::string &header) {
  const int words[] = {profile, video, audio, flag, event, target};
  sent.push_back("ORDA_VLM2_CFCG_N" + header + std::string(reinterpret_cast<const char *>(words), sizeof words));
}

void World::addLink(int profile, const std::string &name) {
  done.push_back("exec /bin/ln -sf " + kApplication + "hls/channel" + std::to_string(profile + 1) + " " + kApplication +
                 name);
  links.insert(name);
}

// One that is not there is passed over.
void World::removeLink(const std::string &name) {
  if (name.empty() || links.erase(name) == 0) return;
  done.push_back("exec /bin/rm -rf " + kApplication + name);
}

int World::vl_add_shm_timeout_log(int index) {
  if (index < 0 || index > 3) return -1;
  ++timeouts[index];
  return 0;
}

}  // namespace model
