"""A mask written and looked at as an operator does it on telvane-sim.exe, the virtual
station. A file that is no picture, picked in the real file dialog, gives nothing to
write; the mask (black squares on a transparent background) then goes through "Mask
Pattern", "Show Target Pattern", "Find Edges", "Grouping", "Simulate Writing" and "Start
Writing" until "All Writings finished": the blue simulation and the green painting of the
written cells cover exactly its dark cells. With the lamp and the video on, the live
picture shows the sample sharp at the focus height; "Save Image" writes it as
optic(0).jpg holding PNG data; "Wide View" shows nine pictures round the stage; and the
picture blurs once "Wafer" lowers the stage. Screenshots land in build/e2e-artifacts."""
import glob
import os
import struct
import subprocess
import time
import unittest
import zlib

from e2e_support import (TITLE, WineSession, answer_file_dialog, close_program, points_of,
                         wait_progress, wait_until)

IMPORT_IMAGE, MASK_PATTERN, SHOW_TARGET, FIND_EDGES, GROUPING = 32812, 32807, 32813, 32794, 32806
SIMULATE, SAVE_IMAGE, WIDE_VIEW, WAFER = 32814, 32804, 2150, 32002
ILLUMINATION_ON, VIDEO_ON = 3105, 2112
START_WRITING = (1362 + 50, 980 + 20)
INSIDE = (117, 15, 998, 998)  # inside the writing area's green outline (116, 14) - (1115, 1013)
# Dark squares of the mask, (left, top, right, bottom) in units of 10 x 10 cells from the
# top-left: one in the fine centre, one in the coarse outer area.
DARK = [(47, 47, 53, 52), (10, 70, 15, 75)]
BLUE, GREEN = (0, 0, 255), (0, 255, 0)


def write_mask(path):
    """The mask as a 2000 x 2000 RGBA PNG, transparent but for the opaque black squares:
    "Mask Pattern" renders it at that size, so no interpolation blurs its edges. Each unit
    of DARK is 20 pixels (10 cells)."""
    rows = []
    for py in range(2000):
        row = bytearray(b"\xff\xff\xff\x00" * 2000)
        for l, t, r, b in DARK:
            if 20 * t <= py < 20 * b:
                row[80 * l:80 * r] = b"\x00\x00\x00\xff" * (20 * (r - l))
        rows.append(b"\x00" + bytes(row))

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data +
                struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF))

    header = struct.pack(">IIBBBBB", 2000, 2000, 8, 6, 0, 0, 0)
    with open(path, "wb") as png:
        png.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                  + chunk(b"IDAT", zlib.compress(b"".join(rows))) + chunk(b"IEND", b""))


def mask_points():
    """Client points of the mask's dark cells: cell (x, y), row 0 at the bottom, is at
    (116 + x, 1014 - y); in picture rows from the top that is 15 + row."""
    return {(116 + x, 15 + y) for l, t, r, b in DARK
            for x in range(10 * l, 10 * r) for y in range(10 * t, 10 * b)}


def sharpness(session, path):
    """Mean edge strength of the middle of the display window in a screenshot."""
    left, top = session.screen_point(TITLE, 300, 250)
    out = subprocess.run(["convert", path, "-crop", "600x500+%d+%d" % (left, top), "-colorspace",
                          "gray", "-edge", "1", "-format", "%[fx:mean]", "info:"],
                         check=True, capture_output=True, text=True)
    return float(out.stdout.strip())


class RasterWritingUnderWine(unittest.TestCase):
    def run_commands(self, session, *commands):
        for command in commands:
            session.inspect("command", TITLE, command)
            time.sleep(3)
            shot = session.screenshot("raster_%d" % command)
        return shot

    def test_a_mask_written_on_the_virtual_station_and_looked_at(self):
        with WineSession("raster_sim") as session:
            session.start("telvane-sim.exe")
            session.dismiss_message_boxes_until(TITLE)
            not_a_picture = os.path.join(session.folder, "notes.txt")
            with open(not_a_picture, "w") as f:
                f.write("no picture\n")
            session.inspect("command", TITLE, IMPORT_IMAGE)
            answer_file_dialog(session, not_a_picture)
            shot = self.run_commands(session, MASK_PATTERN, SIMULATE)
            self.assertEqual(points_of(session, shot, BLUE, *INSIDE), set())

            mask = os.path.join(session.folder, "mask.png")
            write_mask(mask)
            session.inspect("command", TITLE, IMPORT_IMAGE)
            answer_file_dialog(session, mask)
            shot = self.run_commands(session, MASK_PATTERN, SHOW_TARGET, FIND_EDGES, GROUPING,
                                     SIMULATE)
            self.assertEqual(points_of(session, shot, BLUE, *INSIDE), mask_points())
            session.click_client(TITLE, *START_WRITING)
            wait_progress(session, "All Writings finished", timeout=240)
            shot = session.screenshot("raster_written")
            self.assertEqual(points_of(session, shot, GREEN, *INSIDE), mask_points())
            self.assertEqual(points_of(session, shot, BLUE, *INSIDE), set())

            session.inspect("command", TITLE, ILLUMINATION_ON)
            session.inspect("command", TITLE, VIDEO_ON)
            time.sleep(3)
            sharp = sharpness(session, session.screenshot("camera-live-focused"))
            self.assertGreater(sharp, 0.02)
            session.inspect("command", TITLE, SAVE_IMAGE)
            saved = os.path.join(session.desktop, "Orvalin_Data", "*", "optic(0).jpg")
            wait_until(lambda: glob.glob(saved), 20, "no optic(0).jpg")
            with open(glob.glob(saved)[0], "rb") as picture:
                self.assertEqual(picture.read(8), b"\x89PNG\r\n\x1a\n")
            session.inspect("command", TITLE, WIDE_VIEW)
            time.sleep(25)
            session.screenshot("camera-wide-view")
            for command in (ILLUMINATION_ON, VIDEO_ON, WAFER):
                session.inspect("command", TITLE, command)
            blurred = []
            wait_until(lambda: blurred.append(sharpness(session, session.screenshot(
                "camera-live-defocused"))) or blurred[-1] < sharp / 2, 60,
                lambda: "still sharp: %.4f of %.4f" % (blurred[-1], sharp), poll=3)
            close_program(session)


if __name__ == "__main__":
    unittest.main()
