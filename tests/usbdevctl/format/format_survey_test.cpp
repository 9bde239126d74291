// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/format_survey.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using usbdevctl::codesText;
using usbdevctl::FormatSurvey;
using usbdevctl::layoutText;
using usbdevctl::surveyFormats;

using Layout = FormatSurvey::Layout;

constexpr char kOlder[] =
    "ioctl: VIDIOC_ENUM_FMT\n\tIndex       : 0\n\tType        : Video Capture\n\tPixel Format: 'MJPG' (compressed)\n"
    "\tName        : Motion-JPEG\n\t\tSize: Discrete 640x480\n\tIndex       : 1\n\tPixel Format: 'YUYV'\n";
constexpr char kNewer[] =
    "ioctl: VIDIOC_ENUM_FMT\n\tType: Video Capture\n\n\t[0]: 'MJPG' (Motion-JPEG, compressed)\n"
    "\t\tSize: Discrete 640x480\n\t[10]: 'YUYV' (YUYV 4:2:2)\n";

TEST(AListing, OfTheOlderLayoutIsTheOneThatTheLibraryReads) {
  const FormatSurvey survey = surveyFormats(kOlder);
  EXPECT_EQ(survey.layout, Layout::older);
  EXPECT_THAT(survey.codes, ElementsAre("MJPG", "YUYV"));
  EXPECT_EQ(layoutText(survey), "");
}

TEST(AListing, OfTheNewerLayoutIsReportedAsNotRead) {
  const FormatSurvey survey = surveyFormats(kNewer);
  EXPECT_EQ(survey.layout, Layout::newer);
  EXPECT_EQ(
      layoutText(survey),
      "v4l2-ctl lists MJPG, YUYV in a layout that the library does not read ([0]: 'MJPG' instead of Pixel Format: "
      "'MJPG')");
}

TEST(AListing, WithoutAFormatHasNoLayout) {
  const FormatSurvey survey = surveyFormats("Cannot open device /dev/video9, exiting.\n[0] 'MJPG'\n[x]: 'MJPG'\n");
  EXPECT_EQ(survey.layout, Layout::none);
  EXPECT_THAT(survey.codes, IsEmpty());
  EXPECT_EQ(codesText(survey), "no format");
  EXPECT_EQ(layoutText(survey), "");
}

TEST(AListing, IsReadInBoundedLinesAndItsCodesArePrintable) {
  EXPECT_THAT(surveyFormats("[0]: '\x1b[2J'\n").codes, ElementsAre("\\x1b[2J"));
  EXPECT_THAT(surveyFormats(std::string(100000, ' ') + "[0]: 'MJPG'\n").codes, IsEmpty());
}

}  // namespace
