// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Base64, URLs, credentials and identifiers.
#include <usbdev/usbdev.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "expect.h"
#include "input.h"
#include "trimmed.h"

namespace {

using fuzz::expect;

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Exactly as large as a caller has to make it, so that the sanitizer sees every byte beyond.
std::unique_ptr<char[]> room(std::size_t size) { return std::make_unique<char[]>(size); }

/// Bit by bit.
std::string base64(const std::string &bytes) {
  std::string out;
  unsigned bits = 0;
  int count = 0;
  for (const char byte : bytes) {
    bits = bits << 8U | static_cast<unsigned char>(byte);
    for (count += 8; count >= 6; count -= 6) out += kAlphabet[bits >> static_cast<unsigned>(count - 6) & 63U];
  }
  if (count > 0) out += kAlphabet[bits << static_cast<unsigned>(6 - count) & 63U];
  while (out.size() % 4 != 0) out += '=';
  return out;
}

std::string decoded(const std::string &text) {
  auto out = room((text.size() + 3) / 4 * 3 + 1);
  const int length = Base64dec(text.c_str(), reinterpret_cast<unsigned char *>(out.get()));
  expect(length >= 0 && out[static_cast<std::size_t>(length)] == '\0', "decoded bytes are terminated");
  return {out.get(), static_cast<std::size_t>(length)};
}

void expectBase64(const std::string &bytes) {
  auto out = room((bytes.size() + 2) / 3 * 4 + 1);
  const auto *in = reinterpret_cast<const unsigned char *>(bytes.data());
  const int length = Base64enc(in, static_cast<int>(bytes.size()), out.get());
  const std::string text = out.get();
  expect(static_cast<std::size_t>(length) == text.size(), "the length of an encoding is returned");
  expect(text == base64(bytes), "bytes are encoded in Base64");
  expect(decoded(text) == bytes, "an encoding is decoded to its bytes");
}

void expectUrl(const std::string &url) {
  auto out = room(3 * url.size() + 1);
  std::memset(out.get(), '!', 3 * url.size() + 1);
  expect(url_encode(out.get(), url.data(), static_cast<int>(url.size())) == 0, "a URL is escaped");
  std::string expected = url.substr(0, url.find('?'));
  for (const char c : url.substr(expected.size())) {
    expected += c == '/' ? "%2F" : c == '~' ? "%7E" : c == ' ' ? "%20" : std::string(1, c);
  }
  expect(std::string(out.get(), expected.size()) == expected, "the query of a URL is escaped");
  expect(out[expected.size()] == '!', "nothing is written after an escaped URL");
}

void expectCredentials(const std::string &user, const std::string &password) {
  char line[257];
  std::memset(line, '!', sizeof line);
  expect(getNVR_AUTH(user.c_str(), password.c_str(), line) == 0, "credentials are made");
  expect(line[256] == '!', "credentials take at most 256 bytes");
  const std::string both = user + ":" + password;
  if (both.size() <= 129)
    expect(line == "Basic " + base64(both), "credentials are user, colon and password");
  else
    expect(line[0] == '!', "credentials that are too long are not made");
}

void expectStripped(const std::string &text) {
  auto in = room(text.size() + 1);
  auto out = room(text.size() + 1);
  std::copy(text.begin(), text.end(), in.get());
  const int length = strip(in.get(), out.get());
  std::string expected = fuzz::withoutEnd(text);
  expect(static_cast<std::size_t>(length) == expected.size(), "the length counts the hyphens");
  expected.erase(std::remove(expected.begin(), expected.end(), '-'), expected.end());
  expect(expected == out.get(), "a text is copied without its hyphens and its end");
}

void expectFirstLine(const std::string &text) {
  const std::size_t end = text.find('\n');
  auto out = room(text.size() + 1);
  const int length = get_next_line(text.c_str(), out.get());
  expect(length == (end == std::string::npos ? -1 : static_cast<int>(end)), "a first line ends at its line feed");
  expect(length < 0 || std::memcmp(out.get(), text.data(), end) == 0, "a first line is copied");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string bytes = input.text();
  const std::string text = bytes.c_str();
  const std::string password = input.text().c_str();
  expectBase64(bytes);
  decoded(text);
  expectUrl(bytes);
  expectCredentials(text, password);
  expectStripped(text);
  expectFirstLine(text);
  return 0;
}
