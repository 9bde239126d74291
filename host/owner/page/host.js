// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host tells about itself.

import { html, useState } from "/libraries/preact.js";
import { attempt } from "/page/actions.js";
import { read } from "/page/api.js";
import { Busy, Button, Failed, useAnswer } from "/page/parts.js";
import { notice } from "/page/store.js";
import { hasText, plain, t } from "/page/texts.js";

// A value as text; what the host does not report is said to be unknown.
function shown(value) {
  if (value === null || value === undefined || value === "") return t("unknown");
  if (typeof value === "boolean") return t(value ? "yes" : "no");
  return plain(String(value));
}

const title = (name) => (hasText(`host.${name}`) ? t(`host.${name}`) : name.replaceAll("_", " "));

function List({ values }) {
  return html`<dl class="facts wide">${Object.entries(values).map(([name, value]) => html`<div key=${name}><dt>${title(name)}</dt><dd>${shown(value)}</dd></div>`)}</dl>`;
}

const isGroup = (value) => value !== null && typeof value === "object";

function Groups({ host }) {
  const plainValues = Object.entries(host).filter(([, value]) => !isGroup(value));
  const groups = Object.entries(host).filter(([, value]) => isGroup(value));
  return html`<div class="groups">
    <section class="card" aria-labelledby="host-itself"><h2 id="host-itself">${t("host.itself")}</h2><${List} values=${Object.fromEntries(plainValues)} /></section>
    ${groups.map(([name, values]) => html`<section key=${name} class="card" aria-labelledby=${`host-${name}`}>
      <h2 id=${`host-${name}`}>${title(name)}</h2><${List} values=${values} /></section>`)}
  </div>`;
}

const kFile = "report.txt";

function save(text) {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([text], { type: "text/plain" }));
  link.download = kFile;
  link.click();
  URL.revokeObjectURL(link.href);
  notice(t("report.saved", { file: kFile }));
}

// It comes below what can be seen on a phone.
const show = (element) => element?.scrollIntoView({ block: "nearest" });

function Report() {
  const [report, setReport] = useState("");
  const [isAsking, setAsking] = useState(false);
  const make = async () => {
    setAsking(true);
    setReport((await attempt(() => read("/report"))) || "");
    setAsking(false);
  };
  return html`<section class="card" aria-labelledby="report">
    <h2 id="report">${t("report")}</h2>
    <p class="quiet">${t("report.explained")}</p>
    <div class="buttons">
      <${Button} act=${make} disabled=${isAsking}>${t("report.make")}<//>
      ${report && html`<${Button} act=${() => save(report)}>${t("report.save")}<//>`}
    </div>
    ${isAsking && html`<${Busy} text=${t("report.making")} />`}
    ${report && html`<pre ref=${show} tabindex="0" lang="en" aria-label=${t("report")}>${report}</pre>`}
  </section>`;
}

// The report is below the rest, and appears with it: what somebody is about to press must not move.
export function Host() {
  const [host, again] = useAnswer("/host");
  return html`${host === null && html`<${Busy} text=${t("loading")} />`}
    ${host === undefined && html`<${Failed} again=${again} />`}
    ${host && html`<${Groups} host=${host} />`}
    ${host !== null && html`<${Report} />`}`;
}
