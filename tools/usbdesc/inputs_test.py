"""Tests inputs for which the whole program is needed: inputs_test.py USBDESC

The program must stop reading an endless input after a limited time, with limited memory. Without an
argument, `usbdesc list` must list the devices that are plugged in. umockdev simulates them, and
their answers come from a capture.
"""
import os
import pathlib
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import threading

MOST_MEMORY = 400 << 10  # in KiB, including the sanitizers' share; an endless input exceeds it
MOST_TIME = 60  # seconds, on a busy machine

DEVICE = bytes.fromhex("120100020000004034120300000100020001")
CONFIGURATION = bytes.fromhex("0902120001010080320904000000FF000000")
STRINGS = {0: b"\x04\x03\x09\x04", 2: b"\x0e\x03" + "Camera".encode("utf-16-le")}


def run(program, *arguments, **options):
    return subprocess.run([*program, *arguments], check=False, text=True, timeout=MOST_TIME,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)


def feed(pipe, block):
    try:
        with open(pipe, "wb", buffering=0) as stream:
            while True:
                stream.write(block)
    except BrokenPipeError:
        pass


def check_endless(program, folder):
    pipe = folder / "pipe"
    os.mkfifo(pipe)
    for begin, expected in ((b"\x01", "1 MiB of descriptors"), (b"12 01 ", "16 MiB of text"),
                            (b"\xd4\xc3\xb2\xa1", "64 MiB of traffic in a stream")):
        writer = threading.Thread(target=feed, args=(pipe, begin * (65536 // len(begin))))
        writer.start()
        done = run(program, pipe)
        writer.join(MOST_TIME)
        assert not writer.is_alive(), "the pipe was not closed"
        assert done.returncode == 2, done
        assert done.stderr == f"usbdesc: {pipe}: holds more than {expected}\n", done.stderr
    for arguments in (["/dev/zero"], ["check", "/dev/zero"], ["--input", "text", "/dev/zero"]):
        done = run(program, *arguments)
        assert done.returncode == 2 and "/dev/zero: holds more than " in done.stderr, done
    memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    assert memory < MOST_MEMORY, f"{memory} KiB"
    print(f"endless inputs: at most {memory} KiB")


def packet(number, kind, setup, data, status):
    """A packet of usbmon with its long header, from the device at address 2 of bus 1."""
    length = struct.unpack("<H", setup[6:])[0] if setup else len(data)
    return struct.pack("<QBBBBHBBqiiII", number, ord(kind), 2, 0x80, 2, 1, 0 if setup else ord("-"),
                       0 if data else ord("<"), 0, 0, status, length, len(data)) + (
                           setup or bytes(8)) + bytes(16) + data


def capture():
    """The answers of the device, in the order of the requests."""
    answers = [(0x100, 0, 18, DEVICE), (0x200, 0, 9, CONFIGURATION[:9]),
               (0x200, 0, 18, CONFIGURATION), (0x600, 0, 10, None), (0x300, 0, 255, STRINGS[0]), (0x302, 0x409, 255, STRINGS[2]),
               (0x3EE, 0, 18, None)]
    content = struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, 220)
    for number, (value, index, length, data) in enumerate(answers, 1):
        setup = struct.pack("<BBHHH", 0x80, 6, value, index, length)
        for one in (packet(number, "S", setup, b"", -115),
                    packet(number, "C", None, data or b"", -32 if data is None else 0)):
            content += struct.pack("<IIII", 1, 0, len(one), len(one)) + one
    return content


def description():
    hexadecimal = (DEVICE + CONFIGURATION).hex().upper()
    return "\n".join([
        "P: /devices/pci0000:00/0000:00:14.0/usb1/1-7", "N: bus/usb/001/002=" + hexadecimal,
        "E: DEVTYPE=usb_device", "E: SUBSYSTEM=usb", "E: BUSNUM=001", "E: DEVNUM=002",
        "E: DEVNAME=/dev/bus/usb/001/002", "A: busnum=1", "A: devnum=2", "A: devpath=7",
        "A: speed=480", "A: bConfigurationValue=1", "H: descriptors=" + hexadecimal, "", ""])


def check_list(program, folder):
    mock = shutil.which("umockdev-run")
    if not mock:
        print("usbdesc list is not checked: umockdev-run is not installed (Debian: umockdev)")
        return
    done = run([mock, "--", *program, "list"])
    if "this build has no libusb" in done.stderr:
        print("usbdesc list is not checked: this build has no libusb")
        return
    assert done.returncode == 1 and done.stderr == "usbdesc: no USB device is plugged in\n", done
    (folder / "a.umockdev").write_text(description())
    (folder / "a.pcap").write_bytes(capture())
    done = run([mock, "--device", folder / "a.umockdev",
                f"--pcap=/sys/devices/pci0000:00/0000:00:14.0/usb1/1-7={folder / 'a.pcap'}", "--",
                *program, "list"])
    assert done.returncode == 0 and done.stderr == "", done
    assert done.stdout == (
        "usb:1-7  1234:0003  high speed  Camera\n"
        "  device, configuration 0, device qualifier (stalled), Microsoft OS 1.0 string (stalled), "
        "2 strings\n"), done.stdout


def main():
    program = sys.argv[1:]
    with tempfile.TemporaryDirectory() as name:
        check_endless(program, pathlib.Path(name))
        check_list(program, pathlib.Path(name))


if __name__ == "__main__":
    main()
