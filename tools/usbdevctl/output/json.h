// JSON for programs. Every object that is printed carries the number of its schema.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace usbdevctl {

using Json = nlohmann::ordered_json;

/// Raised when a field changes its meaning or goes; a new field alone does not raise it.
constexpr int kJsonSchema = 1;

/// An object that begins with "schema".
Json jsonDocument();

/// Null where there is no value.
template <typename Value>
Json jsonOrNull(const std::optional<Value> &value) {
  return value ? Json(*value) : Json(nullptr);
}

/// For a command's single answer: several lines, indented.
std::string jsonText(const Json &document);

/// For a stream of answers: one line each.
std::string jsonLine(const Json &document);

}  // namespace usbdevctl
