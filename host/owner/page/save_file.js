// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Saves a text as a file, where the browser keeps what it downloads.

import { notice } from "./messages.js";
import { t } from "./texts.js";

export function saveFile(text, type, file) {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([text], { type }));
  link.download = file;
  link.click();
  URL.revokeObjectURL(link.href);
  notice(t("saved", { file }));
}
