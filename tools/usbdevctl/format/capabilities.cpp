// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/capabilities.h"

#include "output/fields.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

Fields storedFields(const Capabilities &capabilities) {
  return Fields()
      .add(codecsField("video", videoCodecs(), capabilities.video.value_or("")))
      .add(codecsField("audio", audioCodecs(), capabilities.audio.value_or("")));
}

}  // namespace

std::string capabilitiesText(const Capabilities &capabilities, bool colour) {
  const std::string formats = formatsText(capabilities.camera, colour);
  return storedFields(capabilities).text(colour) + (formats.empty() ? "" : "\n" + formats);
}

Json capabilitiesJson(const Capabilities &capabilities) {
  return storedFields(capabilities).addTo(Json::document()).set("formats", formatsJson(capabilities.camera));
}

}  // namespace usbdevctl
