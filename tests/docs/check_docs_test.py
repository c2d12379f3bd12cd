#!/usr/bin/env python3
"""Checks that check_docs.py finds each fault that a document can have, and no fault in a good one."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
CHECK_DOCS = pathlib.Path(__file__).resolve().parent / "check_docs.py"
COMPILER = sys.argv[1] if len(sys.argv) > 1 else "c++"


def fenced(marker, text, language="text"):
    return f"<!-- check: {marker} -->\n```{language}\n{text}```\n"


class CheckDocs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = pathlib.Path(folder.name) / "source"
        self.bin = pathlib.Path(folder.name) / "bin"
        for name in ("docs", "examples", "usb_support", "standalone_suite", "tools"):
            (self.source / name).mkdir(parents=True)
        self.bin.mkdir()
        self.program("hello", "echo hello")

    def program(self, name, command):
        file = self.bin / name
        file.write_text(f"#!/bin/sh\n{command}\n", encoding="utf-8")
        file.chmod(0o755)

    def check(self, text, *options):
        """The status and the faults for a project with only a README.md with this text."""
        (self.source / "README.md").write_text(text, encoding="utf-8")
        result = subprocess.run(
            [sys.executable, CHECK_DOCS, "--source", self.source, "--bin", self.bin, "--library", self.bin / "none.so",
             "--compiler", COMPILER, *options, "README.md"], capture_output=True, text=True, check=False)
        return result.returncode, result.stderr

    def assert_fault(self, text, fault):
        status, faults = self.check(text)
        self.assertEqual(status, 1)
        self.assertIn(fault, faults)

    def assert_good(self, text):
        self.assertEqual(self.check(text), (0, ""))

    def test_a_block_needs_a_check(self):
        self.assert_fault("```text\nhello\n```\n", "README.md:1: the block has no <!-- check")
        self.assert_fault(fenced("hope", "hello\n"), "is not a way to check")
        self.assert_fault(fenced("none", "hello\n"), "is not a way to check")
        self.assert_good(fenced("none, because it is a test", "hello\n"))

    def test_a_block_needs_an_end(self):
        self.assert_fault("text\n```text\nhello\n", "README.md:2: the block has no end")

    def test_output_is_compared(self):
        self.assert_good(fenced("output of hello", "hello\n"))
        self.assert_fault(fenced("output of hello", "hello \n"), "-hello \n+hello")
        self.assert_fault(fenced("output of nobody", "hello\n"), "neither compiled here nor built")
        self.program("bad", "echo hello; exit 3")
        self.assert_fault(fenced("output of bad", "hello\n"), "status 3")

    def test_a_session_is_compared(self):
        self.assert_good(fenced("session", "$ hello\nhello\n$ false\n"))
        self.assert_fault(fenced("session", "$ hello\n"), "+hello")
        self.assert_fault(fenced("session", "hello\n"), "no line of the session")
        self.assert_fault(fenced("session", "$ no_such_program\n"), "was not found")

    def test_commands_succeed_one_after_the_other(self):
        self.assert_good(fenced("run", "mkdir there\ncd there\n") + fenced("write note", "hello\n")
                         + fenced("session", "$ basename $PWD\nthere\n$ cat note\nhello\n"))
        self.assert_fault(fenced("run", "false\ntrue\n"), "status 1")

    def test_only_the_documents_folder_is_written(self):
        self.assert_fault(fenced("write /usb_support_note", "hello\n"), "is outside")
        self.assertFalse(pathlib.Path("/usb_support_note").exists())

    def test_programs_are_compiled_and_run(self):
        subprocess.run([COMPILER, "-shared", "-o", self.bin / "none.so", "-x", "c++", os.devnull], check=True)
        self.assert_good(fenced("compile good", "int main() { return 0; }\n", "cpp"))
        self.assert_fault(fenced("compile bad", "int main() { return x; }\n", "cpp"), "README.md:2")
        self.assert_fault(fenced("compile sad", "int main() { return 4; }\n", "cpp"), "status 4")

    def test_files_are_compared(self):
        (self.source / "examples" / "hello.cpp").write_text("int a;\n  int b;\n    int c;\n", encoding="utf-8")
        self.assert_good(fenced("part of examples/hello.cpp", "int b;\n  int c;\n", "cpp"))
        self.assert_fault(fenced("part of examples/hello.cpp", "int b;\nint c;\n", "cpp"), "are not in")
        self.assert_fault(fenced("file examples/hello.cpp", "int a;\n", "cpp"), "+  int b;")
        self.assert_fault(fenced("part of examples/none.cpp", "int b;\n", "cpp"), "does not exist")
        (self.source / "examples" / "unbuilt.cpp").write_text("int a;\n", encoding="utf-8")
        self.assert_fault(fenced("part of examples/unbuilt.cpp", "int a;\n", "cpp"), "nothing compiles it")

    def test_long_commands_exist(self):
        self.assert_good(fenced("exists, because it is long", "hello   # a comment\n"))
        self.assert_fault(fenced("exists, because it is long", "./scripts/none\n"), "./scripts/none does not exist")

    def test_update_writes_what_is(self):
        text = "before\n" + fenced("output of hello", "old\nlines\n") + "after\n"
        self.assertEqual(self.check(text, "--update")[0], 0)
        self.assertEqual((self.source / "README.md").read_text(encoding="utf-8"),
                         "before\n" + fenced("output of hello", "hello\n") + "after\n")


class Facts(unittest.TestCase):
    """The checks of check_docs.py for more than the blocks of a document."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = pathlib.Path(folder.name)
        for name in ("docs", "usb_support", "standalone_suite", "tools"):
            (self.source / name).mkdir()
        sys.path.insert(0, str(CHECK_DOCS.parent))
        self.addCleanup(sys.path.pop, 0)
        import check_docs
        self.check_docs = check_docs

    def write(self, path, text):
        (self.source / path).write_text(text, encoding="utf-8")

    def test_every_logged_text_is_documented(self):
        self.write("usb_support/a.cpp", 'LogFormatted(log, status, "Size %u "\n  "of \\"x\\"", 1); // "not this"\n')
        self.write("usb_support/a_test.cpp", 'LogWrite(log, status, "nor this");\n')
        self.write("docs/log.md", "Size %u of")
        self.assertEqual(list(self.check_docs.check_log_texts(self.source)),
                         ['docs/log.md: the text "Size %u of "x"" of usb_support/a.cpp is missing'])
        self.write("docs/log.md", '`Size %u of "x"`')
        self.assertEqual(list(self.check_docs.check_log_texts(self.source)), [])

    def test_settings_are_those_that_are_read(self):
        self.write("usb_support/a.cpp", 'ReadSwitch("One"); EnvironmentVariable("TWO");\n')
        self.write("docs/settings.md", "| `One` | x |\n| `Three` | x |\n")
        self.assertEqual(list(self.check_docs.check_settings(self.source)),
                         ['docs/settings.md: "TWO" is read and has no row',
                          'docs/settings.md: "Three" has a row and is never read'])

    def test_every_purpose_is_documented(self):
        self.write("usb_support/a.h", "// Deliberately odd.\n")
        self.write("docs/deliberate.md", "")
        self.assertEqual(list(self.check_docs.check_deliberate(self.source)),
                         ["docs/deliberate.md: usb_support/a.h is deliberately odd and is not linked"])
        self.write("docs/deliberate.md", "[a](../usb_support/a.h)")
        self.assertEqual(list(self.check_docs.check_deliberate(self.source)), [])

    def test_links_lead_somewhere(self):
        self.write("README.md", "# A title, here\n[a](docs/b.md#two-words) [b](none.md) [c](#a-title-here) [d](#no)\n")
        self.write("docs/b.md", "## Two `words`\n")
        documents = [self.check_docs.Document(self.source, "README.md")]
        self.assertEqual(list(self.check_docs.check_links(self.source, documents)),
                         ["README.md:2: none.md does not exist", "README.md:2: #no: the heading does not exist"])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
