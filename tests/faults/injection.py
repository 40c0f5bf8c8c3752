"""Lets the N-th call of a kind fail, and says what was called."""

import re
import signal
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path

ERRORS = ("EIO", "ENOSPC", "EROFS", "EACCES", "EMFILE", "ENOMEM")
KILL = "SIGKILL"
SHORT = "short"

# What may be interrupted, or move less than was asked for.
INTERRUPTED = ("read", "write", "pread64", "pwrite64", "sendto", "recvfrom", "poll", "msgrcv")
SHORTENED = ("read", "write", "pread64", "pwrite64")

# Calls that cannot fail in a way that anybody could mend. An injected error would keep close() from closing.
NEVER_FAIL = ("close", "munmap", "restart_syscall", "exit", "exit_group", "umask", "getuid", "geteuid")

# Calls for memory: they fail for want of it.
MEMORY = ("brk", "mmap", "mremap")

_SHORTEN = str(Path(__file__).with_name("shorten.py"))
_LINE = re.compile(r"^(\d+)\s+(?:([a-z0-9_]+)\((.*)|<\.\.\. ([a-z0-9_]+) resumed>(.*))$")


@dataclass(frozen=True)
class Fault:
    call: str
    number: int  # the first one is 1
    how: str  # one of ERRORS, EINTR, SHORT, KILL

    def __str__(self):
        return f"{self.call} {self.number} {self.how}"


def ways_of(call):
    """How a call can go wrong."""
    if call in NEVER_FAIL:
        return (KILL,)
    if call in MEMORY:
        return ("ENOMEM", KILL)
    return ERRORS + ("EINTR",) * (call in INTERRUPTED) + (SHORT,) * (call in SHORTENED) + (KILL,)


@dataclass
class Call:
    thread: int
    name: str
    text: str  # arguments and result, as strace writes them

    @property
    def succeeded(self):
        return re.search(r"\) += (\d|0x)", self.text) is not None

    @property
    def path(self):
        """Of a path, or of a descriptor with -y."""
        found = re.search(r'"([^"]*)"|\d+<([^>]*)>', self.text)
        return (found[1] or found[2]) if found else ""


def can_trace():
    """None, or why not."""
    try:
        tried = subprocess.run(["strace", "-qq", "-o", "/dev/null", "true"], capture_output=True, text=True)
    except FileNotFoundError:
        return "strace is not installed"
    return None if tried.returncode == 0 else (tried.stderr.strip().splitlines() or ["strace fails"])[-1]


def words(trace, fault, paths=(), calls=(), below=False):
    """The command line of the tracer, without the process or program that it is for; of certain calls, or of those on these paths.
    `below`: it starts the program, which takes its place."""
    if fault and fault.how == SHORT:
        return [sys.executable, _SHORTEN, str(trace), fault.call, str(fault.number), *map(str, paths), *["--"] * below]
    line = ["strace", *["-D"] * below, "-f", "-qq", "-yy", "-s", "64", "-o", str(trace)]
    for path in paths:
        line += ["-P", str(path)]
    names = ",".join(calls) if calls else "all"
    line += ["-e", f"trace={names}", "-e", "signal=none"]
    if fault and fault.call == "brk" and fault.how == "ENOMEM":  # it answers with a break that is not moved, never with an error
        line += ["-e", f"inject=brk:retval=0:when={fault.number}"]
    elif fault and fault.how == KILL:
        line += ["-e", f"inject={fault.call}:signal=SIGKILL:when={fault.number}"]
    elif fault:
        line += ["-e", f"inject={fault.call}:error={fault.how}:when={fault.number}"]
    return line


class Tracer:
    """Watches a process that runs, from the constructor to stop()."""

    def __init__(self, process, trace, fault, **what):
        self.trace = trace
        self._tracer = subprocess.Popen(
            [*words(trace, fault, **what), "-p", str(process)], stderr=subprocess.PIPE, text=True
        )
        while self._tracer.poll() is None and not all(map(_is_traced, Path(f"/proc/{process}/task").glob("*"))):
            time.sleep(0.002)

    def stop(self):
        """What was called, in its order, and whether something has failed."""
        if self._tracer.poll() is None:
            self._tracer.send_signal(signal.SIGINT)
        try:
            self._tracer.communicate(timeout=10)
        except subprocess.TimeoutExpired:  # it waits for ever for a thread of a process that has just ended
            self._tracer.kill()
            self._tracer.communicate()
        return read(self.trace)


def _is_traced(thread):
    try:
        return "TracerPid:\t0\n" not in (thread / "status").read_text()
    except OSError:
        return True  # it has ended


def read(trace):
    """The calls of a trace, and the one that was made to fail; None: none was."""
    calls, begun = [], {}
    text = trace.read_text(errors="replace") if trace.exists() else ""
    for line in text.splitlines():
        found = _LINE.match(line)
        if not found:
            continue
        thread = int(found[1])
        if found[2] and line.endswith("<unfinished ...>"):
            begun[thread] = Call(thread, found[2], found[3][: -len("<unfinished ...>")])
            calls.append(begun[thread])
        elif found[2]:
            calls.append(Call(thread, found[2], found[3]))
        elif thread in begun:
            begun.pop(thread).text += found[5]
    return calls, next((call for call in calls if "(INJECTED)" in call.text), None)
