"""Opens the pages that usbdesc writes in a browser: browser_test.py SOURCE PROGRAM...

Chromium without a screen loads the page of every sample, and of every capture in the folder that
USB_SUPPORT_CAPTURES_DIR names, and a page of every other command. The console must stay empty, every
link must lead to a place on the page, bytes and fields must highlight each other, and the text of a
decoded device must be that of `decode --format json`. With --pictures FOLDER as first arguments the
script writes pictures of some pages instead.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

try:
    from selenium import webdriver
    from selenium.common.exceptions import WebDriverException
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    print("Skipped: Python's selenium is not installed (Debian: python3-selenium)")
    sys.exit(0)

DRIVER = "/usr/bin/chromedriver"  # Debian: chromium-driver
PICTURES = [("uvc-camera", 1400, 1150), ("audio-2", 1400, 1000),
            ("hid-keyboard-mouse-composite", 1400, 900)]

# The contents of the page: the answers in their order, each a list of descriptors.
TEXT_SCRIPT = """
return Array.from(document.querySelectorAll('section.run')).map(run => ({
  name: run.querySelector('h3').textContent,
  descriptors: Array.from(run.querySelectorAll('article')).map(one => ({
    hex: one.querySelector('.x').textContent.replace(/\\s/g, ''),
    rows: Array.from(one.querySelectorAll('tbody tr')).map(
      row => Array.from(row.cells).map(cell => cell.textContent)),
  })),
}));
"""

# The number of links, and those that do not work.
LINK_SCRIPT = """
const wrong = [];
const is = (kind, id) => document.getElementById(kind + id).classList.contains('on');
const all = Array.from(document.querySelectorAll('.x a'));
for (const bytes of all) {
  const id = bytes.id.slice(1);
  const row = document.getElementById('f' + id);
  if (!row || row.tagName !== 'TR' || row.closest('article') !== bytes.closest('article')) {
    wrong.push(id + ' has no row');
    continue;
  }
  bytes.click();
  if (!is('f', id) || !is('b', id)) wrong.push(id + ' does not light its field');
  bytes.click();
  if (is('f', id) || is('b', id)) wrong.push(id + ' stays lit');
  row.querySelector('a').click();
  if (!is('f', id) || !is('b', id)) wrong.push(id + ' does not light its bytes');
}
if (document.querySelectorAll('.x a.on, tr.on').length > 2) wrong.push('several are lit');
return [all.length, wrong];
"""

# The links on the page whose place does not exist.
BROKEN_SCRIPT = """
return Array.from(document.querySelectorAll('a')).map(one => one.getAttribute('href'))
  .filter(link => link[0] !== '#' || !document.getElementById(link.slice(1)));
"""


def replaced(text):
    """A text with the characters that HTML allows."""
    def is_allowed(code):
        return code >= 0xA0 or 0x20 <= code < 0x7F
    return "".join(
        c if is_allowed(ord(c)) and ord(c) & 0xFFFE != 0xFFFE and not 0xFDD0 <= ord(c) <= 0xFDEF
        else "\ufffd" for c in text)


def rows_of(descriptor):
    """The rows of a descriptor, from the JSON: where, name and meaning."""
    for field in descriptor["fields"]:
        name = field["name"] + (f"[{field['index']}]" if "index" in field else "")
        yield [str(field["offset"]), name, replaced(field["text"])]
        for bits in field.get("bits", []):
            low, high = bits["low"], bits["high"]
            where = str(high) if low == high else f"{high}..{low}"
            yield [where, replaced(bits["name"]), replaced(bits["text"])]
    if descriptor["not_described"] != 0:
        yield None


def check_descriptor(shown, descriptor, run_hex, where):
    begin = 2 * descriptor["offset"]
    wanted = run_hex[begin:begin + 2 * descriptor["length"]]
    assert shown["hex"] == wanted, f"{where}: bytes {shown['hex']}, not {wanted}"
    rows = list(rows_of(descriptor))
    assert len(rows) == len(shown["rows"]), f"{where}: {len(shown['rows'])} rows, not {len(rows)}"
    for row, wanted in zip(shown["rows"], rows):
        at, name, _, text = row
        if wanted is None:
            assert name == "not described", f"{where}: {row}"
            continue
        is_short = text in ("missing", "cut off")
        assert [at, name] == wanted[:2] and (text == wanted[2] or is_short), \
            f"{where}: {row}, not {wanted}"


def check_text(shown, wanted, where):
    runs = [run for device in wanted["devices"] for run in device["runs"]]
    assert len(shown) == len(runs), f"{where}: {len(shown)} answers, not {len(runs)}"
    left = list(runs)
    for run in shown:
        hexes = "".join(one["hex"] for one in run["descriptors"])
        # The page orders answers by their requests.
        match = next((one for one in left if one["hex"].startswith(hexes)
                      and len(one.get("descriptors", [])) == len(run["descriptors"])), None)
        match = match or next((one for one in left if one["hex"] == hexes), None)
        assert match is not None, f"{where}: {run['name']} is not in the JSON"
        left.remove(match)
        if "descriptors" not in match:
            continue
        for one, descriptor in zip(run["descriptors"], match["descriptors"]):
            check_descriptor(one, descriptor, match["hex"], f"{where}, {run['name']}")


def check_without_script(browser, url):
    """The links alone highlight a field, by the style."""
    browser.get("about:blank")
    browser.get(url + "#b3")
    color = "return getComputedStyle(document.getElementById(arguments[0])).backgroundColor"
    assert browser.execute_script(color, "b3") != browser.execute_script(color, "b4")


def check_keys(browser):
    """The arrows go from field to field; Enter chooses one, and Escape clears the choice."""
    browser.find_element(By.CSS_SELECTOR, "#f1 a").send_keys(Keys.ARROW_DOWN)
    browser.switch_to.active_element.send_keys(Keys.ENTER)
    lit = [one.get_attribute("id") for one in browser.find_elements(By.CSS_SELECTOR, ".on")]
    assert sorted(lit) == ["b2", "f2"], f"the second field is not chosen: {lit}"
    said = browser.find_element(By.ID, "say").get_attribute("textContent")
    assert said.startswith("bDescriptorType"), f"a screen reader is told {said!r}"
    browser.switch_to.active_element.send_keys(Keys.ESCAPE)
    assert not browser.find_elements(By.CSS_SELECTOR, ".on"), "Escape does not clear the choice"


def start_browser(size=(1400, 1000)):
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--hide-scrollbars", f"--window-size={size[0]},{size[1]}"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service(DRIVER), options=options)


def page_of(program, folder, command, *files):
    done = subprocess.run([*program, command, "--format", "html", *map(str, files)], check=False,
                          stdout=subprocess.PIPE)
    assert done.returncode in (0, 1), f"{files}: exit status {done.returncode}"
    page = pathlib.Path(folder) / "page.html"
    page.write_bytes(done.stdout)
    return page.as_uri()


def inputs_of(program, files):
    """The program's report on each file, as JSON."""
    done = subprocess.run([*program, "decode", "--format", "json", *map(str, files)], check=False,
                          stdout=subprocess.PIPE)
    assert done.returncode in (0, 1), f"exit status {done.returncode}"
    return json.loads(done.stdout)["inputs"]


def check_pages(browser, program, files):
    links = 0
    inputs = inputs_of(program, files)
    with tempfile.TemporaryDirectory() as folder:
        for number, file in enumerate(files):
            url = page_of(program, folder, "decode", file)
            browser.get(url)
            check_text(browser.execute_script(TEXT_SCRIPT), inputs[number], file.name)
            if number == 0:
                check_keys(browser)
                check_without_script(browser, url)
            count, wrong = browser.execute_script(LINK_SCRIPT)
            assert not wrong, f"{file.name}: {wrong[:3]}"
            links += count
            console = browser.get_log("browser")
            assert not console, f"{file.name}: {console[:3]}"
    print(f"{len(files)} pages, {links} fields")


def check_other_pages(browser, program, samples):
    pages = [("uvc-camera", ["tree", samples / "uvc-camera.txt"]),
             ("usb2.config.total-length", ["check", samples / "malformed-wrong-total.txt"]),
             ("bNumInterfaces", ["diff", samples / "hid-keyboard.txt",
                                 samples / "hid-keyboard-mouse-composite.txt"])]
    with tempfile.TemporaryDirectory() as folder:
        for text, command in pages:
            browser.get(page_of(program, folder, *command))
            broken = browser.execute_script(BROKEN_SCRIPT)
            assert not broken, f"{command[0]}: {broken[:3]} lead nowhere"
            assert text in browser.find_element(By.TAG_NAME, "body").text, f"{command[0]}: no {text}"
            console = browser.get_log("browser")
            assert not console, f"{command[0]}: {console[:3]}"


def take_pictures(program, samples, target):
    target.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        for name, width, height in PICTURES:
            browser = start_browser((width, height))
            try:
                browser.get(page_of(program, folder, "decode", samples / f"{name}.txt"))
                browser.save_screenshot(str(target / f"{name}.png"))
            finally:
                browser.quit()


def main():
    arguments = sys.argv[1:]
    pictures = None
    if arguments[0] == "--pictures":
        pictures, arguments = pathlib.Path(arguments[1]), arguments[2:]
    samples = pathlib.Path(arguments[0]) / "examples" / "captures"
    program = arguments[1:]
    try:
        start_browser().quit() if pictures is None else None
    except (WebDriverException, OSError) as error:
        print(f"Skipped: no browser ({error}); Debian: chromium-driver")
        return
    if pictures is not None:
        take_pictures(program, samples, pictures)
        return
    files = sorted(samples.glob("*.txt"))
    captures = os.environ.get("USB_SUPPORT_CAPTURES_DIR")
    if captures:
        files += sorted(pathlib.Path(captures).glob("*/*.bin"))
    browser = start_browser()
    try:
        check_pages(browser, program, files)
        check_other_pages(browser, program, samples)
    finally:
        browser.quit()


if __name__ == "__main__":
    main()
