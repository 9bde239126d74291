# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""An owner who looks at the pages in a browser, and uses what they say: buttons, fields and sentences by their words."""

from __future__ import annotations

import json
import sys
from collections.abc import Callable
from pathlib import Path
from typing import Any, TypeVar

from selenium.common.exceptions import WebDriverException
from selenium.webdriver import Chrome, Keys
from selenium.webdriver.remote.webelement import WebElement
from selenium.webdriver.support.select import Select
from selenium.webdriver.support.wait import WebDriverWait

sys.path.append(str(Path(__file__).resolve().parents[1] / "share/on_host"))
import viewer

Result = TypeVar("Result")


# Messages disappear after a while, which a test may miss; this remembers them.
LISTEN = """window.told = [];
new MutationObserver(() => {
  for (const one of document.querySelectorAll('.notice')) if (!window.told.includes(one.innerText)) window.told.push(one.innerText);
}).observe(document, { childList: true, subtree: true, characterData: true });"""

# Looks until it finds something, or for some seconds; whoever asks the browser once more has it work ten times as much.
AWAIT = """new Promise((done) => {
const given = %s;
const look = () => { %s };
const attempt = (left) => {
  const found = look();
  if (found || left === 0) done(found || null);
  else setTimeout(attempt, 50, left - 1);
};
attempt(100);
})"""
CONTAINS = """const [selector, texts] = given, shown = document.querySelector(selector)?.innerText;
return shown !== undefined && texts.every((text) => shown.includes(text));"""
LACKS = "return !document.body.innerText.includes(given[0]);"
IS_TOLD = "return window.told.some((one) => one.includes(given[0]));"
FIND = """const find = () => {
  const found = document.evaluate(given[0], document, null, XPathResult.ORDERED_NODE_SNAPSHOT_TYPE, null);
  const all = Array.from({ length: found.snapshotLength }, (_, index) => found.snapshotItem(index));
  return all.find((one) => one.checkVisibility({ opacityProperty: true, visibilityProperty: true }) && one.getClientRects().length > 0);
};
const seen = find();"""
# Where it can be touched, which is not under anything else. The page notes whether it is, because it may move meanwhile.
PLACE = """seen?.scrollIntoViewIfNeeded();
const box = seen?.getClientRects()[0], x = box?.x + box?.width / 2, y = box?.y + box?.height / 2;
if (!seen?.contains(document.elementFromPoint(x, y))) return null;
window.touched = false;
document.addEventListener('click', ({ target }) => { window.touched ||= find()?.contains(target); }, { capture: true, once: true });
return { x, y };"""


def _quoted(text: str) -> str:
    return f'"{text}"'


class Owner:
    def __init__(self, browser: Chrome, origin: str) -> None:
        self.browser = browser
        self.origin = origin
        self._opened = 0
        self.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=LISTEN)

    def open(self, page: str = "") -> None:
        """As somebody who enters the address in a new tab. It is another one each time, or the browser would load nothing."""
        self._opened += 1
        self.browser.get(f"{self.origin}/?{self._opened % 2}#/{page}")

    def turn_to(self, page: str = "") -> None:
        """As somebody who enters the address of another page while one is open, for which nothing is loaded."""
        self.evaluate(f"void (location.hash = '#/{page}')")

    def wait(self, condition: Callable[[], Result]) -> Result:
        """What the page shows may be replaced while it is read."""
        waiting = WebDriverWait(self.browser, 30, poll_frequency=0.1, ignored_exceptions=[WebDriverException])
        return waiting.until(lambda _: condition())

    def _await(self, look: str, *given: object) -> Any:
        """Returns what the page finds, which looks by itself."""
        return self.wait(lambda: self.evaluate(AWAIT % (json.dumps(given), look)))

    def evaluate(self, expression: str) -> Any:
        return viewer.evaluate(self.browser, expression)

    def tell_browser(self, command: str, **parameters: object) -> Any:
        """One of the commands by which its developer tools control the browser."""
        return self.browser.execute_cdp_cmd(command, parameters)

    def size(self, width: int, height: int) -> None:
        metrics = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 1000}
        self.tell_browser("Emulation.setDeviceMetricsOverride", **metrics)

    def prefer(self, **features: str) -> None:
        """As color_scheme="dark"."""
        wishes = [{"name": f"prefers-{name.replace('_', '-')}", "value": value} for name, value in features.items()]
        self.tell_browser("Emulation.setEmulatedMedia", features=wishes)

    def stop_clock(self, now: int) -> None:
        """It is this second, in the zone of universal time, on all pages that are opened from now on."""
        clock = f"Date = class extends Date {{ constructor(...given) {{ super(...(given.length ? given : [{1000 * now}])); }} }};"
        self.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=f"{clock} Date.now = () => {1000 * now};")
        self.tell_browser("Emulation.setTimezoneOverride", timezoneId="UTC")

    # What is seen.

    def text(self, selector: str = "body") -> str:
        """As the browser shows it."""
        return str(self.evaluate(f"document.querySelector({json.dumps(selector)}).innerText"))

    def _contains(self, selector: str, texts: tuple[str, ...]) -> bool:
        return bool(self._await(CONTAINS, selector, texts))

    def sees(self, *texts: str) -> bool:
        return self._contains("body", texts)

    def is_told(self, text: str) -> bool:
        """In a message, which may have disappeared."""
        return bool(self._await(IS_TOLD, text))

    def sees_no_more(self, text: str) -> bool:
        return bool(self._await(LACKS, text))

    def heading(self) -> str:
        return self.text("h1")

    def card(self, channel: int) -> str:
        """What the overview says of a channel."""
        return self.text(f'[data-channel="{channel}"]')

    def sees_on_card(self, channel: int, *texts: str) -> bool:
        return self._contains(f'[data-channel="{channel}"]', texts)

    def focused(self) -> str:
        return self.evaluate("document.activeElement.innerText || document.activeElement.getAttribute('aria-label') || ''")

    def complaints(self) -> list[str]:
        return viewer.complaints(self.browser)

    def barriers(self, rules: list[str] = viewer.RULES) -> list[str]:
        return viewer.barriers(self.browser, rules)

    # What is done.

    def _find(self, path: str) -> WebElement:
        """The first that is visible."""
        return self.wait(lambda: self.browser.execute_script(f"const given = arguments; {FIND} return seen;", path))

    def _touch(self, path: str) -> None:
        """As the driver's click does, which asks the browser for ten times as much."""

        def is_touched() -> bool:
            place = {**self._await(FIND + PLACE, path), "button": "left", "clickCount": 1}
            for what in ("mousePressed", "mouseReleased"):
                self.tell_browser("Input.dispatchMouseEvent", type=what, **place)
            return bool(self.evaluate("window.touched !== false"))

        self.wait(is_touched)

    def press(self, name: str) -> None:
        """A button or a link; in a dialog, if there is one."""
        words = _quoted(name)
        named = f"*[self::button or self::a][normalize-space()={words} or @aria-label={words}]"
        self._touch(f"//dialog//{named} | //{named}[not(//dialog)]")

    def _path(self, label: str) -> str:
        path = f"//label[normalize-space()={_quoted(label)}]"
        return f"//*[@id={path}/@for] | {path}//input"

    def field(self, label: str) -> WebElement:
        return self._find(self._path(label))

    def enter(self, label: str, text: str) -> None:
        """As if it was put in at once."""
        self._touch(self._path(label))
        self.evaluate("document.activeElement.select()")
        self.tell_browser("Input.insertText", text=text)

    def choose(self, label: str, option: str) -> None:
        self.wait(lambda: Select(self.field(label)).select_by_visible_text(option) is None)

    def turn(self, label: str) -> None:
        """A switch."""
        self._touch(self._path(label))

    def is_on(self, label: str) -> bool:
        return self.field(label).is_selected()

    def press_keys(self, *keys: str) -> None:
        for key in keys:
            self.browser.switch_to.active_element.send_keys(key)

    def sign_in(self, user: str, password: str) -> None:
        self.enter("User name", user)
        self.enter("Password", password)
        self.press_keys(Keys.ENTER)
