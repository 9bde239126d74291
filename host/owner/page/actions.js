// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What an owner can do with a camera. What loses something is asked about first; what the host refuses is taken back.

import { call, read } from "./api.js";
import { attachedWithoutProfile, freeProfiles, nameOf, ownName } from "./channels.js";
import { signedOut } from "./connection.js";
import { hostsWords } from "./hosts_words.js";
import { ask, leaveRefusals, notice } from "./messages.js";
import { differenceText } from "./settings.js";
import { change, view, withChannel } from "./store.js";
import { hasText, t } from "./texts.js";

// The camera that is in the way of a change.
function other(number) {
  const channel = view().state?.channels[number];
  return channel ? t("other_camera", { name: nameOf(channel) }) : t("another_camera");
}

export function explain(problem) {
  if (problem.name === "signed_out") return signedOut();
  const { reason, text, cure, ...values } = problem.values ?? {};
  const known = [`refusal.${reason}`, problem.name !== "refused" && `error.${problem.name}`].find(hasText);
  if (known) notice(t(known, { ...values, other: other(values.other_channel) }), "", true);
  else if (reason === "failed") notice(t("error.failed"), "", true);
  else notice(t("error.refused"), hostsWords([text, cure].filter(Boolean).join(" ")), true);
}

// Why something could not be read. That the host does not answer is said as long as it is so, on every page.
export function explainReading(problem) {
  if (problem.name !== "host_away") explain(problem);
}

// The answer, or true if there is none; false if it did not work.
export async function attempt(request) {
  try {
    const answer = await request();
    leaveRefusals();
    return answer || true;
  } catch (problem) {
    explain(problem);
    return false;
  }
}

export const isAway = (channel) => channel.state !== "plugged";

// Of the cameras that wait for this one, the one that streams when it ends: with a profile since the longest time.
function heir(channel, state) {
  const waiting = state.channels.filter((one) => one.waits_for === channel.channel && one.profile !== null && one.switched_on);
  return waiting.sort((one, other) => (one.created < other.created ? -1 : 1))[0];
}

const switching = (channel, on) => () => call("PUT", `/channels/${channel.channel}/switch`, { on });
const switchedOff = (channel) => withChannel(channel.channel, { switched_on: false, streams: false });

async function switchOff(channel, state) {
  const name = nameOf(channel);
  const next = heir(channel, state);
  const back = next ? t("switch_off.heir", { heir: nameOf(next) }) : t("switch_off.again");
  const consequences = [t("switch_off.stream"), t("switch_off.kept"), back];
  if (!(await ask({ title: t("switch_off.title", { name }), consequences, yes: t("do.switch_off") }))) return;
  if (await attempt(() => change(switchedOff(channel), switching(channel, false)))) notice(t("done.switched_off", { name }));
}

async function switchOn(channel, state) {
  const name = nameOf(channel);
  const answer = await attempt(() => change(withChannel(channel.channel, { switched_on: true }), switching(channel, true)));
  const other = state.channels[answer?.waits_for];
  if (answer) notice(other ? t("done.switched_on_waits", { name, other: nameOf(other) }) : t("done.switched_on", { name }));
}

export const switchPort = (channel, on, state) => (on ? switchOn : switchOff)(channel, state);

const assigning = (channel, profile) => () =>
  call("PUT", `/channels/${channel.channel}/profile`, { profile, anyway: false });

// If the camera would have to wait, or to end another stream, its user chooses between the two.
export async function assign(channel, profile, state) {
  const name = nameOf(channel);
  try {
    await change(withChannel(channel.channel, { profile }), assigning(channel, profile));
  } catch (problem) {
    const { reason, other_channel: number } = problem.values ?? {};
    if (!["waits", "stops_another"].includes(reason)) return explain(problem);
    return streamInstead(channel, state.channels[number], state);
  }
  notice(t("done.assigned", { name, number: profile }));
}

// Switches the camera on and gives it a profile, if it needs that.
async function makeReady(channel, profile) {
  const switched = withChannel(channel.channel, { switched_on: true });
  if (channel.switched_on === false && !(await attempt(() => change(switched, switching(channel, true))))) return false;
  if (channel.profile !== null) return true;
  return attempt(() => change(withChannel(channel.channel, { profile }), assigning(channel, profile)));
}

// Ends the stream of the other camera, for which this one waits or would wait.
export async function streamInstead(channel, other, state) {
  const names = { name: nameOf(channel), other: nameOf(other) };
  const [free] = freeProfiles(state);
  if (channel.profile === null && !free) return moveHere(channel, state, [other]);
  const consequences = [t("instead.kept", names)];
  if (other.switched_on) consequences.unshift(t("instead.stream", names));
  if (channel.profile === null) consequences.push(t("instead.profile", { ...names, number: free.profile }));
  if (!(await ask({ title: t("instead.title", names), consequences, yes: t("do.instead") }))) return;
  const switchOther = () => call("PUT", `/channels/${other.channel}/switch`, { on: false, for: channel.channel });
  if (!(await attempt(() => change(switchedOff(other), switchOther)))) return;
  if (!(await makeReady(channel, free?.profile))) {
    return notice(t("instead.half", names), "", true);
  }
  notice(t("done.instead", names));
}

export async function unbind(channel, runs) {
  const consequences = [channel.profile_name ? t("unbind.settings") : "", channel.shared ? t("unbind.link") : "", t("unbind.stream"), t("unbind.camera"), runs ? t("unbind.instead") : ""];
  const [title, yes] = runs ? ["unbind.title", "do.unbind"] : ["unbind.title_idle", "do.give_up"];
  const question = { title: t(title, { name: nameOf(channel) }), yes: t(yes), isLoss: true };
  if (!(await ask({ ...question, consequences: consequences.filter(Boolean) }))) return;
  if (await attempt(() => call("DELETE", `/channels/${channel.channel}/profile`))) {
    notice(t("done.unbound", { name: nameOf(channel) }));
    location.hash = "#/";
  }
}

export async function forget(channel) {
  const name = nameOf(channel);
  const consequences = [t("forget.channel", { number: channel.channel })];
  const profile = channel.profile_name ? "forget.profile_named" : "forget.profile";
  if (channel.profile !== null) consequences.push(t(profile, { number: channel.profile, name }));
  if (channel.shared) consequences.push(t("unbind.link"));
  consequences.push(t("forget.back"));
  if (!(await ask({ title: t("forget.title", { name }), consequences, yes: t("do.forget"), isLoss: true }))) return;
  if (await attempt(() => call("DELETE", `/channels/${channel.channel}`))) notice(t("done.forgotten", { name }));
}

const asOption = (channel) => ({
  value: String(channel.channel),
  text: t("camera_in_port", { name: ownName(channel), port: channel.port }),
});

// Why a camera cannot take a profile now. One that waits for the camera whose profile it gets has not to wait then.
function hindrance(channel, from, state) {
  const camera = nameOf(channel);
  if (channel.switched_on === false) return t("move.off", { camera });
  const other = state.channels[channel.waits_for];
  return other && other !== from ? t("move.waits", { camera, other: nameOf(other) }) : "";
}

const changesText = (differences) => differences.map(differenceText).filter(Boolean).join(" ");

async function moveTo(from, to) {
  const answer = await attempt(() => call("POST", `/profiles/${from.profile}/move`, { channel: to.channel }));
  const moved = from.profile_name ? "done.moved" : "done.moved_unnamed";
  if (answer) notice(t(moved, { name: nameOf(from), camera: nameOf(to) }), changesText(answer.differences));
}

// What becomes of the settings on the other camera.
async function outcomeOfMove(from, to) {
  const camera = nameOf(to);
  try {
    const answer = await read(`/profiles/${from.profile}/move?channel=${to.channel}`);
    const changes = changesText(answer.differences);
    return changes ? t("move.differs", { camera, changes }) : t("move.fits", { camera });
  } catch {
    return t("move.unknown", { camera });
  }
}

const choicesOf = (label, cameras, outcome) => ({ label, options: cameras.map(asOption), asked: t("move.asked"), outcome });

function consequencesOf(settings, to, owners) {
  const said = { to: to ? t("other_camera", { name: nameOf(to) }) : t("move.chosen") };
  const ends = t(owners.length === 1 ? "move.ends" : "move.ends_chosen");
  return [t("move.stream", said), ends, t(settings, said), owners.some((one) => one.shared) && t("move.link")].filter(Boolean);
}

// The cameras that can take the profile of this channel, and why the others cannot.
export function movesTo(channel, state) {
  const cameras = attachedWithoutProfile(state).map((camera) => ({ camera, why: hindrance(camera, channel, state) }));
  return { able: cameras.filter((one) => !one.why).map((one) => one.camera), others: cameras.map((one) => one.why).filter(Boolean) };
}

// Moves the profile of this channel to a camera that is chosen.
export async function move(channel, state) {
  const { able, others } = movesTo(channel, state);
  const title = t("move.title", { name: nameOf(channel) });
  const settings = channel.profile_name ? "move.settings" : "move.settings_unnamed";
  const choices = choicesOf(t("move.to"), able, (chosen) => outcomeOfMove(channel, state.channels[chosen]));
  const consequences = [...consequencesOf(settings, able.length === 1 && able[0], [channel]), ...others];
  const chosen = await ask({ title, consequences, choices, yes: t("do.move") });
  if (chosen !== null) await moveTo(channel, state.channels[chosen]);
}

const withProfile = (state) => state.channels.filter((one) => one.profile !== null);

// Moves a profile that is chosen to this channel.
export async function moveHere(channel, state, owners = withProfile(state)) {
  const title = t(owners.length === 1 ? "move.here_from" : "move.here_title", { name: nameOf(channel), other: nameOf(owners[0]) });
  const choices = choicesOf(t("move.from"), owners, (chosen) => outcomeOfMove(state.channels[chosen], channel));
  const chosen = await ask({ title, consequences: consequencesOf("move.settings", channel, owners), choices, yes: t("do.move") });
  if (chosen !== null) await moveTo(state.channels[chosen], channel);
}

export async function rename(channel, name) {
  const expected = withChannel(channel.channel, { profile_name: name });
  const request = () => call("PUT", `/profiles/${channel.profile}/name`, { name });
  if (await attempt(() => change(expected, request))) notice(t("done.renamed", { name }));
}

// What the camera makes of a format, size and rate is known only when it has taken them.
const kTakenByCamera = ["codec", "width", "height", "rate"];

// The answer has what was asked for and what was taken, or is false.
export function setStream(channel, settings) {
  const { sound = channel.sound?.on, sound_codec: codec = channel.sound?.codec, volume = channel.sound?.volume, ...rest } = settings;
  const certain = Object.fromEntries(Object.entries(rest).filter(([name]) => !kTakenByCamera.includes(name)));
  const expected = withChannel(channel.channel, { ...certain, sound: channel.sound && { ...channel.sound, on: sound, codec, volume } });
  return attempt(() => change(expected, () => call("PATCH", `/profiles/${channel.profile}/stream`, settings)));
}

// What takes effect with H.264 only, which is set with it.
export async function encode(channel, settings, consequences) {
  const question = { title: t("encode.title", { name: nameOf(channel) }), yes: t("do.encode") };
  if (await ask({ ...question, consequences: [t("encode.why"), ...consequences, t("encode.pause")] })) setStream(channel, settings);
}
