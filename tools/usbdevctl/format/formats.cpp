// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/formats.h"

#include <algorithm>
#include <set>
#include <vector>

#include "output/table.h"
#include "stream/stream_text.h"

namespace usbdevctl {

namespace {

constexpr float kUsualRate = 60;  // above it decoding may fail

template <typename Item, std::size_t Size>
std::vector<Item> firstOf(const Item (&items)[Size], int count) {
  return {items, items + std::clamp<int>(count, 0, static_cast<int>(Size))};
}

std::vector<_usbres_des> sizesOf(const _usbfmt_des &format) { return firstOf(format.res, format.res_count); }

std::vector<float> ratesOf(const _usbres_des &size) { return firstOf(size.fps, size.fps_count); }

std::vector<_usbres_des> largestFirst(std::vector<_usbres_des> sizes) {
  std::stable_sort(sizes.begin(), sizes.end(), [](const _usbres_des &one, const _usbres_des &other) {
    return static_cast<long>(one.width) * one.height > static_cast<long>(other.width) * other.height;
  });
  return sizes;
}

std::set<float> allRates(const _usbfmt_des &format) {
  std::set<float> rates;
  for (const _usbres_des &size : sizesOf(format)) {
    for (const float rate : ratesOf(size)) rates.insert(rate);
  }
  return rates;
}

Style rateStyle(float rate) { return rate > kUsualRate ? Style::notice : Style::good; }

std::vector<Cell> sizeRow(const _usbres_des &size, const std::set<float> &columns) {
  const std::vector<float> rates = ratesOf(size);
  std::vector<Cell> row = {{sizeText(size.width, size.height)}};
  for (const float rate : columns) {
    const bool offered = std::find(rates.begin(), rates.end(), rate) != rates.end();
    row.push_back(offered ? Cell{"x", rateStyle(rate)} : Cell{"."});
  }
  return row;
}

Table formatTable(const _usbfmt_des &format) {
  const std::set<float> rates = allRates(format);
  std::vector<Column> columns = {{"SIZE", Align::right}};
  for (const float rate : rates) columns.push_back({rateText(rate), Align::right});
  Table table(columns);
  for (const _usbres_des &size : largestFirst(sizesOf(format))) table.addRow(sizeRow(size, rates));
  return table;
}

std::string formatTitle(const _usbfmt_des &format) {
  return "Format " + std::to_string(format.index) + ": " +
         (format.codec == kMjpeg ? "MJPEG, as the camera sends it" : "H.264, encoded by the host from raw YUYV") +
         "; frames per second\n";
}

Json sizeJson(const _usbres_des &size) {
  Json rates = Json::array();
  for (const float rate : ratesOf(size)) rates.append(rateJson(rate));
  return Json::object().set("width", size.width).set("height", size.height).set("rates", std::move(rates));
}

Json formatJson(const _usbfmt_des &format) {
  Json sizes = Json::array();
  for (const _usbres_des &size : sizesOf(format)) sizes.append(sizeJson(size));
  return Json::object()
      .set("index", format.index)
      .set("codec", wordFor(videoCodecs(), format.codec))
      .set("sizes", std::move(sizes));
}

std::vector<_usbfmt_des> formatsOf(const CameraFormats &camera) {
  const int count = std::clamp(camera.count, 0, USBDEV_FORMATS);
  return {camera.formats.begin(), camera.formats.begin() + count};
}

}  // namespace

std::string formatsText(const CameraFormats &camera, bool colour) {
  std::string text;
  for (const _usbfmt_des &format : formatsOf(camera)) {
    if (!text.empty()) text += '\n';
    text += formatTitle(format) + formatTable(format).text(colour);
  }
  return text;
}

Json formatsJson(const CameraFormats &camera) {
  Json formats = Json::array();
  for (const _usbfmt_des &format : formatsOf(camera)) formats.append(formatJson(format));
  return formats;
}

}  // namespace usbdevctl
