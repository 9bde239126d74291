// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What an owner can do with a camera. What loses something is asked about first; what the host refuses is taken back.

import { call } from "/page/api.js";
import { attachedWithoutProfile, nameOf } from "/page/channels.js";
import { hostsWords } from "/page/hosts_words.js";
import { differenceText } from "/page/settings.js";
import { ask, change, notice, signedOut, withChannel } from "/page/store.js";
import { hasText, t } from "/page/texts.js";

export function explain(problem) {
  if (problem.name === "signed_out") return signedOut();
  const { reason, text, cure, ...values } = problem.values ?? {};
  const known = [`refusal.${reason}`, problem.name !== "refused" && `error.${problem.name}`].find(hasText);
  if (known) notice(t(known, values), "", true);
  else notice(t("error.refused"), hostsWords([text, cure].filter(Boolean).join(" ")), true);
}

// Whether it worked.
export async function attempt(request) {
  try {
    return (await request()) ?? true;
  } catch (problem) {
    explain(problem);
    return false;
  }
}

export const isAway = (channel) => channel.state !== "plugged";

export async function switchPort(channel, on) {
  const name = nameOf(channel);
  const consequences = [t("switch_off.stream"), t("switch_off.kept"), t("switch_off.others")];
  const question = { title: t("switch_off.title", { name }), consequences, yes: t("do.switch_off") };
  if (!on && !(await ask(question))) return;
  const expected = withChannel(channel.channel, { switched_on: on, ...(on ? {} : { streams: false }) });
  const request = () => call("PUT", `/channels/${channel.channel}/switch`, { on });
  if (await attempt(() => change(expected, request))) notice(t(on ? "done.switched_on" : "done.switched_off", { name }));
}

async function assignAnyway(channel, profile, problem) {
  const reason = problem.values.reason;
  if (!["waits", "stops_another", "unsupported"].includes(reason)) throw problem;
  const consequences = [t(`refusal.${reason}`), t(`anyway.${reason}`)];
  const question = { title: t("anyway.title", { name: nameOf(channel) }), consequences, yes: t("do.anyway"), isLoss: true };
  if (!(await ask(question))) return false;
  return call("PUT", `/channels/${channel.channel}/profile`, { profile, anyway: true });
}

export async function assign(channel, profile) {
  const request = () => call("PUT", `/channels/${channel.channel}/profile`, { profile, anyway: false });
  const expected = withChannel(channel.channel, { profile });
  const done = await attempt(() =>
    change(expected, request).catch((problem) => assignAnyway(channel, profile, problem)));
  if (done) notice(t("done.assigned", { name: nameOf(channel), number: profile }));
}

export async function unbind(channel) {
  const consequences = [t("unbind.stream"), channel.shared ? t("unbind.link") : "", t("unbind.settings"), t("unbind.camera")];
  const question = { title: t("unbind.title", { name: nameOf(channel) }), yes: t("do.unbind"), isLoss: true };
  if (!(await ask({ ...question, consequences: consequences.filter(Boolean) }))) return;
  if (await attempt(() => call("DELETE", `/channels/${channel.channel}/profile`))) {
    notice(t("done.unbound", { name: nameOf(channel) }));
  }
}

export async function forget(channel) {
  const name = nameOf(channel);
  const consequences = [t("forget.channel", { number: channel.channel })];
  if (channel.profile !== null) consequences.push(t("forget.profile", { number: channel.profile }));
  consequences.push(t("forget.back"));
  if (!(await ask({ title: t("forget.title", { name }), consequences, yes: t("do.forget"), isLoss: true }))) return;
  if (await attempt(() => call("DELETE", `/channels/${channel.channel}`))) notice(t("done.forgotten", { name }));
}

const asOption = (channel) => ({
  value: String(channel.channel),
  text: t("camera_in_port", { name: nameOf(channel), port: channel.port }),
});

async function moveTo(profile, channel) {
  const answer = await attempt(() => call("POST", `/profiles/${profile}/move`, { channel }));
  if (answer) notice(t("done.moved", { number: profile }), answer.differences.map(differenceText).filter(Boolean).join(" "));
}

const kConsequences = () => [t("move.stream"), t("move.settings"), t("move.link")];

// Moves the profile of this channel to a camera that is chosen.
export async function move(channel, state) {
  const options = attachedWithoutProfile(state).map(asOption);
  if (options.length === 0) return notice(t("move.nowhere"), t("move.nowhere_cure"), true);
  const choices = { label: t("move.to"), options };
  const title = t("move.title", { name: nameOf(channel) });
  const chosen = await ask({ title, consequences: kConsequences(), choices, yes: t("do.move") });
  if (chosen !== null) await moveTo(channel.profile, Number(chosen));
}

// Moves a profile that is chosen to this channel.
export async function moveHere(channel, state) {
  const owners = state.channels.filter((one) => one.profile !== null);
  const options = owners.map((one) => ({ ...asOption(one), value: String(one.profile) }));
  const title = t("move.here_title", { name: nameOf(channel) });
  const choices = { label: t("move.from"), options };
  const chosen = await ask({ title, consequences: kConsequences(), choices, yes: t("do.move") });
  if (chosen !== null) await moveTo(Number(chosen), channel.channel);
}

export async function rename(channel, name) {
  const expected = withChannel(channel.channel, { profile_name: name });
  const request = () => call("PUT", `/profiles/${channel.profile}/name`, { name });
  if (await attempt(() => change(expected, request))) notice(t("done.renamed", { name }));
}

// The answer has what was asked for and what was taken, or is false.
export function setStream(channel, settings) {
  const { sound = channel.sound?.on, sound_codec: codec = channel.sound?.codec, volume = channel.sound?.volume, ...rest } = settings;
  const expected = withChannel(channel.channel, { ...rest, sound: channel.sound && { ...channel.sound, on: sound, codec, volume } });
  return attempt(() => change(expected, () => call("PATCH", `/profiles/${channel.profile}/stream`, settings)));
}
