"""Compares `usbdesc decode` with two programs of other people: witnesses.py SOURCE USBDESC

lsusb -v gives names and values; tshark gives names, positions and sizes. The samples are compared,
and a fixed selection of the captures in the folder that USB_SUPPORT_CAPTURES_DIR names. With
USB_SUPPORT_WITNESS_ALL=1 all captures are compared, and each line of usb_fields/samples.txt. Every
field that a witness shows must be in our output with its name and value. An intended difference is a
row of exceptions.tsv with the reason. Prints counts.
"""
import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

HERE = pathlib.Path(__file__).resolve().parent
SPREAD = 12  # an ordinary run takes one capture of this many


def ours(program, files):
    done = subprocess.run([program, "decode", "--format", "json", *files], check=False,
                          stdout=subprocess.PIPE)
    assert done.returncode in (0, 1), f"usbdesc: exit status {done.returncode}"
    return json.loads(done.stdout)["inputs"]


class Device:
    """The runs of a device, in the form that a witness needs."""

    def __init__(self, name, device, bos):
        self.name = name
        self.runs = [run for run in device["runs"] if run.get("type") in (1, 2, 7)]
        self.bos = bos
        self.speed = device["speed"]

    def bytes_of(self, kind):
        return b"".join(bytes.fromhex(run["hex"]) for run in self.runs if run["type"] in kind)

    def is_whole(self):
        kinds = [run["type"] for run in self.runs]
        return kinds[:1] == [1] and 2 in kinds and all(
            run["end"]["reason"] == "complete" for run in self.runs)


def devices_of(program, files):
    """The devices of the files; a bos.bin belongs to the descriptors.bin beside it."""
    found = []
    bos_of = {}
    inputs = ours(program, files)
    for one in inputs:
        for device in one["devices"]:
            for run in device["runs"]:
                if run.get("type") == 15:
                    bos_of[pathlib.Path(one["name"]).parent, pathlib.Path(one["name"]).stem] = run
    for one in inputs:
        path = pathlib.Path(one["name"])
        for device in one["devices"]:
            own = [run for run in device["runs"] if run.get("type") == 15]
            bos = own[0] if own else bos_of.get((path.parent, "bos"))
            candidate = Device(str(path), device, bos)
            if candidate.is_whole():
                found.append(candidate)
    return found


# --- the samples of the layouts, each in its own device

DEVICE = "12 01 %s 00 00 00 %s 34 12 78 56 00 01 00 00 00 01"


def interface(triple, endpoints):
    return bytes([9, 4, 0, 0, endpoints, *triple, 0])


def sample_body(where, sample):
    """The descriptors before the sample in its configuration, and the sample."""
    triple = bytes.fromhex(where.get("interface", "FF/00/00").replace("/", ""))
    before = b""
    if triple[0] == 0x0E and (triple[1] == 2 or sample[2] != 1):
        release = bytes.fromhex(where["bcdUVC"])[::-1]
        before = interface(b"\x0e\x01\x00", 0) + b"\x0d\x24\x01" + release + \
            b"\x0d\x00\x00\x00\x00\x00\x01\x01"
    if sample[1] == 4:
        return before + sample
    is_after_endpoint = sample[1] in (0x11, 0x12, 0x25, 0x31) or "endpoint" in where
    if triple[:2] != b"\x0e\x01" or not before:
        before += interface(triple, is_after_endpoint or sample[1] == 0x05)
    if "cdc" in where:
        before += b"\x05\x24\x00\x10\x01"
    if sample[1] == 0x25 and triple[0] == 1 and triple[2] == 0:
        before += bytes.fromhex("09 05 81 01 40 00 01 00 00")
    elif is_after_endpoint:
        before += bytes.fromhex("07 05 81 %s 00 02 08" % where.get("endpoint", "02"))
    return before + sample


def write_samples(source, folder):
    """Files with the samples that can be in a device, a configuration or a BOS."""
    files = []
    for number, line in enumerate((source / "usb_fields" / "samples.txt").read_text().splitlines()):
        if line.startswith("#"):
            continue
        layout, words, text, _ = line.split(" | ")
        where = dict((word + "=").split("=")[:2] for word in words.split())
        sample = bytes.fromhex(text)
        if {"request", "index"} & set(where) or layout == "bos.header" or sample[1] in (2, 6, 7):
            continue
        is_super = where["speed"] == "super"
        device = bytes.fromhex(DEVICE % (("00 03", "09") if is_super else ("10 02", "40")))
        is_bos = layout.startswith("bos.")
        own = folder / f"{number:03} {layout}"
        own.mkdir()
        body = interface(b"\xff\x00\x00", 0) if is_bos or sample[1] == 1 else sample_body(where, sample)
        body = struct.pack("<BBHBBBBB", 9, 2, 9 + len(body), 1, 1, 0, 0x80, 50) + body
        (own / "descriptors.bin").write_bytes((sample if sample[1] == 1 else device) + body)
        files.append(own / "descriptors.bin")
        if is_bos:
            (own / "bos.bin").write_bytes(struct.pack("<BBHB", 5, 15, 5 + len(sample), 1) + sample)
            files.append(own / "bos.bin")
    return files


# --- lsusb

LSUSB_NAMES = {"iserial": "iserialnumber", "maxpower": "bmaxpower"}
LSUSB_FIELD = re.compile(r"\s*((?:b|w|dw|i|bm|bma|ba|bcd|id|t|d|guid|qw|n)[A-Z]\w*|MaxPower|guid\w*)"
                         r"(?:\(\s*\d+\))?\s+(\S.*)?$")


def mock(device):
    descriptors = device.bytes_of((1, 2))
    hexadecimal = descriptors.hex().upper()
    speed = {"super": 5000, "super-plus": 10000, "full": 12, "low": 1.5}.get(device.speed, 480)
    attributes = {"busnum": 1, "devnum": 2, "devpath": 1, "speed": speed,
                  "bConfigurationValue": descriptors[23],
                  "idVendor": "%04x" % struct.unpack_from("<H", descriptors, 8),
                  "idProduct": "%04x" % struct.unpack_from("<H", descriptors, 10),
                  "bNumConfigurations": descriptors[17]}
    lines = ["P: /devices/pci0000:00/0000:00:14.0/usb1/1-1", f"N: bus/usb/001/002={hexadecimal}",
             "E: DEVTYPE=usb_device", "E: SUBSYSTEM=usb", "E: BUSNUM=001", "E: DEVNUM=002",
             "E: DEVNAME=/dev/bus/usb/001/002"]
    lines += [f"A: {name}={value}" for name, value in attributes.items()]
    return "\n".join([*lines, f"H: descriptors={hexadecimal}", "", ""])


def build_library(folder):
    library = folder / "answers.so"
    subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-o", library, HERE / "answers.c"], check=True)
    return library


def lsusb_of(device, library, folder):
    description = folder / "device.umockdev"
    description.write_text(mock(device))
    environment = dict(os.environ, LC_ALL="C")
    environment.pop("WITNESS_BOS", None)
    if device.bos:
        (folder / "bos").write_bytes(bytes.fromhex(device.bos["hex"]))
        environment["WITNESS_BOS"] = str(folder / "bos")
    done = subprocess.run(
        ["umockdev-run", "--device", description, "--", "env",
         f"LD_PRELOAD={library}:libumockdev-preload.so.0", "lsusb", "-v"],
        check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=environment, timeout=60)
    return done.stdout.decode("utf-8", "replace")


def lsusb_descriptors(text):
    """Lists of (name, value text), one for each descriptor. Those of CDC and companions begin without
    length and type: their first entry is ("cdc", "") or ("companion", "").
    """
    descriptors = []
    for line in text.splitlines():
        match = LSUSB_FIELD.match(line)
        if re.match(r"\s+CDC [\w ]+:$", line):
            descriptors.append([("cdc", "")])
        if not match:
            continue
        name, value = match.group(1), match.group(2) or ""
        if name == "bLength":
            descriptors.append([])
        elif name == "bMaxBurst":
            descriptors.append([("companion", "")])
        if descriptors:
            descriptors[-1].append((name, value))
    return descriptors


def number_in(text):
    match = re.match(r"(0x[0-9a-fA-F]+|-?\d+)(?![\w.])", text)
    return int(match.group(1), 16 if "x" in match.group(1) else 10) if match else None


def same_value(theirs, field):
    value, text = field["value"], field["text"]
    number = number_in(theirs)
    if number is not None and isinstance(value, int) and number in (value, value & 0xFFFFFFFF):
        return True
    first = theirs.split()[0] if theirs.split() else ""
    if re.fullmatch(r"[0-9a-fA-F]{8}", first) and isinstance(value, int):
        return int(first, 16) == value
    if text and first.isalpha() and text.lower().startswith(first.lower()):
        return True
    if re.fullmatch(r"[0-9a-f]+\.[0-9a-f]+", first) and text.split()[:1] and \
            re.fullmatch(r"[0-9A-Fa-f]+\.[0-9A-Fa-f]+", text.split()[0]):
        return first.lstrip("0").rjust(4, "0") == text.split()[0].lower().rjust(4, "0")
    guid = re.match(r"\{?([0-9a-fA-F-]{36})\}?", first)
    if guid:
        return text.lower().startswith(guid.group(1).lower())
    quantity = re.match(r"(\d+(?:\.\d+)?)\s*([A-Za-z]+)", theirs)
    ours_quantity = re.match(r"(\d+(?:\.\d+)?) ?([A-Za-z]+)", text)
    if quantity and ours_quantity:
        return (float(quantity.group(1)), quantity.group(2)) == \
               (float(ours_quantity.group(1)), ours_quantity.group(2))
    if isinstance(value, str) and re.fullmatch(r"(0x)?[0-9a-fA-F]{2}( (0x)?[0-9a-fA-F]{2})*", theirs):
        return theirs.replace("0x", "").replace(" ", "").upper() == value[:len(theirs)]
    return False


# --- tshark

def packet(number, kind, device, setup, data, length):
    """Each device has its own address, because tshark remembers the descriptors of an address."""
    bus, address = divmod(device, 100)
    head = struct.pack("<QBBBBHBBqiiII", number, ord(kind), 2, 0x80, 2 + address, 1 + bus,
                       0 if setup else 0x2D, 0 if data else ord("<"), 0, 0, 0 if kind == "C" else -115, length, len(data))
    return head + (setup or bytes(8)) + bytes(16) + data


def write_capture(file, devices):
    """The answers as traffic, in order: [(device, run)]."""
    packets, answers = [], []
    for number, device in enumerate(devices):
        index = {}
        for run in device.runs + ([device.bos] if device.bos else []):
            kind, data = run["type"], bytes.fromhex(run["hex"])
            value = kind << 8 | index.setdefault(kind, 0)
            index[kind] += 1
            setup = struct.pack("<BBHHH", 0x80, 6, value, 0, len(data))
            urb = 100 + len(answers)
            packets.append(packet(urb, "S", number, setup, b"", len(data)))
            packets.append(packet(urb, "C", number, None, data, len(data)))
            answers.append((device, run))
    out = struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, 220)
    for time, data in enumerate(packets):
        out += struct.pack("<IIII", time, 0, len(data), len(data)) + data
    file.write_bytes(out)
    return answers


def run_tshark(file):
    return subprocess.run(["tshark", "-n", "-r", file, "-T", "pdml"], check=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def tshark_of(devices, folder):
    """For each answer of each device, in order: [(position, size, name)]."""
    file = folder / "answers.pcap"
    answers = write_capture(file, devices)
    frames = xml.etree.ElementTree.fromstring(run_tshark(file)).findall("packet")
    assert len(frames) == 2 * len(answers), "tshark does not show every packet"
    return [(device, run, list(tshark_fields(frame)))
            for (device, run), frame in zip(answers, frames[1::2])]


HEADER = 64  # bytes of usbmon before the data


def tshark_fields(frame):
    for field in frame.iter("field"):
        position, size = int(field.get("pos", "0")), int(field.get("size", "0"))
        label = field.get("showname") or field.get("show") or ""
        name = field.get("name") or ""
        is_leaf = name and field.find("field") is None or name.endswith(("bmAttributes", "bmControl"))
        if position < HEADER or size == 0 or "=" in label.split(":")[0] or not is_leaf:
            continue
        yield position - HEADER, size, name, label.split(":")[0].strip()


# --- the comparison

class Comparison:
    def __init__(self):
        self.exceptions = {}
        for line in (HERE / "exceptions.tsv").read_text("utf-8").splitlines()[1:]:
            witness, layout, field, reason = line.split("\t")
            assert reason, f"exceptions.tsv: {line} has no reason"
            self.exceptions[witness, layout, field] = reason
        self.used = set()
        self.counts = {name: {"compared": 0, "agreed": 0, "excepted": 0, "only": 0}
                       for name in ("lsusb", "tshark")}
        self.faults = {}

    def differ(self, witness, layout, field, text):
        count = self.counts[witness]
        for key in ((witness, layout, field), (witness, layout, "*"), (witness, "*", field)):
            if key in self.exceptions:
                self.used.add(key)
                count["excepted"] += 1
                return
        self.faults.setdefault((witness, layout, field), text)

    def lsusb(self, device, text):
        own = [descriptor for run in device.runs if run["type"] != 7 for descriptor in run["descriptors"]]
        own += device.bos["descriptors"] if device.bos else []
        count = self.counts["lsusb"]
        left = list(own)
        for fields in lsusb_descriptors(text):
            names = {name.lower() for name, _ in fields}
            match = max((one for one in left if self.is_of(one, fields)), default=None,
                        key=lambda one: len(names & {own["name"].lower() for own in one["fields"]}))
            if match is None:
                self.differ("lsusb", "*", "descriptor", f"{device.name}: {fields[:3]} is not in ours")
                continue
            left = [one for one in left if one is not match]
            self.lsusb_descriptor(device, match, [one for one in fields if one[1] or one[0][0] == "b"])
        for skipped in left:
            count["only"] += len(skipped["fields"])

    @staticmethod
    def is_of(descriptor, fields):
        kind = fields[0][0]
        if kind == "cdc":
            return descriptor.get("layout", "").startswith("cdc.")
        if kind == "companion":
            return descriptor["type"] == 0x30
        values = {name.lower(): number_in(value) for name, value in reversed(fields)}
        return (descriptor["length"], descriptor["type"]) == \
            (values.get("blength"), values.get("bdescriptortype"))

    def lsusb_descriptor(self, device, descriptor, fields):
        count = self.counts["lsusb"]
        layout = descriptor.get("layout", "none")
        by_name = {}
        for field in descriptor["fields"]:
            by_name.setdefault(field["name"].lower(), []).append(field)
        taken = {}
        seen = 0
        for name, value in fields:
            if name in ("cdc", "companion"):
                continue
            key = LSUSB_NAMES.get(name.lower(), name.lower())
            count["compared"] += 1
            index = taken.get(key, 0)
            if len(by_name.get(key, [])) <= index:
                self.differ("lsusb", layout, name, f"{device.name}: {value!r}, no such field in ours")
                continue
            taken[key] = index + 1
            seen += 1
            field = by_name[key][index]
            if same_value(value, field):
                count["agreed"] += 1
            else:
                self.differ("lsusb", layout, name,
                            f"{device.name}: {value!r}, ours {field['value']!r} {field['text']!r}")
        count["only"] += len(descriptor["fields"]) - seen

    def tshark(self, device, run, fields):
        count = self.counts["tshark"]
        places = {}
        for descriptor in run["descriptors"]:
            for field in descriptor["fields"]:
                places[descriptor["offset"] + field["offset"]] = (descriptor, field)
        seen = set()
        for position, size, name, label in fields:
            count["compared"] += 1
            place = places.get(position)
            short = name.split(".")[-1].lower()
            if place is None or place[1]["size"] != size:
                layout = self.layout_at(run, position)
                self.differ("tshark", layout, label,
                            f"{device.name}: {name} {label!r} at {position}, {size} bytes: no such field")
                continue
            seen.add(position)
            ours_name = place[1]["name"].lower()
            spoken = re.sub(r"^(bcd|bm|dw|b|w|i)(?=[A-Z])", "", place[1]["name"]).lower()
            words = label.lower().replace(" ", "")
            ours_name = {"bfunctionlength": "blength", "bdescriptorsubtype": "subtype"}.get(
                ours_name, ours_name)
            if short.endswith(ours_name) or words.endswith(ours_name) or words == spoken:
                count["agreed"] += 1
            else:
                self.differ("tshark", place[0].get("layout", "none"), f"{label}/{place[1]['name']}",
                            f"{device.name}: {name} {label!r} at {position}, ours {place[1]['name']}")
        count["only"] += len(places) - len(seen & set(places))

    @staticmethod
    def layout_at(run, position):
        for descriptor in run["descriptors"]:
            if descriptor["offset"] <= position < descriptor["offset"] + descriptor["length"]:
                return descriptor.get("layout", "none")
        return "*"

    def report(self, is_complete):
        for witness, count in self.counts.items():
            print(f"{witness}: {count['compared']} fields compared, {count['agreed']} agreed, "
                  f"{count['excepted']} excepted, {count['only']} only in ours")
        for (witness, layout, field), text in sorted(self.faults.items()):
            print(f"{witness}\t{layout}\t{field}\t{text}")
        unused = sorted(set(self.exceptions) - self.used) if is_complete else []
        for key in unused:
            print("exceptions.tsv: not needed any more:", *key)
        return not self.faults and not unused


def missing_programs():
    return [name for name in ("lsusb", "umockdev-run", "tshark", "cc") if not shutil.which(name)]


def main():
    source, program = pathlib.Path(sys.argv[1]), sys.argv[2]
    missing = missing_programs()
    if missing:
        print("Skipped:", ", ".join(missing), "not installed (Debian: usbutils umockdev tshark gcc)")
        return 0
    files = sorted((source / "examples" / "captures").glob("*.txt"))
    captures = os.environ.get("USB_SUPPORT_CAPTURES_DIR")
    takes_all = os.environ.get("USB_SUPPORT_WITNESS_ALL") == "1"
    if captures:
        folders = sorted(folder for folder in pathlib.Path(captures).iterdir() if folder.is_dir())
        for folder in folders if takes_all else folders[::SPREAD]:
            files += sorted(file for file in folder.glob("*.bin")
                            if file.stem in ("descriptors", "bos"))
    comparison = Comparison()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        files += write_samples(source, folder) if takes_all else []
        devices = devices_of(program, files)
        library = build_library(folder)
        for device in devices:
            comparison.lsusb(device, lsusb_of(device, library, folder))
        for device, run, fields in tshark_of(devices, folder):
            comparison.tshark(device, run, fields)
    print(f"{len(devices)} devices")
    return 0 if comparison.report(bool(captures) and takes_all) else 1


if __name__ == "__main__":
    sys.exit(main())
