#!/usr/bin/python3
"""page_check.py FOLDER: opens pages of `tova_fw map --html` in a browser.

Each NAME.html in the folder lies beside the NAME.json of the same call. What
the page shows is held to the JSON; what it does is tried by keyboard. Nothing
may be fetched, no error logged, and all of it has to have a name and contrast
for whoever can't see it, or not well. The browser is headless Chromium.
"""
import json
import math
import pathlib
import sys

from selenium import webdriver
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

WIDE, NARROW = (1400, 1000), (380, 800)


def open_browser():
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu",
                     "--disable-dev-shm-usage",
                     "--host-resolver-rules=MAP * ~NOTFOUND"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs",
                           {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(options=options)


class Page:
    """One page in the browser, beside the JSON of the same map."""

    def __init__(self, browser, path):
        self.browser = browser
        self.path = path
        self.map = json.loads(path.with_suffix(".json").read_text())
        browser.get_log("performance")
        browser.set_window_size(*WIDE)
        browser.get(path.resolve().as_uri())

    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def focused(self):
        return self.browser.switch_to.active_element

    def press(self, *keys):
        for key in keys:
            self.focused().send_keys(key)

    def rows(self, section):
        """The texts of the rows that the table shows now."""
        return self.script(
            "return [...document.querySelectorAll(`#${arguments[0]} tbody tr`)]"
            ".map((row) => [...row.cells].map((cell) => cell.textContent))",
            section)

    def all_rows(self, section):
        rows = self.rows(section)
        while True:
            buttons = self.browser.find_elements(
                By.CSS_SELECTOR, f"#{section} .pager:not([hidden]) button")
            if not buttons or not buttons[1].is_enabled():
                return rows
            self.script("arguments[0].click()", buttons[1])
            more = self.rows(section)
            assert more, "the next page has no row"
            rows += more


def to_number(text):
    return int(text.replace(",", "").replace("\u2212", "-"))


def shown(name):
    return "".join(
        "\ufffd" if ord(c) < 32 or 127 <= ord(c) < 160 or c in "\u2028\u202e"
        else c for c in name)


def check_silence(page):
    """What goes over any wire, or into the console."""
    requests = [
        json.loads(entry["message"])["message"]
        for entry in page.browser.get_log("performance")]
    urls = {message["params"]["request"]["url"] for message in requests
            if message["method"] == "Network.requestWillBeSent"}
    assert urls <= {page.path.resolve().as_uri()}, urls
    assert not page.script("return performance.getEntriesByType('resource')")
    assert not page.browser.get_log("browser")


def check_figures(page):
    got = page.map
    cards = [card.text for card in
             page.browser.find_elements(By.CSS_SELECTOR, "#cards > li")]
    assert len(cards) == max(1, len(got["classes"]))
    figures = [figure.text for figure in page.browser.find_elements(
        By.CSS_SELECTOR, "#bars .figures")]
    assert figures == [
        f"{area['used']:,} used, {area['free']:,} free of {area['size']:,} "
        f"byte{'s'[:area['size'] != 1]}, {len(area['sections']):,} "
        f"section{'s'[:len(area['sections']) != 1]}"
        for area in got["classes"]], figures

    sections, classes = {}, {}
    for name, rows in [(area["name"], area["sections"])
                       for area in got["classes"]] + [
                           (None, got["outside_classes"])]:
        for s in rows:
            key = s["name"], s["address"]
            sections[key] = s
            classes.setdefault(key, []).extend([name] if name else [])
    rows = page.all_rows("sections")
    assert sorted((row[0], row[1], int(row[2], 16), to_number(row[3]), row[4])
                  for row in rows) == sorted(
        (shown(s["name"]), shown(s["module"]), s["address"], s["size"],
         ", ".join(classes[key]) or "(none)") for key, s in sections.items())

    rows = page.all_rows("modules")
    keys = ("text", "rodata", "bss", "gaps", "padding")
    assert sorted(tuple(map(to_number, row[1:6])) for row in rows) == sorted(
        tuple(module[key] for key in keys) for module in got["modules"])
    counted = [m for m in got["modules"] if not m["built_in"]]
    foot = page.script("return [...document.querySelectorAll("
                       "'#modules tfoot td')].map((cell) => cell.textContent)")
    if got["modules"]:
        assert [to_number(text) for text in foot[:5]] == [
            sum(m[key] for m in counted) for key in keys], foot

    # The largest symbols in their order, and a word where some are left out.
    rows = page.all_rows("symbols")
    want = got["symbols"][:len(rows)]
    assert [(row[0], row[1], int(row[3], 16), to_number(row[4]))
            for row in rows] == [
        (shown(s["name"]), shown(s["section"]), s["address"], s["size"])
        for s in want]
    if got["symbols_total"] > len(rows):
        caption = page.browser.find_element(By.CSS_SELECTOR, "#symbols caption")
        assert caption.text.startswith(
            f"{len(rows):,} of {got['symbols_total']:,} symbols"), caption.text

    for section, key in (("left-out", "left_out"), ("overlaps", "overlaps"),
                         ("outside", "outside_classes")):
        assert len(page.all_rows(section)) == len(got[key]), section
    boxes = page.browser.find_elements(By.CSS_SELECTOR, "#strip button")
    pages = got["image"]["pages"]
    assert len(boxes) == (pages if pages <= 1000 else
                          -(-pages // -(-pages // 1000))), len(boxes)
    unused = sum(span["size"] for group in got["groups"]
                 for span in group["unused"])
    told = [box.accessible_name.rsplit(", ", 1)[-1] for box in boxes]
    assert sum(to_number(text.split()[0]) for text in told) == unused


def check_baseline(page):
    base = page.map.get("baseline")
    hidden = page.script("return document.getElementById('changes').hidden")
    assert hidden == (base is None)
    if base is None:
        return
    tables = page.browser.find_elements(By.CSS_SELECTOR, "#changes table")
    lists = [rows for rows in (base["changes"], base["classes"],
                               base["modules"]) if rows]
    for table, rows in zip(tables, lists, strict=True):
        texts = page.script(
            "return [...arguments[0].tBodies[0].rows].map((row) => "
            "[...row.cells].map((cell) => cell.textContent))", table)
        assert [(t[0], *map(to_number, t[1:4])) for t in texts] == [
            (r["name"] if r.get("section", True) else "(bytes without a symbol)",
             r["change"], r["old"], r["new"]) for r in rows], texts
    captions = [table.find_element(By.TAG_NAME, "caption").text
                for table in tables]
    assert captions[-1] == "1 module that changed" or len(lists[-1]) != 1


def check_table_by_keyboard(page):
    """Sorting and filtering of the sections."""
    heads = page.browser.find_elements(By.CSS_SELECTOR, "#sections thead th")
    assert [head.get_attribute("aria-sort") for head in heads] == [
        None, None, None, "descending", None]
    for at, directions in ((0, ("ascending", "descending")),
                           (2, ("ascending", "descending")),
                           (3, ("descending", "ascending"))):
        page.script("arguments[0].focus()",
                    heads[at].find_element(By.TAG_NAME, "button"))
        for direction in directions:
            page.press(Keys.ENTER)
            assert heads[at].get_attribute("aria-sort") == direction
            values = [row[at] for row in page.rows("sections")]
            if at == 3:
                values = [to_number(value) for value in values]
            assert values == sorted(values, reverse=direction != "ascending")
    field = page.browser.find_element(By.CSS_SELECTOR, "#sections input")
    page.script("arguments[0].focus()", field)
    names = [row[0] for row in page.rows("sections")]
    wanted = next((n for n in names if n != n.lower()), names[-1])[1:]
    page.press(wanted.swapcase())
    rows = page.rows("sections")
    assert rows and all(wanted in row[0] for row in rows), (wanted, rows)
    page.press("no such section")
    assert page.rows("sections") == []
    status = page.browser.find_element(By.CSS_SELECTOR, "#sections [role=status]")
    assert status.text == "Nothing matches"
    field.clear()
    page.press(" ", Keys.BACKSPACE)


def expected_parts(got, area):
    """What the bar of a class tells, if no parts share one."""
    sections = area["sections"]
    if area["hw_buf"]:
        sections = sections + [{"name": "hw_buf", "module": "hw_buf",
                                **got["hw_buf"]}]
    at, end, parts = area["base"], area["base"] + area["size"], []

    def leave(to, word):
        if to > at:
            parts.append((f"{word}, {at:#010x}, {to - at:,} "
                          f"byte{'s'[:to - at != 1]}", word == "gap"))

    for s in sorted(sections, key=lambda s: s["address"]):
        begin, to = max(s["address"], at), min(s["address"] + s["size"], end)
        if to <= begin:
            continue
        leave(begin, "gap" if parts else "free room")
        parts.append((f"{shown(s['name'])}, {shown(s['module'])}, "
                      f"{s['address']:#010x}, {s['size']:,} "
                      f"byte{'s'[:s['size'] != 1]}", False))
        at = to
    leave(end, "free room")
    return parts


def check_parts(page):
    bars = page.browser.find_elements(By.CSS_SELECTOR, ".bar")
    for bar, area in zip(bars, page.map["classes"], strict=True):
        parts = page.script(
            "return [...arguments[0].children].map((part) => "
            "[part.ariaLabel, part.classList.contains('gap')])", bar)
        told = [tuple(part) for part in parts if " of " not in part[0]]
        wanted = expected_parts(page.map, area)
        assert told == [part for part in wanted if part in told], told
        assert len(told) == len(wanted) or len(told) < len(parts), told


def check_bar_by_keyboard(page):
    """Along a bar, closer and back."""
    for bar in page.browser.find_elements(By.CSS_SELECTOR, ".bar"):
        stops = bar.find_elements(By.CSS_SELECTOR, "button[tabindex='0']")
        assert len(stops) == 1, "one stop of the Tab key"
        buttons = bar.find_elements(By.TAG_NAME, "button")
        page.script("arguments[0].focus()", stops[0])
        page.press(Keys.END)
        assert page.focused() == buttons[-1]
        page.press(Keys.HOME)
        assert page.focused() == buttons[0]
        if len(buttons) > 1:
            page.press(Keys.ARROW_RIGHT)
            assert page.focused() == buttons[1]
        name = page.focused().get_attribute("aria-label")
        readout = page.script("return arguments[0].parentNode.querySelector("
                              "'.readout').textContent", bar)
        assert readout == name != ""
        # As wide as the class, without a hole.
        widths = page.script("return [...arguments[0].children].map((part) => "
                             "parseFloat(part.style.width))", bar)
        assert math.isclose(sum(widths), 100, abs_tol=0.1)
        before = len(buttons)
        page.press(Keys.ENTER)
        page.press(Keys.ESCAPE, Keys.ESCAPE)
        assert len(bar.find_elements(By.TAG_NAME, "button")) == before


# Contrast of all texts with what lies behind them, by the rules of WCAG 2.
FAINT_TEXTS = """
const number = (text) => text.match(/[\\d.]+/g).map(Number);
const light = (rgb) => rgb.slice(0, 3).map((c) => c / 255).map(
    (c) => c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4)
    .reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0);
const behind = (element) => {
  for (let at = element; at; at = at.parentElement) {
    const colour = number(getComputedStyle(at).backgroundColor);
    if (colour.length === 3 || colour[3] === 1) return colour;
  }
  return [255, 255, 255];
};
const faint = [];
for (const element of document.querySelectorAll('body *')) {
  const texts = [...element.childNodes].filter(
      (node) => node.nodeType === 3 && node.textContent.trim() !== '');
  if (texts.length === 0 || !element.checkVisibility()) continue;
  const a = light(number(getComputedStyle(element).color));
  const b = light(behind(element));
  const contrast = (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
  if (contrast < 4.5) faint.push([element.outerHTML.slice(0, 99), contrast]);
}
return faint;
"""


def colours_of(page):
    """The colours of the style, by name, as linear red, green, blue."""
    names = [f"module-{i}" for i in range(6)]
    names += ["other", "hatch", "edge", "focus", "card", "page"]
    colours = {}
    for name in names:
        text = page.script("return getComputedStyle(document.documentElement)"
                           ".getPropertyValue('--' + arguments[0])", name).strip()
        parts = [int(text[i:i + 2], 16) / 255 for i in (1, 3, 5)]
        colours[name] = [c / 12.92 if c <= 0.04045 else
                         ((c + 0.055) / 1.055) ** 2.4 for c in parts]
    return colours


def contrast(first, second):
    lights = sorted(0.2126 * r + 0.7152 * g + 0.0722 * b + 0.05
                    for r, g, b in (first, second))
    return lights[1] / lights[0]


# How people without one kind of cones see linear colours (Machado 2009).
SIGHTS = (
    ((1, 0, 0), (0, 1, 0), (0, 0, 1)),
    ((.152286, 1.052583, -.204868), (.114503, .786281, .099216),
     (-.003882, -.048116, 1.051998)),
    ((.367322, .860646, -.227968), (.280085, .672501, .047413),
     (-.011820, .042940, .968881)),
    ((1.255528, -.076749, -.178779), (-.078411, .930809, .147602),
     (.004733, .691367, .303900)),
)


def oklab(colour):
    """Coordinates in which distances are as large as they look."""
    rows = ((.4122214708, .5363325363, .0514459929),
            (.2119034982, .6806995451, .1073969566),
            (.0883024619, .2817188376, .6299787005))
    l, m, s = (sum(a * b for a, b in zip(row, colour)) ** (1 / 3)
               for row in rows)
    return (.2104542553 * l + .7936177850 * m - .0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + .4505937099 * s,
            .0259040371 * l + .7827717662 * m - .8086757660 * s)


def check_colours(page):
    colours = colours_of(page)
    for name, colour in colours.items():
        if name not in ("card", "page"):
            assert contrast(colour, colours["card"]) >= 3, name
    modules = [colours[f"module-{i}"] for i in range(6)]
    for sight in SIGHTS:
        seen = [oklab([min(1, max(0, sum(a * b for a, b in zip(row, colour))))
                       for row in sight]) for colour in modules]
        for i, one in enumerate(seen):
            for other in seen[:i]:
                assert math.dist(one, other) >= 0.1, (i, sight)


def check_access(page):
    """Names, roles and the order of headings."""
    for tag in ("header", "nav", "main", "footer", "h1"):
        assert len(page.browser.find_elements(By.TAG_NAME, tag)) == 1, tag
    faults = page.script("""
        const faults = [];
        const ids = [...document.querySelectorAll('[id]')].map((e) => e.id);
        if (new Set(ids).size !== ids.length) faults.push('an id twice');
        let level = 0;
        for (const head of document.querySelectorAll('h1, h2, h3, h4, h5, h6')) {
          if (!head.checkVisibility()) continue;
          const own = Number(head.tagName[1]);
          if (own > level + 1) faults.push('heading ' + head.textContent);
          if (head.textContent === '') faults.push('an empty heading');
          level = own;
        }
        for (const at of document.querySelectorAll('[aria-labelledby]')) {
          if (!document.getElementById(at.getAttribute('aria-labelledby'))) {
            faults.push('no label for ' + at.id);
          }
        }
        for (const button of document.querySelectorAll('button, a')) {
          if ((button.ariaLabel ?? button.textContent).trim() === '') {
            faults.push(button.outerHTML);
          }
        }
        for (const input of document.querySelectorAll('input')) {
          if (input.labels.length !== 1) faults.push('a field without label');
        }
        for (const table of document.querySelectorAll('table')) {
          if (!table.caption || table.querySelector('thead th:not([scope])') ||
              [...table.tBodies[0].rows].some(
                  (row) => row.cells[0].scope !== 'row')) {
            faults.push('a table without heads');
          }
        }
        for (const link of document.querySelectorAll('a')) {
          if (!document.querySelector(link.getAttribute('href'))) {
            faults.push(link.outerHTML);
          }
        }
        return faults;""")
    assert not faults, faults
    for theme in ("light", "dark"):
        page.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": "prefers-color-scheme", "value": theme}]})
        faint = page.script(FAINT_TEXTS)
        assert not faint, (theme, faint[:5])
        check_colours(page)
    page.browser.set_window_size(*NARROW)
    page.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
        "width": NARROW[0], "height": NARROW[1], "deviceScaleFactor": 1,
        "mobile": False})
    wide = page.script("return document.documentElement.scrollWidth")
    assert wide <= NARROW[0], wide
    page.browser.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})


def check_harmless(page):
    """Hostile names stay texts."""
    assert page.script("return window.hacked") is None
    assert page.script("return document.scripts.length") == 2
    assert not page.browser.find_elements(By.CSS_SELECTOR, "img, iframe, b")


def main():
    browser = open_browser()
    try:
        for path in sorted(pathlib.Path(sys.argv[1]).glob("*.html")):
            page = Page(browser, path)
            opened = page.script("const [entry] = performance.getEntriesByType("
                                 "'navigation'); return entry.loadEventEnd")
            check_silence(page)
            check_harmless(page)
            check_access(page)
            check_figures(page)
            check_baseline(page)
            if len(page.rows("sections")) > 5:
                check_table_by_keyboard(page)
            check_parts(page)
            check_bar_by_keyboard(page)
            check_silence(page)
            print(f"{path.stem}: {path.stat().st_size:,} bytes, open after "
                  f"{opened:.0f} ms")
    finally:
        browser.quit()


main()
