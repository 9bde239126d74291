// Texts and files are read with the standard streams, which take missing memory, or a failed read, for the end of the
// text. With this they throw instead.
#pragma once

#include <istream>
#include <sstream>
#include <string>

namespace usbdevctl {

inline void throwWhereReadingFails(std::istream &stream) { stream.exceptions(std::ios::badbit); }

inline std::istringstream readerOf(const std::string &text) {
  std::istringstream reader(text);
  throwWhereReadingFails(reader);
  return reader;
}

}  // namespace usbdevctl
