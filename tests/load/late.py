#!/usr/bin/env python3
"""A recorder that is slow: each command is answered after 499 ms, one more than the interface waits for is too late. A driver uses the camera
for so long.

    late [SECONDS] [--seed SEED]     600 unless given
"""

import argparse
import json
import os
import socket
import sys
import tempfile
import threading
import time

from burden import Burdens
from driver import Driver, dashcam

LATE = 0.499  # seconds
MOST_BYTES = 4096  # of a packet


class SlowRecorder:
    """Stands between interface and recorder on the command socket."""

    def __init__(self, root):
        self.commands = self.late = 0
        self._real = f"{root}/run/recorder-behind.sock"
        os.rename(f"{root}/run/recorder.sock", self._real)
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self._socket.bind(f"{root}/run/recorder.sock")
        self._socket.listen()
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            interface, _ = self._socket.accept()
            threading.Thread(target=self._serve, args=(interface,), daemon=True).start()

    def _serve(self, interface):
        with interface, socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET) as recorder:
            recorder.connect(self._real)
            while request := self._request(interface):
                due = time.monotonic() + LATE
                self.commands += 1
                recorder.send(request)
                answer = recorder.recv(MOST_BYTES)
                time.sleep(max(0.0, due - time.monotonic()))
                try:
                    interface.send(answer)
                except OSError:  # it has waited long enough
                    self.late += 1
                    return

    @staticmethod
    def _request(interface):
        try:
            return interface.recv(MOST_BYTES)
        except ConnectionResetError:
            return b""


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("seconds", type=float, nargs="?", default=600)
    parser.add_argument("--seed", type=int, default=1)
    asked = parser.parse_args()
    with tempfile.TemporaryDirectory() as root, dashcam.start("--root", root, "--language", "en") as camera:
        recorder = SlowRecorder(root)
        camera.restart_interface()
        driver = Driver(camera, asked.seed)
        driver.go_home()
        driver.walk_everywhere()
        burdens = Burdens(root)
        begin = time.monotonic()
        while time.monotonic() < begin + asked.seconds:
            driver.walk()
        grown, now = burdens.grown()
        for sentence in grown:
            driver.hold(False, sentence)
    print(f"{driver.walks} walks, {recorder.commands} commands, {len(driver.faults)} faults")
    print("figures: " + json.dumps({"seconds": round(asked.seconds), "seed": asked.seed, "walks": driver.walks, "commands": recorder.commands, "tooLate": recorder.late,
                                    "before": burdens.begin, "after": now, "faults": len(driver.faults)}))
    return 1 if driver.faults else 0


if __name__ == "__main__":
    sys.exit(main())
