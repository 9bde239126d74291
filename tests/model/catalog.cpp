// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "catalog.h"

namespace model {

namespace {

const std::string kBridge = "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0";
const std::string kOtherBridge = "/devices/pci0000:00/0000:00:1d.0/0000:04:00.0";

const Format kMjpeg = {"MJPG", {{1280, 720, {30, 25, 20, 15}}, {640, 480, {30, 7.5F}}}};
const Format kFastMjpeg = {"MJPG", {{640, 480, {120, 60, 5}}, {1280, 720, {30}}}};
const Format kRaw = {"YUYV", {{640, 480, {30, 7.5F}}, {1280, 720, {5, 10}}}};
const Format kForeign = {"H264", {{1920, 1080, {30}}}};

const std::vector<Camera> kEveryKind = {
    {"1-1.2", "HD Webcam", "046d:0825", "", {kMjpeg}},
    {"1-1.4", "HD Webcam", "046d:0825", "", {kMjpeg}},  // its twin, on the same root port
    {"1-2", "HD Webcam", "046d:0825", "", {kRaw, kMjpeg}},
    {"1-2", "Garden Cam", "1b3f:2247", "", {kFastMjpeg}},  // two for one port
    {"2-1", "Door Cam", "0603:8612", kBridge, {kMjpeg, kRaw}},
    {"2-2", "Yard Cam", "1b3f:2247", kBridge, {kMjpeg}},
    {"2-3.1", "Yard Cam", "1b3f:2247", kBridge, {kFastMjpeg, kForeign}},
    {"3-1", "Hall Cam", "046d:081b", kOtherBridge, {kMjpeg}},
    {"3-2", "Hall Cam", "046d:081b", kOtherBridge, {kForeign, kMjpeg}},
    {"4-1", "Raw Cam", "0c45:6366", "", {kRaw}},
    {"4-2", "Listed Cam", "0c45:6367", "", {kMjpeg}},  // listed as unsupported
    {"5-1", "Foreign Cam", "0c45:6368", "", {kForeign}},
    {"6-1", "Spare Cam", "0c45:6369", "", {kMjpeg}},
};

const std::vector<Camera> kOneRootPort = {
    {"1-1.1", "HD Webcam", "046d:0825", "", {kMjpeg}},    {"1-1.2", "HD Webcam", "046d:0825", "", {kMjpeg}},
    {"1-1.3", "Yard Cam", "1b3f:2247", "", {kRaw}},       {"1-1.4", "Door Cam", "0603:8612", "", {kMjpeg, kRaw}},
    {"1-1.4", "Hall Cam", "046d:081b", "", {kFastMjpeg}}, {"2-1", "Spare Cam", "0c45:6369", "", {kMjpeg}},
};

const std::vector<Camera> kTwoBridges = {
    {"2-1", "HD Webcam", "046d:0825", kBridge, {kMjpeg}},      {"2-2", "HD Webcam", "046d:0825", kBridge, {kMjpeg}},
    {"2-3", "Yard Cam", "1b3f:2247", kBridge, {kMjpeg, kRaw}}, {"2-4", "Door Cam", "0603:8612", kBridge, {kRaw}},
    {"3-1", "Hall Cam", "046d:081b", kOtherBridge, {kMjpeg}},  {"3-2", "Hall Cam", "046d:081b", kOtherBridge, {kMjpeg}},
};

const std::vector<Camera> kPortsAcrossBridges = {
    {"1-1.1", "HD Webcam", "046d:0825", kBridge, {kMjpeg}},     {"1-1.2", "HD Webcam", "046d:0825", "", {kMjpeg}},
    {"1-1.3", "Yard Cam", "1b3f:2247", kOtherBridge, {kMjpeg}}, {"2-1.1", "Door Cam", "0603:8612", kBridge, {kMjpeg}},
    {"2-1.2", "Hall Cam", "046d:081b", kOtherBridge, {kMjpeg}}, {"3-1", "Spare Cam", "0c45:6369", "", {kMjpeg}},
};

}  // namespace

const std::vector<Camera> &camerasOf(unsigned house) {
  static const std::vector<Camera> *const all[] = {&kEveryKind, &kOneRootPort, &kTwoBridges, &kPortsAcrossBridges};
  return *all[house % 4];
}

const std::vector<Card> &cards() {
  static const std::vector<Card> all = {
      {"1-1.2", "HD Webcam Audio"}, {"1-2", "Garden Mic"}, {"7-1", "USB Mic"}, {"7-2", "KAB-9"}};
  return all;
}

}  // namespace model
