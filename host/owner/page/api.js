// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The requests to the host's API, and why one failed.

const kAtMost = 30000; // milliseconds; a camera that is asked for its formats takes seconds

const kSoon = 3000; // after which a change that is not answered may never be

let token = "";
let wait = () => {};

// Calls it whenever a change is not answered soon.
export const onWaiting = (act) => {
  wait = act;
};

export const keepToken = (csrf) => {
  token = csrf;
};

// "name" is stable and has a text in every language; the values are those of the answer.
class Refusal extends Error {
  constructor(name, values = {}) {
    super(name);
    this.name = name;
    this.values = values;
  }
}

async function answerTo(method, path, body, atMost) {
  const headers = method === "GET" ? {} : { "X-CSRF-Token": token };
  if (body !== undefined) headers["Content-Type"] = "application/json";
  const options = { method, headers, cache: "no-store", signal: AbortSignal.timeout(atMost) };
  const timer = method === "GET" ? 0 : setTimeout(wait, kSoon);
  try {
    return await fetch(`/api/v1${path}`, { ...options, body: body && JSON.stringify(body) });
  } catch {
    throw new Refusal("host_away");
  } finally {
    clearTimeout(timer);
  }
}

async function refusal(answer) {
  const values = await answer.json().catch(() => ({}));
  return new Refusal(values.error ?? "host_away", values);
}

export async function call(method, path, body, atMost = kAtMost) {
  const answer = await answerTo(method, path, body, atMost);
  if (!answer.ok) throw await refusal(answer);
  const text = await answer.text();
  return answer.headers.get("Content-Type")?.startsWith("application/json") ? JSON.parse(text) : text;
}

export const read = (path, atMost) => call("GET", path, undefined, atMost);
