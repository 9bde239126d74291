// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/availability.h"

#include "channel/channels.h"
#include "output/printable.h"
#include "output/reading.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

constexpr int kNoStream = 0;  // also that of a channel which is not offered

FieldRows deviceRows(const std::array<_availinfo, USBDEV_CHANNELS> &records) {
  FieldRows rows;
  for (std::size_t channel = 0; channel < records.size(); ++channel) {
    const _availinfo &record = records[channel];
    if (record.stream_type == kNoStream) continue;
    rows.push_back(Fields()
                       .add(numberField("channel", static_cast<int>(channel)))
                       .add(portField(fieldText(record.usbslot)))
                       .add(textField("device", fieldText(record.devname)))
                       .add(streamField(record.stream_type)));
  }
  return rows;
}

Json numberList(const std::string &separated) {
  Json list = Json::array();
  std::istringstream numbers = readerOf(separated);
  for (std::string number; std::getline(numbers, number, ',');) list.append(Json::number(number));
  return list;
}

}  // namespace

bool canAssign(const Availability &available) {
  return !available.profiles.empty() && !deviceRows(available.channels).empty();
}

std::string availabilityText(const Availability &available, bool colour, std::size_t width) {
  const std::string devices = tableText(deviceRows(available.channels), colour, width);
  return Fields().add(forPeople("profiles", {available.profiles})).text(colour) +
         (devices.empty() ? "devices     none\n" : "\n" + devices);
}

Json availabilityJson(const Availability &available) {
  return Json::document()
      .set("profiles", numberList(available.profiles))
      .set("devices", listJson(deviceRows(available.channels)));
}

}  // namespace usbdevctl
