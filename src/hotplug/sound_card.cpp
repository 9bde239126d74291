// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/sound_card.h"

namespace usbdev {

SoundCard::SoundCard(int number) : known_(ac_get_Acard_info(number, &record_.info) == 0) {}

}  // namespace usbdev
