// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera that is plugged in or unplugged while somebody looks is announced.

import { isMeantToStream, nameOf, withNamesakes } from "./channels.js";
import { notice } from "./messages.js";
import { known, set } from "./store.js";
import { t } from "./texts.js";

const kNewTime = 5000; // milliseconds

const isPlugged = (channel) => channel.state === "plugged";

// What one streams goes on with it.
export function sayGoodbye(before, channels) {
  for (const one of withNamesakes({ channels: before }).channels.filter((one) => isPlugged(one) && !isPlugged(channels[one.channel]))) {
    notice(t(isMeantToStream(one) ? "gone.streamed" : "gone", { name: nameOf(one) }), "", false, one.channel);
  }
}

function textFor(channel) {
  if (!channel.supported) return "arrived.unusable";
  return channel.waits_for === null ? "arrived" : "arrived.waits";
}

// It is marked, too.
export function welcome(before, channels) {
  const arrived = channels.filter((one) => isPlugged(one) && !isPlugged(before[one.channel])).map((one) => one.channel);
  if (arrived.length === 0) return;
  const named = withNamesakes({ channels }).channels;
  for (const number of arrived) {
    notice(t(textFor(channels[number]), { name: nameOf(named[number]) }), "", false, number);
  }
  set({ arrived: [...known.arrived, ...arrived] });
  setTimeout(() => set({ arrived: known.arrived.filter((one) => !arrived.includes(one)) }), kNewTime);
}
