"""A simulated camera whose interface can be started below a tracer, and what a killed interface left of its files."""

import os
import shutil
import signal
import sys
import tempfile
import time
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "bench/client"))
import dashcam  # noqa: E402

# In place of the interface: keeps what the last one left of its files, before anything is mended, and starts the real one, once as
# it is told.
_STARTER = """#!/bin/sh
trap '' XFSZ
cd "{folder}"
rm -rf left
mkdir left
cp -a "$DASHCAM_ROOT/opt" "$DASHCAM_ROOT/tmp" left/
rm -f left/opt/gui/images
mv below now 2>/dev/null && exec $(cat now) "{interface}" "$@"
exec "{interface}" "$@"
"""


def add_build(parser):
    """The option for the folder in which the camera was built, from wherever it is looked at."""
    parser.add_argument("--build", type=lambda text: Path(text).resolve(), default=SOURCE / "build/dev")


class Camera:
    def __init__(self, build, prepare=lambda root: None):
        """`prepare` is given the root folder before anything is in it."""
        self.folder = Path(tempfile.mkdtemp(prefix="dashcam-faults-"))
        for name in ("bench", "gui"):
            (self.folder / name).mkdir()
        shutil.copy2(build / "bench/dashcam-bench", self.folder / "bench")
        (self.folder / "pictures").symlink_to(build / "pictures")
        starter = self.folder / "gui/dashcam-gui"
        starter.write_text(_STARTER.format(folder=self.folder, interface=build / "gui/dashcam-gui"))
        starter.chmod(0o755)
        self.root = self.folder / "root"
        self.root.mkdir()
        prepare(self.root)
        self.touched = 0  # when a key was last touched
        self.looks = None  # of a screen, drawn whole
        self.start()

    def start(self):
        self.bench = dashcam.start("--root", str(self.root), program=str(self.folder / "bench/dashcam-bench"))

    def kill(self):
        """Everything at once, as when the power fails; what is in memory alone has gone. The recorder keeps its settings."""
        for process in (self.process("dashcam-bench"), self.process()):
            os.kill(process, signal.SIGKILL)
        self.bench.close()
        for entry in (self.root / "tmp").iterdir():
            if entry.name != "config_init.ini":
                shutil.rmtree(entry) if entry.is_dir() else entry.unlink()

    def close(self):
        self.bench.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    # ---- its process and its files

    def process(self, name="dashcam-gui"):
        """Of the interface, or of another program that works on this camera's files."""
        for entry in Path("/proc").iterdir():
            try:
                known = (entry / "environ").read_bytes().split(b"\0") + (entry / "cmdline").read_bytes().split(b"\0")
                mine = {f"DASHCAM_ROOT={self.root}".encode(), str(self.root).encode()}
                if (entry / "comm").read_text().strip() == name and mine & set(known):
                    return int(entry.name)
            except (OSError, ValueError):
                continue
        raise ProcessLookupError(f"{name} does not run")

    def starts(self):
        return self.bench.state()["interface"]["starts"]

    def start_below(self, words):
        """The next start is below this program."""
        (self.folder / "next").write_text(" ".join(words))
        (self.folder / "next").rename(self.folder / "below")

    def path(self, path):
        """A path of the camera, on this machine."""
        return self.root / path.lstrip("/")

    def left(self, path):
        """The same among what the interface before this one left."""
        return self.folder / "left" / path.lstrip("/")

    # ---- the finger

    def tap(self, name):
        """Taps what is called so, or begins so."""

        def area():
            return next((area for area in self.bench.state()["areas"] or () if area["name"].startswith(name)), None)

        found = self.bench.until(area, otherwise=f"There is no {name}.")
        self.touched = time.monotonic()
        self.bench.tap(found["x"] + found["width"] // 2, found["y"] + found["height"] // 2)

    def show_keys(self):
        """The live preview with its keys, which go 5 s after a touch. One beside keys that have just come hides them: then another shows them."""
        self.bench.wait(screen="PREVIEW", box="none", timeout=20)
        self.bench.until(lambda: self.bench.state()["areas"])
        touched = 0

        def step():
            nonlocal touched
            if self.has("menu"):
                return True
            if time.monotonic() > touched + 2:
                touched = time.monotonic()
                self.bench.tap(300, 200)
            return False

        self.bench.until(step, otherwise="The preview shows no keys.")

    def has(self, name):
        return any(area["name"] == name for area in self.bench.state()["areas"] or ())

    def home(self):
        """To the live preview with its keys, from wherever."""

        begin = time.monotonic()

        def step():
            state = self.bench.state()
            if state["screen"] == "PREVIEW" and not any(state["boxes"].values()):
                return True
            keys = [area for area in state["areas"] or () if area["name"] in ("home", "no", "ok")]
            if keys:
                self.bench.tap(keys[0]["x"] + 5, keys[0]["y"] + 5)
            elif state["screen"] == "TOUCHCOMP" and time.monotonic() > begin + 5:
                self.bench.action("powerKey")  # touches went on to a camera that had lost its power: there is no other way back
            return False

        self.bench.until(step, timeout=20, otherwise="There is no way back to the live preview.")
        self.show_keys()

    def go(self, *names):
        """From the live preview by these keys."""
        self.show_keys()
        self.tap("menu")
        for name in names:
            self.tap(name)
