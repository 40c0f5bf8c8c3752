#!/usr/bin/env python3
"""shorten.py TRACE CALL N [PATH...] (-p PROCESS | PROGRAM...)   lets the N-th read or write of these files move 7 bytes at most.

strace cannot: a count that it answers itself moves no byte at all, and what follows would be read or written at the wrong place.
For x86-64 alone: it changes the third argument before the kernel sees it.
"""

import ctypes
import os
import signal
import struct
import sys

BYTES = 7
NUMBERS = {"read": 0, "write": 1, "pread64": 17, "pwrite64": 18}

PTRACE_CONT, PTRACE_GETREGS, PTRACE_SETREGS, PTRACE_SYSCALL, PTRACE_SEIZE, PTRACE_INTERRUPT = 7, 12, 13, 24, 0x4206, 0x4207
OPTIONS = 0x1 | 0x2 | 0x4 | 0x8 | 0x10  # TRACESYSGOOD, fork, vfork, clone, exec
RDX, RAX, RDI, ORIG_RAX = 12, 10, 14, 15
REGISTERS = struct.Struct("27Q")
ENOSYS = 2**64 - 38
WALL = 0x40000000

_libc = ctypes.CDLL(None, use_errno=True)
_libc.ptrace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p, ctypes.c_void_p]
_libc.ptrace.restype = ctypes.c_long


def ptrace(request, thread, data=None):
    if _libc.ptrace(request, thread, None, data) < 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))


def file_of(thread, descriptor):
    try:
        return os.readlink(f"/proc/{thread}/fd/{descriptor}")
    except OSError:
        return None


class Shortener:
    def __init__(self, trace, call, number, paths):
        self.trace, self.call, self.number, self.paths = open(trace, "w"), call, number, set(paths)
        self.counts = {}  # by thread

    def seize(self, process):
        for thread in map(int, os.listdir(f"/proc/{process}/task")):
            ptrace(PTRACE_SEIZE, thread, OPTIONS)
            ptrace(PTRACE_INTERRUPT, thread)

    def run(self):
        """Until nothing is left to be traced, or until it is ended."""
        entering = {}
        while True:
            try:
                thread, status = os.waitpid(-1, WALL)
            except ChildProcessError:
                return
            if not os.WIFSTOPPED(status):
                continue
            stop, event = os.WSTOPSIG(status), status >> 16
            deliver = 0
            if stop == signal.SIGTRAP | 0x80:
                entering[thread] = not entering.get(thread, False)
                self.look(thread, entering[thread])
            elif event == 0:
                deliver = stop
            try:
                ptrace(PTRACE_SYSCALL, thread, deliver)
            except OSError:
                pass  # it has been killed

    def look(self, thread, _):
        buffer = ctypes.create_string_buffer(REGISTERS.size)
        try:
            ptrace(PTRACE_GETREGS, thread, ctypes.cast(buffer, ctypes.c_void_p))
        except OSError:
            return
        registers = list(REGISTERS.unpack(buffer.raw))
        if registers[RAX] != ENOSYS or registers[ORIG_RAX] != NUMBERS[self.call]:  # the kernel has it so when a call begins
            return
        file = file_of(thread, registers[RDI])
        if self.paths and file not in self.paths:
            return
        self.counts[thread] = self.counts.get(thread, 0) + 1
        if self.counts[thread] != self.number or registers[RDX] <= BYTES:
            return
        registers[RDX] = BYTES
        buffer.raw = REGISTERS.pack(*registers)
        ptrace(PTRACE_SETREGS, thread, ctypes.cast(buffer, ctypes.c_void_p))
        self.trace.write(f"{thread} {self.call}({registers[RDI]}<{file}>, ..., {BYTES}) = ? (INJECTED)\n")
        self.trace.flush()


def main():
    trace, call, number, *rest = sys.argv[1:]
    if "-p" in rest:
        at = rest.index("-p")
        paths, process, program = rest[:at], int(rest[at + 1]), None
    else:
        at = rest.index("--")
        paths, program = rest[:at], rest[at + 1 :]
        process = os.getpid()
    shortener = Shortener(trace, call, int(number), paths)
    if program is None:
        signal.signal(signal.SIGINT, signal.SIG_DFL)
        shortener.seize(process)
        shortener.run()
        return
    # The program stays in this process, which its parent knows; the tracer is a grandchild.
    holds, held = os.pipe()
    if os.fork() == 0:
        os.setsid()
        if os.fork() == 0:
            os.close(holds)
            for standard in (0, 1, 2):
                os.dup2(os.open(os.devnull, os.O_RDWR), standard)
            shortener.seize(process)
            os.write(held, b"1")
            os.close(held)
            shortener.run()
        os._exit(0)
    os.close(held)
    os.wait()
    os.read(holds, 1)
    os.close(holds)
    os.execv(program[0], program)


if __name__ == "__main__":
    main()
