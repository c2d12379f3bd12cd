"""Reads captures that another program has written: traffic_test.py SOURCE USBDESC

The script that USB_SUPPORT_TSHARK_OF names writes descriptors as a capture of GET_DESCRIPTOR
requests, for tshark. Here it writes the samples, and the devices in the folder that
USB_SUPPORT_CAPTURES_DIR names. The answers that usbdesc reads from the result must be exactly the
bytes that were written. At the end, one capture contains up to a hundred of the devices.
"""
import importlib.util
import json
import os
import pathlib
import subprocess
import sys
import tempfile
from importlib.machinery import SourceFileLoader

DEVICE, CONFIGURATION, STRING, QUALIFIER, OTHER, BOS = 0x100, 0x200, 0x300, 0x600, 0x700, 0xF00
HEADER = 24  # of a pcap file
PACKET = 16  # the header of a packet in it


def load(script):
    """The script as a module; its name has no extension."""
    loader = SourceFileLoader("capture_writer", script)
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


def of_sample(path):
    """The answers of a sample of usb_rules, as (wValue, wIndex, bytes)."""
    answers = []
    counts = {}
    for line in path.read_text().splitlines():
        word, _, rest = line.split("#")[0].strip().partition(" ")
        if len(word) == 2:
            if answers[-1] is not None:
                answers[-1][2].extend(bytes.fromhex(word + rest))
            continue
        counts[word] = counts.get(word, -1) + 1
        kinds = {"device": DEVICE, "configuration": CONFIGURATION, "qualifier": QUALIFIER,
                 "other": OTHER, "bos": BOS}
        if word in kinds:
            answers.append((kinds[word] + counts[word], 0, bytearray()))
        elif word == "languages":
            answers.append((STRING, 0, bytearray(b"\x04\x03") + bytes.fromhex(rest)[::-1]))
        elif word == "string":
            index, _, text = rest.partition(" ")
            text = text.strip('"').encode("utf-16-le")
            answers.append((STRING + int(index, 16), 0x409, bytes([len(text) + 2, 3]) + text))
        elif word:
            answers.append(None)  # not a read from the device itself
    return [(value, index, bytes(data)) for value, index, data in filter(None, answers)]


def of_folder(module, folder):
    """The answers of a captured device."""
    def content(name):
        file = folder / (name + ".bin")
        return file.read_bytes() if file.exists() else b""

    run = content("descriptors") or content("device")
    answers = module.answers_of(run, content("bos") or None)
    taken = sum(len(data) for value, _, data in answers if value >> 8 in (1, 2, 7))
    assert taken == len(run), f"{folder}: {len(run) - taken} bytes of the run are in no answer"
    if content("qualifier"):
        answers.append((QUALIFIER, 0, content("qualifier")))
    return answers


def read(program, files):
    """The devices of each file: [(name, {request: bytes})]."""
    done = subprocess.run([*program, "decode", "--format", "json", *files], check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    assert done.returncode in (0, 1), f"exit status {done.returncode}: {done.stderr.decode()}"
    for one in json.loads(done.stdout)["inputs"]:
        yield [(device["name"], {run["request"]: bytes.fromhex(run["hex"])
                                 for run in device["runs"] if run["outcome"] == "answered"})
               for device in one["devices"]]


def expected(answers):
    return {f"8006{value & 255:02X}{value >> 8:02X}{index & 255:02X}{index >> 8:02X}": data
            for value, index, data in answers}


def at_address(packets, address, transfers):
    """The packets of a capture, with another address and other transfer numbers."""
    moved = b""
    at = HEADER
    while at < len(packets):
        size = int.from_bytes(packets[at + 8:at + 12], "little")
        packet = bytearray(packets[at:at + PACKET + size])
        number = int.from_bytes(packet[PACKET:PACKET + 8], "little") + transfers
        packet[PACKET:PACKET + 8] = number.to_bytes(8, "little")
        packet[PACKET + 11] = address
        moved += packet
        at += len(packet)
    return moved


def main():
    source, program = pathlib.Path(sys.argv[1]), sys.argv[2:]
    script = os.environ.get("USB_SUPPORT_TSHARK_OF")
    if not script:
        print("Skipped: USB_SUPPORT_TSHARK_OF names no writer of captures")
        return
    sys.dont_write_bytecode = True
    module = load(script)
    devices = {path.stem: of_sample(path)
               for path in sorted((source / "usb_rules" / "samples").glob("*.dev"))}
    captures = os.environ.get("USB_SUPPORT_CAPTURES_DIR")
    if captures:
        for folder in sorted(path for path in pathlib.Path(captures).iterdir() if path.is_dir()):
            devices[folder.name] = of_folder(module, folder)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        files = []
        for title, answers in devices.items():
            files.append(folder / (title + ".pcap"))
            files[-1].write_bytes(module.capture(answers))
        if "no libpcap" in subprocess.run([*program, files[0]], check=False, text=True,
                                          capture_output=True).stderr:
            print("Skipped: this build has no libpcap")
            return
        for (title, answers), found in zip(devices.items(), read(program, files)):
            assert found == [("1.2", expected(answers))], title

        some = list(devices.values())[:100]
        together = module.capture([])
        for number, answers in enumerate(some):
            together += at_address(module.capture(answers), number + 1, 1000 * number)
        (folder / "together.pcap").write_bytes(together)
        found = next(read(program, [folder / "together.pcap"]))
        assert found == [(f"1.{number + 1}", expected(answers))
                         for number, answers in enumerate(some)], "together"
    print(f"{len(devices)} devices, {sum(map(len, devices.values()))} answers")


if __name__ == "__main__":
    main()
