// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which cameras cannot stream at the same time, and where there is room for one more.

import { list, t } from "./texts.js";

const kHighSpeed = 480; // Mbit/s, as this
const kSuperSpeed = 5000; // a socket has two ports then, of which the camera's speed decides

// The port of the host itself that leads to the camera.
export const rootPort = (channel) => (channel.port ?? "").split(".")[0];

const busOf = (port) => Number((port ?? "").split("-")[0]);
const controllerOf = (channel, usb) => usb.controllers.find((one) => one.buses.includes(busOf(channel.port)));

// Also if its stream fails: others have to wait for it.
export const isActive = (one) =>
  one.state === "plugged" && one.supported && one.profile !== null && one.waits_for === null && one.switched_on !== false;

// Behind a bridge one camera of a controller can stream, elsewhere one in each of its ports.
function collide(one, other, usb) {
  if (usb.one_camera || rootPort(one) === rootPort(other)) return true;
  const controller = controllerOf(one, usb);
  return Boolean(controller?.bridge) && controller === controllerOf(other, usb);
}

// The camera that would make this one wait.
export const rivalOf = (channel, { channels, usb }) =>
  channels.find((one) => one.channel !== channel.channel && isActive(one) && collide(channel, one, usb));

// "1-1 to 1-3, 1-5"
function portsText(ports) {
  const parts = ports.map((port) => port.match(/(.*[-.])(\d+)$/).slice(1));
  const runs = [];
  ports.forEach((port, index) => {
    const [[hub, number], [hubBefore, before]] = [parts[index], parts[index - 1] ?? []];
    const follows = hub === hubBefore && Number(number) === Number(before) + 1;
    if (follows) runs.at(-1).last = port;
    else runs.push({ first: port, last: port });
  });
  return list(runs.map(({ first, last }) => (first === last ? first : t("usb.ports", { first, last }))));
}

// The ports in which one more camera streams, of those that are like the given one; empty if there are none. A camera in a
// port that is not fast can only be in such ports.
export function roomFor(port, usb) {
  const speedOf = (one) => usb.buses.find((bus) => bus.bus === busOf(one))?.speed ?? 0;
  const isSuper = (one) => speedOf(one) >= kSuperSpeed;
  const free = usb.controllers.flatMap((one) => one.free_ports);
  const alike = free.filter((one) => isSuper(one) === isSuper(port) && speedOf(one) >= kHighSpeed);
  const possible = port === null || isSuper(port) ? free : free.filter((one) => !isSuper(one));
  return portsText(alike.length > 0 ? alike : possible);
}
