"""Lines drawn and written as an operator does it on telvane.exe with telvane-board-sim on
COM3: the "1" width picked, a triangle clicked on the display with the real pointer and
ended with a right click, shown in blue; "Start Writing" writes it with one laser-on
period and saves it as LinePattern.txt in the run folder. Screenshots land in
build/e2e-artifacts/lines-*.png."""
import glob
import os
import subprocess
import time
import unittest

from e2e_support import TITLE, Board, WineSession, close_program, points_of, wait_progress

START_WRITING = (1362 + 50, 980 + 20)
LINE_WIDTH_1 = (1262 + 10, 517 + 10)
CORNERS = [(616, 514), (716, 514), (716, 614), (616, 514)]
BLUE = (0, 0, 255)


def laser_periods(commands):
    """How often the laser voltage channel went up in a board command log."""
    periods, up = 0, False
    for command in commands:
        if command.startswith("G 5 "):
            periods += int(command[4:]) > 0 and not up
            up = int(command[4:]) > 0
    return periods


class LinesUnderWine(unittest.TestCase):
    def test_a_triangle_drawn_with_the_pointer_is_written_and_saved(self):
        with WineSession("line_drawing") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                session.dismiss_message_boxes_until(TITLE)
                session.click_client(TITLE, *LINE_WIDTH_1)
                for x, y in CORNERS:
                    session.click_client(TITLE, x, y)
                    time.sleep(0.3)
                sx, sy = session.inspect("screen", TITLE, 616, 514)
                subprocess.run(["xdotool", "mousemove", str(sx), str(sy), "click", "3"],
                               env=session.env, check=True)
                time.sleep(1)
                shot = session.screenshot("lines-drawn")
                blue = points_of(session, shot, BLUE, 600, 500, 130, 130)
                for point in [(666, 514), (716, 564), (666, 564)]:  # the three sides
                    self.assertIn(point, blue)

                before = len(board.commands())
                session.click_client(TITLE, *START_WRITING)
                wait_progress(session, "All Writings finished", timeout=120)
                commands = board.commands()[before:]
                session.screenshot("lines-written")
                self.assertEqual(laser_periods(commands), 1)
                saved = glob.glob(os.path.join(session.desktop, "Orvalin_Data", "*",
                                               "LinePattern.txt"))
                self.assertEqual(len(saved), 1)
                with open(saved[0]) as f:
                    lines = f.read().splitlines()
                self.assertEqual(len(lines), 3)
                self.assertTrue(all(line.endswith(",1") for line in lines), lines)
                close_program(session)
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
