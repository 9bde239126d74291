// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The USB controllers with what hangs on them, as a picture: who shares a port or a controller with whom, and where there is
// room. On a phone each thing has a line; elsewhere the tree grows to the right.

import { html, useLayoutEffect, useRef, useState } from "../libraries/preact.js";
import { addressOf, freeProfiles, ownName, standing, tone } from "./channels.js";
import { withPorts } from "./parts.js";
import { t } from "./texts.js";
import { isActive, roomFor } from "./usb.js";

const kNarrow = 900; // pixels, as all of these
const kBetween = 12; // rows
const kGap = 48; // between columns
const kBox = 46;
const kLine = 18;
const kIndent = 22;
const kBold = 8.8; // a letter
const kLetter = 7;

// One camera of a hub streams; which of its sockets are empty the host may not know.
function roomOfHub(hub, channels, free) {
  const isBelow = (port) => port?.startsWith(`${hub}.`);
  if (free.some(isBelow)) return t("usb.has_room");
  return channels.some((one) => isActive(one) && isBelow(one.port)) ? t("usb.full") : "";
}

function portNode(port, channels, free) {
  const channel = channels[port.channel];
  const below = port.ports.map((one) => portNode(one, channels, free));
  const empty = { title: port.port, text: t("usb.empty"), kind: "empty", isPort: true, below };
  if (port.hub) return { ...empty, title: t("usb.hub"), text: [port.port, roomOfHub(port.port, channels, free)].filter(Boolean).join(" · "), kind: "hub" };
  if (!channel) return empty;
  const word = standing(channel);
  const text = `${port.port} · ${t(`state.${word}`)}`;
  return { ...empty, channel: port.channel, address: addressOf(channel), isAway: channel.state !== "plugged", title: ownName(channel), text, kind: tone(word) };
}

// Of two buses of a controller one can be full.
function room({ buses, ports, free_ports: free }) {
  if (free.length === 0) return t(ports.length > 0 ? "usb.full" : "usb.no_camera");
  const roomy = buses.filter((bus) => free.some((one) => one.startsWith(`${bus}-`)));
  return roomy.length < buses.length ? t("usb.bus_has_room", { buses: roomy.join(", ") }) : t("usb.has_room");
}

function controllerNode(controller, channels) {
  const below = controller.ports.map((one) => portNode(one, channels, controller.free_ports));
  const text = `${t("usb.buses", { buses: controller.buses.join(", ") })} · ${room(controller)}`;
  const hasRoom = controller.free_ports.length > 0;
  return { title: t("usb.controller"), text, kind: hasRoom ? "room" : "", isController: true, below, bridge: controller.bridge };
}

// Controllers of one bridge share it, as cameras of one controller share that.
function roots(state) {
  const nodes = state.usb.controllers.map((one) => controllerNode(one, state.channels));
  const bridges = [...new Set(nodes.map((one) => one.bridge).filter(Boolean))];
  const shared = bridges.filter((bridge) => nodes.filter((one) => one.bridge === bridge).length > 1);
  const tops = shared.map((bridge) => ({
    title: t("usb.bridge"),
    text: bridge.split("/").at(-1),
    kind: "hub",
    below: nodes.filter((one) => one.bridge === bridge),
  }));
  return [...tops, ...nodes.filter((one) => !shared.includes(one.bridge))];
}

const channelsBelow = (node) => [node.channel, ...node.below.flatMap(channelsBelow)].filter((one) => one !== undefined);

const hasOne = (node, pair) => pair.some((channel) => channelsBelow(node).includes(channel));
const hasBoth = (node, pair) => pair.every((channel) => channelsBelow(node).includes(channel));

// What two cameras share is their controller, or the last part that both hang on, and the lines from there.
const isShared = (node, { cameras, onController }) =>
  hasBoth(node, cameras) && (onController ? node.isController : !node.below.some((one) => hasBoth(one, cameras)));
const isBelowShared = (node, { cameras, onController }) =>
  hasOne(node, cameras) && (onController ? node.isPort : !hasBoth(node, cameras));

// The cameras of which one waits for the other, as far as they share something here.
function waiting(state, nodes) {
  const waits = state.channels.filter((one) => one.waits_for !== null);
  const onController = (one) => one.reasons.some((reason) => reason.collision === "controller");
  return waits.map((one) => ({ cameras: [one.channel, one.waits_for], onController: onController(one) }))
    .filter((pair) => nodes.some((node) => hasBoth(node, pair.cameras)));
}

const depth = (node) => 1 + Math.max(0, ...node.below.map(depth));

const most = (width, letter) => Math.floor((width - 28) / letter);
const cut = (text, count) => (text.length > count ? `${text.slice(0, Math.max(1, count - 1))}…` : text);

// A name has two lines before it is cut.
function lines(title, width) {
  const count = most(width, kBold);
  if (title.length <= count) return [title];
  const space = title.lastIndexOf(" ", count);
  const end = space > 0 ? space : count;
  return [title.slice(0, end), cut(title.slice(end).trim(), count)];
}

// Gives every node its place; a wide tree has parents beside the middle of their children.
function place(nodes, width) {
  const isWide = width >= kNarrow;
  const columns = Math.max(...nodes.map(depth));
  const wide = (width - 4 - kGap * (columns - 1)) / columns;
  const placed = [];
  let end = 3;
  const put = (node, level, parent) => {
    const spot = { ...node, x: level * (isWide ? wide + kGap : kIndent) + 2, parent };
    spot.w = isWide ? wide : width - spot.x - 4;
    spot.lines = lines(node.title, spot.w);
    spot.h = kBox + kLine * (spot.lines.length - 1);
    spot.y = end;
    placed.push(spot);
    if (!isWide || node.below.length === 0) end += spot.h + kBetween;
    const below = node.below.map((one) => put(one, level + 1, spot));
    if (isWide && below.length > 0) spot.y = (below[0].y + below.at(-1).y + below.at(-1).h - spot.h) / 2;
    return spot;
  };
  nodes.forEach((node) => put(node, 0, null));
  return { placed, height: end, isWide };
}

function line(spot, isWide) {
  const { parent } = spot;
  const middle = spot.y + spot.h / 2;
  if (!isWide) return `M${parent.x + 9} ${parent.y + parent.h}V${middle}H${spot.x}`;
  const [from, start] = [parent.x + parent.w, parent.y + parent.h / 2];
  const turn = from + 24;
  return `M${from} ${start}C${turn} ${start} ${turn} ${middle} ${spot.x} ${middle}`;
}

const Box = ({ spot, pairs }) => html`<g class=${`usb ${spot.kind} ${pairs.some((one) => isShared(spot, one)) ? "shared" : ""}`} transform=${`translate(${spot.x} ${spot.y})`}>
  <title>${spot.title}, ${spot.text}</title>
  ${spot.address ? html`<a href=${spot.address} tabindex="-1"><${Inside} spot=${spot} /></a>` : html`<${Inside} spot=${spot} />`}
</g>`;

const Inside = ({ spot }) => html`
  <rect width=${spot.w} height=${spot.h} rx="8" />
  ${spot.lines.map((one, index) => html`<text x="12" y=${19 + kLine * index}>${one}</text>`)}
  <text x="12" y=${18 + kLine * spot.lines.length} class="under">${cut(spot.text, most(spot.w, kLetter))}</text>`;

function Line({ spot, pairs, isWide }) {
  const kinds = { away: spot.isAway, shared: pairs.some((one) => isBelowShared(spot, one)) };
  const kind = Object.keys(kinds).find((one) => kinds[one]) ?? "";
  return html`<path class=${`line ${kind}`} d=${line(spot, isWide)} />`;
}

// The same for those who do not see it.
const List = ({ nodes }) => html`<ul>${nodes.map((one) => html`<li>${one.title}, ${one.text}
  ${one.below.length > 0 && html`<${List} nodes=${one.below} />`}</li>`)}</ul>`;

function useWidth(element) {
  const [width, setWidth] = useState(0);
  useLayoutEffect(() => {
    const observer = new ResizeObserver(([entry]) => setWidth(Math.floor(entry.contentRect.width)));
    observer.observe(element.current);
    return () => observer.disconnect();
  }, []);
  return width;
}

export function UsbTree({ state }) {
  const frame = useRef(null);
  const width = useWidth(frame);
  const nodes = roots(state);
  const { placed, height, isWide } = place(nodes, Math.max(width, 200));
  const pairs = waiting(state, nodes);
  const ports = roomFor(null, state.usb);
  return html`<section aria-labelledby="usb">
    <h2 id="usb">${t("usb.title")}</h2>
    <p class="quiet">${pairs.length > 0 ? t("usb.shared") : t("usb.explained")}</p>
    <p class="quiet">${ports ? withPorts(t(freeProfiles(state).length > 0 ? "usb.room" : "usb.room_none_free", { ports })) : t("usb.no_room")}</p>
    <div class="card usb-tree" ref=${frame}>
      <svg width=${width} height=${height} aria-hidden="true" focusable="false">
        ${placed.filter((one) => one.parent).map((one) => html`<${Line} spot=${one} pairs=${pairs} isWide=${isWide} />`)}
        ${placed.map((one) => html`<${Box} spot=${one} pairs=${pairs} />`)}
      </svg>
      <div class="unseen"><${List} nodes=${nodes} /></div>
    </div>
  </section>`;
}
