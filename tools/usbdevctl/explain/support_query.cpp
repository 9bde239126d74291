// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/support_query.h"

#include <unistd.h>
#include <usbdev/core.h>
#include <usbdev/devices.h>

#include <fstream>

#include "format/format_query.h"
#include "output/reading.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kValueSize = 256;  // more than the library's queries fill

std::optional<std::string> packageValue(const char *field) {
  char value[kValueSize] = "";
  return get_bndl_info(kCodecPackage, field, value) == 0 ? std::optional<std::string>(value) : std::nullopt;
}

bool isArm() {
  std::ifstream processors("/proc/cpuinfo");
  throwOnFailure(processors);
  for (std::string line; std::getline(processors, line);) {
    if (line.find("ARM") != std::string::npos) return true;
  }
  return false;
}

EncodingFacts readEncodingFacts() {
  EncodingFacts facts;
  int answer = 0;
  validate_hwenc(&answer);
  facts.permitted = answer != 0;
  if (facts.permitted) return facts;
  facts.arm = isArm();
  const std::optional<std::string> path = packageValue("Install_Path");
  facts.package = path.has_value();
  facts.enabled = packageValue("Enable");
  facts.agent = path && access((*path + "/camera_agent.sh").c_str(), R_OK) == 0;
  check_gpu_status(&answer);
  facts.driver = answer != 0;
  return facts;
}

SupportFacts readSupportFacts(const ChannelRow &row) {
  SupportFacts facts;
  facts.device = row.device;
  facts.listed = devlistcmp(row.device.c_str(), kUnsupportedList) != 0;
  if (facts.listed || !row.video_node) return facts;
  facts.usable_formats = readFormats(*row.video_node).count;
  if (facts.usable_formats > 0) return facts;
  facts.survey = surveyFormats(formatListing(*row.video_node));
  facts.encoding = readEncodingFacts();
  return facts;
}

}  // namespace

std::optional<Reason> whyUnsupported(const ChannelRow &row) {
  if (row.supported && !row.video_node) return std::nullopt;
  const SupportFacts facts = readSupportFacts(row);
  if (row.supported && isUsable(facts)) return std::nullopt;
  return unsupportedReason(facts);
}

}  // namespace usbdevctl
