// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host itself says, which is English in every language of the page.

import { html } from "../libraries/preact.js";
import { plain } from "./texts.js";

export const hostsWords = (text) => text && html`<span lang="en">${plain(text)}</span>`;
