#include <usbdev/profiles.h>

namespace usbdev {
namespace {

const _usbfmt_des *findFormat(const _usbfmt_des *formats, int count, int codec) {
  for (int i = 0; i < count; ++i) {
    if (formats[i].codec == codec) return &formats[i];
  }
  return nullptr;
}

const _usbres_des *findSize(const _usbfmt_des &format, int width, int height) {
  for (int i = 0; i < format.res_count; ++i) {
    if (format.res[i].width == width && format.res[i].height == height) return &format.res[i];
  }
  return nullptr;
}

/// The first listed rate that is not above the requested one, else the last listed. The list keeps the camera's order.
void chooseRate(const _usbres_des &size, float requested, float *chosen) {
  for (int i = 0; i < size.fps_count; ++i) {
    if (requested - size.fps[i] >= 0 || i == size.fps_count - 1) {
      *chosen = size.fps[i];
      return;
    }
  }
}

}  // namespace
}  // namespace usbdev

int findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps) {
  if (request == nullptr || chosen_fps == nullptr) return -1;
  _usbfmt_des formats[USBDEV_FORMATS] = {};
  const int count = vl_get_usbchn_cap(profile, formats);
  const _usbfmt_des *const format = usbdev::findFormat(formats, count, request->vcodec);
  if (format == nullptr) return -1;
  const _usbres_des *const size = usbdev::findSize(*format, request->width, request->height);
  if (size == nullptr) return -1;
  if (request->framerate > 0) usbdev::chooseRate(*size, request->framerate, chosen_fps);
  return 0;
}
