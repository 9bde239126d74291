// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Begins the page, and shows the part of it that the address names.

import { html, render } from "../libraries/preact.js";
import { CameraWithoutProfile } from "./camera.js";
import { nameOf, profileName } from "./channels.js";
import { Charts } from "./charts.js";
import { begin } from "./connection.js";
import { Events } from "./events.js";
import { Host } from "./host.js";
import { Login } from "./login.js";
import { leaveRefusals } from "./messages.js";
import { Overview } from "./overview.js";
import { Loading } from "./parts.js";
import { Pictures } from "./pictures.js";
import { Profile } from "./profile.js";
import { Sharing } from "./sharing.js";
import { Shell } from "./shell.js";
import { onChange, set, view } from "./store.js";
import { awaitTexts, t } from "./texts.js";

const kPages = { "": Overview, pictures: Pictures, sharing: Sharing, events: Events, charts: Charts, host: Host };

const NoPage = () => html`<p><a class="button plain" href="#/">${t("overview")}</a></p>`;

const cameraPart = (channel, state) =>
  channel.profile === null ? { Part: CameraWithoutProfile, channel } : { Part: Profile, profile: state.profiles[channel.profile] };

// The page of the address: its part of the navigation, its title, and what is shown.
function route(state) {
  const [, name = "", number = ""] = location.hash.split("/");
  const profile = name === "profile" && state?.profiles.find((one) => String(one.profile) === number);
  if (profile) return { page: "overview", title: profileName(state, profile), Part: Profile, profile };
  const channel = name === "camera" && state?.channels.find((one) => String(one.channel) === number && one.state !== "free");
  if (channel) return { page: "overview", title: nameOf(channel), ...cameraPart(channel, state) };
  if (["profile", "camera"].includes(name) && !state) return { page: "overview", title: t("profile"), Part: Profile };
  if (!(name in kPages)) return { page: null, title: t("no_page"), Part: NoPage };
  const page = name || "overview";
  return { page, title: t(page), Part: kPages[name], profile: state?.profiles.find((one) => String(one.profile) === number) };
}

function App() {
  const now = view();
  if (now.session === undefined) return html`<main class="alone"><${Loading} /></main>`;
  if (now.session === null) return html`<${Login} hasEnded=${now.hasEnded} user=${now.user} />`;
  const { page, title, Part, profile, channel } = route(now.state);
  return html`<${Shell} view=${now} page=${page} address=${location.hash} title=${title}>
    ${now.state ? html`<${Part} key=${location.hash} state=${now.state} profile=${profile} channel=${channel} arrived=${now.arrived} />` : html`<${Loading} />`}
  <//>`;
}

const root = document.getElementById("page");
await awaitTexts();
root.replaceChildren();
onChange(() => render(html`<${App} />`, root));
addEventListener("hashchange", leaveRefusals);
// What looks like a button is pressed as one.
addEventListener("keydown", (event) => {
  if (event.key !== " " || !event.target.matches("a.button")) return;
  event.preventDefault(); // it would scroll
  event.target.click();
});
set({});
begin();
