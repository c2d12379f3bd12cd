#!/usr/bin/env python3
"""Checks from the #include lines that no room includes a room above it.

Usage: check_rooms.py [ROOT]. Prints one line for each wrong include and exits with 1.
"""

import graphlib
import pathlib
import re
import sys

# From the bottom: a room includes itself and rooms before it, but no room after it. Rooms on one
# line have the same rank.
LIBRARY = [
    ["platform"],
    ["suite_interfaces"],
    ["text"],
    ["status", "descriptors"],
    ["fake_device"],
    ["helper"],
    ["labels"],
    ["log"],
    ["descriptor_sets", "vendor_names", "events"],
    ["usb_support.h"],
]
RANK = {room: rank for rank, rooms in enumerate(LIBRARY) for room in rooms}

# Which other top folders a top folder may include; None: any.
MAY_INCLUDE = {
    "usb_support": set(),
    "usb_fields": set(),
    "usb_devices": set(),
    "usb_rules": {"usb_fields", "usb_support"},
    "standalone_suite": {"usb_support"},
    "tools": None,
    "examples": None,
}
# The only parts of the library that the stand-in may include.
STANDALONE_SEES = re.compile(r"usb_support/(suite_interfaces/.*|platform/export\.h)")

INCLUDE = re.compile(r"^\s*#\s*include\s*<([^>]+)>", re.MULTILINE)


def is_test(path):
    return path.stem.endswith("_test") or "test_support" in path.parts


def room_of(include):
    return include.split("/")[1]


def wrong_library_include(source, include):
    """Why one file of usb_support may not include another; None when it may."""
    room, target = room_of(source), room_of(include)
    for name in (room, target):
        if name not in RANK:
            return f"{name} is not a room of usb_support"
    if RANK[target] > RANK[room]:
        return f"{room} is below {target}"
    return None


def wrong_include(source, include):
    """Why `source` may not include `include`, both as paths from the root; None when it may."""
    top, target = source.split("/")[0], include.split("/")[0]
    if target not in MAY_INCLUDE:
        return None
    if top == target:
        return wrong_library_include(source, include) if top == "usb_support" else None
    allowed = MAY_INCLUDE[top]
    if allowed is not None and target not in allowed:
        return f"{top} may not include {target}"
    if top == "standalone_suite" and not STANDALONE_SEES.fullmatch(include):
        return "standalone_suite sees only suite_interfaces and platform/export.h"
    return None


def circle(graph):
    """The members of one cycle of a graph {node: {nodes}}, as text; None when there is no cycle."""
    try:
        graphlib.TopologicalSorter(graph).prepare()
    except graphlib.CycleError as error:
        return " -> ".join(error.args[1])
    return None


def check(root):
    """All faults of the tree at `root`, one line each."""
    faults = []
    modules = {}  # a header with its source is one module
    rooms = {}
    for path in sorted(p for top in MAY_INCLUDE for p in (root / top).rglob("*")):
        if path.suffix not in (".h", ".cpp") or is_test(path):
            continue
        source = path.relative_to(root).as_posix()
        module = source.rsplit(".", 1)[0]
        for include in INCLUDE.findall(path.read_text(encoding="utf-8")):
            # The program's own headers are included from tools/.
            if not (root / include).exists() and (root / "tools" / include).exists():
                include = "tools/" + include
            reason = wrong_include(source, include)
            if reason is not None:
                faults.append(f"{source} includes <{include}>: {reason}")
            target = include.rsplit(".", 1)[0]
            if target != module and (root / include).exists():
                modules.setdefault(module, set()).add(target)
                if source.startswith("usb_support/") and room_of(source) != room_of(include):
                    rooms.setdefault(room_of(source), set()).add(room_of(include))
    for kind, graph in (("files", modules), ("rooms", rooms)):
        found = circle(graph)
        if found is not None:
            faults.append(f"{kind} include each other: {found}")
    return faults


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2])
    if not (root / "usb_support").is_dir():
        print(f"{root}: there is no folder usb_support in it")
        return 2
    faults = check(root)
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
