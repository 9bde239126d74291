/* SPDX-FileCopyrightText: 2026 The libusbdevlib authors
 * SPDX-License-Identifier: Apache-2.0 */

/**
 * @file
 * Results, texts and typed numbers of <usbdev/usbdev.hpp>.
 */
#ifndef USBDEV_VALUES_HPP
#define USBDEV_VALUES_HPP

#include <usbdev/records.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace usbdev {

enum class Codec : int { h264 = 0, mjpeg = 1 };
enum class StreamType : int { not_available = -1, none = 0, audio = 1, video = 2, both = 3 };
/** Why a setting changes; with `everything` every setting is logged. */
enum class EventCode : int { changed = 0, everything = 5 };
/** What vl_get_stream_info() returns if there is no stream. */
enum class NoStream : int { no_channel = -1, not_attached = -2, waits = -3, port_off = -4 };
/** Why a viewer sees no stream; `unset` if no channel serves the profile. */
enum class NotViewable : int {
  unset = 0,
  wrong_token = 9000,
  not_attached = 9001,
  no_video = 9003,
  sound_only = 9004,
  waits = 9007,
  port_off = 9009,
  not_shared = 9010,
  unknown_share_id = 9011,
};

/** A value, or the error for which there is none. */
template <typename Value, typename Error = int>
class [[nodiscard]] Result {
 public:
  static constexpr Result failure(Error error) { return Result(Failed{}, error); }
  constexpr Result(const Value &value) : value_(value) {}
  constexpr Result(Value &&value) : value_(std::move(value)) {}

  constexpr explicit operator bool() const { return value_.has_value(); }
  constexpr Value &operator*() { return *checked(); }
  constexpr const Value &operator*() const { return *checked(); }
  constexpr Value *operator->() { return &*checked(); }
  constexpr const Value *operator->() const { return &*checked(); }
  constexpr Error error() const { return error_; }

 private:
  struct Failed {};
  constexpr Result(Failed, Error error) : error_(error) {}
  constexpr std::optional<Value> &checked() {
    assert(value_);
    return value_;
  }
  constexpr const std::optional<Value> &checked() const {
    assert(value_);
    return value_;
  }

  std::optional<Value> value_;
  Error error_{};
};

/** Whether a function without a value succeeded, and what it returned. */
class [[nodiscard]] Status {
 public:
  constexpr explicit Status(int code) : code_(code) {}
  constexpr explicit operator bool() const { return code_ == 0; }
  constexpr int error() const { return code_; }

 private:
  int code_;
};

/** The text in a field of a record. */
template <std::size_t Size>
constexpr std::string_view textOf(const char (&field)[Size]) {
  return {field, static_cast<std::size_t>(std::find(field, field + Size, '\0') - field)};
}

/** A text that the library returned, in memory of its own. */
template <std::size_t Size>
class Text {
 public:
  constexpr std::string_view view() const { return textOf(bytes_); }
  char *buffer() { return bytes_; }

 private:
  char bytes_[Size] = {};
};

/** A zero-terminated copy of a text for a function; null if it does not fit. */
template <std::size_t Size>
class Argument {
 public:
  constexpr Argument(std::string_view text) : fits_(text.size() < Size && text.find('\0') == std::string_view::npos) {
    if (fits_) std::copy(text.begin(), text.end(), bytes_);
  }
  char *get() { return fits_ ? bytes_ : nullptr; }

 private:
  bool fits_;
  char bytes_[Size] = {};
};

/** Sizes of texts that are passed, each with its terminating zero. */
inline constexpr std::size_t kSlotSize = 128;
inline constexpr std::size_t kNameSize = 256;
inline constexpr std::size_t kAddressSize = 64;
inline constexpr std::size_t kSecretSize = 129;

/** Profile numbers, in the library's order. */
class ProfileNumbers {
 public:
  explicit ProfileNumbers(std::string_view listed) {
    for (const char character : listed) {
      if (character >= '0' && character < '0' + USBDEV_PROFILES && count_ < numbers_.size()) {
        numbers_[count_++] = character - '0';
      }
    }
  }
  std::span<const int> span() const { return std::span(numbers_).first(count_); }

 private:
  std::array<int, USBDEV_PROFILES> numbers_ = {};
  std::size_t count_ = 0;
};

namespace detail {

/** The value that a function has filled if it returned 0, otherwise what it returned. */
template <typename Value, typename Error = int>
Result<Value, Error> filled(int result, const Value &value) {
  if (result == 0) return value;
  return Result<Value, Error>::failure(static_cast<Error>(result));
}

}  // namespace detail

}  // namespace usbdev

#endif
