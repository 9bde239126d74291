// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Copies a text that the page shows.

import { notice } from "./messages.js";
import { t } from "./texts.js";

// Without a secure connection browsers let no page write to the clipboard; the text is then marked where it is shown.
export async function copy(text, done, shown) {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    getSelection().selectAllChildren(shown);
    if (!document.execCommand("copy")) return notice(t("copy.marked"));
  }
  notice(t(done));
}
