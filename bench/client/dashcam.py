"""Works the simulated dash camera from Python: acceptance tests, demonstrations, experiments.

    import dashcam

    with dashcam.start() as camera:
        camera.tap(265, 33)
        camera.wait(screen="MAINMENU")

It needs Python 3.9 and nothing else; docs/client.md has examples, docs/bench.md what each request means. What the bench refuses is a
BenchError with its sentence. A Bench may be used by several threads.
"""

import http.client
import json
import os
import socket
import struct
import subprocess
import tempfile
import threading
import time
import urllib.parse
import weakref
import zlib

__all__ = ["start", "Bench", "BenchError", "BenchTimeout", "Events", "pixels"]

_PATIENCE = 30  # seconds for an answer


class BenchError(Exception):
    """What the bench refused, in its own sentence. `status` is that of HTTP, None when there was no answer."""

    def __init__(self, sentence, status=None):
        super().__init__(sentence)
        self.status = status


class BenchTimeout(BenchError, TimeoutError):
    """What was waited for did not come."""


def start(*options, program=None, timeout=60):
    """Starts a bench of its own on a free port, and waits for its first screen.

    The options are those of dashcam-bench ("--language", "en"). The program is that of the environment's DASHCAM_BENCH, or else
    dashcam-bench, or any command that takes these options, such as "./run". The bench ends with close(), or with the `with` block.
    """
    program = program or os.environ.get("DASHCAM_BENCH", "dashcam-bench")
    said = tempfile.TemporaryFile()
    try:
        process = subprocess.Popen([program, "--port", "0", *options], stdout=subprocess.PIPE, stderr=said, stdin=subprocess.DEVNULL)
    except OSError as error:
        said.close()
        raise BenchError(f"{program} cannot be started: {error.strerror}") from None
    address = _address_of(process, timeout)
    if address is None:
        _end(process)
        said.seek(0)
        lines = said.read().decode(errors="replace").strip().splitlines()
        said.close()
        raise BenchError(lines[-1] if lines else f"{program} has not shown a screen for {timeout} s")
    return Bench(address, _process=process, _said=said)


def _address_of(process, timeout):
    """What it prints as its address; None when it ends, or the time is up, before."""
    lines = []
    reader = threading.Thread(target=lambda: lines.append(process.stdout.readline()), daemon=True)
    reader.start()
    reader.join(timeout)
    line = lines[0].decode() if lines else ""
    return line.split("http://", 1)[1].strip().rstrip("/") if "http://" in line else None


def _end(process, said=None):
    process.terminate()
    try:
        process.wait(20)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
    process.stdout.close()
    if said:
        said.close()


class Bench:
    """A running bench, "127.0.0.1:8480" unless told otherwise."""

    def __init__(self, address="127.0.0.1:8480", *, _process=None, _said=None):
        self.address = address.split("//")[-1].rstrip("/")
        self._ending = weakref.finalize(self, _end, _process, _said) if _process else lambda: None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends the bench when start() has started it, which the end of the script does, too; another one goes on."""
        self._ending()

    # ---- the finger; points are those of the LCD, 480 x 320

    def tap(self, x, y, ms=60):
        """Touches for `ms` and comes back when the finger is lifted."""
        self._post("touch", {"action": "tap", "x": x, "y": y, "ms": ms})
        self._until(lambda state: not state["touch"]["down"], "The finger is not lifted.", ms)

    def tap_on(self, name, timeout=10):
        """Taps in the middle of what the interface calls so (state()["areas"]), as soon as that is up."""
        area = self.until(lambda: next((area for area in self.state()["areas"] or () if area["name"] == name), None), timeout)
        self.tap(area["x"] + area["width"] // 2, area["y"] + area["height"] // 2)

    def hold(self, x, y, ms=3000):
        """A long touch."""
        self.tap(x, y, ms)

    def press(self, x, y):
        """Puts the finger down, or moves it."""
        self._post("touch", {"action": "press", "x": x, "y": y})

    def release(self):
        self._post("touch", {"action": "release"})

    def drag(self, start, end, ms=300):
        """Moves the finger from one point (x, y) to another in a straight line, and lifts it."""
        self.path([(*start, 0), (*end, ms)])

    def path(self, points):
        """A gesture of points (x, y, ms after the one before; at the first one the finger rests so long, 0: not at all); comes back when
        the finger is lifted."""
        members = [{"x": x, "y": y, "ms": ms} if ms or number else {"x": x, "y": y} for number, (x, y, ms) in enumerate(points)]
        self._post("touch", {"action": "path", "path": members})
        self._until(lambda state: not state["touch"]["down"], "The finger is not lifted.", sum(ms for _, _, ms in points))

    def _until(self, holds, otherwise, ms=0):
        self.until(lambda: holds(self.state()), ms / 1000 + _PATIENCE, otherwise)

    # ---- what is seen

    def wait(self, screen=None, box=None, timeout=10):
        """Waits, `timeout` seconds at most, until that screen is on top and that message box is up, by their names. Answers what is up
        then: {"screen", "boxes"}."""
        asked = {"screen": screen, "box": box, "timeout": round(timeout * 1000)}
        query = urllib.parse.urlencode({name: value for name, value in asked.items() if value is not None})
        return self._json("GET", f"/api/wait?{query}", patience=timeout + _PATIENCE)

    def until(self, check, timeout=10, otherwise="What was waited for has not come."):
        """Calls `check` until it gives something, `timeout` seconds at most, and gives that."""
        end = time.monotonic() + timeout
        while True:
            found = check()
            if found:
                return found
            if time.monotonic() > end:
                raise BenchTimeout(otherwise)
            time.sleep(0.02)

    def picture(self, file=None, raw=False):
        """What a person sees on the LCD now, as a PNG's bytes; also written to `file`. `raw`: what the interface drew, without video."""
        png = self._ask("GET", "/api/lcd.png" + ("?raw=1" if raw else ""))
        if file is not None:
            with open(file, "wb") as out:
                out.write(png)
        return png

    @property
    def screen(self):
        """The name of the screen on top; None until there is one."""
        return self.state()["screen"]

    def state(self):
        return self._json("GET", "/api/state")

    def log(self, since=0):
        """The log's entries with a number above `since`, the oldest first."""
        return self._json("GET", f"/api/log?since={since}")["entries"][::-1]

    def latency(self):
        """How long touches take until they are seen."""
        return self._json("GET", "/api/latency")

    def events(self, timeout=None):
        """What happens from now on, to iterate over; see Events."""
        return Events(self.address, timeout)

    # ---- what happens

    def actions(self):
        """Every action and every status event: {"actions", "events"}."""
        return self._json("GET", "/api/actions")

    def action(self, name, **arguments):
        """An action of recorder or bench: action("speed", kmh=87)."""
        self._post("action", {"name": name, **arguments})

    def event(self, event, value=0):
        """A status event to the interface, by its number or its name."""
        if isinstance(event, str):
            numbers = {row["name"]: row["event"] for row in self.actions()["events"]}
            if event not in numbers:
                raise BenchError(f"There is no event {event}.")
            event = numbers[event]
        self._post("event", {"event": event, "value": value})

    def own_picture(self, picture):
        """Puts a picture of the driver's onto the card: a file's name, or its bytes."""
        if not isinstance(picture, bytes):
            with open(picture, "rb") as file:
                picture = file.read()
        self._json("POST", "/api/picture", picture)

    def restart_interface(self):
        """Ends the interface and starts it again; comes back when it shows a screen."""
        starts = self.state()["interface"]["starts"]
        self._json("POST", "/api/interface/restart", b"")
        self._until_shown_after(starts)

    def _until_shown_after(self, starts):
        self._until(lambda state: state["interface"]["starts"] > starts and state["screen"], "The interface does not come back.")

    # ---- what is kept

    def record(self, on=True):
        """Begins to write down what happens, with a restart of the camera, and comes back when it shows a screen; or ends that."""
        starts = self.state()["interface"]["starts"]
        self._post("record", {"on": on})
        if on:
            self._until_shown_after(starts)

    def recording(self):
        """What has been written down, a file's bytes: dashcam-bench --replay FILE does it again."""
        return self._ask("GET", "/api/recording")

    def scenarios(self):
        """Those that can be played."""
        return self._json("GET", "/api/scenarios")

    def play(self, scenario, speed=1):
        """Plays one of these; state()["scenario"] tells how far it is."""
        self._post("scenario", {"play": scenario, "speed": speed})

    def stop_scenario(self):
        self._post("scenario", {"stop": True})

    def save(self, snapshot):
        """Keeps the camera as it is now, under that name; comes back when that is done, as the next two do."""
        self._snapshot("save", snapshot)
        if not self._has(snapshot):
            raise BenchError(f"The snapshot {snapshot} has not come about: the log tells why.")

    def restore(self, snapshot):
        """The camera is what it was then, and shows a screen."""
        starts = self.state()["interface"]["starts"]
        self._snapshot("restore", snapshot)
        self._until_shown_after(starts)

    def remove(self, snapshot):
        self._snapshot("remove", snapshot)
        if self._has(snapshot):
            raise BenchError(f"The snapshot {snapshot} is still there: the log tells why.")

    def _snapshot(self, what, snapshot):
        self._post("snapshot", {what: snapshot})
        self._until(lambda state: state["snapshotWork"] is None, f"The snapshot {snapshot} takes too long.", 60000)

    def _has(self, snapshot):
        return any(kept["name"] == snapshot for kept in self.state()["snapshots"])

    # ---- requests

    def _post(self, path, members):
        self._json("POST", f"/api/{path}", json.dumps(members).encode())

    def _json(self, method, target, body=None, patience=_PATIENCE):
        return json.loads(self._ask(method, target, body, patience))

    def _ask(self, method, target, body=None, patience=_PATIENCE):
        connection = http.client.HTTPConnection(self.address, timeout=patience)
        try:
            connection.request(method, target, body)
            answer = connection.getresponse()
            content = answer.read()
        except (OSError, http.client.HTTPException) as error:
            raise BenchError(f"The bench at {self.address} does not answer: {error}") from error
        finally:
            connection.close()
        if answer.status != 200:
            raise _refusal(answer.status, content)
        return content


def _refusal(status, content):
    try:
        sentence = json.loads(content)["error"]
    except (ValueError, KeyError, TypeError):
        sentence = f"The bench answers {status}."
    return (BenchTimeout if status == 408 else BenchError)(sentence, status)


class Events:
    """What a bench tells as it happens, pairs of a kind and its data: "state" (the whole, at once and whenever it has changed), "log" (new
    entries, the newest first), "click" (the key click sounds; no data). Listening begins when it is made. It ends with the bench, or with close(); when nothing comes
    for `timeout` seconds (None: no limit) it is a BenchTimeout."""

    def __init__(self, address, timeout=None):
        self._connection = http.client.HTTPConnection(address, timeout=timeout)
        try:
            self._connection.request("GET", "/api/events")
            self._stream = self._connection.getresponse()
            refused = None if self._stream.status == 200 else _refusal(self._stream.status, self._stream.read())
        except (OSError, http.client.HTTPException) as error:
            refused = BenchError(f"The bench at {address} does not answer: {error}")
        if refused:
            self.close()
            raise refused

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self._connection.close()

    def __iter__(self):
        return self

    def __next__(self):
        kind, data = "message", []
        while True:
            try:
                line = self._stream.readline()
            except socket.timeout:
                raise BenchTimeout("Nothing has happened.") from None
            except (OSError, ValueError, http.client.HTTPException):
                raise StopIteration from None
            if not line:
                raise StopIteration
            name, _, value = line.decode().rstrip("\r\n").partition(":")
            if name == "event":
                kind = value.strip()
            elif name == "data":
                data.append(value.strip())
            elif not name and not value and data:  # an empty line ends it; a line that begins with a colon says nothing
                told = json.loads("\n".join(data))
                return kind, told.get({"state": "state", "log": "entries"}.get(kind))


def pixels(png, region=None):
    """The pixels of a PNG's bytes as the bench writes them, 3 bytes each, of a region (x, y, width, height) or the whole. Two pictures
    look alike where these are equal."""
    if png[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("This is no PNG.")
    at, packed = 8, b""
    while at < len(png):
        (length,) = struct.unpack_from(">I", png, at)
        kind, content = png[at + 4 : at + 8], png[at + 8 : at + 8 + length]
        if kind == b"IHDR":
            width, height, bits, colours, *_, interlaced = struct.unpack(">IIBBBBB", content)
        elif kind == b"IDAT":
            packed += content
        at += length + 12
    if bits != 8 or colours not in (2, 6) or interlaced:
        raise ValueError("The bench writes no such PNG.")
    size = 3 if colours == 2 else 4
    x, y, across, down = region or (0, 0, width, height)
    found, before, stream = bytearray(), bytearray(width * size), zlib.decompress(packed)
    for row in range(min(height, y + down)):
        begin = row * (width * size + 1)
        line = _unfiltered(stream[begin], bytearray(stream[begin + 1 : begin + 1 + width * size]), before, size)
        if row >= y:
            for column in range(x, x + across):
                found += line[column * size : column * size + 3]
        before = line
    return bytes(found)


def _unfiltered(kind, line, above, size):
    if kind == 0:
        return line
    for i, value in enumerate(line):
        left, up, corner = (line[i - size], above[i], above[i - size]) if i >= size else (0, above[i], 0)
        if kind == 4:
            guess = left + up - corner
            near = min((left, up, corner), key=lambda other: abs(guess - other))
        else:
            near = (0, left, up, (left + up) // 2)[kind]
        line[i] = (value + near) & 0xFF
    return line
