# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

"""An owner who looks at the pages in a browser, and uses what they say: buttons, fields and sentences by their words."""

from __future__ import annotations

import sys
from collections.abc import Callable
from pathlib import Path
from typing import Any, TypeVar

from selenium.common.exceptions import WebDriverException
from selenium.webdriver import Chrome, Keys
from selenium.webdriver.common.by import By
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


def _quoted(text: str) -> str:
    return f'"{text}"'


class Owner:
    def __init__(self, browser: Chrome, origin: str) -> None:
        self.browser = browser
        self.origin = origin
        self.tell_browser("Page.addScriptToEvaluateOnNewDocument", source=LISTEN)

    def open(self, page: str = "") -> None:
        """As somebody who enters the address."""
        self.browser.get("about:blank")
        self.browser.get(f"{self.origin}/#/{page}")

    def wait(self, condition: Callable[[], Result]) -> Result:
        """What the page shows may be replaced while it is read."""
        waiting = WebDriverWait(self.browser, 30, poll_frequency=0.1, ignored_exceptions=[WebDriverException])
        return waiting.until(lambda _: condition())

    def evaluate(self, expression: str) -> Any:
        return self.browser.execute_script(f"return {expression}")

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
        """As the browser shows it; the driver would ask for the style of each element."""
        return self.browser.find_element(By.CSS_SELECTOR, selector).get_property("innerText")

    def _contains(self, selector: str, texts: tuple[str, ...]) -> bool:
        shown = self.text(selector)
        return all(text in shown for text in texts)

    def sees(self, *texts: str) -> bool:
        return self.wait(lambda: self._contains("body", texts))

    def is_told(self, text: str) -> bool:
        """In a message, which may have disappeared."""
        return bool(self.wait(lambda: any(text in one for one in self.evaluate("window.told"))))

    def sees_no_more(self, text: str) -> bool:
        return self.wait(lambda: text not in self.text())

    def heading(self) -> str:
        return self.text("h1")

    def card(self, channel: int) -> str:
        """What the overview says of a channel."""
        return self.text(f'[data-channel="{channel}"]')

    def sees_on_card(self, channel: int, *texts: str) -> bool:
        return self.wait(lambda: self._contains(f'[data-channel="{channel}"]', texts))

    def focused(self) -> str:
        return self.evaluate("document.activeElement.innerText || document.activeElement.getAttribute('aria-label') || ''")

    def complaints(self) -> list[str]:
        return viewer.complaints(self.browser)

    def barriers(self, rules: list[str] = viewer.RULES) -> list[str]:
        return viewer.barriers(self.browser, rules)

    # What is done.

    def _find(self, path: str) -> WebElement:
        return self.wait(lambda: next((one for one in self.browser.find_elements(By.XPATH, path) if one.is_displayed()), None))

    def press(self, name: str) -> None:
        """A button or a link; in a dialog, if there is one."""
        words = _quoted(name)
        named = f"[normalize-space()={words} or @aria-label={words}]"
        place = "//dialog/" if self.browser.find_elements(By.TAG_NAME, "dialog") else "/"
        self.wait(lambda: self._find(f"{place}/*[self::button or self::a]{named}").click() is None)

    def field(self, label: str) -> WebElement:
        path = f"//label[normalize-space()={_quoted(label)}]"
        return self._find(f"//*[@id={path}/@for] | {path}//input")

    def enter(self, label: str, text: str) -> None:
        field = self.field(label)
        field.send_keys(Keys.CONTROL, "a")
        field.send_keys(text)

    def choose(self, label: str, option: str) -> None:
        self.wait(lambda: Select(self.field(label)).select_by_visible_text(option) is None)

    def turn(self, label: str) -> None:
        """A switch."""
        self.wait(lambda: self.field(label).click() is None)

    def is_on(self, label: str) -> bool:
        return self.field(label).is_selected()

    def press_keys(self, *keys: str) -> None:
        for key in keys:
            self.browser.switch_to.active_element.send_keys(key)

    def sign_in(self, user: str, password: str) -> None:
        self.enter("User name", user)
        self.enter("Password", password + Keys.ENTER)
