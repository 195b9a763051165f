"""What the operator stories share: the board simulator on COM3, the real file dialog,
waiting for the program, and reading pixels of a screenshot."""
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
from wine_session import BIN, WineSession  # noqa: E402,F401

TITLE = "Telvane"
PROGRESS_BOX = [1262, 380, 170, 20]


class Board:
    """telvane-board-sim linked as the session's COM3; its log holds every command (and a
    line for every dwell of the laser, which commands() leaves out)."""

    def __init__(self, session, *faults):
        self.log = os.path.join(session.folder, "board.log")
        link = os.path.join(session.prefix, "dosdevices", "com3")
        self.process = subprocess.Popen(
            [os.path.join(BIN, "telvane-board-sim"), "--link", link, "--log", self.log, *faults],
            stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True)
        self.process.stdout.readline()  # the terminal's path: the link exists from here on

    def commands(self):
        with open(self.log) as log:
            entries = [line.rstrip("\n").split(" ", 1)[1] for line in log]
        return [entry for entry in entries if not entry.startswith("dwell ")]

    def wait_for(self, tail, timeout=20):
        wait_until(lambda: self.commands()[-len(tail):] == tail, timeout,
                   lambda: "board log ends %r, not %r" % (self.commands()[-8:], tail))

    def stop(self):
        self.process.terminate()
        self.process.wait(timeout=10)
        self.process.stdout.close()


def wait_until(condition, timeout, message, poll=0.3):
    deadline = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(message() if callable(message) else message)
        time.sleep(poll)


def answer_file_dialog(session, unix_path):
    """Types the path into the real "Open" dialog (drive Z: is the Linux root)."""
    if not session.wait_window("Open"):
        raise AssertionError("no file dialog")
    subprocess.run(["xdotool", "search", "--name", "^Open$", "windowfocus", "--sync", "type",
                    "--delay", "30", "Z:" + unix_path.replace("/", "\\")],
                   env=session.env, check=True)
    subprocess.run(["xdotool", "key", "Return"], env=session.env, check=True)


def children(session, title=TITLE):
    return {c["id"]: c for c in session.controls(title)["children"] if c["id"]}


def wait_progress(session, text, timeout=300):
    def shown():
        window = session.controls(TITLE)
        return window and any(c["rect"] == PROGRESS_BOX and c["caption"] == text
                              for c in window["children"])
    wait_until(shown, timeout, "the progress box never read %r" % text, poll=2)


def points_of(session, shot, colour, left, top, width, height):
    """Client points of the main window in the rectangle that show colour (r, g, b)."""
    sx, sy = session.screen_point(TITLE, left, top)
    rgb = subprocess.run(["convert", shot, "-crop", "%dx%d+%d+%d" % (width, height, sx, sy),
                          "+repage", "-depth", "8", "rgb:-"], capture_output=True,
                         check=True).stdout
    wanted = bytes(colour)
    return {(left + i % width, top + i // width) for i in range(width * height)
            if rgb[3 * i:3 * i + 3] == wanted}


def close_program(session):
    session.inspect("close", TITLE)
    if session.wait_exit() != 0:
        raise AssertionError("telvane did not end cleanly")
