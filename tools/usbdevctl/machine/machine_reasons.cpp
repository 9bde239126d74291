// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "machine/machine.h"
#include "machine/stream_failure.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

std::string nodePath(const CameraPlace &camera) {
  return camera.node ? "/dev/video" + std::to_string(*camera.node) : "its node";
}

std::string joined(const std::vector<std::string> &parts) {
  std::string text;
  for (const std::string &part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

/// 196 of 480 Mbit/s for "HD Cam" in port 3-1; not every device has a name.
std::string reservationText(const Reservation &reservation, int bus_speed) {
  const std::string holder = reservation.product.empty() ? "the device" : '"' + printable(reservation.product) + '"';
  return std::to_string(megabits(reservation.bits)) + " of " + std::to_string(bus_speed) + " Mbit/s for " + holder +
         " in port " + reservation.port;
}

/// "HD Cam" 3-1: 196/480 Mbit/s, for programs that are not in English.
std::string reservationInSigns(const Reservation &reservation, int bus_speed) {
  const std::string product = reservation.product.empty() ? "" : '"' + printable(reservation.product) + "\" ";
  return product + reservation.port + ": " + std::to_string(megabits(reservation.bits)) + "/" +
         std::to_string(bus_speed) + " Mbit/s";
}

Reasons withoutDevice(const CameraPlace &camera, const MachineFacts &facts) {
  if (facts.port_disabled) {
    return {
        reasonFor(Cause::port_disabled, {{"port", camera.port}, {"file", UsbTree::hubPort(camera.port) + "/disable"}})};
  }
  if (facts.over_current > 0) {
    return {reasonFor(Cause::over_current, {{"port", camera.port}, {"count", std::to_string(facts.over_current)}})};
  }
  if (!camera.attached) return {};
  return {reasonFor(Cause::gone, {{"port", camera.port}})};
}

Reason unopened(const CameraPlace &camera, const MachineFacts &facts) {
  const int error = facts.node.open_error;
  if (error == EACCES || error == EPERM) {
    return reasonFor(Cause::no_permission, {{"user", printable(facts.user)}, {"node", nodePath(camera)}});
  }
  return reasonFor(facts.asleep ? Cause::suspended : Cause::unopened,
                   {{"node", nodePath(camera)},
                    {"failure", std::strerror(error)},
                    {"file", UsbTree::fileOf(camera.port, "power/control")}});
}

/// What keeps everybody from using the node.
Reasons withoutNode(const CameraPlace &camera, const MachineFacts &facts) {
  if (!facts.authorized) {
    return {
        reasonFor(Cause::unauthorized, {{"port", camera.port}, {"file", UsbTree::fileOf(camera.port, "authorized")}})};
  }
  if (!facts.has_node) return {reasonFor(Cause::no_capture_node)};
  if (!camera.node) return {};
  if (!facts.node.exists) return {reasonFor(Cause::node_gone, {{"node", nodePath(camera)}, {"port", camera.port}})};
  if (facts.node.open_error != 0) return {unopened(camera, facts)};
  if (!facts.node.captures) return {reasonFor(Cause::metadata_node, {{"node", nodePath(camera)}})};
  return {};
}

Reason busy(const CameraPlace &camera, const NodeHolders &holders) {
  if (!holders.programs.empty()) return reasonFor(Cause::busy, {{"programs", joined(holders.programs)}});
  return holders.all_seen ? reasonFor(Cause::busy_before) : reasonFor(Cause::busy_unseen, {{"port", camera.port}});
}

Reason lackOfSpace(const CameraPlace &camera, const MachineFacts &facts) {
  if (facts.disk_full) return reasonFor(Cause::disk_full, {{"folder", streamFolder(*camera.profile)}});
  std::vector<std::string> holders;
  std::vector<std::string> in_signs;
  for (const Reservation &it : facts.reservations) {
    holders.push_back(reservationText(it, facts.bus_speed));
    in_signs.push_back(reservationInSigns(it, facts.bus_speed));
  }
  return reasonFor(holders.empty() ? Cause::bandwidth_alone : Cause::bandwidth,
                   {{"holders", joined(holders)},
                    {"reserved", joined(in_signs)},
                    {"port", camera.port},
                    {"bus", camera.port.substr(0, camera.port.find('-'))}});
}

Reason failed(const CameraPlace &camera, const MachineFacts &facts) {
  if (isLackOfSpace(facts.failure)) return lackOfSpace(camera, facts);
  if (isBusyFailure(facts.failure)) return busy(camera, facts.holders);
  if (isRefusal(facts.failure)) return reasonFor(Cause::stream_without_permission, {{"node", nodePath(camera)}});
  return reasonFor(facts.asleep ? Cause::suspended : Cause::failing,
                   {{"failure", printable(facts.failure)}, {"file", UsbTree::fileOf(camera.port, "power/control")}});
}

}  // namespace

Reasons machineReasons(const CameraPlace &camera, const MachineFacts &facts) {
  if (!facts.device_there) return withoutDevice(camera, facts);
  Reasons reasons = withoutNode(camera, facts);
  if (!reasons.empty() || !camera.attached) return reasons;
  if (!facts.failure.empty()) {
    reasons.push_back(failed(camera, facts));
  } else if (facts.node.busy) {
    reasons.push_back(busy(camera, facts.holders));
  }
  if (facts.twin) {
    reasons.push_back(
        reasonFor(facts.has_serial ? Cause::twins : Cause::twins_without_serial, {{"other", *facts.twin}}));
  }
  return reasons;
}

bool hidesCamera(const Reason &reason) {
  constexpr std::string_view kHiding[] = {"gone",         "port_disabled",   "over_current",
                                          "unauthorized", "no_capture_node", "no_permission"};
  return std::find(std::begin(kHiding), std::end(kHiding), reason.word) != std::end(kHiding);
}

}  // namespace usbdevctl
