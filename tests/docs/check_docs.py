#!/usr/bin/env python3
"""Checks README.md and docs/: compiles and runs their code, compares their output, follows their links.

Every fenced block follows a comment that states how it is checked:

  <!-- check: file PATH -->            it is an exact copy of that file of the project
  <!-- check: part of PATH -->         it is a run of whole lines of that file, except for the indentation
  <!-- check: compile NAME -->         it is a program; it is compiled, and run when nothing else runs it
  <!-- check: output of PROGRAM … -->  it is the output of a program: one that was compiled before, or a built one
  <!-- check: write PATH -->           it is written to that file, for the commands after it
  <!-- check: consumer -->             it finds the installed library, in a project that builds the program my_test
  <!-- check: run -->                  its commands are run and succeed
  <!-- check: session -->              its lines after "$ " are commands, with any status; the others are their output
  <!-- check: exists, because … -->    its commands take too long or change the system; only their programs must exist
  <!-- check: none, because … -->      nothing is checked

Two of them are joined by a semicolon. A document's commands run one after the other, from a folder that looks like a
clone without build folders; its programs find the built ones by name. A document that uses ../installed or has a
consumer, and installs nothing itself, finds the build installed there. With --update, shown output, copies of files
and pictures are rewritten.
"""

import argparse
import concurrent.futures
import difflib
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import textwrap
import time

MARKER = re.compile(r"^<!-- check: (.*) -->$")
FENCE = re.compile(r"^( *)(```+)(\S*)\s*$")
TIME_LIMIT = 300  # seconds that one command may take


class Fault(Exception):
    """One thing that is wrong with a document."""


class Block:
    def __init__(self, path, line, marker, lines):
        self.path = path
        self.line = line  # of the opening fence, from 1
        self.end = line + len(lines) + 1  # of the closing fence
        self.marker = marker
        self.text = "".join(one + "\n" for one in lines)
        self.replacement = None

    def fault(self, message):
        return Fault(f"{self.path}:{self.line}: {message}")


def difference(expected, actual, expected_name, actual_name):
    lines = difflib.unified_diff(expected.splitlines(), actual.splitlines(), expected_name, actual_name, lineterm="")
    return "\n".join(lines) or "only the line end of the last line differs"


class Document:
    """The lines of a document and its fenced blocks."""

    def __init__(self, source, path):
        self.path = path
        self.file = source / path
        self.lines = self.file.read_text(encoding="utf-8").split("\n")
        self.blocks = []
        self.prose = []  # the lines that are in no block, with their numbers
        self._read()

    def _read(self):
        opening = None
        for number, line in enumerate(self.lines, 1):
            fence = FENCE.match(line)
            if opening is None:
                if fence:
                    opening = (number, fence)
                else:
                    self.prose.append((number, line))
            elif fence and fence[2] == opening[1][2] and not fence[3]:
                start, first = opening
                before = self.lines[start - 2] if start > 1 else ""
                marker = MARKER.match(before.strip())
                lines = [one.removeprefix(first[1]) for one in self.lines[start:number - 1]]
                self.blocks.append(Block(self.path, start, marker and marker[1], lines))
                opening = None
        if opening:
            raise Fault(f"{self.path}:{opening[0]}: the block has no end")

    def headings(self):
        """The anchors of the headings, as GitHub makes them."""
        anchors = set()
        for _, line in self.prose:
            if found := re.match(r"#+ (.*)", line):
                title = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", found[1]).lower()
                anchor = re.sub(r"[^\w\- ]", "", title).strip().replace(" ", "-")
                copies = sum(1 for one in anchors if one == anchor or re.fullmatch(re.escape(anchor) + r"-\d+", one))
                anchors.add(f"{anchor}-{copies}" if copies else anchor)
        return anchors

    def links(self):
        for number, line in self.prose:
            for target in re.findall(r"\]\(([^)\s]+)\)", re.sub(r"`[^`]*`", "", line)):
                yield number, target

    def rewrite(self):
        """Writes the blocks that have a replacement; returns whether there were any."""
        changed = [block for block in self.blocks if block.replacement is not None]
        for block in reversed(changed):
            indent = FENCE.match(self.lines[block.line - 1])[1]
            new = block.replacement.removesuffix("\n").split("\n")
            self.lines[block.line:block.end - 1] = [indent + line if line else line for line in new]
        if changed:
            self.file.write_text("\n".join(self.lines), encoding="utf-8")
        return bool(changed)


class Checker:
    """Checks the blocks of one document, in its own folder."""

    def __init__(self, options, document, folder):
        self.options = options
        self.document = document
        self.folder = folder
        self.clone = folder / "usb_support"
        self.place = self.clone  # where the next command runs
        self.programs = {}  # compiled here and not yet run: name, block
        self.compiled = {}
        self.faults = []

    def check(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        for name in ("usb_support", "bin", "home"):
            (self.folder / name).mkdir(parents=True)
        for entry in self.options.source.iterdir():
            if entry.name not in ("build", ".git"):
                (self.clone / entry.name).symlink_to(entry)
        commands = "".join(block.text for block in self.document.blocks
                           if not (block.marker or "").startswith("exists"))
        is_consumer = any(block.marker == "consumer" for block in self.document.blocks)
        if is_consumer or ("../installed" in commands and "cmake --install" not in commands):
            install = subprocess.run(
                ["cmake", "--install", self.options.build, "--prefix", self.folder / "installed"],
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", check=False)
            if install.returncode != 0:
                self.faults.append(f"{self.options.build} cannot be installed; is it built?\n{install.stdout}")
                return self.faults
        for block in self.document.blocks:
            try:
                self.check_block(block)
            except Fault as fault:
                self.faults.append(str(fault))
        for name, block in list(self.programs.items()):
            try:
                self.run(block, [str(self.compiled[name])])
            except Fault as fault:
                self.faults.append(str(fault))
        return self.faults

    def check_block(self, block):
        if block.marker is None:
            raise block.fault("the block has no <!-- check: … --> on the line before it")
        for check in block.marker.split("; "):
            for prefix, method in (
                    ("file ", self.check_file), ("part of ", self.check_part), ("compile ", self.check_compile),
                    ("output of ", self.check_output), ("write ", self.check_write)):
                if check.startswith(prefix):
                    method(block, check.removeprefix(prefix))
                    break
            else:
                if check == "run":
                    self.shell(block, block.text)
                elif check == "consumer":
                    self.check_consumer(block)
                elif check == "session":
                    self.check_session(block)
                elif check.startswith("exists, because "):
                    self.check_exists(block)
                elif not check.startswith("none, because "):
                    raise block.fault(f"\"check: {check}\" is not a way to check a block")

    def compare(self, block, actual, name):
        if actual == block.text:
            return
        if self.options.update:
            block.replacement = actual
            return
        raise block.fault(f"the block is not {name}; tests/docs/check_docs.py --update writes what is\n"
                          + difference(block.text, actual, "the document", name))

    def project_file(self, block, path):
        file = self.options.source / path
        if not file.is_file():
            raise block.fault(f"{path} does not exist")
        if file.suffix == ".cpp" and not (self.options.bin / file.stem).exists():
            raise block.fault(f"{path} belongs to no program in {self.options.bin}, so nothing compiles it")
        return file.read_text(encoding="utf-8")

    def check_file(self, block, path):
        self.compare(block, self.project_file(block, path), path)

    def check_part(self, block, path):
        wanted = textwrap.dedent(block.text).split("\n")[:-1]
        lines = self.project_file(block, path).split("\n")
        for start in range(len(lines) - len(wanted) + 1):
            if textwrap.dedent("\n".join(lines[start:start + len(wanted)])).split("\n") == wanted:
                return
        raise block.fault(f"these lines are not in {path}")

    def check_compile(self, block, name):
        source = self.folder / "bin" / f"{name}.cpp"
        source.write_text(block.text, encoding="utf-8")
        program = source.with_suffix("")
        libraries = [str(library) for library in self.options.library]
        folders = {f"-Wl,-rpath,{pathlib.Path(library).parent}" for library in libraries}
        self.run(block, [self.options.compiler, "-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion",
                         "-Wshadow", "-Werror", f"-I{self.options.source}", str(source), "-o", str(program),
                         *libraries, *sorted(folders)])
        self.programs[name] = block
        self.compiled[name] = program

    def check_output(self, block, command):
        name, *arguments = shlex.split(command)
        program = self.compiled.get(name, self.options.bin / name)
        if not program.exists():
            raise block.fault(f"{name} was neither compiled here nor built in {self.options.bin}")
        self.programs.pop(name, None)
        self.compare(block, self.run(block, [str(program), *arguments]).stdout, f"the output of {command}")

    def check_write(self, block, path):
        file = self.place / path
        if not file.resolve().is_relative_to(self.folder.resolve()):
            raise block.fault(f"{path} is outside the document's folder")
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(block.text if block.replacement is None else block.replacement, encoding="utf-8")

    def check_consumer(self, block):
        project = self.folder / "consumer"
        project.mkdir(exist_ok=True)
        head = "cmake_minimum_required(VERSION 3.25)\nproject(my_test CXX)\nadd_executable(my_test main.cpp)\n"
        (project / "CMakeLists.txt").write_text(head + block.text, encoding="utf-8")
        shutil.copy(self.options.source / "examples" / "first_test_program.cpp", project / "main.cpp")
        self.run(block, ["cmake", "-S", str(project), "-B", str(project / "build"), "-G", "Ninja",
                         f"-DCMAKE_PREFIX_PATH={self.folder / 'installed'}"])
        self.run(block, ["cmake", "--build", str(project / "build")])

    def check_session(self, block):
        actual = ""
        for line in block.text.split("\n"):
            if line.startswith("$ "):
                actual += line + "\n" + self.shell(block, line[2:], any_status=True, both=True)
        if "$ " not in block.text:
            raise block.fault("no line of the session begins with \"$ \"")
        self.compare(block, actual, "what the commands print")

    def check_exists(self, block):
        for line in block.text.replace("\\\n", " ").split("\n"):
            words = shlex.split(line, comments=True)
            if words and not shutil.which(words[0], path=self.environment()["PATH"]) \
                    and not os.access(self.clone / words[0], os.X_OK):
                raise block.fault(f"{words[0]} does not exist, or is not a program")

    def environment(self):
        keep = {name: os.environ[name] for name in os.environ
                if name.startswith(("CCACHE_", "CMAKE_")) or name in ("PATH", "TMPDIR", "USER")}
        return {
            "CCACHE_DIR": str(pathlib.Path.home() / ".cache" / "ccache"),
            **keep,
            "PATH": os.pathsep.join([str(self.options.bin), os.environ["PATH"]]),
            "HOME": str(self.folder / "home"),
            "LC_ALL": "C.UTF-8",
            "CXX": self.options.compiler,
        }

    def run(self, block, command, any_status=False, both=False):
        try:
            result = subprocess.run(
                command, cwd=self.place, env=self.environment(), stdin=subprocess.DEVNULL, encoding="utf-8",
                errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT if both else subprocess.PIPE,
                timeout=TIME_LIMIT, check=False)
        except subprocess.TimeoutExpired:
            raise block.fault(f"{command[0]} did not end within {TIME_LIMIT} seconds") from None
        if result.returncode != 0 and not any_status:
            raise block.fault(f"{' '.join(command)}: status {result.returncode}\n{result.stdout}{result.stderr or ''}")
        return result

    def shell(self, block, commands, any_status=False, both=False):
        """Runs commands in the folder where the last ones ended, until one fails."""
        place = self.folder / "place"
        script = f"trap 'status=$?; pwd >{shlex.quote(str(place))}; exit $status' EXIT\n" + commands
        result = self.run(block, ["bash", *([] if any_status else ["-e"]), "-c", script], any_status, both)
        if result.returncode == 127:
            raise block.fault(f"a command was not found: {result.stdout}{result.stderr or ''}")
        self.place = pathlib.Path(place.read_text(encoding="utf-8").rstrip("\n"))
        return result.stdout


def read(source, path):
    return (source / path).read_text(encoding="utf-8")


def sources(source, folder):
    for file in sorted((source / folder).rglob("*")):
        if file.suffix in (".h", ".cpp") and not file.stem.endswith("_test"):
            yield file.relative_to(source)


def literals(text):
    """The string literals in C++ code, adjacent ones joined; escapes stay as they are written, except \\"."""
    for found in re.finditer(r'(?:"(?:[^"\\\n]|\\.)*"\s*)+', text):
        yield "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', found[0])).replace('\\"', '"')


def without_comments(text):
    return re.sub(r'("(?:[^"\\\n]|\\.)*")|//[^\n]*', lambda found: found[1] or "", text)


def arguments_at(text, opening):
    """The text between the parenthesis at `opening` and its partner."""
    depth = 0
    for at in range(opening, len(text)):
        depth += {"(": 1, ")": -1}.get(text[at], 0)
        if depth == 0:
            return text[opening + 1:at]
    return text[opening + 1:]


# Calls that write to the log, throw, or make the text for either.
WRITING_CALL = re.compile(r"\b(?:LogFormatted|LogWrite|DoWritePrintOnly|DoWritePrintLnOnly|Log|log|Format|FormatText|"
                          r"Raise|runtime_error|length_error)(?:<[^;(]*>)?\s*\(")


def check_log_texts(source):
    """Every text that the library logs, throws or labels with is in docs/log.md."""
    page = read(source, "docs/log.md")
    for path in sources(source, "usb_support"):
        if path.suffix != ".cpp" or path.name == "log_assert.cpp":  # ten lengths of the same text
            continue
        code = without_comments(read(source, path))
        if path.name == "labels.cpp":
            texts = [text.strip(" ()") for text in literals(re.sub(r"#include[^\n]*", "", code)) if len(text) > 2]
        else:
            texts = []
            for call in WRITING_CALL.finditer(code):
                first = next(literals(arguments_at(code, call.end() - 1)), "")
                if re.search(r"[A-Za-z%.]", first):
                    texts.append(first)
        for text in texts:
            if text.strip() not in page:
                yield f"docs/log.md: the text \"{text}\" of {path} is missing"


def check_settings(source):
    """docs/settings.md has every setting and environment variable that is read, and no other."""
    read_call = re.compile(r'\b(?:ReadSwitch|IsOn|GetAppSetting|EnvironmentVariable|getenv)\(\s*"([^"]+)"')
    wanted = set()
    for folder in ("usb_support", "standalone_suite", "tools"):
        for path in sources(source, folder):
            wanted |= set(read_call.findall(read(source, path)))
    shown = set(re.findall(r"^\| `(\w+)` \|", read(source, "docs/settings.md"), re.MULTILINE))
    for key in sorted(wanted - shown):
        yield f"docs/settings.md: \"{key}\" is read and has no row"
    for key in sorted(shown - wanted):
        yield f"docs/settings.md: \"{key}\" has a row and is never read"


def check_deliberate(source):
    """docs/deliberate.md links every file that is deliberately odd."""
    page = read(source, "docs/deliberate.md")
    for path in sources(source, "usb_support"):
        if re.search(r"\bon purpose|\bdeliberate", read(source, path), re.IGNORECASE):
            names = {str(path.with_suffix(suffix)) for suffix in (".h", ".cpp")}
            if not any(f"(../{name})" in page for name in names):
                yield f"docs/deliberate.md: {path} is deliberately odd and is not linked"


def check_pictures(options, folder):
    """The pictures are what docs/pictures/draw draws, and every one is shown."""
    pictures = options.source / "docs" / "pictures"
    drawn = pictures if options.update else folder / "pictures"
    result = subprocess.run([sys.executable, pictures / "draw", "--bin", options.bin, "--to", drawn],
                            capture_output=True, text=True, check=False)
    if result.returncode != 0:
        yield result.stderr.strip()
        return
    shown = "".join(read(options.source, path) for path in papers(options.source))
    names = {file.name for file in pictures.glob("*.svg")} | {file.name for file in drawn.glob("*.svg")}
    for name in sorted(names):
        files = [place / name for place in (pictures, drawn)]
        if not all(file.exists() for file in files):
            yield f"docs/pictures/{name}: either drawn or kept, not both; check_docs.py --update keeps what is drawn"
        elif files[0].read_bytes() != files[1].read_bytes():
            yield f"docs/pictures/{name}: differs from what docs/pictures/draw draws; check_docs.py --update keeps that"
        if f"pictures/{name})" not in shown:
            yield f"docs/pictures/{name}: no document shows it"


def check_links(source, documents):
    """Every relative link leads to a file of the project, and its anchor to a heading."""
    anchors = {}
    for document in documents:
        for number, target in document.links():
            if re.match(r"[a-z]+:", target):
                continue
            path, _, anchor = target.partition("#")
            file = (document.file.parent / path).resolve() if path else document.file.resolve()
            if not file.exists():
                yield f"{document.path}:{number}: {target} does not exist"
            elif anchor and file.suffix == ".md":
                if file not in anchors:
                    anchors[file] = Document(source, file.relative_to(source.resolve())).headings()
                if anchor not in anchors[file]:
                    yield f"{document.path}:{number}: {target}: the heading does not exist"


def papers(source):
    names = ["README.md", "CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md", "standalone_suite/README.md"]
    return [name for name in names if (source / name).exists()] + \
        sorted(str(file.relative_to(source)) for file in (source / "docs").glob("*.md"))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--source", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parents[2],
                        help="the project (default: the one that this script belongs to)")
    parser.add_argument("--build", type=pathlib.Path, help="build folder (default: build/linux)")
    parser.add_argument("--bin", type=pathlib.Path, help="built programs (default: bin in the build folder)")
    parser.add_argument("--library", type=pathlib.Path, action="append", default=[],
                        help="a library to link with (default: the three of the build folder)")
    parser.add_argument("--compiler", default="c++", help="C++ compiler of the build")
    parser.add_argument("--work", type=pathlib.Path, help="folder to work in, kept (default: a temporary one)")
    parser.add_argument("--update", action="store_true", help="rewrite shown output, copies of files and pictures")
    parser.add_argument("document", nargs="*", help="documents to check (default: all, and what concerns all)")
    options = parser.parse_args()
    options.source = options.source.resolve()
    options.build = build = (options.build or options.source / "build" / "linux").resolve()
    options.bin = (options.bin or build / "bin").resolve()
    options.library = options.library or [build / "usb_support" / "libusb_support.so",
                                          build / "standalone_suite" / "libsuite_runtime.so",
                                          build / "standalone_suite" / "libbase_support.so"]

    faults = []
    work = options.work or pathlib.Path(tempfile.mkdtemp(prefix="check_docs_"))
    work = work.resolve()
    work.mkdir(parents=True, exist_ok=True)
    try:
        names = options.document or papers(options.source)
        documents = []
        for name in names:
            try:
                documents.append(Document(options.source, name))
            except (Fault, OSError) as fault:
                faults.append(str(fault))

        def check(document):
            start = time.monotonic()
            found = Checker(options, document, work / document.path.replace("/", "_")).check()
            return found, time.monotonic() - start

        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            for document, (found, seconds) in zip(documents, pool.map(check, documents)):
                faults += found
                print(f"{document.path}: {len(document.blocks)} blocks, {len(found)} faults, {seconds:.1f} s")
        if options.update:
            for document in documents:
                if document.rewrite():
                    print(f"{document.path}: rewritten")
        if not options.document:
            faults += check_pictures(options, work)
            faults += check_links(options.source, documents)
            for facts in (check_log_texts, check_settings, check_deliberate):
                faults += facts(options.source)
    finally:
        if not options.work:
            shutil.rmtree(work, ignore_errors=True)
    for fault in faults:
        print(f"\n{fault}", file=sys.stderr)
    sys.exit(f"\ncheck_docs: {len(faults)} faults" if faults else 0)


if __name__ == "__main__":
    main()
