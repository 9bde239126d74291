// Numbers of channels, profiles and nodes, where the library says -1 for none.
#pragma once

#include <optional>
#include <string>

namespace usbdevctl {

inline std::optional<int> numberUnlessNone(int number) {
  return number == -1 ? std::nullopt : std::optional<int>(number);
}

inline std::string numberText(std::optional<int> number) { return number ? std::to_string(*number) : "none"; }

inline std::string numberText(int number) { return numberText(numberUnlessNone(number)); }

}  // namespace usbdevctl
