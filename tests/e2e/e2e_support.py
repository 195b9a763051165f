"""What the operator scenarios share: the board simulator on COM3, the controls by id,
the agreement of a written picture with its mask, and pixels of a screenshot."""
import os
import struct
import subprocess
import sys
import zlib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
from first_job import TITLE  # noqa: E402,F401
from wine_session import BIN, WineSession, wait_until  # noqa: E402,F401

INSIDE = (117, 15, 998, 998)  # inside the writing area's green outline (116, 14) - (1115, 1013)
FINE = range(390, 610)        # the finely written centre, cells from the top-left, each way


class Board:
    """telvane-board-sim linked as the session's COM3; its log holds every command (and a
    line for every dwell of the laser, which commands() leaves out)."""

    def __init__(self, session, faults=()):
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


def children(session, title=TITLE):
    return {c["id"]: c for c in session.controls(title)["children"] if c["id"]}


def png_dark_cells(path):
    """The dark cells (x, y from the top-left) of a 1000 x 1000 grey or RGB(A) PNG without
    interlacing, dark as the program takes it: red + green + blue < 128."""
    with open(path, "rb") as f:
        data = f.read()
    at, idat, width = 8, b"", 0
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + size]
        if kind == b"IHDR":
            width, _, depth, colour = struct.unpack(">IIBB", body[:10])
        elif kind == b"IDAT":
            idat += body
        at += 12 + size
    bits = depth * {0: 1, 2: 3, 4: 2, 6: 4}[colour]
    stride, step = (width * bits + 7) // 8, max(1, bits // 8)
    raw, rows, previous = zlib.decompress(idat), [], bytearray(stride)
    for y in range(len(raw) // (stride + 1)):
        kind, row = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):  # the five PNG filters
            a = row[i - step] if i >= step else 0
            b, c = previous[i], previous[i - step] if i >= step else 0
            p = a + b - c
            pred = {0: 0, 1: a, 2: b, 3: (a + b) // 2,
                    4: a if abs(p - a) <= min(abs(p - b), abs(p - c)) else
                    (b if abs(p - b) <= abs(p - c) else c)}[kind]
            row[i] = (row[i] + pred) & 0xFF
        rows.append(bytes(row))
        previous = row
    if bits == 1:
        return {(x, y) for y, row in enumerate(rows) for x in range(width)
                if not row[x // 8] & (0x80 >> (x % 8))}
    channels = 1 if colour in (0, 4) else 3
    return {(x, y) for y, row in enumerate(rows) for x in range(width)
            if sum(row[x * step:x * step + channels]) * (3 // channels) < 128}


def agreement(written, target):
    """Of the cells dark in either, the share dark in both: (fine centre, coarse outside)."""
    def share(inside):
        union = {c for c in written | target if (c[0] in FINE and c[1] in FINE) == inside}
        return len({c for c in union if c in written and c in target}) / max(1, len(union))
    return share(True), share(False)


def cell_agreement(written, target):
    """Of all the cells of the fine centre and of the coarse outside, the shares where the
    written picture and the target agree, dark or bright."""
    fine = sum((c in written) == (c in target) for c in ((x, y) for x in FINE for y in FINE))
    outside_differ = sum(1 for c in written ^ target if not (c[0] in FINE and c[1] in FINE))
    return fine / len(FINE) ** 2, 1 - outside_differ / (10 ** 6 - len(FINE) ** 2)


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
