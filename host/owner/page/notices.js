// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The messages: what went well, what was refused, and what happened to cameras meanwhile.

import { html, useLayoutEffect, useMemo, useRef } from "../libraries/preact.js";
import { Away } from "./away.js";
import { Icon } from "./icons.js";
import { closeNotice, leaveNews, leaveNotices } from "./messages.js";
import { withPorts } from "./parts.js";
import { t } from "./texts.js";

// As parts.css has it: there messages lie over the page.
const kNarrow = matchMedia("not (min-width: 60rem)");

// What the page calls when something happens to its window; it knows all that is drawn, however soon that is.
function useWindow(kinds, act) {
  useLayoutEffect(() => {
    for (const kind of kinds) addEventListener(kind, act);
    return () => kinds.forEach((kind) => removeEventListener(kind, act));
  });
}

// Whoever touches the page or them there has seen them; refusals are closed one by one, and all of them by the key.
function useLeaving() {
  useWindow(["click", "touchmove"], () => kNarrow.matches && leaveNews());
  useWindow(["keydown"], ({ key }) => key === "Escape" && !document.querySelector("dialog") && leaveNotices());
}

// A refusal is the next that the keyboard reaches, from wherever it is, and then what comes after that place.
function useNextStop(box, notices, before) {
  const reached = useRef(0); // the number of the newest refusal that was
  const stop = (event) => {
    if (event.key !== "Tab" || event.shiftKey || document.querySelector("dialog")) return;
    if (box.current.contains(document.activeElement)) {
      if (before.current?.isConnected) before.current.focus(); // from where the browser goes on
      return;
    }
    const refusal = notices.findLast((one) => one.isRefusal && one.id > reached.current);
    if (!refusal) return;
    reached.current = refusal.id;
    event.preventDefault();
    box.current.querySelector(`[data-id="${refusal.id}"] button`).focus();
  };
  useWindow(["keydown"], stop);
}

// Away from what was pressed last, if that is what the newest is about, and then it stays there.
function usePlace(newest, pressed) {
  return useMemo(() => {
    if (newest?.isNews || !pressed.current?.isConnected) return "above";
    return pressed.current.getBoundingClientRect().top < innerHeight / 2 ? "below" : "above";
  }, [newest?.id]);
}

// The keyboard goes back to where it was, when a message with it disappears.
function Notice({ id, text, cure, isRefusal, goBack }) {
  const box = useRef(null);
  useLayoutEffect(() => () => box.current.contains(document.activeElement) && goBack(), []);
  return html`<div class=${isRefusal ? "notice refusal" : "notice"} data-id=${id} ref=${box}>
    <${Icon} name=${isRefusal ? "alert" : "info"} />
    <div><p>${withPorts(text)}</p>${cure && html`<p class="quiet">${cure}</p>`}</div>
    <button type="button" class="bare" aria-label=${t("close")} onClick=${() => closeNotice(id)}><${Icon} name="close" /></button>
  </div>`;
}

export function Notices({ notices, away, since }) {
  const [before, box, pressed] = [useRef(null), useRef(null), useRef(null)];
  useWindow(["click"], ({ target }) => {
    if (!box.current.contains(target)) pressed.current = target;
  });
  useNextStop(box, notices, before);
  const note = ({ currentTarget, relatedTarget }) => {
    if (!currentTarget.contains(relatedTarget)) before.current = relatedTarget;
  };
  const goBack = () => (before.current?.isConnected ? before.current : document.querySelector("h1")).focus();
  useLeaving();
  return html`<div class=${`notices ${usePlace(notices.at(-1), pressed)}`} role="status" aria-live="polite" onFocusCapture=${note} ref=${box}>
    ${away && html`<div class="notice away"><${Icon} name="alert" /><${Away} since=${since} /></div>`}
    ${notices.map((one) => html`<${Notice} key=${one.id} goBack=${goBack} ...${one} />`)}
  </div>`;
}
