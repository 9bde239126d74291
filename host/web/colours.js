// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Whether a page is light or dark: as the system, or as somebody chose in this browser. It is not a module, because it acts
// before anything is drawn; the choice is at `window.colours`, and a change is an event of that name.

{
  const kSchemes = { system: "light dark", light: "light", dark: "dark" };

  const current = () => {
    const wish = localStorage.getItem("colours");
    return wish in kSchemes ? wish : "system";
  };

  const show = () => {
    document.documentElement.dataset.colours = current();
    document.querySelector('meta[name="color-scheme"]').content = kSchemes[current()];
  };

  const choose = (wish) => {
    localStorage.setItem("colours", wish);
    show();
    dispatchEvent(new Event("colours"));
  };

  window.colours = { all: Object.keys(kSchemes), current, choose };
  show();
}
