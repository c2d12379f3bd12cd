"""Measures the processor time of decoding: speed.py USBDESC, with USB_SUPPORT_CAPTURES_DIR set

User time on the same bytes, including the start of the programs: one run of `usbdesc decode --format
json` for all captures; a run of `lsusb -v` for each device, because it cannot read several; and
`tshark -T pdml`, first for all captures in one file and then for each capture.
"""
import os
import pathlib
import resource
import subprocess
import sys
import tempfile

import witnesses

def user_time(action, rounds=1):
    """The least user time of several rounds, in seconds, of all programs that `action` starts."""
    times = []
    for _ in range(rounds):
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        action()
        times.append(resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before)
    return min(times)


def main():
    program = sys.argv[1]
    captures = os.environ.get("USB_SUPPORT_CAPTURES_DIR")
    missing = witnesses.missing_programs()
    if missing or not captures:
        print("Skipped:", ", ".join(missing) or "USB_SUPPORT_CAPTURES_DIR names no captures")
        return
    files = [file for file in sorted(pathlib.Path(captures).glob("*/*.bin"))
             if file.stem in ("descriptors", "bos")]
    devices = witnesses.devices_of(program, files)
    names = [device.name for device in devices]
    ours = user_time(lambda: subprocess.run([program, "decode", "--format", "json", *names],
                                            check=False, stdout=subprocess.DEVNULL), rounds=5)
    print(f"{len(devices)} devices, user time: usbdesc {1000 * ours:.0f} ms")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        library = witnesses.build_library(folder)
        file = folder / "answers.pcap"

        def tshark_of(some):
            witnesses.write_capture(file, some)
            witnesses.run_tshark(file)

        for witness, action in (
                ("lsusb, each device", lambda: [witnesses.lsusb_of(device, library, folder)
                                                for device in devices]),
                ("tshark, all in one file", lambda: tshark_of(devices)),
                ("tshark, each device", lambda: [tshark_of([device]) for device in devices])):
            time = user_time(action)
            print(f"{witness}: {1000 * time:.0f} ms, {time / ours:.1f} times")


if __name__ == "__main__":
    main()
