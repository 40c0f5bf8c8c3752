#!/usr/bin/env python3
"""A day of the camera in an hour: drives at ten times, parkings at sixty times the recorder's time, the interface's own timers as they are.
While the car drives, somebody uses the camera.

    day [--share SHARE] [--seed SEED]    SHARE of each drive and each parking, 1 unless given

What must hold: on the live preview the camera records, each parking ends with its report and what it counted, at the end nothing has
grown (memory, files, threads), the card holds whole recordings and not more of them than it may, and the settings are as they were left.
"""

import argparse
import json
import os
import re
import struct
import sys
import tempfile
import threading
import time

from burden import Burdens
from driver import Driver, dashcam

# What the day consists of: the hours, and how much faster than a person's time they pass.
DRIVE, PARK = 10, 60
DAY = (("drive", 1.5), ("park", 4), ("drive", 0.5), ("park", 4.5), ("drive", 1.5), ("park", 1), ("drive", 1.5), ("night", 9.5))

# What happens in each drive and each parking, at a share of it.
DRIVEN = ((0.01, "gps", {"state": "searching"}), (0.03, "gps", {"state": "fix"}), (0.05, "speed", {"kmh": 31}), (0.10, "battery", {"volts": 14.1}),
          (0.15, "speed", {"kmh": 87}), (0.25, "shock", {}), (0.30, "blackspot", {}), (0.35, "rearUnplug", {}), (0.40, "rearPlug", {}),
          (0.45, "mute", {"state": "on"}), (0.50, "mute", {"state": "off"}), (0.55, "speed", {"kmh": 120}), (0.60, "shock", {}),
          (0.65, "gps", {"state": "searching"}), (0.70, "gps", {"state": "fix"}), (0.75, "overTemperature", {}), (0.78, "normalTemperature", {}),
          (0.85, "notice", {"number": 1}), (0.90, "speed", {"kmh": 12}), (0.98, "speed", {"kmh": 0}))
PARKED = ((0.20, "motion", {}), (0.35, "impact", {}), (0.50, "motion", {}), (0.65, "motion", {}), (0.80, "impact", {}))
MOTIONS, IMPACTS = 3, 2

TOUCHED = ("display", "mirroring", "volume")  # by the driver on the live preview; a box that comes meanwhile takes one of his touches
REST = 10  # seconds of a person's time between two stretches: the report is looked at
NAME = re.compile(r"(rec|pmr|evt|ndf)[01]_\d{8}_\d{6}_?\.avi")
MOST_RECORDINGS = 400


def scenario(share):
    """The lines of the day, and its stretches: (kind, when it begins and ends in seconds of a person's time)."""
    lines, stretches, at = [], [], 5.0

    def add(seconds, action, **arguments):
        lines.append(json.dumps({"ms": round(seconds * 1000), "action": action, **arguments}))

    for kind, hours in DAY:
        length = hours * 3600 * share / (DRIVE if kind == "drive" else PARK)
        add(at, "timeSpeed", speed=str(DRIVE if kind == "drive" else PARK))
        if kind != "drive":
            add(at, "battery", volts=12.6)
            add(at, "parkIn", minutesAgo=0)
        for when, action, arguments in DRIVEN if kind == "drive" else PARKED:
            add(at + when * length, action, **arguments)
        if kind == "park":
            add(at + length, "parkOut")
        if kind == "night":
            add(at + length, "parkLowVoltage")
            add(at + length + 1, "normalVoltage")
        stretches.append((kind, at, at + length))
        at += length + (0 if kind == "drive" else REST)
        if kind != "drive":
            add(at - 2, "closeReport")
    add(at, "timeSpeed", speed="1")
    return lines, stretches, at


class Day(Driver):
    def __init__(self, camera, share, seed):
        super().__init__(camera, seed)
        self.share = share
        self.lines, self.stretches, self.seconds = scenario(share)
        self.reports = 0

    def run(self):
        self.walk_everywhere()  # what is made once and kept is there
        burdens = Burdens(self.root)
        settings, protected = self.settings(), self.recordings("ndf")
        events = threading.Thread(target=self.listen, daemon=True)
        events.start()
        begin = time.monotonic()
        self.camera._post("scenario", {"text": "\n".join(self.lines)})
        while (now := time.monotonic() - begin) < self.seconds:
            self.look()
            stretch = next((kind for kind, start, end in self.stretches if start <= now < end - 10), None)
            if stretch == "drive" and self.random.random() < 0.1:
                self.walk()
            time.sleep(0.5)
        self.go_home()
        parkings = sum(kind != "drive" for kind, _, _ in self.stretches)
        self.hold(self.reports == parkings, f"{self.reports} reports of {parkings} parkings")
        grown, now = burdens.grown()
        for sentence in grown:
            self.hold(False, sentence)
        others = self.settings() ^ settings
        self.hold(not others, f"the settings are others: {sorted(others)}")
        self.look_at_card(protected)
        return burdens.begin, now

    def listen(self):
        """Each parking ends with its report on the screen, and what was counted is in it."""
        with self.camera.events() as events:
            for kind, told in events:
                for entry in reversed(told) if kind == "log" else ():
                    if entry["kind"] == "screen" and entry["name"] == "screen PFILEGRAPH":
                        self.look_at_report()

    def look_at_report(self):
        self.reports += 1
        with open(f"{self.root}/tmp/.info.bin", "rb") as file:
            words = struct.unpack(f"<{os.fstat(file.fileno()).st_size // 4}i", file.read())
        kind, start, end, low, impacts = words[:5]
        motions = words[5 + impacts]
        wanted = self.share * [hours for kind, hours in DAY if kind != "drive"][self.reports - 1]
        length = ((end or low) - start) / 3600
        self.hold((kind, impacts, motions) == (1, IMPACTS, MOTIONS), f"report {self.reports} tells of {impacts} impacts, {motions} movements")
        self.hold(bool(end) != bool(low), f"report {self.reports} ends at {end} or {low}")
        self.hold(wanted - 0.05 < length < wanted + 0.25, f"report {self.reports} tells of {length:.2f} h, it were {wanted} h")

    def settings(self):
        with open(f"{self.root}/opt/gui/ini/config_firm.ini") as file:
            return {line for line in file if not line.startswith(TOUCHED)}

    def recordings(self, kind):
        return {name for name in os.listdir(f"{self.root}/mnt/mmc") if name.startswith(kind)}

    def look_at_card(self, protected):
        names = [name for name in os.listdir(f"{self.root}/mnt/mmc") if name.endswith(".avi")]
        strange = [name for name in os.listdir(f"{self.root}/mnt/mmc") if not NAME.fullmatch(name) and name != "Setup"]
        self.hold(len(names) <= MOST_RECORDINGS, f"{len(names)} recordings")
        self.hold(not strange, f"on the card: {strange}")
        self.hold(protected <= set(names), "a protected recording is gone")
        for name in names:
            with open(f"{self.root}/mnt/mmc/{name}", "rb") as file:
                head = file.read(12)
            self.hold(head[:4] == b"RIFF" and head[8:] == b"AVI ", f"{name} is no recording")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--share", type=float, default=1)
    parser.add_argument("--seed", type=int, default=1)
    asked = parser.parse_args()
    begin = time.monotonic()
    with tempfile.TemporaryDirectory() as root, dashcam.start("--root", root, "--language", "en") as camera:
        day = Day(camera, asked.share, asked.seed)
        before, after = day.run()
    print(f"{day.walks} walks, {day.reports} reports, {len(day.faults)} faults")
    print("figures: " + json.dumps({"hours": 24 * asked.share, "seconds": round(time.monotonic() - begin), "seed": asked.seed, "walks": day.walks,
                                    "reports": day.reports, "before": before, "after": after, "faults": len(day.faults)}))
    return 1 if day.faults else 0


if __name__ == "__main__":
    sys.exit(main())
