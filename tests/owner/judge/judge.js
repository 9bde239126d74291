// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// judge.js PORT DEVICE ADDRESS [DEVICE ADDRESS]...: has Lighthouse judge pages in the browser whose developer tools have this
// port, as on a slow phone ("phone") or on a desk ("desk"). Prints a line of JSON for each: the milliseconds until the first
// paint; the categories that depend on the page alone, with their scores and with what is to be said against it; and what
// the score of its speed is made of.

import lighthouse, { desktopConfig } from "lighthouse";

const kShort = 200; // milliseconds; the pages are complete soon
const kPauses = { pauseAfterFcpMs: kShort, pauseAfterLoadMs: kShort, networkQuietThresholdMs: kShort, cpuQuietThresholdMs: kShort };
const kSettings = { ...kPauses, disableStorageReset: true, disableFullPageScreenshot: true, skipAudits: ["bf-cache"] };
const kConfigs = { phone: { extends: "lighthouse:default" }, desk: desktopConfig };
const kWell = 0.95;

const said = ({ title, displayValue }) => `${title} ${displayValue ?? ""}`;

async function judge(port, device, address) {
  const config = { ...kConfigs[device], settings: { ...kConfigs[device].settings, ...kSettings } };
  const { lhr } = await lighthouse(address, { port, logLevel: "silent" }, config);
  const { performance, ...made } = lhr.categories;
  const against = (one) => one.score !== null && one.score < kWell;
  const categories = Object.values(made).map(({ id, score, auditRefs }) => {
    const found = auditRefs.map((one) => lhr.audits[one.id]).filter(against);
    return [id, { score, found: found.map(said) }];
  });
  const speed = performance.auditRefs.filter((one) => one.weight > 0).map(({ id, weight }) => {
    const { score, ...audit } = lhr.audits[id];
    return [id, { weight, score, said: said(audit) }];
  });
  const firstPaint = lhr.audits["first-contentful-paint"].numericValue;
  const verdict = { firstPaint, categories: Object.fromEntries(categories), speed: Object.fromEntries(speed) };
  console.log(JSON.stringify({ ...verdict, problem: lhr.runtimeError?.message }));
}

const [port, ...pages] = process.argv.slice(2);
while (pages.length > 0) await judge(Number(port), ...pages.splice(0, 2));
