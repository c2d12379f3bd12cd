"""Validates the pages that usbdesc writes: html_test.py SOURCE PROGRAM...

PROGRAM may be several words (an emulator first). The pages of every sample, of a device whose texts
are an attack, and of differences must be HTML without a parse error; no element comes from a device,
and every link leads to something on the page.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

try:
    import html5lib
except ImportError:
    print("Skipped: Python's html5lib is not installed (Debian: python3-html5lib)")
    sys.exit(0)

ATTACKS = ["</td><script>alert(1)</script>", "<!--<svg onload=alert(1)>", "'\"><img src=x>",
           "&lt;b&gt;\u202e\x1b[2J\x9b31m", "\ud800\uffff\ufdd0\ufffe\x00]]>"]
ELEMENTS = {"html", "head", "meta", "title", "style", "body", "a", "header", "h1", "h2", "h3", "h4",
            "h5", "main", "section", "dl", "dt", "dd", "ol", "ul", "li", "div", "p", "b", "nav",
            "article", "span", "table", "thead", "tbody", "tr", "th", "td", "figure", "figcaption",
            "svg", "desc", "path", "g", "rect", "text", "script"}


def hostile_device(folder):
    """A device whose strings are attacks, as a folder that usbdesc reads."""
    (folder / "strings").mkdir(parents=True)
    device = bytes([18, 1, 0, 2, 0, 0, 0, 64, 9, 18, 1, 0, 0, 1, 1, 2, 3, 1])
    configuration = bytes([9, 2, 18, 0, 1, 1, 4, 0x80, 50, 9, 4, 0, 0, 0, 3, 0, 0, 5])
    (folder / "device.bin").write_bytes(device)
    (folder / "config_0.bin").write_bytes(configuration)
    for number, text in enumerate(ATTACKS, 1):
        encoded = text.encode("utf-16-le", "surrogatepass")
        name = folder / "strings" / f"{number}-0409.bin"
        name.write_bytes(bytes([2 + len(encoded), 3]) + encoded)
    return folder


def check(page, where):
    text = page.decode("utf-8")
    try:
        document = html5lib.HTMLParser(strict=True, namespaceHTMLElements=False).parse(text)
    except html5lib.html5parser.ParseError as error:
        raise AssertionError(f"{where}: {error}") from error
    scripts = 0
    ids = set()
    for element in document.iter():
        if not isinstance(element.tag, str):
            raise AssertionError(f"{where}: a comment")
        tag = element.tag.split("}")[-1]
        assert tag in ELEMENTS, f"{where}: <{tag}>"
        scripts += tag == "script"
        events = [name for name in element.attrib if str(name).startswith("on")]
        assert not events, f"{where}: {events}"
        if "id" in element.attrib:
            assert element.attrib["id"] not in ids, f"{where}: two of id {element.attrib['id']}"
            ids.add(element.attrib["id"])
    assert scripts == 1, f"{where}: {scripts} scripts"
    for element in document.iter("a"):
        assert element.attrib["href"][1:] in ids, f"{where}: {element.attrib['href']} leads nowhere"
    controls = re.search("[\x00-\x08\x0b-\x1f\x7f-\x9f]", text)
    assert controls is None, f"{where}: a control character"


def main():
    source = pathlib.Path(sys.argv[1])
    program = sys.argv[2:]
    samples = sorted((source / "examples" / "captures").glob("*.txt"))
    with tempfile.TemporaryDirectory() as temp:
        hostile = hostile_device(pathlib.Path(temp) / "device")
        runs = [["decode", "--format", "html", one] for one in [*samples, hostile]]
        runs += [["tree", "--format", "html", *samples, hostile],
                 ["check", "--format", "html", *samples, hostile],
                 ["diff", "--format", "html", samples[0], hostile],
                 ["diff", "--check", "--format", "html", samples[0], samples[1]]]
        for run in runs:
            done = subprocess.run([*program, *map(str, run)], check=False, stdout=subprocess.PIPE)
            assert done.returncode in (0, 1), f"{run}: exit status {done.returncode}"
            check(done.stdout, " ".join(map(str, run[:4])))
    print(f"{len(runs)} pages")


if __name__ == "__main__":
    main()
