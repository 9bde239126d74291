// A host's cameras, as the tests of what names them have them.
#pragma once

#include "camera/camera.h"

inline usbdevctl::Camera someCamera(int channel, const char *port, std::optional<int> profile,
                                    usbdevctl::ChannelState state = usbdevctl::ChannelState::plugged) {
  usbdevctl::Camera camera;
  camera.channel = channel;
  camera.row.slot = port;
  camera.row.device = "USB Camera";
  camera.row.profile = profile;
  camera.row.state = state;
  return camera;
}
