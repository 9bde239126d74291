// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/stream_fit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "settings/settings.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

std::size_t indexOf(int _streaminfo::*field) {
  std::size_t index = 0;
  while (streamSettings()[index].field != field) ++index;
  return index;
}

const _usbfmt_des &formatFor(const std::string &codec, const CameraFormats &camera) {
  for (int i = 0; i < camera.count; ++i) {
    const _usbfmt_des &format = camera.formats[static_cast<std::size_t>(i)];
    if (wordFor(videoCodecs(), format.codec) == codec) return format;
  }
  return camera.formats.front();
}

long pixelsOf(const std::string &size) {
  int width = 0;
  int height = 0;
  return std::sscanf(size.c_str(), "%5dx%5d", &width, &height) == 2 ? static_cast<long>(width) * height : 0;
}

/// None where the camera lists none.
const _usbres_des *sizeFor(const std::string &wanted, const _usbfmt_des &format) {
  const _usbres_des *end = format.res + format.res_count;
  const auto distance = [&wanted](const _usbres_des &size) {
    const std::string text = sizeText(size.width, size.height);
    return text == wanted ? -1 : std::labs(pixelsOf(text) - pixelsOf(wanted));
  };
  const _usbres_des *nearest = std::min_element(format.res, end, [&](const _usbres_des &one, const _usbres_des &other) {
    return distance(one) < distance(other);
  });
  return nearest == end ? nullptr : nearest;
}

/// The rates that the library can choose: it takes the first listed one that is not above the request, so those
/// after a smaller one are never chosen.
std::vector<float> rates(const _usbres_des &size) {
  std::vector<float> reachable;
  for (int i = 0; i < size.fps_count; ++i) {
    if (reachable.empty() || size.fps[i] < reachable.back()) reachable.push_back(size.fps[i]);
  }
  return reachable;
}

/// Nothing where the camera lists no rate: the stored one stays then.
std::optional<float> rateFor(float wanted, const _usbres_des &size) {
  const std::vector<float> reachable = rates(size);
  const auto nearest = std::min_element(reachable.begin(), reachable.end(), [wanted](float one, float other) {
    return std::fabs(one - wanted) < std::fabs(other - wanted);
  });
  return nearest == reachable.end() ? std::nullopt : std::optional(*nearest);
}

/// Leaves out what MJPEG streams do not have.
void dropEncoding(StreamFit &fit) {
  for (std::size_t i = 0; i < fit.stream.settings.size(); ++i) {
    const StreamSetting &setting = streamSettings()[i];
    const bool encoding = setting.of == StreamSetting::Of::picture && setting.field != &_streaminfo::vcodec;
    if (!encoding || !fit.stream.settings[i]) continue;
    fit.differences.push_back({memberName(setting), *fit.stream.settings[i], std::nullopt});
    fit.stream.settings[i].reset();
  }
}

}  // namespace

std::string differenceText(const StreamDifference &difference) {
  if (!difference.taken) return "no " + difference.setting;
  return difference.setting + " " + *difference.taken + " instead of " + difference.wanted;
}

StreamFit fitStream(const StreamChange &wanted, const CameraFormats &camera) {
  StreamFit fit{wanted, {}};
  std::optional<std::string> &codec = fit.stream.settings[indexOf(&_streaminfo::vcodec)];
  const _usbfmt_des &format = formatFor(*codec, camera);
  if (const std::string now = wordFor(videoCodecs(), format.codec); now != *codec) {
    fit.differences.push_back({"codec", *codec, now});
    codec = now;
  }
  if (*codec == wordFor(videoCodecs(), kMjpeg)) dropEncoding(fit);
  const _usbres_des *size = sizeFor(*wanted.size, format);
  if (size == nullptr) return fit;
  fit.stream.size = sizeText(size->width, size->height);
  if (*fit.stream.size != *wanted.size) fit.differences.push_back({"size", *wanted.size, *fit.stream.size});
  fit.stream.rate = rateFor(*wanted.rate, *size);
  if (fit.stream.rate && !sameRate(*fit.stream.rate, *wanted.rate)) {
    fit.differences.push_back({"fps", rateText(*wanted.rate), rateText(*fit.stream.rate)});
  }
  return fit;
}

}  // namespace usbdevctl
