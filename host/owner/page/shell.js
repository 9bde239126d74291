// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What is around every page: its name, the ways to the others, and whether the host answers.

import { html, useEffect, useRef } from "../libraries/preact.js";
import { needsHost } from "./away.js";
import { signOut } from "./connection.js";
import { Icon, kEmblem } from "./icons.js";
import { Notices } from "./notices.js";
import { Question } from "./parts.js";
import { set } from "./store.js";
import { changeLanguage, currentLanguage, kLanguages, plain, t } from "./texts.js";

const { colours } = window;
const kPages = [["overview", "#/"], ["sharing", "#/sharing"], ["events", "#/events"], ["charts", "#/charts"], ["host", "#/host"]];

function LanguageChoice() {
  const change = async (event) => {
    await changeLanguage(event.target.value);
    set({});
  };
  return html`<div class="language">
    <label class="unseen" for="language">${t("language")}</label>
    <select id="language" value=${currentLanguage()} onChange=${change}>
      ${Object.entries(kLanguages).map(([code, name]) => html`
        <option key=${code} value=${code} lang=${code} selected=${code === currentLanguage()}>${name}</option>`)}
    </select>
  </div>`;
}

const ColoursChoice = () => html`<div class="colours">
  <label class="unseen" for="colours">${t("colours")}</label>
  <select id="colours" title=${t("colours")} onChange=${(event) => colours.choose(event.target.value)}>
    ${colours.all.map((one) => html`<option key=${one} value=${one} selected=${one === colours.current()}>${t(`colours.${one}`)}</option>`)}
  </select>
</div>`;

// How the pages are shown in this browser.
export const Preferences = () => html`<${LanguageChoice} /><${ColoursChoice} />`;

const Navigation = ({ page }) => html`<nav aria-label=${t("pages")}><ul>
  ${kPages.map(([name, address]) => html`<li key=${name}>
    <a href=${address} aria-current=${name === page ? "page" : null}><${Icon} name=${name} /><span>${t(`${name}.short`)}</span></a>
  </li>`)}
</ul></nav>`;

// The page is entered at its heading, so that a screen reader says where it is. Not when it is the first.
function useEntering(address, title, host) {
  const heading = useRef(null);
  const before = useRef(null);
  useEffect(() => {
    if (before.current !== null && before.current !== address) {
      scrollTo(0, 0);
      heading.current.focus();
    }
    before.current = address;
  }, [address]);
  useEffect(() => {
    document.title = [title, host].filter(Boolean).join(" – ");
  }, [title, host]);
  return heading;
}

export function Shell({ view, page, address, title, children }) {
  const host = plain(view.state?.host.name);
  const heading = useEntering(address, title, host);
  const isBare = page === "pictures";
  return html`
    ${!isBare && html`<a class="skip" href="#content" onClick=${(event) => {
      event.preventDefault();
      heading.current.focus();
    }}>${t("skip")}</a>
    <header>
      <img src=${kEmblem} alt="" width="28" height="28" />
      <span class="host-name"><bdi>${host || t("cameras")}</bdi></span>
      <${Preferences} />
      <bdi class="user">${plain(view.session.user)}</bdi>
      <button type="button" class="bare sign-out" onClick=${signOut} aria-label=${t("sign_out")} title=${t("sign_out.who", { user: plain(view.session.user) })} ...${needsHost()}>
        <${Icon} name="signOut" /><span>${t("sign_out")}</span></button>
    </header>
    <${Navigation} page=${page} />`}
    <main id="content" class=${[isBare && "only-pictures", view.away && "stale"].filter(Boolean).join(" ")}>
      <h1 class=${isBare ? "unseen" : ""} tabindex="-1" ref=${heading}><bdi>${title}</bdi></h1>
      ${children}
    </main>
    <${Notices} notices=${view.notices} away=${view.away} since=${view.since} />
    ${view.question && html`<${Question} question=${view.question} since=${view.since} />`}`;
}
