// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera that has no profile: why, and what to do about it.

import { html } from "../libraries/preact.js";
import { standing } from "./channels.js";
import { Icon } from "./icons.js";
import { Standing } from "./overview.js";
import { Reasons } from "./reasons.js";
import { t } from "./texts.js";

export const CameraWithoutProfile = ({ channel, state }) => html`
  <p class="lead"><${Standing} word=${standing(channel)} />
    <a class="beside" href="#/"><${Icon} name="back" />${t("overview")}</a></p>
  <p class="quiet">${t("channel_number", { number: channel.channel })} · ${t("port")} <span class="port">${channel.port}</span></p>
  <${Reasons} channel=${channel} state=${state} />`;
