"""A driver who uses the camera, and what must hold while he does."""

import os
import random
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "bench", "client"))
sys.dont_write_bytecode = True
import dashcam  # noqa: E402

HOME, YES, NO = (40, 33), (140, 236), (340, 236)
# Where he touches: the views of the preview, mirroring, menus, a recording that is played. At the end of each way everything is as it was.
WALKS = (((40, 33),) * 3, ((115, 33),) * 2, ((265, 33), (40, 33)), ((265, 33), (400, 255), (80, 125)),
         ((265, 33), (80, 125), (140, 236), (200, 86), (240, 230), (200, 291), (280, 291)))
LEAVES = 60  # seconds
RECORDS_AGAIN = 15  # seconds until it is recorded again on the live preview


class Driver:
    """What is wrong is told at once and stands in `faults`."""

    def __init__(self, camera, seed):
        self.camera, self.random = camera, random.Random(seed)
        self.root = camera.state()["root"]
        self.faults = []
        self.walks = self._noes = 0
        self._recorded = time.monotonic()  # or need not be, the last time
        self._starts = camera.state()["interface"]["starts"]

    def hold(self, holds, otherwise):
        if not holds:
            self.faults.append(otherwise)
            print(f"fault: {otherwise}", flush=True)

    def look(self):
        """The interface has not ended, and on the live preview the camera records."""
        state = self.camera.state()
        if state["screen"] != "PREVIEW" or state["video"]["recording"]:
            self._recorded = time.monotonic()
        self.hold(time.monotonic() < self._recorded + RECORDS_AGAIN, f"nothing is recorded on the live preview: {state['boxes']}")
        self.hold(state["interface"]["running"] and state["interface"]["starts"] == self._starts, "the interface has ended")
        return state

    def walk_everywhere(self):
        for walk in WALKS:
            self._walk(walk)

    def walk(self):
        self.walks += 1
        self._walk(self.random.choice(WALKS))

    def _walk(self, walk):
        for x, y in walk:
            self.camera.tap(x, y)
            time.sleep(0.3 + self.random.random())
            self.look()
        self.go_home()

    def go_home(self):
        try:
            self.camera.until(self._is_home, LEAVES)
        except dashcam.BenchTimeout:
            state = self.camera.state()
            raise SystemExit(f"no way back to the live preview from {state['screen']} {state['boxes']}") from None

    def _is_home(self):
        state = self.look()
        boxes = [box for box in state["boxes"].values() if box]
        if state["screen"] == "PREVIEW" and not boxes:
            return True
        if state["screen"] == "PFILEGRAPH":
            self.camera.action("closeReport")
        else:
            self._noes += bool(boxes)  # some questions only a yes ends
            self.camera.tap(*(HOME if not boxes else NO if self._noes % 2 else YES))
        time.sleep(0.5)
        return False
