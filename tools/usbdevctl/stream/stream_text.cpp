// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_text.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "output/reading.h"

namespace usbdevctl {

const std::vector<std::string> &videoCodecs() {
  static const std::vector<std::string> codecs = {"h264", "mjpeg"};
  return codecs;
}

const std::vector<std::string> &audioCodecs() {
  static const std::vector<std::string> codecs = {"ulaw", "aac"};
  return codecs;
}

std::string wordFor(const std::vector<std::string> &words, int number) {
  if (number >= 0 && static_cast<std::size_t>(number) < words.size()) return words[static_cast<std::size_t>(number)];
  return std::to_string(number);
}

Field codecsField(const std::string &name, const std::vector<std::string> &codecs, const std::string &stored) {
  Json list = Json::array();
  std::string text;
  std::istringstream numbers = readerOf(stored);
  for (int number = 0; numbers >> number;) {
    const std::string codec = wordFor(codecs, number);
    list.append(codec);
    text += (text.empty() ? "" : ", ") + codec;
  }
  return {name, {text}, Align::left, name, std::move(list)};
}

Field streamField(int stream_type) {
  return wordField("stream", wordFor({"none", "audio", "video", "both"}, stream_type));
}

std::string sizeText(int width, int height) { return std::to_string(width) + "x" + std::to_string(height); }

std::string rateText(float rate) {
  char text[64];
  std::snprintf(text, sizeof text, "%.3f", static_cast<double>(rate));
  std::string shortened = text;
  shortened.erase(shortened.find_last_not_of('0') + 1);
  if (shortened.back() == '.') shortened.pop_back();
  return shortened;
}

Json rateJson(float rate) { return std::isfinite(rate) ? Json::number(rateText(rate)) : Json(); }

}  // namespace usbdevctl
