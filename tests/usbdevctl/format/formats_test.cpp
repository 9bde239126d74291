// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/formats.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

using usbdevctl::CameraFormats;
using usbdevctl::formatsJson;
using usbdevctl::formatsText;

constexpr int kMjpeg = 1;
constexpr int kRaw = 0;

_usbfmt_des &addFormat(CameraFormats &camera, int index, int codec) {
  _usbfmt_des &format = camera.formats[static_cast<std::size_t>(camera.count++)];
  format.index = index;
  format.codec = codec;
  return format;
}

int countOf(const std::string &text, const std::string &word) {
  int count = 0;
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++count;
  return count;
}

void addSize(_usbfmt_des &format, int width, int height, std::initializer_list<float> rates) {
  _usbres_des &size = format.res[format.res_count++];
  size.width = width;
  size.height = height;
  for (const float rate : rates) size.fps[size.fps_count++] = rate;
}

TEST(AFormatsTable, MarksWhichSizesExistAtWhichRates) {
  CameraFormats camera;
  _usbfmt_des &format = addFormat(camera, 0, kMjpeg);
  addSize(format, 640, 480, {30, 7.5F});
  addSize(format, 1920, 1080, {30});
  EXPECT_EQ(formatsText(camera, false),
            "Format 0: MJPEG, as the camera sends it; frames per second\n"
            "     SIZE  7.5  30\n"
            "1920x1080    .   x\n"
            "  640x480    x   x\n");
}

TEST(AFormatsTable, IsOneForEachFormat) {
  CameraFormats camera;
  addSize(addFormat(camera, 0, kMjpeg), 640, 480, {30});
  addSize(addFormat(camera, 2, kRaw), 320, 240, {15});
  EXPECT_EQ(formatsText(camera, false),
            "Format 0: MJPEG, as the camera sends it; frames per second\n"
            "   SIZE  30\n"
            "640x480   x\n"
            "\n"
            "Format 2: H.264, encoded by the host from raw YUYV; frames per second\n"
            "   SIZE  15\n"
            "320x240   x\n");
}

TEST(AFormatsTable, HighlightsRatesAbove60) {
  CameraFormats camera;
  addSize(addFormat(camera, 0, kMjpeg), 640, 480, {60, 120});
  const std::string text = formatsText(camera, true);
  EXPECT_NE(text.find("\033[32mx\033[0m    \033[33mx\033[0m\n"), std::string::npos) << text;
}

TEST(AFormatsTable, StaysWithinTheRecordWhateverItsCounts) {
  CameraFormats camera;
  _usbfmt_des &format = addFormat(camera, 0, kMjpeg);
  format.res_count = USBDEV_SIZES + 1;
  format.res[0].fps_count = -1;
  camera.count = USBDEV_FORMATS + 1;
  const std::string json = formatsJson(camera).line();
  EXPECT_EQ(countOf(json, "\"index\""), 8);
  EXPECT_EQ(countOf(json, "\"width\""), 32);
}

TEST(FormatsJson, KeepsTheCamerasOrder) {
  CameraFormats camera;
  _usbfmt_des &format = addFormat(camera, 1, kRaw);
  addSize(format, 640, 480, {90, 29.97F});
  addSize(format, 1280, 720, {});
  EXPECT_EQ(formatsJson(camera).line(),
            "[{\"index\":1,\"codec\":\"h264\",\"sizes\":["
            "{\"width\":640,\"height\":480,\"rates\":[90,29.97]},{\"width\":1280,\"height\":720,\"rates\":[]}]}]\n");
}

TEST(FormatsJson, OfACameraWithoutFormatsHasAnEmptyList) { EXPECT_EQ(formatsJson(CameraFormats()).line(), "[]\n"); }

}  // namespace
