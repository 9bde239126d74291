#pragma once

#include "output/fields.h"

namespace usbdevctl {

/// The field; for programs it is null where its text is empty.
inline Field absentIfEmpty(Field field) {
  if (field.cell.text.empty()) field.value = Json();
  return field;
}

}  // namespace usbdevctl
