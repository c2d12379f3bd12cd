#!/usr/bin/env python3
"""Tests of check_rooms.py on small made-up trees."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_rooms  # noqa: E402


class CheckRooms(unittest.TestCase):
    def check(self, files):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, includes in files.items():
                path = root / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text("".join(f"#include <{include}>\n" for include in includes), encoding="utf-8")
            return check_rooms.check(root)

    def test_downwards_is_fine(self):
        self.assertEqual(self.check({
            "usb_support/log/a.h": ["usb_support/text/b.h", "vector"],
            "usb_support/text/b.h": [],
            "usb_rules/r.cpp": ["usb_support/log/a.h", "usb_fields/f.h"],
            "usb_fields/f.h": [],
            "standalone_suite/s.cpp": ["usb_support/suite_interfaces/i.h", "usb_support/platform/export.h"],
        }), [])

    def test_upwards(self):
        faults = self.check({"usb_support/text/b.h": ["usb_support/log/a.h"]})
        self.assertEqual(faults, ["usb_support/text/b.h includes <usb_support/log/a.h>: text is below log"])

    def test_unknown_room(self):
        self.assertIn("attic is not a room", self.check({"usb_support/attic/b.h": ["usb_support/text/a.h"]})[0])

    def test_between_libraries(self):
        self.assertEqual(len(self.check({"usb_fields/f.h": ["usb_support/text/b.h"]})), 1)
        self.assertEqual(len(self.check({"usb_support/text/b.h": ["standalone_suite/s.h"]})), 1)
        self.assertEqual(len(self.check({"standalone_suite/s.h": ["usb_support/text/b.h"]})), 1)
        self.assertEqual(self.check({"tools/usbdesc/t.h": ["usb_support/text/b.h", "standalone_suite/s.h"]}), [])

    def test_circle_of_files(self):
        faults = self.check({"tools/usbdesc/a.cpp": ["tools/usbdesc/b.h"], "tools/usbdesc/b.h": ["tools/usbdesc/a.h"],
                             "tools/usbdesc/a.h": []})
        self.assertEqual(len(faults), 1)
        self.assertIn("files include each other", faults[0])

    def test_circle_of_rooms_of_one_rank(self):
        faults = self.check({"usb_support/status/a.h": ["usb_support/descriptors/b.h"],
                             "usb_support/descriptors/b.h": [],
                             "usb_support/descriptors/c.h": ["usb_support/status/d.h"], "usb_support/status/d.h": []})
        self.assertEqual(len(faults), 1)
        self.assertIn("rooms include each other", faults[0])

    def test_tests_are_free(self):
        self.assertEqual(self.check({"usb_support/text/b_test.cpp": ["usb_support/log/a.h"]}), [])


if __name__ == "__main__":
    unittest.main()
