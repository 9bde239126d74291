#include "core/lines.h"

namespace usbdev {

bool Lines::next(TextBuffer line) {
  return stream_ != nullptr && std::fgets(line.start, static_cast<int>(line.size), stream_) != nullptr;
}

}  // namespace usbdev
