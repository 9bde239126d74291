// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Parts that several pages are made of.

import { html, useEffect, useRef, useState } from "../libraries/preact.js";
import { explainReading } from "./actions.js";
import { read } from "./api.js";
import { Away, needsHost } from "./away.js";
import { Icon } from "./icons.js";
import { hostIsAway, timesBack } from "./store.js";
import { plain, t } from "./texts.js";

// Nothing is on its way while the host is away.
export const Busy = ({ text }) => html`<p class="progress" role="status">
  ${hostIsAway() ? t("loading.away") : html`<span class="busy"></span>${text}`}</p>`;

export const Loading = () => html`<${Busy} text=${t("loading")} />`;

// Acts when the host is back.
export function useReturn(act) {
  const count = timesBack();
  const before = useRef(count);
  useEffect(() => {
    if (before.current !== count) act();
    before.current = count;
  }, [count]);
}

// What the host answers to a request: null until then, and undefined if it fails. Without a path nothing is asked.
export function useAnswer(path) {
  const [answer, setAnswer] = useState(null);
  const [count, setCount] = useState(0);
  useEffect(() => {
    let isLate = false;
    setAnswer(null);
    if (path !== null) read(path).then((value) => isLate || setAnswer(value), (problem) => {
      if (isLate) return;
      explainReading(problem);
      setAnswer(undefined);
    });
    return () => {
      isLate = true;
    };
  }, [path, count]);
  const again = () => setCount(count + 1);
  useReturn(() => answer || again());
  return [answer, again];
}

// What the host did not answer because it was away is asked for again when it is back.
export const Failed = ({ again }) => hostIsAway() ? html`<${Loading} />` : html`
  <${Empty} icon="alert" title=${t("failed")}><div class="buttons"><${Button} act=${again}>${t("again")}<//></div><//>`;

export const Empty = ({ icon, title, children }) => html`
  <div class="empty"><${Icon} name=${icon} /><p class="empty-title">${title}</p>${children}</div>`;

export function Switch({ label, on, disabled, change, ...more }) {
  return html`<label class="switch">
    <input type="checkbox" role="switch" checked=${on} disabled=${disabled} ...${more}
      onChange=${(event) => {
        event.target.checked = on; // it turns when the state does
        change(!on);
      }} />
    <span>${label}</span>
  </label>`;
}

export const Button = ({ act, icon, kind = "plain", children, ...more }) => html`
  <button type="button" class=${kind} onClick=${act} ...${more}>${icon && html`<${Icon} name=${icon} />`}${children}</button>`;

// A text in which no line ends within the name of a port.
const kPort = /(\b\d+-\d+(?:\.\d+)*\b)/;
export const withPorts = (text) => text.split(kPort).map((part, index) => (index % 2 ? html`<span class="port">${part}</span>` : part));

export function Choice({ id, label, value, options, change, ...more }) {
  return html`<div class="field">
    <label for=${id}>${label}</label>
    <select id=${id} value=${value} onChange=${(event) => change(event.target.value)} ...${more}>
      ${options.map((one) => html`<option key=${one.value} value=${one.value} selected=${one.value === value}>${one.text}</option>`)}
    </select>
  </div>`;
}

// What is typed is shown on demand. The properties are those of the field.
export function PasswordField({ id, label, field, ...more }) {
  const [isSeen, setSeen] = useState(false);
  return html`<div class="field"><label for=${id}>${label}</label><div class="password">
    <input id=${id} name="password" type=${isSeen ? "text" : "password"} required ref=${field} autocapitalize="none" spellcheck="false" ...${more} />
    <${Button} icon="seen" kind="bare" act=${() => setSeen(!isSeen)} aria-pressed=${isSeen} aria-label=${t("password.show")} title=${t("password.show")} />
  </div></div>`;
}

// The only thing that there is to choose.
export const Fact = ({ label, children }) => html`<dl class="field fact"><dt>${label}</dt><dd>${children}</dd></dl>`;

// Each choice takes effect when its button is pressed; in a list the keyboard would make others on the way to it.
export const PressedChoice = ({ id, label, value, options, change, ...more }) => html`<div class="field" role="group" aria-labelledby=${id}>
  <span class="label" id=${id}>${label}</span>
  <div class="pressed-choice">${options.map((one) => html`<${Button} key=${one.value} aria-pressed=${one.value === value}
    icon=${one.value === value && "tick"} act=${() => one.value !== value && change(one.value)} ...${more}>${one.text}<//>`)}</div>
</div>`;

// What the host says of a choice comes a moment later.
function Choices({ choices }) {
  const [choice, setChoice] = useState(choices.options[0].value);
  const [said, setSaid] = useState("");
  useEffect(() => {
    let isChosen = true;
    setSaid(choices.asked);
    choices.outcome(choice).then((text) => isChosen && setSaid(text));
    return () => {
      isChosen = false;
    };
  }, [choice]);
  return html`<div class="field"><label for="choice">${choices.label}</label>
    <select id="choice" name="choice" onChange=${(event) => setChoice(event.target.value)}>
      ${choices.options.map((one) => html`<option key=${one.value} value=${one.value}>${one.text}</option>`)}
    </select></div>
    <p class="outcome" role="status">${said}</p>`;
}

// Says what will happen before it happens. The keyboard starts on the way out, except where there is something to choose.
export function Question({ question, since }) {
  const dialog = useRef(null);
  useEffect(() => {
    dialog.current.showModal();
  }, []);
  // The keyboard returns to where it was when a dialog is closed, but not when it disappears.
  const choose = (event) => {
    event.preventDefault();
    dialog.current.close();
    question.answer(event.target.elements.choice?.value ?? true);
  };
  const leave = (event) => {
    event.preventDefault();
    dialog.current.close();
    question.answer(null);
  };
  return html`<dialog ref=${dialog} onCancel=${leave} aria-labelledby="question" aria-describedby="consequences">
    <form onSubmit=${choose}>
      <h2 id="question">${withPorts(question.title)}</h2>
      <ul id="consequences">${question.consequences.map((one) => html`<li>${withPorts(one)}</li>`)}</ul>
      ${question.choices && html`<${Choices} choices=${question.choices} />`}
      <div class="buttons">
        <button type="button" class="plain" onClick=${leave}>${t("cancel")}</button>
        <button class=${question.isLoss ? "danger" : ""} ...${needsHost("away-here")}>${question.yes}</button>
      </div>
      ${hostIsAway() && html`<div class="notice away" role="status"><${Icon} name="alert" /><${Away} id="away-here" since=${since} /></div>`}
    </form>
  </dialog>`;
}
