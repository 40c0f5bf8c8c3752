"""The Python client against a real bench: every example of docs/client.md as it stands, and what they do not show.

DASHCAM_BENCH names the program. Run by CTest.
"""

import json
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
CLIENT = os.path.join(ROOT, "bench", "client")
sys.path.insert(0, CLIENT)
sys.dont_write_bytecode = True
import dashcam  # noqa: E402


def examples():
    with open(os.path.join(ROOT, "docs", "client.md"), encoding="utf-8") as page:
        return re.findall(r"^```python\n(.*?)^```$", page.read(), re.M | re.S)


class Examples(unittest.TestCase):
    """A function for each is made below."""

    def run_as_it_stands(self, code):
        with tempfile.TemporaryDirectory() as folder:
            script = os.path.join(folder, "example.py")
            with open(script, "w", encoding="utf-8") as file:
                file.write(code)
            environment = {**os.environ, "PYTHONPATH": CLIENT, "PYTHONDONTWRITEBYTECODE": "1"}
            ended = subprocess.run([sys.executable, "-W", "error", script], cwd=folder, env=environment, capture_output=True, text=True,
                                   timeout=200)
            self.assertEqual(ended.returncode, 0, f"{code}\n{ended.stdout}{ended.stderr}")


for number, example in enumerate(examples(), 1):
    setattr(Examples, f"test_example_{number}", lambda self, code=example: self.run_as_it_stands(code))


def png(width, height, colours, rows):
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    head = struct.pack(">IIBBBBB", width, height, 8, colours, 0, 0, 0)
    packed = zlib.compress(b"".join(rows))
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", packed[:5]) + chunk(b"IDAT", packed[5:]) + chunk(b"IEND", b"")


class Pixels(unittest.TestCase):
    def test_each_way_that_a_row_is_written(self):
        rows = [
            bytes([0, 10, 20, 30, 40, 50, 60]),  # as it is
            bytes([1, 1, 2, 3, 250, 1, 1]),  # what is added to the left pixel
            bytes([2, 1, 1, 1, 10, 0, 0]),  # to the upper one
            bytes([3, 1, 1, 1, 1, 1, 1]),  # to the mean of both
            bytes([4, 1, 1, 1, 1, 1, 1]),  # to the nearest of three
        ]
        pixels = [10, 20, 30, 40, 50, 60, 1, 2, 3, 251, 3, 4, 2, 3, 4, 5, 3, 4, 2, 2, 3, 4, 3, 4, 3, 3, 4, 5, 4, 5]
        self.assertEqual(list(dashcam.pixels(png(2, 5, 2, rows))), pixels)

    def test_a_region_without_what_shines_through(self):
        rows = [bytes([0, 1, 2, 3, 255, 4, 5, 6, 255]), bytes([0, 7, 8, 9, 255, 10, 11, 12, 255])]
        self.assertEqual(list(dashcam.pixels(png(2, 2, 6, rows), (1, 0, 1, 2))), [4, 5, 6, 10, 11, 12])

    def test_anything_else_is_refused(self):
        for other in (b"", b"GIF89a", png(1, 1, 0, [b"\0\0"])):
            with self.assertRaises(ValueError):
                dashcam.pixels(other)


class Camera(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.camera = dashcam.start()
        cls.addClassCleanup(cls.camera.close)

    def test_a_finger_is_lifted_when_a_touch_comes_back(self):
        self.camera.press(300, 200)
        self.assertTrue(self.camera.state()["touch"]["down"])
        self.camera.press(310, 210)
        self.camera.release()
        for touch in (
            lambda: self.camera.tap(300, 200),
            lambda: self.camera.hold(300, 200, 200),
            lambda: self.camera.drag((300, 200), (350, 250), 200),
            lambda: self.camera.path([(300, 200, 0), (310, 200, 50)]),
        ):
            touch()
            self.assertFalse(self.camera.state()["touch"]["down"])

    def test_what_has_a_name_is_tapped(self):
        self.camera.restart_interface()
        self.camera.tap_on("menu")
        self.camera.tap_on("mainmenu/sd_management_normal.bmp")
        self.camera.wait(screen="SDMANAGEMENT")
        with self.assertRaises(dashcam.BenchTimeout):
            self.camera.tap_on("menu", timeout=0.2)

    def test_what_is_refused_has_the_sentence_of_the_bench(self):
        with self.assertRaisesRegex(dashcam.BenchError, r"^[^{].*\.$") as refused:
            self.camera.tap(480, 0)
        self.assertEqual(refused.exception.status, 400)
        with self.assertRaisesRegex(dashcam.BenchError, "There is no event RECV_NOTHING"):
            self.camera.event("RECV_NOTHING")
        with self.assertRaises(dashcam.BenchError):
            self.camera.own_picture(b"no picture")

    def test_what_never_comes_is_told_in_time(self):
        with self.assertRaises(dashcam.BenchTimeout) as refused:
            self.camera.wait(screen="PLAYER", timeout=0.3)
        self.assertEqual(refused.exception.status, 408)
        self.assertIsInstance(refused.exception, TimeoutError)

    def test_the_log_begins_with_the_oldest_entry(self):
        last = self.camera.state()["log"]
        self.camera.action("speed", kmh=12)
        self.camera.action("speed", kmh=13)
        entries = self.camera.log(since=last)
        self.assertEqual([entry["arguments"]["kmh"] for entry in entries if entry["kind"] == "action"], [12, 13])

    def test_a_restarted_interface_is_a_new_one(self):
        starts = self.camera.state()["interface"]["starts"]
        self.camera.restart_interface()
        self.assertEqual(self.camera.screen, "PREVIEW")
        self.assertEqual(self.camera.state()["interface"]["starts"], starts + 1)

    def test_touches_are_measured(self):
        before = self.camera.latency()["touches"]
        self.camera.tap(300, 200)
        self.assertEqual(self.camera.latency()["touches"], before + 1)

    def test_a_picture_is_written_as_it_is_given(self):
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "lcd.png")
            given = self.camera.picture(file)
            with open(file, "rb") as written:
                self.assertEqual(written.read(), given)
        self.assertEqual(len(dashcam.pixels(given)), 480 * 320 * 3)

    def test_events_tell_what_happens(self):
        with self.camera.events(timeout=20) as events:
            kind, state = next(events)
            self.assertEqual((kind, state["root"]), ("state", self.camera.state()["root"]))
            self.camera.action("speed", kmh=14)
            self.assertTrue(any(kind == "log" and "14" in str(data) for kind, data in events))

    def test_an_action_that_the_bench_lists_is_there(self):
        self.assertIn("speed", [action["name"] for action in self.camera.actions()["actions"]])


class Kept(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.camera = dashcam.start()
        cls.addClassCleanup(cls.camera.close)

    def test_a_snapshot_is_kept_gone_back_to_and_removed(self):
        self.camera.save("before")
        with self.assertRaises(dashcam.BenchError):
            self.camera.save("before")
        self.camera.event("RECV_ZEL_STATUS_SPEED", 99)
        starts = self.camera.state()["interface"]["starts"]
        self.camera.restore("before")
        self.assertGreater(self.camera.state()["interface"]["starts"], starts)
        self.assertEqual(self.camera.screen, "PREVIEW")
        self.camera.remove("before")
        self.assertEqual(self.camera.state()["snapshots"], [])
        with self.assertRaises(dashcam.BenchError):
            self.camera.restore("before")

    def test_what_is_done_is_written_down(self):
        self.camera.record()
        self.camera.tap(265, 33)
        self.camera.wait(screen="MAINMENU")
        self.camera.record(False)
        lines = [json.loads(line) for line in self.camera.recording().splitlines()]
        self.assertEqual([line["request"]["action"] for line in lines if line.get("kind") == "touch"], ["press", "release"])

    def test_a_scenario_is_played(self):
        names = [scenario["name"] for scenario in self.camera.scenarios()]
        self.assertIn("drive", names)
        self.camera.play("drive", speed=10)
        self.assertEqual(self.camera.state()["scenario"]["name"], "drive")
        self.camera.stop_scenario()
        self.assertIsNone(self.camera.state()["scenario"])
        with self.assertRaises(dashcam.BenchError):
            self.camera.play("there is none")


class Start(unittest.TestCase):
    def test_why_a_bench_does_not_start_is_told(self):
        with self.assertRaisesRegex(dashcam.BenchError, "cannot be started"):
            dashcam.start(program="/there/is/none")
        with self.assertRaisesRegex(dashcam.BenchError, "no-such-option"):
            dashcam.start("--no-such-option")

    def test_another_bench_goes_on_and_one_of_ours_ends(self):
        camera = dashcam.start()
        self.addCleanup(camera.close)
        other = dashcam.Bench(f"http://{camera.address}/")
        other.close()
        root = other.state()["root"]
        self.assertTrue(os.path.isdir(root))
        events = other.events(timeout=20)
        camera.close()
        camera.close()
        self.assertFalse(os.path.exists(root))
        self.assertEqual({kind for kind, _ in events} - {"state", "log", "click"}, set())  # and then it ends
        events.close()
        with self.assertRaisesRegex(dashcam.BenchError, "does not answer"):
            other.state()


    def test_a_script_that_fails_leaves_no_bench(self):
        script = "import dashcam\ncamera = dashcam.start()\nprint(camera.state()['root'], flush=True)\nraise SystemExit(3)"
        environment = {**os.environ, "PYTHONPATH": CLIENT, "PYTHONDONTWRITEBYTECODE": "1"}
        ended = subprocess.run([sys.executable, "-c", script], env=environment, capture_output=True, text=True, timeout=100)
        self.assertEqual(ended.returncode, 3, ended.stderr)
        self.assertTrue(ended.stdout.strip())
        self.assertFalse(os.path.exists(ended.stdout.strip()))


if __name__ == "__main__":
    unittest.main(verbosity=2)
