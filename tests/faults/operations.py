"""What the interface does with files, the queue and the socket: how each is brought about, and what must be there afterwards."""

import re
import struct
import time
from dataclasses import dataclass
from typing import Callable

from camera import dashcam

OWN = "/opt/gui/ini/config_firm.ini"
RECORDERS = "/tmp/config_init.ini"
LED = "/opt/led.zel"
TOUCH = "/opt/touch.zel"
TUNING = "/opt/touch_tuning.zel"
ON_CARD = "/mnt/mmc/Setup/picture.bmp"
COPY = "/tmp/picture.bmp"
CARD = "/mnt/mmc"
STOPS = "/mnt/mmc/Setup/record_stop.info"
REPORT = "/tmp/.info.bin"

FACTORY = struct.pack("<6d", -1.0638298, 0.012088975, 0.0, 1.1363636, 499.57446, -24.76789)
TARGETS = [(240, 160), (40, 35), (240, 35), (440, 35), (440, 160), (440, 285), (240, 285), (40, 285), (40, 160)]
RECORDINGS = 20


def nothing(*_):
    pass


@dataclass(frozen=True)
class Operation:
    name: str
    act: Callable  # the last touch, or what else sets it off
    ended: Callable  # what has come of it, a word; None as long as nothing has
    before: Callable = nothing  # the way there, from the live preview
    reset: Callable = nothing  # the files, before the interface is started for it
    writes: tuple = ()
    reads: tuple = ()
    expected: Callable = nothing  # of what the files that it writes held: what they hold then, by path
    good: tuple = ()  # the words that say that it has been done
    told: tuple = ()  # those that tell the driver that it has not
    save_next: Callable = None  # where the driver is told nothing: the next save, which has to store it
    calls: tuple = ()  # these calls, of whatever; else all calls on the files
    own: Callable = None  # of these calls: those that are meant, as a set of places
    may_miss: tuple = ()  # a file or folder without which it does less
    afterwards: Callable = nothing  # what must be possible again: a sentence when it is not
    at_start: bool = False
    again: bool = False  # it can be done once more as soon as it has gone well


# ---- what files hold


def ini(content):
    """What an INI file says; None for one that is torn."""
    found, group = {}, ""
    for line in content.decode().splitlines():
        if line.startswith("[") and line.endswith("]"):
            group = line[1:-1]
        elif "=" in line:
            key, value = line.split("=", 1)
            found[f"{group}/{key}"] = value
        elif line.strip():
            return None
    return found


def changed(key, count):
    """One setting goes to its next value."""

    def expected(before):
        values = ini(before[OWN])
        values[key] = str((int(values[key]) + 1) % count)
        return {OWN: values}

    return expected


ENTRY = 155


def led_list(checked, count=6):
    """A list of the front LED: the security pattern, the brand, and numbers."""
    names = [b"Security LED", b"Korvo Black", *(b"%d" % number for number in range(100, 98 + count))]
    entries = b"".join(
        bytes([number in checked]) + name.ljust(20, b"\0") + struct.pack("<H", 2) + b"\1$".ljust(65, b"\0")
        + struct.pack("<H", 4) + b"\x11\x1f\x10\0".ljust(65, b"\0")
        for number, name in enumerate(names)
    )  # fmt: skip
    return bytes([count, 0, 0, 1]) + entries


def names_of(content):
    """Names and ticks of a list; None for one that is torn. What is behind its entries stays when a shorter one is saved."""
    if not content or len(content) < 4 + ENTRY * content[0]:
        return None
    entries = [content[4 + ENTRY * number :][:ENTRY] for number in range(content[0])]
    return [(entry[1:21].rstrip(b"\0"), entry[0]) for entry in entries]


# ---- words for what has come of it


def screen(*names):
    return lambda camera, _: (lambda state: state["screen"] if state["screen"] in names else None)(camera.bench.state())


def box(*names, kind="own"):
    def ended(camera, _):
        shown = camera.bench.state()["boxes"][kind]
        return shown["name"] if shown and shown["name"] in names else None

    return ended


def logged(kind, begin):
    def ended(camera, since):
        return next((e["name"] for e in camera.bench.log(since) if e["kind"] == kind and e["name"].startswith(begin)), None)

    return ended


# ---- the ways


def put(path, content):
    def reset(camera):
        camera.path(path).write_bytes(content)

    return reset


def through(*names, then=None):
    def before(camera):
        camera.go(*names)
        if then:
            camera.bench.wait(screen=then)

    return before


def to_led(*names, then):
    def before(camera):
        camera.go("mainmenu/black", "blackboxmanagement/led")
        camera.bench.wait(screen="FRONTLED")
        camera.bench.until(lambda: camera.has("ledsetting/led_filelist_normal.bmp"))
        if camera.has("ledsetting/led_setting_off_normal.bmp"):
            camera.tap("ledsetting/led_setting_off")
        for name in names:
            camera.tap(name)
        if then:
            camera.bench.wait(box=then)

    return before


def save_the_list(camera):
    """The list of the front LED, as it is in memory."""
    camera.home()
    to_led("ledsetting/led_filelist", then=None)(camera)
    camera.bench.wait(screen="LEDFILELIST")
    camera.tap("save")
    camera.bench.until(lambda: box("LED_FILE_UPDATE_SAVE", "SECURITY_LED_CHECKED")(camera, 0))
    camera.tap("yes")
    camera.bench.wait(box="FILE_SAVE")


def tap(name):
    return lambda camera: camera.tap(name)


def menu_and_back(camera):
    """Opening the menu saves a setting."""
    if camera.bench.screen != "PREVIEW":
        camera.home()
    camera.go()
    camera.bench.wait(screen="MAINMENU")


# ---- settings


def is_sent(camera, since):
    done = screen("PREVIEW")(camera, since)
    return done and ("sent" if logged("command", "SFIELD_SET_SETUP_COMPLETE")(camera, since) else "not sent")


# ---- calibration


def askew(camera):
    """Another calibration than the one that comes of the touches; with it all keys can still be hit."""
    camera.path(TOUCH).write_bytes(struct.pack("<6d", *(v + 0.001 for v in struct.unpack("<6d", FACTORY))))
    camera.path(TUNING).write_bytes(struct.pack("<18i", *(v + 1 for point in TARGETS for v in point)))


def touch_all_but_the_last(camera):
    camera.go("mainmenu/black", "blackboxmanagement/touch")
    camera.bench.wait(screen="TOUCHCOMP")
    for x, y in (TARGETS * 2)[:-1]:
        camera.bench.tap(x, y)


# ---- recordings


def twenty_recordings(camera):
    for number, recording in enumerate(sorted(camera.path(CARD).glob("*.avi"), reverse=True)):
        if number >= RECORDINGS:
            recording.unlink()


def number_of_files(camera, since):
    if screen("RECORDINGLIST")(camera, since) is None:
        return None
    said = logged("diagnostic", "file number = ")(camera, since)
    there = len(list(camera.path(CARD).glob("*.avi")))
    return "all" if said == f"file number = {there}" else "not all"


# ---- the recorder


def answered(camera, since):
    """A command that fails is told nobody; it takes half a second at most."""
    return logged("command", "SFIELD_SET_VIEW")(camera, since) and "answered" or (time.monotonic() > camera.touched + 1 and "over")


def next_command(camera):
    """The view's key, touched once more, sends its command."""
    since = camera.bench.state()["log"]
    camera.show_keys()
    camera.tap("view")
    camera.bench.until(lambda: logged("command", "SFIELD_SET_VIEW")(camera, since), otherwise="No command comes any more.")


def connected(camera):
    since = camera.bench.state()["log"]
    camera.show_keys()
    camera.tap("view")
    camera.bench.until(lambda: logged("command", "SFIELD_SET_VIEW")(camera, since))
    camera.show_keys()


def command_to_a_new_recorder(camera):
    camera.bench.action("recorderRestart")
    camera.bench.until(lambda: camera.bench.state()["video"], otherwise="The recorder does not come back.")
    camera.show_keys()
    camera.tap("view")


def recorders(calls):
    """Those on the command socket, the status queue and its segment: the X server has sockets and segments, too."""
    found, segment = set(), None
    for at, call in enumerate(calls):
        is_segment = segment is not None and call.text.startswith(f"{segment},")
        if call.name == "shmget":
            is_segment = "IPC_PRIVATE" not in call.text
            segment = call.text.rsplit("= ", 1)[-1] if is_segment else segment
        if is_segment or call.name.startswith("msg") or "SOCK_SEQPACKET" in call.text or "<UNIX:[" in call.text:
            found.add(at)
    return found


def mute(camera):
    camera.touched = time.monotonic()
    camera.bench.event("RECV_ZEL_STATUS_MUTE_ON", 1)


def next_event(camera):
    camera.bench.event("RECV_ZEL_STATUS_MUTE_OFF", 1)
    camera.bench.wait(box="R_MUTE_OFF")


def remove(*paths):
    def reset(camera):
        for path in paths:
            camera.path(path).unlink(missing_ok=True)

    return reset


def as_ever(camera):
    """The screen, opened once more, looks as it always does: it is drawn whole as soon as what it needs can be had again."""
    camera.home()
    camera.go("mainmenu/sd_management")
    camera.bench.wait(screen="SDMANAGEMENT")

    def drawn():
        return dashcam.pixels(camera.bench.picture(raw=True), (0, 0, 480, 190))

    if not camera.looks:
        camera.bench.until(lambda: len(set(drawn())) > 100)
        camera.looks = drawn()
    camera.bench.until(lambda: drawn() == camera.looks, timeout=5, otherwise="The screen does not look as ever.")
    camera.home()


def picture_without_copy(camera):
    camera.path(ON_CARD).write_bytes(bitmap())
    camera.path(COPY).unlink(missing_ok=True)


def bitmap():
    """480 x 320, 24 bits."""
    pixels = bytes(range(240)) * (480 * 320 * 3 // 240)
    return b"BM" + struct.pack("<IHHI", 54 + len(pixels), 0, 0, 54) + struct.pack("<IiiHHIIiiII", 40, 480, 320, 1, 24, 0, len(pixels), 0, 0, 0, 0) + pixels  # fmt: skip


def other_settings(camera):
    """The own file has other values than the recorder's, which it gets at the start; the other files are not the factory's."""
    askew(camera)
    camera.path(LED).write_bytes(led_list({2}))
    text = camera.path(OWN).read_text()
    camera.path(OWN).write_text(re.sub("fps=.*", "fps=7", text))


def as_the_recorder_has(before):
    return {OWN: {**ini(before[OWN]), "drivingsetting/fps": "0"}}


def report(camera):
    camera.bench.action("report", kind="3 levels")


def next_report(camera):
    report(camera)
    camera.bench.wait(screen="PFILEGRAPH")
    camera.home()


def is_up_again(camera, since):
    return camera.bench.screen


# The longest first: they are done side by side.
OPERATIONS = (
    Operation(
        "calibration",
        reset=askew,
        before=touch_all_but_the_last,
        act=lambda camera: camera.bench.tap(*TARGETS[-1]),
        ended=box("TOUCH_COM_SUCCESS", "TOUCH_COM_FAIL_RETRY"),
        writes=(TOUCH, TUNING),
        good=("TOUCH_COM_SUCCESS",),
        save_next=menu_and_back,
        again=True,
    ),
    Operation(
        "scan",
        reset=twenty_recordings,
        before=through("mainmenu/play_list"),
        act=tap("yes"),
        ended=number_of_files,
        reads=(CARD, f"{CARD}/*.avi", STOPS),
        good=("all",),
        may_miss=(CARD,),
        again=True,
    ),
    Operation(
        "settings",
        before=through("mainmenu/driving", "drivingsetting/speed_display", then="DRIVINGSETTING"),
        act=tap("home"),
        ended=is_sent,
        writes=(OWN,),
        expected=changed("drivingsetting/gps_speed_display", 2),
        good=("sent",),
        save_next=menu_and_back,
        again=True,
    ),
    Operation(
        "start",
        reset=other_settings,
        act=nothing,
        ended=is_up_again,
        writes=(OWN, TOUCH, TUNING, LED),
        reads=(RECORDERS,),
        expected=as_the_recorder_has,
        good=("PREVIEW",),
        may_miss=(RECORDERS,),  # for once the own values stay
        save_next=menu_and_back,
        at_start=True,
    ),
    Operation(
        "pictures",
        before=through(then="MAINMENU"),
        act=tap("mainmenu/sd_management"),
        ended=screen("SDMANAGEMENT"),
        reads=("/opt/gui/images/sdmanagement/*.bmp", "/opt/gui/images/common/back_normal.bmp"),
        good=("SDMANAGEMENT",),
        afterwards=as_ever,
    ),
    Operation(
        "led-number",
        reset=put(LED, led_list({1})),
        before=to_led("ledsetting/led_number", "7", "save", then="IS_INPUT_NUMBER_SAVE"),
        act=tap("yes"),
        ended=box("FILE_SAVE", "FILE_SAVE_FAIL"),
        writes=(LED,),
        expected=lambda before: {LED: [*names_of(before[LED]), (b"7", 0)]},
        good=("FILE_SAVE",),
        told=("FILE_SAVE_FAIL",),
        save_next=save_the_list,
    ),
    Operation(
        "led-ticks",
        reset=put(LED, led_list({1})),
        before=to_led("ledsetting/led_filelist", "row 3", "save", then="LED_FILE_UPDATE_SAVE"),
        act=tap("yes"),
        ended=box("FILE_SAVE", "FILE_SAVE_FAIL"),
        writes=(LED,),
        expected=lambda before: {LED: [(name, int(tick or i == 2)) for i, (name, tick) in enumerate(names_of(before[LED]))]},
        good=("FILE_SAVE",),
        told=("FILE_SAVE_FAIL",),
        save_next=save_the_list,
    ),
    Operation(
        "led-delete",
        reset=put(LED, led_list({3})),
        before=to_led("ledsetting/led_filelist", "delete", then="LED_FILE_UPDATE_DELETE"),
        act=tap("yes"),
        ended=box("FILE_DELETE", "FILE_DELETE_FAIL"),
        writes=(LED,),
        expected=lambda before: {LED: [(n, int(i == 0)) for i, (n, tick) in enumerate(names_of(before[LED])) if not tick]},
        good=("FILE_DELETE",),
        told=("FILE_DELETE_FAIL",),
        save_next=save_the_list,
    ),
    Operation(
        "setting",
        before=lambda camera: camera.show_keys(),
        act=tap("view"),
        ended=logged("command", "SFIELD_SET_VIEW"),
        writes=(OWN,),
        expected=changed("view/display", 3),
        good=("SFIELD_SET_VIEWPIP", "SFIELD_SET_VIEWFRONT", "SFIELD_SET_VIEWREAR"),
        save_next=menu_and_back,
        again=True,
    ),
    Operation(
        "own-picture",
        reset=picture_without_copy,
        act=nothing,
        ended=is_up_again,
        writes=(COPY,),
        reads=(ON_CARD,),
        expected=lambda before: {COPY: bitmap()},
        good=("PREVIEW",),
        at_start=True,
    ),
    Operation(
        "first-start",
        reset=remove(TOUCH, TUNING),
        act=nothing,
        ended=is_up_again,
        writes=(TOUCH, TUNING),
        good=("PREVIEW",),
        at_start=True,
    ),
    Operation(
        "link-at-start",
        act=nothing,
        ended=is_up_again,
        own=recorders,
        calls=("msgget", "msgctl", "msgrcv", "shmget", "shmctl", "shmat", "socket", "connect", "sendto", "recvfrom"),
        good=("PREVIEW",),
        afterwards=next_command,
        at_start=True,
    ),
    Operation(
        "report",
        before=lambda camera: camera.show_keys(),
        act=report,
        ended=lambda camera, since: screen("PFILEGRAPH")(camera, since) or box("R_PARK_MODE_OUT", kind="event")(camera, since),
        reads=(REPORT,),
        good=("PFILEGRAPH",),
        told=("R_PARK_MODE_OUT",),
        afterwards=next_report,
        again=True,
    ),
    Operation(
        "touch",
        before=connected,
        act=tap("view"),
        ended=answered,
        reads=("/dev/input/event0",),
        good=("answered",),
        told=("over",),
        afterwards=next_command,
        again=True,
    ),
    Operation(
        "command",
        before=connected,
        act=tap("view"),
        ended=answered,
        own=recorders,
        calls=("recvfrom", "sendto", "poll"),
        good=("answered",),
        told=("over",),
        afterwards=next_command,
        again=True,
    ),
    Operation(
        "connecting",
        before=lambda camera: camera.show_keys(),
        act=command_to_a_new_recorder,
        ended=answered,
        own=recorders,
        calls=("socket", "connect", "recvfrom", "sendto"),
        good=("answered",),
        told=("over",),
        afterwards=next_command,
    ),
    Operation(
        "event",
        before=lambda camera: camera.show_keys(),
        act=mute,
        ended=lambda camera, since: box("R_MUTE_ON", kind="event")(camera, since) or (time.monotonic() > camera.touched + 1 and "over"),
        calls=("msgrcv",),
        good=("R_MUTE_ON",),
        told=("over",),
        afterwards=next_event,
        again=True,
    ),
    Operation(
        "memory",
        before=through(then="MAINMENU"),
        act=tap("mainmenu/sd_management"),
        ended=screen("SDMANAGEMENT"),
        calls=("brk", "mmap", "mremap"),
        good=("SDMANAGEMENT",),
        afterwards=as_ever,
    ),
)
