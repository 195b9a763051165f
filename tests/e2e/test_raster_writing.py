"""A mask written as an operator writes it: telvane.exe under Wine with telvane-board-sim
on COM3, and telvane-sim.exe with its virtual station. "Import Image" is answered in the real file dialog, then "Mask Pattern", "Show Target
Pattern" (which builds the target the edges are found on), "Find Edges", "Grouping",
"Simulate Writing" and "Start Writing"; the run ends with "All Writings finished", and
"Final Pattern" shows what was written. The
strokes the board was sent cover the mask's dark area with the laser voltage up, and
the green painting on the main window covers it too. Screenshots of every stage are kept
in build/e2e-artifacts/raster_*.png and raster_sim_*.png."""
import os
import struct
import subprocess
import sys
import time
import unittest
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.path.insert(0, os.path.join(HERE, "..", "..", "scripts"))
from wine_session import WineSession  # noqa: E402
from test_controller_link import Board  # noqa: E402

TITLE = "Telvane"
IMPORT_IMAGE, MASK_PATTERN, SHOW_TARGET, FIND_EDGES, GROUPING = 32812, 32807, 32813, 32794, 32806
SIMULATE, FINAL_PATTERN = 32814, 32816
ILLUMINATION_ON, VIDEO_ON = 3105, 2112
START_WRITING = (1362, 980, 100, 40)
PROGRESS_BOX = (1262, 380, 170, 20)
AREA_LEFT, AREA_TOP = 116, 14  # the writing area in the main window's client area
# Dark squares of the mask, (left, top, right, bottom) in units of 10 x 10 cells from the
# top-left: one in the fine centre, one in the coarse outer area.
DARK = [(47, 47, 53, 52), (10, 70, 15, 75)]


def write_mask(path):
    """The mask as a 2000 x 2000 PNG: "Mask Pattern" renders it at that size, so no
    interpolation blurs its edges. Each unit of DARK is 20 pixels (10 cells)."""
    rows = []
    for py in range(2000):
        row = bytearray(b"\xff" * 6000)
        for l, t, r, b in DARK:
            if 20 * t <= py < 20 * b:
                row[60 * l:60 * r] = b"\x00" * (60 * (r - l))
        rows.append(b"\x00" + bytes(row))

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF))

    header = struct.pack(">IIBBBBB", 2000, 2000, 8, 2, 0, 0, 0)
    with open(path, "wb") as png:
        png.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                  + chunk(b"IDAT", zlib.compress(b"".join(rows))) + chunk(b"IEND", b""))


def dark_cells():
    """Cells (x, y) of the pattern, row 0 at the bottom, that the mask makes dark."""
    cells = set()
    for l, t, r, b in DARK:
        for x in range(10 * l, 10 * r):
            for y in range(1000 - 10 * b, 1000 - 10 * t):
                cells.add((x, y))
    return cells


def commanded_exposure(commands):
    """Straight pieces of the commanded XY path while the laser voltage was above 0, in um
    (X 6.4, Y 1.6 steps/um): an X move and the Y move after it are one XY move."""
    path, x, y, next_x, pwm = [], 0.0, 0.0, 0.0, 0
    for c in commands:
        if c.startswith("m"):
            next_x = int(c[1:]) / 6.4
        elif c.startswith("M"):
            next_y = int(c[1:]) / 1.6
            if pwm > 0:
                path.append((x, y, next_x, next_y))
            x, y = next_x, next_y
        elif c.startswith("G 5 "):
            pwm = int(c[4:])
    return path


def distance(path, px, py):
    best = 1e9
    for x0, y0, x1, y1 in path:
        dx, dy = x1 - x0, y1 - y0
        length2 = dx * dx + dy * dy
        t = 0.0 if length2 == 0 else max(0.0, min(1.0, ((px - x0) * dx + (py - y0) * dy) / length2))
        best = min(best, ((x0 + t * dx - px) ** 2 + (y0 + t * dy - py) ** 2) ** 0.5)
    return best


def green_pixels(shot, left, top):
    """Client pixels (x, y) of the main window that are pure green in the screenshot."""
    text = subprocess.run(["convert", shot, "-crop", "1000x1000+%d+%d" % (left + AREA_LEFT, top + AREA_TOP + 1),
                           "+repage", "-fill", "black", "+opaque", "rgb(0,255,0)", "txt:-"],
                          capture_output=True, text=True, check=True).stdout
    found = set()
    for line in text.splitlines()[1:]:
        where, _, colour = line.partition(":")
        if "#00FF00" in colour:
            x, y = map(int, where.split(","))
            found.add((x + AREA_LEFT, y + AREA_TOP + 1))
    return found


class RasterWritingUnderWine(unittest.TestCase):
    def prepare_and_write(self, session, prefix):
        """The operator's way through the menus, a screenshot at every stage; returns the
        main window's title and the screenshot of the written pattern."""
        mask = os.path.join(session.folder, "mask.png")
        write_mask(mask)
        session.inspect("command", TITLE, IMPORT_IMAGE)
        self.assertTrue(session.inspect("wait", "Open", 20000), "no file dialog")
        subprocess.run(["xdotool", "search", "--name", "^Open$", "windowfocus", "--sync",
                        "type", "Z:" + mask.replace("/", "\\")], env=session.env, check=True)
        subprocess.run(["xdotool", "key", "Return"], env=session.env, check=True)
        time.sleep(3)
        session.screenshot(prefix + "_1_imported")

        for command, name in ((MASK_PATTERN, "_2_mask_pattern"), (SHOW_TARGET, "_3_target_pattern")):
            session.inspect("command", TITLE, command)
            time.sleep(3)
            session.screenshot(prefix + name)

        session.inspect("command", TITLE, FIND_EDGES)
        time.sleep(3)
        title = TITLE
        session.screenshot(prefix + "_4_edges")

        for command, name in ((GROUPING, "_5_grouping"), (SIMULATE, "_6_simulation")):
            session.inspect("command", title, command)
            time.sleep(3)
            session.screenshot(prefix + name)

        session.click_client(title, START_WRITING[0] + 50, START_WRITING[1] + 20)
        deadline = time.monotonic() + 240
        while True:
            self.assertLess(time.monotonic(), deadline, "the run never finished")
            time.sleep(2)
            controls = session.controls(title)
            if controls and any(c["rect"] == list(PROGRESS_BOX) and
                                c["caption"] == "All Writings finished"
                                for c in controls["children"]):
                break
        return title, session.screenshot(prefix + "_7_written")

    def assert_green_painting_is_the_mask(self, session, title, shot):
        """The green painting: exactly the dark cells, at (x + 116, 1014 - y)."""
        left, top = session.inspect("screen", title, 0, 0)
        # The writing area's own green outline (116, 14) - (1115, 1013) is left out.
        inside = lambda p: 116 < p[0] < 1115 and 14 < p[1] < 1013  # noqa: E731
        painted = set(filter(inside, green_pixels(shot, left, top)))
        expected = set(filter(inside, ((x + AREA_LEFT, 1014 - y) for x, y in dark_cells())))
        self.assertEqual(len(expected - painted), 0)
        self.assertEqual(len(painted - expected), 0)

    def test_a_mask_written_through_the_board_simulator(self):
        with WineSession("raster_writing") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                session.dismiss_message_boxes_until(TITLE)
                before = len(board.commands())
                title, shot = self.prepare_and_write(session, "raster")

                run = board.commands()[before:]
                path = commanded_exposure(run)
                self.assertTrue(path, "nothing was exposed")
                # Stage = board um here: X and Y were read as 0 at the start of the run, and
                # the laser shift and the offsets are 0. Fine cells within 0.7 um of a
                # stroke, coarse ones within a 5 x 5 block's diagonal.
                missed = []
                for x, y in sorted(dark_cells()):
                    centre = 390 <= x < 610 and 390 <= y < 610
                    if distance(path, x - 500, y - 500) > (0.7 if centre else 7.08):
                        missed.append((x, y))
                self.assertEqual(missed[:10], [])
                self.assertIn("G 5 117", run)  # the fine pass at the inside voltage
                self.assertIn("G 5 132", run)  # the coarse pass at the outside voltage
                self.assert_green_painting_is_the_mask(session, title, shot)

                session.inspect("command", title, FINAL_PATTERN)
                time.sleep(15)  # a million cells set one by one
                session.screenshot("raster_8_final_pattern")

                session.inspect("close", title)
                self.assertEqual(session.wait_exit(), 0)
            finally:
                board.stop()

    def test_a_mask_written_on_the_virtual_station(self):
        """telvane-sim.exe: the same operator's way; afterwards the lamp and the video show
        the resist the virtual laser darkened (kept as raster_sim_8_camera.png)."""
        with WineSession("raster_sim") as session:
            session.start("telvane-sim.exe")
            session.dismiss_message_boxes_until(TITLE)
            title, shot = self.prepare_and_write(session, "raster_sim")
            self.assert_green_painting_is_the_mask(session, title, shot)
            session.inspect("command", title, ILLUMINATION_ON)
            session.inspect("command", title, VIDEO_ON)
            time.sleep(4)
            session.screenshot("raster_sim_8_camera")
            session.inspect("close", title)
            self.assertEqual(session.wait_exit(), 0)


if __name__ == "__main__":
    unittest.main()
