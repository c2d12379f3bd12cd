#!/usr/bin/env python3
"""Writes the tables of both debuggers' views from those of the library: names of descriptor types, texts of failures.

Usage: make_views.py [--check]. With --check nothing is written, and the exit status is 1 when a table is not current.
"""

import pathlib
import re
import sys
import xml.sax.saxutils

ROOT = pathlib.Path(__file__).parents[1]
DESCRIPTORS = ROOT / "usb_support/descriptors"
TYPE = re.compile(r"^inline constexpr std::uint8_t k\w+Type =\s+(0x\w\w);\s+///< (.+)$", re.MULTILINE)
FAILURE = re.compile(r'^USB_SUPPORT_FAILURE\(\w+, 0x80(\w{6}), "(.*)"\)$', re.MULTILINE)


def rows():
    """(types, failures), each a list of (code as text, name)."""
    types = [row for name in ("records.h", "further_records.h") for row in TYPE.findall((DESCRIPTORS / name).read_text())]
    failures = FAILURE.findall((ROOT / "usb_support/status/failures.inc").read_text())
    return sorted(types), [("0x" + code[2:], text.replace('\\"', '"')) for code, text in failures]


def gdb_tables(types, failures):
    def quoted(text):
        return "'%s'" % text if '"' in text else '"%s"' % text

    yield "DESCRIPTOR_TYPES = {", [f"    {code}: {quoted(name)}," for code, name in types], "}"
    yield "FAILURES = {", [f"    {code}: {quoted(text)}," for code, text in failures], "}"


def natvis_tables(types, failures):
    def line(condition, text):
        return f'    <DisplayString Condition="{condition}">{text}</DisplayString>'

    yield (
        '  <Type Name="TQ_USB_COMMON_DESCRIPTOR">',
        [line(f"bDescriptorType == {code}", name + ", {(unsigned int)bLength}") for code, name in types],
        "    <DisplayString>type ",
    )
    yield (
        line("((unsigned int)*this &amp; 0x80000000) == 0", "Success (with warning)"),
        [
            line(f"((unsigned int)*this &amp; 0xFFFFFF) == {code}", xml.sax.saxutils.escape(text))
            for code, text in failures
        ],
        "    <DisplayString>{(unsigned int)*this,X}",
    )


def with_tables(text, tables):
    for before, lines, after in tables:
        start = text.index(before) + len(before)
        end = text.index("\n" + after, start)
        text = text[:start] + "".join("\n" + line for line in lines) + text[end:]
    return text


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        print(__doc__)
        return 2
    status = 0
    for name, tables in (("usb_support-gdb.py", gdb_tables), ("usb_support.natvis", natvis_tables)):
        path = pathlib.Path(__file__).parent / name
        old = path.read_text(encoding="utf-8")
        new = with_tables(old, tables(*rows()))
        if new != old and check:
            print(f"{path}: run debugger/make_views.py")
            status = 1
        elif new != old:
            path.write_text(new, encoding="utf-8")
    return status


if __name__ == "__main__":
    sys.exit(main())
