// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Texts in JSON: as the library escapes them, and as usbdevctl prints them.
#include <usbdev/usbdev.h>

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "expect.h"
#include "input.h"
#include "output/json.h"
#include "trimmed.h"

namespace {

using fuzz::expect;

constexpr std::size_t kLargest = 1024;

std::string escaped(const std::string &text) {
  std::string out;
  for (const char c : text) {
    if (c == '\r' || c == '\n') continue;
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out;
}

bool isPlain(const std::string &text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void expectEscaped(const std::string &text, std::size_t capacity) {
  std::vector<char> buffer(std::max(capacity, text.size() + 1), '\0');
  std::copy(text.begin(), text.end(), buffer.begin());
  const std::vector<char> before = buffer;
  const int done = process_json_string(buffer.data(), static_cast<int>(capacity));
  if (capacity < 1 || capacity > kLargest) {
    expect(done == 0 && buffer == before, "a text of another capacity is unchanged");
    return;
  }
  const std::string kept = fuzz::withoutEnd(text);
  const std::string expected = escaped(kept);
  expect(done == (kept.size() < capacity && expected.size() < capacity ? 1 : 0), "a text is escaped where it fits");
  if (done == 0) return;
  expect(expected == buffer.data(), "a text is escaped without its line ends and its trailing blanks");
  if (isPlain(kept)) expect(nlohmann::json::parse("\"" + expected + "\"") == kept, "an escaped text is read as it was");
}

void expectPrinted(const std::string &text) {
  const auto read = nlohmann::json::parse(usbdevctl::Json::document().set("text", text).line());
  const std::string back = read["text"];
  expect(!isPlain(text) || back == text, "a printed text is read as it was");
  const auto again = nlohmann::json::parse(usbdevctl::Json(back).text());
  expect(again == back, "a text that was read is printed and read as it is");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const auto capacity = static_cast<std::size_t>(input.number(256) * input.number(5));
  const std::string text = input.text();
  expectEscaped(text.c_str(), capacity);
  expectPrinted(text);
  return 0;
}
