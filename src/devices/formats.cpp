#include "devices/formats.h"

#include <usbdev/devices.h>

#include <cstdlib>
#include <cstring>

#include "core/host_queries.h"
#include "core/lines.h"
#include "core/text.h"
#include "devices/format_listing.h"
#include "devices/identification.h"

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
  formatText(command, vl_force_kill_v4l2_ctl(vnode) == 1 ? "kill -9 %d &" : "kill %d &", process_id);
  static_cast<void>(std::system(command) == 0);  // a query that has ended meanwhile is fine
}

}  // namespace

int listFormats(HostAnswers &host, int vnode, _usbfmt_des *table, int *over60) {
  *over60 = 0;
  isProcessorOtherThanIntel();  // for the processor file that it leaves; the answer decides nothing here
  const bool may_encode = host.mayEncode();

  CommandLines query("/usr/bin/v4l2-ctl -d /dev/video%d --list-formats-ext", vnode);
  if (!query) return -1;
  FormatListing listing(vnode, may_encode);
  char line[256];
  for (int count = 0; count < kMostListingLines && query.next(line); ++count) {
    if (!listing.take(line)) break;
  }
  killFormatQuery(vnode);
  *over60 = listing.hasRateOver60() ? 1 : 0;
  if (listing.formatCount() > 0) std::memcpy(table, listing.table(), sizeof listing.table());
  return listing.formatCount();
}

}  // namespace usbdev

int mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60) {
  if (table == nullptr || over60 == nullptr) return -1;
  usbdev::HostAnswers host;
  return usbdev::listFormats(host, vnode, table, over60);
}

int vl_force_kill_v4l2_ctl(int vnode) {
  char vendor[usbdev::kShortCodeSize];
  char product[usbdev::kShortCodeSize];
  bool has_vendor = false;
  bool has_product = false;
  usbdev::CommandLines walk("/sbin/udevadm info --name=/dev/video%d --attribute-walk", vnode);
  char line[256];
  while (walk.next(line)) {
    // Of two vendors without a product between them the later one counts.
    has_vendor = usbdev::takeAttribute(line, "ATTRS{idVendor}", vendor) || has_vendor;
    has_product = usbdev::takeAttribute(line, "ATTRS{idProduct}", product) || has_product;
    if (!has_vendor || !has_product) continue;
    if (usbdev::isSame(vendor, "0603") && usbdev::isSame(product, "8612")) return 1;
    has_vendor = has_product = false;
  }
  return 0;
}
