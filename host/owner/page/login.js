// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The way in.

import { html, useEffect, useRef, useState } from "../libraries/preact.js";
import { signIn } from "./connection.js";
import { Icon, kEmblem } from "./icons.js";
import { PasswordField } from "./parts.js";
import { Preferences } from "./shell.js";
import { t } from "./texts.js";

function useAttempt() {
  const [problem, setProblem] = useState("");
  const [isAsking, setAsking] = useState(false);
  const send = async (user, password) => {
    setAsking(true);
    setProblem("");
    try {
      await signIn(user, password);
    } catch (refused) {
      setProblem(t(`error.${refused.name}`, refused.values));
      setAsking(false);
      return false;
    }
    return true;
  };
  return { problem, isAsking, send, forgive: () => setProblem("") };
}

export function Login({ hasEnded, user }) {
  const { problem, isAsking, send, forgive } = useAttempt();
  const password = useRef(null);
  useEffect(() => {
    document.title = t("sign_in");
    document.getElementById(user ? "password" : "user").focus();
  }, []);
  const submit = async (event) => {
    event.preventDefault();
    const fields = event.target.elements;
    if (!(await send(fields.user.value, fields.password.value))) password.current?.select();
  };
  return html`<main class="alone way-in">
    <form class="card login" onSubmit=${submit} onInput=${forgive}>
      <img src=${kEmblem} alt="" width="48" height="48" />
      <h1>${t("sign_in")}</h1>
      <p class="quiet">${t("sign_in.explained")}</p>
      ${hasEnded && html`<p class="care-box">${t("error.signed_out")}</p>`}
      <div class="field"><label for="user">${t("user")}</label>
        <input id="user" name="user" defaultValue=${user ?? ""} autocomplete="username" autocapitalize="none" spellcheck="false" required maxlength="64" /></div>
      <${PasswordField} id="password" label=${t("password")} field=${password} autocomplete="current-password" maxlength="64"
        aria-invalid=${Boolean(problem)} />
      <p class="problem" role="alert" hidden=${!problem}><${Icon} name="alert" />${problem}</p>
      <button disabled=${isAsking}>${t(isAsking ? "signing_in" : "sign_in")}</button>
      <p class="quiet small">${t("sign_in.administrators")} <code>usbdev-login-users add NAME</code></p>
      <div class="preferences"><${Preferences} /></div>
    </form>
  </main>`;
}
