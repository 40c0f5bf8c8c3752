"""What the processes of a camera cost: their memory, open files and threads."""

import os
import time


def process_of(root, name):
    """The oldest process of that name that works on that root folder."""
    wanted = os.fsencode(root)
    found = []
    for entry in os.listdir("/proc"):
        try:
            with open(f"/proc/{entry}/comm") as comm, open(f"/proc/{entry}/cmdline", "rb") as line, open(f"/proc/{entry}/environ", "rb") as words:
                if comm.read().strip() == name and (wanted in line.read().split(b"\0") or b"DASHCAM_ROOT=" + wanted in words.read().split(b"\0")):
                    found.append(int(entry))
        except OSError:
            continue  # it is no process, another user's, or has ended
    if not found:
        raise LookupError(f"There is no {name} of {root}.")
    return min(found)


def burden_of(process):
    """{"kB", "files", "threads"} now."""
    with open(f"/proc/{process}/status") as status:
        facts = dict(line.split(":", 1) for line in status)
    return {"kB": int(facts["VmRSS"].split()[0]), "files": len(os.listdir(f"/proc/{process}/fd")), "threads": int(facts["Threads"])}


class Burdens:
    """How much the interface and the bench of a root take since a moment."""

    MORE = {"kB": 32 * 1024, "files": 4, "threads": 2}  # what is no growth: caches, a connection under way

    def __init__(self, root):
        self._processes = {name: process_of(root, name) for name in ("dashcam-gui", "dashcam-bench")}
        self.begin = self.now()

    def now(self):
        return {name: burden_of(process) for name, process in self._processes.items()}

    def grown(self, rest=0):
        """A sentence for each that has grown beyond that, and still has after so many seconds of rest; the figures of then."""
        ends = time.monotonic() + rest
        while True:
            now = self.now()
            grown = [f"{name}: {kind} {self.begin[name][kind]} -> {value}" for name, figures in now.items()
                     for kind, value in figures.items() if value > self.begin[name][kind] + self.MORE[kind]]
            if not grown or time.monotonic() >= ends:
                return grown, now
            time.sleep(0.2)
