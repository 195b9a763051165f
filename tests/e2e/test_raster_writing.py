"""A mask written as an operator writes it on telvane-sim.exe, the virtual station: the
mask picked in the real file dialog, then "Mask Pattern", "Show Target Pattern", "Find
Edges", "Grouping", "Simulate Writing" and "Start Writing" until "All Writings finished".
The blue simulation and the green painting of the written cells cover exactly the mask's
dark cells, and the lamp and the video afterwards show the darkened resist. Screenshots
of every stage land in build/e2e-artifacts/raster_*.png."""
import os
import struct
import time
import unittest
import zlib

from e2e_support import (TITLE, WineSession, answer_file_dialog, close_program, points_of,
                         wait_progress)

IMPORT_IMAGE, MASK_PATTERN, SHOW_TARGET, FIND_EDGES, GROUPING = 32812, 32807, 32813, 32794, 32806
SIMULATE, ILLUMINATION_ON, VIDEO_ON = 32814, 3105, 2112
START_WRITING = (1362 + 50, 980 + 20)
# Dark squares of the mask, (left, top, right, bottom) in units of 10 x 10 cells from the
# top-left: one in the fine centre, one in the coarse outer area.
DARK = [(47, 47, 53, 52), (10, 70, 15, 75)]
BLUE, GREEN = (0, 0, 255), (0, 255, 0)


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


def mask_points():
    """Client points of the mask's dark cells: cell (x, y), row 0 at the bottom, is at
    (116 + x, 1014 - y); in picture rows from the top that is 15 + row."""
    return {(116 + x, 15 + y) for l, t, r, b in DARK
            for x in range(10 * l, 10 * r) for y in range(10 * t, 10 * b)}


class RasterWritingUnderWine(unittest.TestCase):
    def test_a_mask_written_on_the_virtual_station(self):
        with WineSession("raster_sim") as session:
            session.start("telvane-sim.exe")
            session.dismiss_message_boxes_until(TITLE)
            mask = os.path.join(session.folder, "mask.png")
            write_mask(mask)
            session.inspect("command", TITLE, IMPORT_IMAGE)
            answer_file_dialog(session, mask)
            time.sleep(3)
            session.screenshot("raster_1_imported")
            for number, command in enumerate((MASK_PATTERN, SHOW_TARGET, FIND_EDGES, GROUPING,
                                              SIMULATE), start=2):
                session.inspect("command", TITLE, command)
                time.sleep(3)
                shot = session.screenshot("raster_%d_%d" % (number, command))
            # Inside the writing area's green outline (116, 14) - (1115, 1013).
            inside = (117, 15, 998, 998)
            expected = mask_points()
            self.assertEqual(points_of(session, shot, BLUE, *inside), expected)

            session.click_client(TITLE, *START_WRITING)
            wait_progress(session, "All Writings finished", timeout=240)
            shot = session.screenshot("raster_7_written")
            self.assertEqual(points_of(session, shot, GREEN, *inside), expected)
            self.assertEqual(points_of(session, shot, BLUE, *inside), set())

            session.inspect("command", TITLE, ILLUMINATION_ON)
            session.inspect("command", TITLE, VIDEO_ON)
            time.sleep(4)
            session.screenshot("raster_8_camera")
            close_program(session)


if __name__ == "__main__":
    unittest.main()
