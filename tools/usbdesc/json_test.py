"""Validates what usbdesc writes as JSON and JUnit XML: json_test.py SOURCE PROGRAM...

PROGRAM may be several words (an emulator first). Every sample, and every capture in the folder that
USB_SUPPORT_CAPTURES_DIR names, is decoded and listed, validated against the schemas in docs/, and
looked at for what a schema cannot say: the fields of a descriptor are in order and, with what is
not described, make up its length; the bytes of all descriptors, or items, are those of the run. Each
is judged, too: the JSON is validated, the XML is read by a parser, and both have the same counts.
"""
import json
import os
import pathlib
import subprocess
import sys
import xml.etree.ElementTree

try:
    import jsonschema
except ImportError:
    print("Skipped: Python's jsonschema is not installed (Debian: python3-jsonschema)")
    sys.exit(0)

PIECES = 200  # files for one run of the program


def check_descriptor(descriptor, where):
    at = 0
    for field in descriptor["fields"]:
        assert field["offset"] == at, f"{where}: {field['name']} does not begin where the last ended"
        at = min(at + field["size"], descriptor["length"])
        for bits in field.get("bits", []):
            wanted = field["value"] >> bits["low"] & (2 << bits["high"] - bits["low"]) - 1
            assert bits["value"] == wanted, f"{where}: {field['name']}, {bits['name']}"
    assert at + descriptor["not_described"] == descriptor["length"], f"{where}: length"


def check_run(run, where):
    at = 0
    if "items" in run:
        for item in run["items"]:
            assert item["offset"] == at, f"{where}: a gap before the item at {item['offset']}"
            at += item["length"]
        assert at == len(run["hex"]) // 2, f"{where}: bytes without an item"
        return
    for descriptor in run["descriptors"]:
        assert descriptor["offset"] == at, f"{where}: a gap before {descriptor['offset']}"
        check_descriptor(descriptor, f"{where}, descriptor at {at}")
        at += descriptor["length"]
    length = len(run["hex"]) // 2
    end = run["end"]
    assert end["offset"] + end["left"] == length, f"{where}: end"
    assert (end["reason"] == "complete") == (end["left"] == 0), f"{where}: reason of the end"
    if end["reason"] in ("complete", "past the end"):
        assert at == length, f"{where}: bytes without a descriptor"


def validator_of(source, command):
    path = source / "docs" / f"usbdesc-{command}.schema.json"
    schema = json.loads(path.read_text("utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def output_of(program, *arguments):
    done = subprocess.run([*program, *map(str, arguments)], check=False, stdout=subprocess.PIPE)
    assert done.returncode in (0, 1), f"exit status {done.returncode}"
    return json.loads(done.stdout)


def check_trees_and_differences(source, program, samples):
    tree = output_of(program, "tree", "--format", "json", *samples)
    validator_of(source, "tree").validate(tree)
    assert len(tree["devices"]) >= len(samples)
    validator = validator_of(source, "diff")
    for before, after in zip(samples, [*samples[1:], samples[-1]]):
        difference = output_of(program, "diff", "--check", "--format", "json", before, after)
        validator.validate(difference)
        assert (difference["changes"] == []) == (before == after)


def check_judged(source, program, files):
    def output(*options):
        done = subprocess.run([*program, "check", "--level", "should", *options, *files], check=False,
                              stdout=subprocess.PIPE)
        assert done.returncode in (0, 1), f"exit status {done.returncode}"
        return done.stdout

    document = json.loads(output("--format", "json"))
    validator = validator_of(source, "check")
    validator.validate(document)
    validator.validate(json.loads(output("--format", "json", "--all", "--rule", "usb2.config.")))
    devices = [device for one in document["inputs"] for device in one["devices"]]
    suites = list(xml.etree.ElementTree.fromstring(output("--format", "junit")))
    assert len(suites) == len(devices) >= len(files)
    for device, suite in zip(devices, suites):
        assert suite.get("name") == device["name"]
        assert int(suite.get("failures")) == device["fail"] == len(suite.findall("testcase/failure"))
        skipped = device["accepted"] + device["not_applicable"] + device["not_run"]
        assert int(suite.get("skipped")) == skipped == len(suite.findall("testcase/skipped"))
        assert int(suite.get("tests")) == len(suite) == skipped + device["pass"] + device["fail"]
        for rule in device["rules"]:
            assert (rule["outcome"] in ("fail", "accepted")) == ("findings" in rule)


def check_unread(source, program):
    """An input that cannot be read is in the document, with the reason, between those that can."""
    good = source / "examples" / "captures" / "hid-keyboard.txt"
    for command in ("check", "decode", "list"):
        done = subprocess.run([*program, command, "--format", "json", good, source / "no-file", good], check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert done.returncode == 2, f"{command}: exit status {done.returncode}"
        document = json.loads(done.stdout)
        validator_of(source, command).validate(document)
        first, unread, last = document["inputs"]
        assert first == last and len(first["devices"]) == 1 and "error" not in first, command
        assert unread["name"].endswith("no-file") and unread["error"] and unread["devices"] == [], command


def main():
    source = pathlib.Path(sys.argv[1])
    program = sys.argv[2:]
    validators = {command: validator_of(source, command) for command in ("decode", "list")}
    files = sorted((source / "examples" / "captures").glob("*.txt"))
    check_trees_and_differences(source, program, files)
    check_unread(source, program)
    captures = os.environ.get("USB_SUPPORT_CAPTURES_DIR")
    if captures:
        files += sorted(pathlib.Path(captures).glob("*/*.bin"))
        files += sorted(path for path in pathlib.Path(captures).iterdir() if path.is_dir())
    runs = 0
    for first in range(0, len(files), PIECES):
        some = files[first:first + PIECES]
        documents = {}
        for command, validator in validators.items():
            documents[command] = output_of(program, command, "--format", "json", *some)
            validator.validate(documents[command])
            assert len(documents[command]["inputs"]) == len(some)
        check_judged(source, program, some)
        document = documents["decode"]
        for one in document["inputs"]:
            for device in one["devices"]:
                for run in device["runs"]:
                    runs += 1
                    check_run(run, one["name"])
    print(f"{len(files)} files, {runs} runs")


if __name__ == "__main__":
    main()
