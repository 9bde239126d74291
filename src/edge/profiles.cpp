#include <usbdev/profiles.h>

#include "core/profile_mapping.h"
#include "profiles/assignment.h"

int vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned) {
  if (usbslot == nullptr || unassigned == nullptr || !usbdev::isProfile(profile)) return -1;
  bool found_unassigned = false;
  const bool may = usbdev::mayAssign(usbslot, profile, found_unassigned);
  if (found_unassigned) *unassigned = 1;
  return may ? 0 : -1;
}

int vl_set_usbchn_profile(char *usbslot, int profile) {
  if (usbslot == nullptr || !usbdev::isProfile(profile)) return -1;
  return usbdev::assignProfile(usbslot, profile) ? 0 : -1;
}

int vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code) {
  return usbdev::clearProfile(profile, client_ip, static_cast<usbdev::EventCode>(event_code)) ? 0 : -1;
}

int vl_set_profile_channelname(int profile, const char *name, int event_code) {
  if (name == nullptr) return -1;
  return usbdev::renameProfile(profile, name, static_cast<usbdev::EventCode>(event_code)) ? 0 : -1;
}
