// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a channel is called and how it is doing.

import { hasText, plain, t } from "./texts.js";

export const ownName = (channel) =>
  plain(channel.profile_name || channel.device) || t("channel_number", { number: channel.channel });

// By which its owner tells a camera from the others: of two with the same name the ports differ.
export const nameOf = (channel) =>
  channel.hasNamesake ? t("name_in_port", { name: ownName(channel), port: channel.port }) : ownName(channel);

// The page of a camera, which is that of its profile if it has one.
export const addressOf = (channel) => (channel.profile === null ? `#/camera/${channel.channel}` : `#/profile/${channel.profile}`);

export function withNamesakes(state) {
  const cameras = state.channels.filter((one) => one.state !== "free");
  const isNamesake = (one, other) => one.channel !== other.channel && ownName(one) === ownName(other);
  const marked = (one) => ({ ...one, hasNamesake: one.state !== "free" && cameras.some((other) => isNamesake(one, other)) });
  return { ...state, channels: state.channels.map(marked) };
}

export const channelOf = (state, profile) => state.channels.find((one) => one.profile === profile);

// A profile without a name is called after its camera, as on the overview.
export function profileName(state, { profile }) {
  const channel = channelOf(state, profile);
  return channel ? nameOf(channel) : t("profile_number", { number: profile });
}

const hindrances = (channel) => channel.reasons.filter((one) => one.hinders);

// One word for how a channel is doing: the name of a text, and of its colour.
export const standing = (channel) => (channel.isUnknown ? "unknown" : lastStanding(channel));

// As far as is known.
export function lastStanding(channel) {
  if (channel.state === "free") return "free";
  if (channel.streams) return channel.awaitsPicture ? "begins" : "streams";
  if (channel.state === "unplugged") return "unplugged";
  if (channel.switched_on === false) return "switched_off";
  const [first] = hindrances(channel);
  if (!first) return channel.profile === null ? "unbound" : "begins";
  return hasText(`state.${first.reason}`) ? first.reason : "fails";
}

// Its stream begins, or goes on, when the camera is there.
export const isMeantToStream = (channel) => channel.profile !== null && channel.switched_on !== false && channel.waits_for === null;

const kCalm = ["unknown", "free", "unbound", "switched_off", "unplugged", "displaced"];

export const tone = (word) => {
  if (word === "streams") return "good";
  return kCalm.includes(word) ? "calm" : "care";
};

// The channel of a stream of which nobody has seen a picture yet has only begun.
export const withPicture = (channel, isSeen) => (channel.streams && !isSeen ? { ...channel, awaitsPicture: true } : channel);

// The profiles that no camera has.
export const freeProfiles = (state) => state.profiles.filter((one) => one.channel === null);

// Those that need not wait come first.
export const attachedWithoutProfile = (state) =>
  state.channels
    .filter((one) => one.state === "plugged" && one.profile === null && one.supported)
    .sort((one, other) => (one.waits_for !== null) - (other.waits_for !== null));
