#include "hotplug/sound_card.h"

namespace usbdev {

SoundCard::SoundCard(int number) : known_(ac_get_Acard_info(number, &record_.info) == 0) {}

}  // namespace usbdev
