// The cameras and sound cards of every made-up day: alone, side by side on a port or a bridge, twins, and useless ones.
#pragma once

#include <vector>

#include "devices.h"

namespace model {

const std::vector<Camera> &cameras();
const std::vector<Card> &cards();
// Every port of them, and one that has none.
const std::vector<std::string> &ports();

}  // namespace model
