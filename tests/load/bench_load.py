#!/usr/bin/env python3
"""A bench that has too much to do: 64 connections that are held open, heads and bodies that come a byte at a time, 16 pages that watch, and
many requests a second, while a finger touches the LCD.

    bench_load [SECONDS] [--rate REQUESTS] [--judge]     30 and 1000 unless given

Every answer must be right, nothing may grow; with --judge touches take at most twice as long as before, too.
"""

import argparse
import base64
import http.client
import json
import os
import socket
import sys
import tempfile
import threading
import time

from burden import Burdens
from driver import dashcam

HELD, SLOW, WATCHING, WORKERS = 64, 8, 16, 4
BESIDE = (300, 200)  # of the keys of the live preview
TOUCHES, BETWEEN = 40, 0.25
REST = 10  # seconds in which the bench gives back what the connections took
VIEW_KEY = (40, 33)


class Load:
    def __init__(self, camera, root):
        self.camera, self.root = camera, root
        self.host, self.port = camera.address.split(":")[0], int(camera.address.split(":")[1])
        self.faults = []
        self.ends = threading.Event()
        self.lock = threading.Lock()
        self.asked = self.slow = self.frames = 0

    def hold(self, holds, otherwise):
        if not holds:
            with self.lock:
                self.faults.append(otherwise)
                print(f"fault: {otherwise}", flush=True)

    def connect(self):
        return socket.create_connection((self.host, self.port), timeout=10)

    # ---- what weighs on it

    def held(self):
        """Open, and silent: for each that the bench closes there is a new one."""
        connections = []
        while not self.ends.wait(0.2):
            connections = [connection for connection in connections if self.is_open(connection)]
            while len(connections) < HELD:
                connections.append(self.connect())
        for connection in connections:
            connection.close()

    def is_open(self, connection):
        try:
            closed = connection.recv(1, socket.MSG_DONTWAIT) == b""
        except BlockingIOError:
            return True
        except OSError:
            closed = True
        if closed:
            connection.close()
        return not closed

    def slow_sender(self):
        """A request a byte at a time."""
        request = f"GET /api/state HTTP/1.1\r\nHost: {self.host}:{self.port}\r\n\r\n".encode()
        while not self.ends.is_set():
            with self.connect() as connection:
                try:
                    for byte in request:
                        connection.send(bytes([byte]))
                        time.sleep(0.02)
                    answer = connection.recv(4096)
                except OSError:
                    answer = b""
                self.hold(answer.startswith((b"HTTP/1.1 200", b"HTTP/1.1 408")) or answer == b"", f"a slow sender is told {answer[:40]}")
                self.slow += 1

    def watch(self):
        """A page: everything that the WebSocket sends is taken."""
        with self.connect() as connection:
            key = base64.b64encode(os.urandom(16)).decode()
            connection.send(f"GET /ws HTTP/1.1\r\nHost: {self.host}:{self.port}\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                            f"Sec-WebSocket-Key: {key}\r\nSec-WebSocket-Version: 13\r\n\r\n".encode())
            stream = connection.makefile("rb")
            self.hold(b" 101 " in stream.readline(), "a page is refused")
            while stream.readline() not in (b"\r\n", b""):
                pass
            while not self.ends.is_set():
                try:
                    head = stream.read(2)
                    if len(head) < 2:
                        return self.hold(self.ends.is_set(), "a page's WebSocket has ended")
                    length = head[1] & 127
                    length = int.from_bytes(stream.read({126: 2, 127: 8}.get(length, 0)), "big") if length > 125 else length
                    stream.read(length)
                    self.frames += 1
                except TimeoutError:
                    continue

    def requests(self, rate):
        """Requests of one worker, each with the answer that belongs to it."""
        due = time.monotonic()
        number = 0
        while not self.ends.is_set():
            number += 1
            target, status, holds = REQUESTS[number % len(REQUESTS)]
            try:
                connection = http.client.HTTPConnection(self.host, self.port, timeout=10)
                connection.request("GET", target)
                answer = connection.getresponse()
                content = answer.read()
                connection.close()
                self.hold(answer.status == status and holds(content), f"{target}: {answer.status} {content[:80]}")
            except OSError as error:
                self.hold(False, f"{target}: {error}")
            self.asked += 1
            due += 1 / rate
            time.sleep(max(0.0, due - time.monotonic()))

    # ---- what is seen of it

    def touches(self):
        """The 99th percentile of the milliseconds from a touch to the command that follows it."""
        areas = self.camera.until(lambda: self.camera.state()["areas"])
        if not any(area["name"] == "menu" for area in areas):
            self.camera.tap(*BESIDE)  # the keys come
        since = self.camera.state()["log"]
        for _ in range(TOUCHES):
            self.camera.tap(*VIEW_KEY)
            time.sleep(BETWEEN)
        pressed, waits = None, []
        for entry in self.camera.log(since):
            if entry["kind"] == "touch" and entry["name"] == "press":
                pressed = entry["time"]
            elif entry["kind"] == "command" and "VIEW" in entry["name"] and pressed is not None:
                waits.append(entry["time"] - pressed)
                pressed = None
        self.hold(len(waits) == TOUCHES, f"{TOUCHES} touches, {len(waits)} commands")
        return sorted(waits)[int(0.5 * len(waits))], max(waits)


def is_state(content):
    return json.loads(content)["screen"] == "PREVIEW"


REQUESTS = (("/api/state", 200, is_state), ("/api/log?since=0", 200, lambda content: "entries" in json.loads(content)),
            ("/api/nothing", 404, lambda content: "error" in json.loads(content)), ("/", 200, lambda content: len(content) > 1000),
            ("/api/log?since=x", 400, lambda content: "error" in json.loads(content)))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("seconds", type=float, nargs="?", default=30)
    parser.add_argument("--rate", type=float, default=1000)
    parser.add_argument("--judge", action="store_true")
    asked = parser.parse_args()
    with tempfile.TemporaryDirectory() as root, dashcam.start("--root", root, "--language", "en") as camera:
        load = Load(camera, root)
        quiet = load.touches()
        burdens = Burdens(root)
        workers = [threading.Thread(target=load.watch) for _ in range(WATCHING)]
        workers += [threading.Thread(target=load.slow_sender) for _ in range(SLOW)]
        workers += [threading.Thread(target=load.held)]
        for worker in workers:
            worker.start()
        time.sleep(2)
        begin = time.monotonic()
        workers += [threading.Thread(target=load.requests, args=(asked.rate / WORKERS,)) for _ in range(WORKERS)]
        for worker in workers[-WORKERS:]:
            worker.start()
        loaded = load.touches()
        time.sleep(max(0.0, begin + asked.seconds - time.monotonic()))
        load.ends.set()
        seconds = time.monotonic() - begin
        for worker in workers:
            worker.join()
        grown, now = burdens.grown(REST)
        for sentence in grown:
            load.hold(False, sentence)
        if asked.judge:
            load.hold(loaded[0] <= 2 * max(quiet[0], 1), f"touches take {loaded[0]} ms in place of {quiet[0]} ms")
    print(f"{load.asked} requests, {load.slow} slow ones, {load.frames} messages to pages, {len(load.faults)} faults")
    print("figures: " + json.dumps({"seconds": round(seconds, 1), "requests": load.asked, "slowRequests": load.slow, "pageMessages": load.frames,
                                    "held": HELD, "watching": WATCHING, "touchMsQuiet": quiet, "touchMsLoaded": loaded, "before": burdens.begin,
                                    "after": now, "faults": len(load.faults)}))
    return 1 if load.faults else 0


if __name__ == "__main__":
    sys.exit(main())
