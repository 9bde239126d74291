// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Only the live pictures of the cameras that stream, beside each other and as large as fits, also for a screen on a wall.

import { html } from "../libraries/preact.js";
import { nameOf } from "./channels.js";
import { Icon } from "./icons.js";
import { LiveView } from "./live_view.js";
import { Empty } from "./parts.js";
import { t } from "./texts.js";

const Tile = ({ channel }) => html`<li><a href=${`#/profile/${channel.profile}`}>
  <${LiveView} profile=${channel.profile} name=${nameOf(channel)} /><bdi>${nameOf(channel)}</bdi></a></li>`;

export function Pictures({ state }) {
  const streaming = state.channels.filter((one) => one.streams);
  return html`<a class="way-back" href="#/"><${Icon} name="back" />${t("overview")}</a>
    ${streaming.length === 0 && html`<${Empty} icon="camera" title=${t("pictures.none")}><p>${t("pictures.none_cure")}</p><//>`}
    <ul class="tiles">${streaming.map((one) => html`<${Tile} key=${one.channel} channel=${one} />`)}</ul>`;
}
