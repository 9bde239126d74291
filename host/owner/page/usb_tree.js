// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The USB controllers with what hangs on them, as a picture: who shares a port or a controller with whom. On a phone each
// thing has a line; elsewhere the tree grows to the right.

import { html, useEffect, useRef, useState } from "/libraries/preact.js";
import { nameOf, standing, tone } from "/page/channels.js";
import { t } from "/page/texts.js";

const kNarrow = 900; // pixels, as all of these
const kRow = 58;
const kBox = 46;
const kIndent = 22;
const kBold = 8.8; // a letter
const kLetter = 7.4;

function portNode(port, channels) {
  const channel = channels[port.channel];
  const below = port.ports.map((one) => portNode(one, channels));
  const empty = { title: port.port, text: t("usb.empty"), kind: "empty", below };
  if (port.hub) return { ...empty, text: t("usb.hub"), kind: "hub" };
  if (!channel) return empty;
  const word = standing(channel);
  return { channel: port.channel, title: nameOf(channel), text: `${port.port} · ${t(`state.${word}`)}`, kind: tone(word), below };
}

function controllerNode(controller, channels) {
  const below = controller.ports.map((one) => portNode(one, channels));
  const text = t("usb.buses", { buses: controller.buses.join(", ") });
  return { title: t("usb.controller"), text, kind: "controller", below, bridge: controller.bridge };
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

// What two cameras share is the last part that both hang on.
const isLastOfBoth = (node, pair) => {
  const hasBoth = (one) => pair.every((channel) => channelsBelow(one).includes(channel));
  return hasBoth(node) && !node.below.some(hasBoth);
};

const waiting = (state) =>
  state.channels.filter((one) => one.waits_for !== null).map((one) => [one.channel, one.waits_for]);

const depth = (node) => 1 + Math.max(0, ...node.below.map(depth));

// Gives every node its place; a wide tree has parents beside the middle of their children.
function place(nodes, width) {
  const isWide = width >= kNarrow;
  const column = isWide ? width / Math.max(...nodes.map(depth)) : kIndent;
  const placed = [];
  let row = 0;
  const put = (node, level, parent) => {
    const spot = { ...node, x: level * column + 2, parent, row };
    spot.w = isWide ? column - 48 : width - spot.x - 4;
    placed.push(spot);
    if (!isWide || node.below.length === 0) row += 1;
    const rows = node.below.map((one) => put(one, level + 1, spot).row);
    if (isWide && rows.length > 0) spot.row = (rows[0] + rows.at(-1)) / 2;
    return spot;
  };
  nodes.forEach((node) => put(node, 0, null));
  placed.forEach((spot) => (spot.y = spot.row * kRow + 3));
  return { placed, height: row * kRow, isWide };
}

function line(spot, isWide) {
  const { parent } = spot;
  const middle = spot.y + kBox / 2;
  if (!isWide) return `M${parent.x + 9} ${parent.y + kBox}V${middle}H${spot.x}`;
  const [from, start] = [parent.x + parent.w, parent.y + kBox / 2];
  const turn = from + 24;
  return `M${from} ${start}C${turn} ${start} ${turn} ${middle} ${spot.x} ${middle}`;
}

const cut = (text, width, letter) => {
  const most = Math.floor((width - 20) / letter);
  return text.length > most ? `${text.slice(0, Math.max(1, most - 1))}…` : text;
};

const Box = ({ spot, pairs }) => html`<g class=${`usb ${spot.kind} ${pairs.some((one) => isLastOfBoth(spot, one)) ? "shared" : ""}`} transform=${`translate(${spot.x} ${spot.y})`}>
  <rect width=${spot.w} height=${kBox} rx="8" />
  <text x="12" y="19">${cut(spot.title, spot.w, kBold)}</text>
  <text x="12" y="36" class="under">${cut(spot.text, spot.w, kLetter)}</text>
</g>`;

const Line = ({ spot, isWide }) => html`<path class=${channelsBelow(spot).length > 0 ? "line used" : "line"} d=${line(spot, isWide)} />`;

// The same for those who do not see it.
const List = ({ nodes }) => html`<ul>${nodes.map((one) => html`<li>${one.title}, ${one.text}
  ${one.below.length > 0 && html`<${List} nodes=${one.below} />`}</li>`)}</ul>`;

function useWidth(element) {
  const [width, setWidth] = useState(0);
  useEffect(() => {
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
  const pairs = waiting(state);
  return html`<section aria-labelledby="usb">
    <h2 id="usb">${t("usb.title")}</h2>
    <p class="quiet">${pairs.length > 0 ? t("usb.shared") : t("usb.explained")}</p>
    <div class="card usb-tree" ref=${frame}>
      ${nodes.length === 0 && html`<p class="quiet">${t("usb.nothing")}</p>`}
      <svg width=${width} height=${height} aria-hidden="true" focusable="false">
        ${placed.filter((one) => one.parent).map((one) => html`<${Line} spot=${one} isWide=${isWide} />`)}
        ${placed.map((one) => html`<${Box} spot=${one} pairs=${pairs} />`)}
      </svg>
      <div class="unseen"><${List} nodes=${nodes} /></div>
    </div>
  </section>`;
}
