// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Why a camera does not stream, and what to do about it, in words and as buttons.

import { html, useEffect, useRef } from "../libraries/preact.js";
import * as actions from "./actions.js";
import { needsHost } from "./away.js";
import { freeProfiles, nameOf } from "./channels.js";
import { hostsWords } from "./hosts_words.js";
import { Icon } from "./icons.js";
import { Button, withPorts } from "./parts.js";
import { hasText, list, plain, t } from "./texts.js";
import { rivalOf, roomFor, rootPort } from "./usb.js";

function values(channel, reason, state) {
  const other = state.channels[reason.other_channel] ?? (reason.cause === "switched_off" ? rivalOf(channel, state) : undefined);
  const named = Object.fromEntries(Object.entries(reason.values).map(([name, value]) => [name, plain(value)]));
  const sharer = other && { other_name: nameOf(other), other_channel: other.channel, root: rootPort(channel) };
  const formats = named.formats && { formats: list(named.formats.split(/, | and /)) };
  const given = { port: channel.port, ...named, ...formats, channel: channel.channel };
  return { ...given, ...sharer, button: t("do.start"), room: roomFor(channel.port, state.usb), ...lack(named) };
}

// What the host lacks to encode a picture is a cause of its own.
const lack = ({ lack_cause: cause, ...named }) =>
  hasText(`reason.${cause}`) && { lack: t(`reason.${cause}`, named), lack_cure: t(`cure.${cause}`, named) };

// What the cure depends on, besides the cause.
function caseOf(channel, { cause, collision }, state) {
  if (cause === "switched_off") return rivalOf(channel, state) ? "rival" : channel.profile === null && "no_profile";
  if (cause === "unplugged") return channel.profile === null && "no_profile";
  if (cause !== "waits" || collision === "host") return collision;
  if (!roomFor(channel.port, state.usb)) return "no_room";
  return channel.profile === null ? "room" : "room_with_profile";
}

// In the words of this page; of a cause that it does not know, in those of the host.
export function words(channel, reason, state) {
  const given = values(channel, reason, state);
  const text = (kind, of, otherwise) => {
    const key = [`${kind}.${reason.cause}.${of}`, `${kind}.${reason.cause}`].find(hasText);
    return key ? withPorts(t(key, given)) : hostsWords(otherwise);
  };
  const needsProfile = reason.cause === "waits" && channel.profile === null && given.other_name;
  // In another port it would lack a profile all the same.
  if (needsProfile && freeProfiles(state).length === 0) {
    const cure = t("waits.no_profile_free", { button: t("do.move_here"), other: given.other_name });
    return { why: text("reason", reason.collision, reason.text), cure };
  }
  const cure = [text("cure", caseOf(channel, reason, state), reason.cure)].flat();
  // Who looks for a profile to give it finds here what happens with that.
  if (needsProfile) cure.push(" ", t("waits.no_profile", { button: t("do.instead") }));
  return { why: text("reason", reason.collision, reason.text), cure: cure.some(Boolean) && cure };
}

const instead = (channel, other, state) => ({ text: t("do.instead"), act: () => actions.streamInstead(channel, other, state) });

const kCures = {
  switched_off: (channel, state) => {
    const switchOn = { text: t("do.switch_on"), act: () => actions.switchPort(channel, true, state) };
    const rival = rivalOf(channel, state);
    // The rival becomes known a moment later: what may be pressed by then must not move.
    return rival && channel.profile !== null ? [switchOn, instead(channel, rival, state)] : [switchOn];
  },
  unplugged: (channel) => [{ text: t("do.forget"), act: () => actions.forget(channel) }],
  displaced: (channel) => [{ text: t("do.forget"), act: () => actions.forget(channel) }],
  unbound: (channel, state) => {
    const [free] = freeProfiles(state);
    if (!free) return [{ text: t("do.move_here"), act: () => actions.moveHere(channel, state) }];
    return [{ text: t("do.start"), kind: "", act: () => actions.assign(channel, free.profile, state) }];
  },
  waits: (channel, state, other) => {
    if (!other) return [];
    if (channel.profile !== null || freeProfiles(state).length > 0) return [instead(channel, other, state)];
    return [{ text: t("do.move_here"), act: () => actions.moveHere(channel, state, [other]) }];
  },
};

// One step after the other: a camera that is not there needs no port, one whose port is off does not wait, and one that waits
// needs no profile yet.
const kSteps = ["unplugged", "switched_off", "waits", "unbound"];

function due(reasons) {
  const step = kSteps.find((word) => reasons.some((one) => one.reason === word));
  return reasons.filter((one) => one.reason === step || !kSteps.includes(one.reason));
}

// What its owner wants so, or has not wanted otherwise yet.
const kWanted = ["unbound", "switched_off"];

// The keyboard goes to the camera's name when the button that it is on disappears.
function useName() {
  const box = useRef(null);
  useEffect(() => () => {
    if (!box.current.contains(document.activeElement)) return;
    const name = box.current.closest(".camera")?.querySelector("h2 a");
    setTimeout(() => (name?.isConnected ? name : document.querySelector("h1")).focus()); // when the page is drawn
  }, []);
  return box;
}

function Reason({ channel, reason, state }) {
  const box = useName();
  const { why, cure } = words(channel, reason, state);
  const cures = kCures[reason.reason]?.(channel, state, state.channels[reason.other_channel]) ?? [];
  const isTrouble = reason.hinders && !kWanted.includes(reason.reason);
  return html`<li class=${isTrouble ? "reason" : "reason known"} ref=${box}>
    <${Icon} name=${isTrouble ? "alert" : "info"} />
    <div>
      <p>${why}</p>
      ${cure && html`<p class="quiet">${cure}</p>`}
      ${cures.length > 0 && html`<div class="buttons">
        ${cures.map((one) => html`<${Button} key=${one.text} kind=${one.kind} act=${one.act} ...${needsHost()}>${one.text}<//>`)}
      </div>`}
    </div>
  </li>`;
}

export const Reasons = ({ channel, state }) =>
  channel.reasons.length > 0 && html`<ul class="reasons">
    ${due(channel.reasons).map((one) => html`<${Reason} key=${one.cause} channel=${channel} reason=${one} state=${state} />`)}
  </ul>`;
