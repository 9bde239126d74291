// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// judge.js PORT DEVICE ADDRESS [DEVICE ADDRESS]...: has Lighthouse judge pages in the browser whose developer tools have this
// port, as on a slow phone ("phone") or on a desk ("desk"). Prints a line of JSON for each: the milliseconds until the first
// paint, and the categories with their scores and with what is to be said against the page.

import lighthouse, { desktopConfig } from "lighthouse";

const kShort = 200; // milliseconds; the pages are complete soon
const kPauses = { pauseAfterFcpMs: kShort, pauseAfterLoadMs: kShort, networkQuietThresholdMs: kShort, cpuQuietThresholdMs: kShort };
const kSettings = { ...kPauses, disableStorageReset: true, disableFullPageScreenshot: true, skipAudits: ["bf-cache"] };
const kConfigs = { phone: { extends: "lighthouse:default" }, desk: desktopConfig };
const kWell = 0.95;

async function judge(port, device, address) {
  const config = { ...kConfigs[device], settings: { ...kConfigs[device].settings, ...kSettings } };
  const { lhr } = await lighthouse(address, { port, logLevel: "silent" }, config);
  const against = (one) => one.score !== null && one.score < kWell;
  const categories = Object.values(lhr.categories).map(({ id, score, auditRefs }) => {
    const found = auditRefs.map((one) => lhr.audits[one.id]).filter(against);
    return [id, { score, found: found.map((one) => `${one.title} ${one.displayValue ?? ""}`) }];
  });
  const firstPaint = lhr.audits["first-contentful-paint"].numericValue;
  console.log(JSON.stringify({ firstPaint, categories: Object.fromEntries(categories), problem: lhr.runtimeError?.message }));
}

const [port, ...pages] = process.argv.slice(2);
while (pages.length > 0) await judge(Number(port), ...pages.splice(0, 2));
