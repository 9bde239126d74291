// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// JSON for programs. Every object that is printed carries the number of its schema.
#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace usbdevctl {

/// Raised when a field changes its meaning or is removed, but not for a new field.
constexpr int kJsonSchema = 1;

/// A value that is built once and printed. Only json.cpp includes the JSON library, which takes seconds to compile.
class Json {
 public:
  static Json object();
  static Json array();
  /// An object that begins with "schema".
  static Json document();
  /// The number in the text, with all its digits.
  static Json number(const std::string &text);

  /// Null.
  Json();
  Json(bool value);
  Json(int value);
  Json(std::int64_t value);
  Json(const char *value);
  Json(const std::string &value);
  /// Null where there is no value.
  template <typename Value>
  Json(const std::optional<Value> &value) : Json(value ? Json(*value) : Json()) {}

  ~Json();
  Json(Json &&other) noexcept;
  Json &operator=(Json &&other) noexcept;
  Json(const Json &other);
  Json &operator=(const Json &other);

  /// Gives an object its next member.
  Json &&set(const std::string &name, Json value) &&;
  Json &set(const std::string &name, Json value) &;

  /// Gives an array its next element.
  Json &append(Json value);

  /// For a command's single answer: several lines, indented.
  std::string text() const;

  /// For a stream of answers: one line each.
  std::string line() const;

 private:
  using Value = std::unique_ptr<nlohmann::ordered_json>;
  explicit Json(Value value);
  std::string dump(int indent) const;

  Value value_;
};

}  // namespace usbdevctl
