// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/formats.h"

#include <cstdlib>
#include <cstring>

#include "core/host_queries.h"
#include "core/lines.h"
#include "core/text.h"
#include "devices/device_walk.h"
#include "devices/format_listing.h"

namespace usbdev {
namespace {

constexpr int kMostListingLines = 1024;

/// Ends a format query that still runs on a node, so that closing its pipe cannot block.
void killFormatQuery(int vnode) {
  const int process_id = CommandLines(
                             "/bin/ps | /bin/grep \"v4l2-ctl\" | /bin/grep \"/dev/video%d\" | "
                             "/bin/grep -v grep | /bin/awk '{print $1}'",
                             vnode)
                             .nextNumber(0);
  if (process_id <= 0) return;
  char command[32];
  formatText(command, needsHardKill(vnode) ? "kill -9 %d &" : "kill %d &", process_id);
  static_cast<void>(std::system(command) == 0);  // a query that has ended meanwhile is fine
}

}  // namespace

int listFormats(HostAnswers &host, int vnode, _usbfmt_des *table, bool &over60) {
  over60 = false;
  // Intended: The answer about the processor is not used.
  isProcessorOtherThanIntel();
  const bool may_encode = host.mayEncode();

  CommandLines query("/usr/bin/v4l2-ctl -d /dev/video%d --list-formats-ext", vnode);
  if (!query) return -1;
  FormatListing listing(vnode, may_encode);
  char line[256];
  for (int count = 0; count < kMostListingLines && query.next(line); ++count) {
    if (!listing.take(line)) break;
  }
  killFormatQuery(vnode);
  over60 = listing.hasRateOver60();
  if (listing.formatCount() > 0) std::memcpy(table, listing.table(), sizeof listing.table());
  return listing.formatCount();
}

bool needsHardKill(int vnode) {
  ProductIds ids;
  DeviceWalk walk(vnode);
  char line[256];
  while (walk.next(line)) {
    // Intended: Of two vendors without a product between them the later counts.
    ids.takeLatest(line);
    if (!ids.areComplete()) continue;
    if (isSame(ids.vendor, "0603") && isSame(ids.product, "8612")) return true;
    ids = {};
  }
  return false;
}

}  // namespace usbdev
