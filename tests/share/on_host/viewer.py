# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""Somebody who opens share links in a browser and looks at the page."""

from __future__ import annotations

import json
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from pathlib import Path
from typing import Any, TypeVar

from selenium.common.exceptions import JavascriptException
from selenium.webdriver import Chrome, ChromeOptions
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.select import Select
from selenium.webdriver.support.wait import WebDriverWait

# The browser without its windows, which does what a page makes it do with two thirds of the work. Debian's start script
# looks at the processor file, which is the sandboxed host's.
BROWSER = "/usr/lib/chromium/chromium-headless-shell"
DRIVER = "/usr/bin/chromedriver"
OPTIONS = ("--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage")
# What costs a processor and shows no page: processes for pages that may come, pages that are kept, a frame that is made anew
# for each page; processes beside a page, which mostly wait for each other; scripts that are translated anew
# because they run often, which those of pages that soon end do not; and work of its own.
SPARING = (
    "--disable-features=SpareRendererForSitePerProcess,BackForwardCache,RenderDocument,IsolateOrigins,site-per-process",
    "--disable-site-isolation-trials", "--renderer-process-limit=1", "--disable-extensions", "--disable-component-update",
    "--disable-background-networking", "--disable-sync", "--no-first-run", "--window-size=640,480",
    "--enable-features=NetworkServiceInProcess2", "--in-process-gpu",
    "--js-flags=--single-threaded,--no-opt,--no-maglev",
)  # fmt: skip
AXE = Path(__file__).resolve().parents[3] / "host/web/node_modules/axe-core/axe.min.js"
RULES = ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"]
OF_COLOURS = ["color-contrast", "link-in-text-block"]  # what the choice of light or dark has an effect on
Result = TypeVar("Result")


def evaluate(browser: Chrome, expression: str) -> Any:
    """Returns what it is, or what it promises. The driver's own command asks the browser for twice as much."""
    answer = browser.execute_cdp_cmd("Runtime.evaluate", {"expression": f"({expression})", "returnByValue": True, "awaitPromise": True})
    if "exceptionDetails" in answer:
        raise JavascriptException(str(answer["exceptionDetails"]))
    return answer["result"].get("value")


def barriers(browser: Chrome, rules: list[str]) -> list[str]:
    """What keeps people from using the page."""
    if not evaluate(browser, "'axe' in window"):
        browser.execute_script(AXE.read_text())
    found = evaluate(browser, f"axe.run({{ runOnly: {rules} }}).then(({{ violations }}) => violations)")
    return [f"{one['id']}: {node['html']}" for one in found for node in one["nodes"]]


def complaints(browser: Chrome) -> list[str]:
    """What the browser's console has against the page."""
    return [entry["message"] for entry in browser.get_log("browser") if entry["level"] in ("WARNING", "SEVERE")]


class Viewer:
    def __init__(self, browser: Chrome, origin: str) -> None:
        self._browser = browser
        self._origin = origin

    def open(self, address: str) -> None:
        self._browser.get("about:blank")
        self._browser.get(self._origin + address)

    def position(self) -> float:
        """Where in the stream the picture is."""
        return self.evaluate("document.getElementById('video').currentTime")

    def sees_video(self) -> bool:
        return self._is_visible("video")

    def sees_form(self) -> bool:
        return self._is_visible("password-form")

    def _is_visible(self, name: str) -> bool:
        """The driver would ask the browser for ten times as much, as for a text."""
        return bool(self.evaluate(f"document.getElementById('{name}').checkVisibility()"))

    def text(self, selector: str = "body") -> str:
        """As the browser shows it."""
        return str(self.evaluate(f"document.querySelector({json.dumps(selector)}).innerText"))

    def sentence(self) -> str:
        return self.text("#sentence")

    def countdown(self) -> str:
        return self.text("#countdown")

    def title(self) -> str:
        return self._browser.title

    def evaluate(self, expression: str) -> Any:
        return evaluate(self._browser, expression)

    def barriers(self, rules: list[str] = RULES) -> list[str]:
        return barriers(self._browser, rules)

    def complaints(self) -> list[str]:
        return complaints(self._browser)

    def prefer(self, scheme: str) -> None:
        """Light or dark."""
        features = [{"name": "prefers-color-scheme", "value": scheme}]
        self.tell_browser("Emulation.setEmulatedMedia", features=features)

    def speak(self, language: str) -> None:
        Select(self._browser.find_element(By.ID, "language")).select_by_visible_text(language)

    def click(self, name: str) -> None:
        self._browser.find_element(By.ID, name).click()

    def tell_browser(self, command: str, **parameters: object) -> Any:
        """One of the commands by which its developer tools control the browser."""
        return self._browser.execute_cdp_cmd(command, parameters)

    def await_playing(self) -> None:
        """The picture moves, and there is nothing to say of it."""
        self.wait(self.sees_video)
        begin = self.wait(self.position)
        self.wait(lambda: self.position() > begin and self.sentence() == "")

    def await_sentence(self, awaited: str) -> None:
        self.wait(lambda: self.sentence() == awaited)

    def enter_password(self, password: str) -> None:
        field = self._browser.find_element(By.ID, "password")
        field.clear()
        field.send_keys(password)
        field.submit()

    def wait(self, condition: Callable[[], Result]) -> Result:
        return WebDriverWait(self._browser, timeout=60, poll_frequency=0.25).until(lambda _: condition())


@contextmanager
def browsing(*more: str) -> Iterator[Chrome]:
    options = ChromeOptions()
    options.binary_location = BROWSER
    for option in (*OPTIONS, *SPARING, *more):
        options.add_argument(option)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    browser = Chrome(service=Service(DRIVER), options=options)
    try:
        yield browser
    finally:
        browser.quit()


@contextmanager
def viewing(origin: str) -> Iterator[Viewer]:
    with browsing() as browser:
        yield Viewer(browser, origin)
