// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The ten channels as cards, and how they hang together.

import { html, useEffect, useLayoutEffect, useRef, useState } from "../libraries/preact.js";
import { addressOf, lastStanding, nameOf, standing, tone, withPicture } from "./channels.js";
import { Icon } from "./icons.js";
import { Empty, useReturn } from "./parts.js";
import { Reasons } from "./reasons.js";
import { rateText } from "./settings.js";
import { hostIsAway } from "./store.js";
import { t } from "./texts.js";
import { UsbTree } from "./usb_tree.js";

const kNewPicture = 1000; // milliseconds; the host writes one a second
const kNoPictureYet = 5000;

const kIcons = { streams: "camera", begins: "camera", switched_off: "off", unplugged: "plug", displaced: "plug", waits: "wait" };

const NoPicture = ({ word, text }) => html`
  <div class="no-picture"><${Icon} name=${kIcons[word] ?? "camera"} />${text && html`<p>${text}</p>`}</div>`;

// The latest picture again and again, as long as somebody looks.
function Picture({ profile, word, isThere, setThere }) {
  const [at, setAt] = useState(0);
  const [cameAt, setCameAt] = useState(-1);
  useEffect(() => {
    if (cameAt !== at) return undefined; // another one would stop the one that is on its way
    const timer = setInterval(() => document.hidden || hostIsAway() || setAt(at + 1), isThere ? kNewPicture : kNoPictureYet);
    return () => clearInterval(timer);
  }, [isThere, at, cameAt]);
  const come = (isPicture) => {
    setThere(isPicture);
    setCameAt(at);
  };
  useReturn(() => setAt((count) => count + 1));
  useEffect(() => () => setThere(false), []);
  return html`<div class="picture">
    ${!isThere && html`<${NoPicture} word=${word} text=${word === "begins" && t("live_view.waits")} />`}
    ${isThere && html`<span class="watch" aria-hidden="true"><${Icon} name="play" />${t("do.watch")}</span>`}
    <img src=${`/api/v1/profiles/${profile}/picture.jpg?${at}`} alt="" hidden=${!isThere}
      onLoad=${() => come(true)} onError=${() => come(false)} />
  </div>`;
}

export const Standing = ({ word }) => html`<span class=${`standing ${tone(word)}`}>${t(`state.${word}`)}</span>`;

const Fact = ({ name, children }) => html`<div><dt>${name}</dt><dd>${children}</dd></div>`;

const kSendsNothing = ["unplugged", "displaced", "switched_off", "waits"];

function Facts({ channel }) {
  const { port, profile, width, height, rate } = channel;
  const hasStream = profile !== null && width > 0 && !kSendsNothing.includes(lastStanding(channel));
  return html`<dl class="facts">
    <${Fact} name=${t("port")}><span class="port">${port}</span><//>
    <${Fact} name=${t("profile")}>${profile ?? t("none")}<//>
    ${hasStream && html`<${Fact} name=${t("size")}>${width} × ${height}<//>`}
    ${hasStream && rate > 0 && html`<${Fact} name=${t("rate")}>${rateText(rate)}<//>`}
  </dl>`;
}

// What is below does not move up when something on a card is pressed: a card that gets lower keeps its room, as a gap below it,
// until all moves anyway.
const kMoving = ["resize", "scroll"];

function useRoom() {
  const card = useRef(null);
  const room = useRef(0);
  useLayoutEffect(() => {
    const height = card.current.offsetHeight;
    room.current = Math.max(room.current, height);
    card.current.style.marginBottom = `${room.current - height}px`;
  });
  useEffect(() => {
    const forget = () => {
      room.current = 0;
      card.current.style.marginBottom = "";
    };
    for (const kind of kMoving) addEventListener(kind, forget);
    return () => kMoving.forEach((kind) => removeEventListener(kind, forget));
  }, []);
  return card;
}

function CameraCard({ channel, state, isNew, setSeen }) {
  const card = useRoom();
  const last = lastStanding(channel);
  const word = standing(channel);
  const name = html`<bdi>${nameOf(channel)}</bdi>`;
  return html`<li class=${isNew ? "card camera new" : "card camera"} data-channel=${channel.channel} data-standing=${last} ref=${card}>
    ${channel.streams ? html`<${Picture} profile=${channel.profile} word=${word} isThere=${!channel.awaitsPicture} setThere=${setSeen} />` : html`<div class="picture"><${NoPicture} word=${word} text=${word === "begins" && t("begins.explained")} /></div>`}
    <h2><a href=${addressOf(channel)}>${name}</a></h2>
    <${Standing} word=${word} />
    <p class="quiet device">${t("channel_number", { number: channel.channel })}${channel.profile_name && html` · <bdi>${channel.device}</bdi>`}</p>
    <${Facts} channel=${channel} />
    <${Reasons} channel=${channel} state=${state} />
  </li>`;
}

function FreeChannels({ channels }) {
  if (channels.length === 0) return null;
  return html`<p class="quiet free">${t("overview.free", { channels: channels.map((one) => one.channel).join(", ") })}</p>`;
}

function summary(cameras) {
  if (hostIsAway()) return t("overview.unknown");
  const streaming = cameras.filter((one) => one.streams).length;
  if (streaming === cameras.length) return t("overview.all_stream");
  if (cameras.length === 1) return t("overview.only_one");
  if (streaming === 0) return t("overview.none_streams");
  const what = t(cameras.length - streaming === 1 ? "overview.why_one" : "overview.why_each");
  return t(streaming === 1 ? "overview.one_streams" : "overview.some_stream", { streaming, cameras: cameras.length, what });
}

export function Overview({ state: told, arrived }) {
  const [seen, setSeen] = useState({}); // the channels whose pictures are shown
  const state = { ...told, channels: told.channels.map((one) => withPicture(one, seen[one.channel])) };
  const cameras = state.channels.filter((one) => one.state !== "free");
  const free = state.channels.filter((one) => one.state === "free");
  if (cameras.length === 0) {
    return html`<${Empty} icon="plug" title=${t("overview.empty")}><p>${t("overview.empty_cure")}</p><//>
      <${FreeChannels} channels=${free} />`;
  }
  return html`<p class="lead">${summary(cameras)}
      ${cameras.some((one) => one.streams) && html`<a class="button plain" href="#/pictures"><${Icon} name="overview" />${t("pictures")}</a>`}</p>
    <ul class="cards">${cameras.map((one) => html`<${CameraCard} key=${one.channel} channel=${one} state=${state} isNew=${arrived.includes(one.channel)}
      setSeen=${(isSeen) => setSeen((before) => ({ ...before, [one.channel]: isSeen }))} />`)}</ul>
    <${UsbTree} state=${state} />
    <p class="quiet">${t("overview.words")}</p>
    <${FreeChannels} channels=${free} />`;
}
