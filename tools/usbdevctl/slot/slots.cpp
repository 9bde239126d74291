// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "slot/slots.h"

#include "channel/channels.h"
#include "output/numbers.h"
#include "output/printable.h"
#include "stream/stream_text.h"

namespace usbdevctl {

Fields slotFields(const Slot &slot) {
  return Fields()
      .add(portField(fieldText(slot.device.usbslot)))
      .add(numberField("channel", slot.settings.channel))
      .add(textField("device", fieldText(slot.device.devname)))
      .add(headed("switch", switchField("slot_switch", slot.settings.slot_switch != 0)))
      .add(streamField(slot.settings.stream_type))
      .add(codecsField("codecs", videoCodecs(), slot.codecs))
      .add(numberField("profile", numberUnlessNone(slot.settings.vprofile)));
}

}  // namespace usbdevctl
