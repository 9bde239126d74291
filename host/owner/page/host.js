// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Help: the words of the pages, what to do without a picture, the report for whoever looks after the host, what the host can
// do, and its technical facts.

import { html, useEffect, useRef, useState } from "../libraries/preact.js";
import { attempt } from "./actions.js";
import { read } from "./api.js";
import { needsHost } from "./away.js";
import { copy } from "./clipboard.js";
import { Busy, Button, Failed, Loading, useAnswer } from "./parts.js";
import { saveFile } from "./save_file.js";
import { hasText, plain, t } from "./texts.js";

const kWords = ["host", "stream", "channel", "profile", "guest", "controller", "port", "hub", "waits", "mjpeg", "h264"];
const kSteps = ["card", "wait", "replug", "direct", "report"];

const Unfolded = ({ title: words, children }) => html`<details class="card"><summary><h2>${words}</h2></summary>${children}</details>`;

const FirstHelp = () => html`<${Unfolded} title=${t("no_picture")}>
    <ol>${kSteps.map((one) => html`<li key=${one}>${t(`no_picture.${one}`)}</li>`)}</ol>
  <//>
  <${Unfolded} title=${t("words")}>
    <dl class="words">${kWords.map((one) => html`<div key=${one}><dt>${t(`words.${one}`)}</dt><dd>${t(`words.${one}.means`)}</dd></div>`)}</dl>
  <//>`;

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

const Group = ({ name, children, values }) => html`
  <section class="card" aria-labelledby=${`host-${name}`}>${children}<${List} values=${values} /></section>`;

const Technical = ({ name, words, values }) => html`<${Group} name=${name} values=${values}><h3 id=${`host-${name}`}>${words}</h3><//>`;

// What the owner can use comes first; the rest is for those who look after the machine.
function Groups({ host }) {
  const { limits, ...rest } = host;
  const plainValues = Object.entries(rest).filter(([, value]) => !isGroup(value));
  const groups = Object.entries(rest).filter(([, value]) => isGroup(value));
  return html`<${Group} name="limits" values=${limits}><h2 id="host-limits">${title("limits")}</h2><//>
    <h2 class="technical">${t("host.technical")}</h2>
    <div class="groups">
      <${Technical} name="itself" words=${t("host.itself")} values=${Object.fromEntries(plainValues)} />
      ${groups.map(([name, values]) => html`<${Technical} key=${name} name=${name} words=${title(name)} values=${values} />`)}
    </div>`;
}

function Text({ report }) {
  const shown = useRef(null);
  useEffect(() => {
    shown.current.focus({ preventScroll: true });
    shown.current.scrollIntoView({ block: "nearest" });
  }, [report]);
  return html`<div class="report" ref=${shown} tabindex="-1" role="group" aria-label=${t("report.is_made")}>
    <p><strong>${t("report.is_made")}</strong> ${t("report.send")} ${t("hosts_lines")}</p>
    <div class="buttons">
      <${Button} icon="copy" kind="" act=${() => copy(report, "report.copied", shown.current.querySelector("pre"))}>${t("report.copy")}<//>
      <${Button} act=${() => saveFile(report, "text/plain", "report.txt")}>${t("report.save")}<//>
    </div>
    <pre tabindex="0" lang="en" aria-label=${t("report")}>${report}</pre>
  </div>`;
}

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
    <div class="buttons"><${Button} act=${make} kind=${report ? "plain" : ""} disabled=${isAsking} ...${needsHost()}>${t("report.make")}<//></div>
    ${isAsking && html`<${Busy} text=${t("report.making")} />`}
    ${report && html`<${Text} report=${report} />`}
  </section>`;
}

export function Host() {
  const [host, again] = useAnswer("/host");
  return html`<div class="first-help"><${FirstHelp} /></div>
    <${Report} />
    ${host === null && html`<${Loading} />`}
    ${host === undefined && html`<${Failed} again=${again} />`}
    ${host && html`<${Groups} host=${host} />`}`;
}
