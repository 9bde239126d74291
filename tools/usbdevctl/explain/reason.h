// One thing that keeps a camera from streaming, and what would change it.
#pragma once

#include <string>

#include "explain/collision.h"

namespace usbdevctl {

struct Reason {
  const char *word;
  std::string why;
  std::string remedy;
  int other = -1;  // the channel that is in the way
  Collision collision = Collision::none;
};

}  // namespace usbdevctl
