// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/json.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace usbdevctl {

namespace {

template <typename Content>
std::unique_ptr<nlohmann::ordered_json> make(Content &&content) {
  return std::make_unique<nlohmann::ordered_json>(std::forward<Content>(content));
}

}  // namespace

Json Json::object() { return Json(make(nlohmann::ordered_json::object())); }

Json Json::array() { return Json(make(nlohmann::ordered_json::array())); }

Json Json::document() { return object().set("schema", kJsonSchema); }

Json Json::number(const std::string &text) { return Json(make(nlohmann::ordered_json::parse(text))); }

Json::Json(Value value) : value_(std::move(value)) {}

Json::Json() : Json(make(nullptr)) {}

Json::Json(bool value) : Json(make(value)) {}

Json::Json(int value) : Json(make(value)) {}

Json::Json(std::int64_t value) : Json(make(value)) {}

Json::Json(const char *value) : Json(make(value)) {}

Json::Json(const std::string &value) : Json(make(value)) {}

Json::~Json() = default;

Json::Json(const Json &other) : Json(make(*other.value_)) {}

Json &Json::operator=(const Json &other) {
  *value_ = *other.value_;
  return *this;
}

Json::Json(Json &&other) noexcept = default;

Json &Json::operator=(Json &&other) noexcept = default;

Json &Json::set(const std::string &name, Json value) & {
  (*value_)[name] = std::move(*value.value_);
  return *this;
}

Json &&Json::set(const std::string &name, Json value) && { return std::move(set(name, std::move(value))); }

Json &Json::append(Json value) {
  value_->push_back(std::move(*value.value_));
  return *this;
}

// Texts come from devices: what is not UTF-8 becomes U+FFFD, so that the output is JSON whatever a device calls itself.
std::string Json::dump(int indent) const {
  return value_->dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

std::string Json::text() const { return dump(2); }

std::string Json::line() const { return dump(-1); }

}  // namespace usbdevctl
