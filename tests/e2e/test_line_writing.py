"""Lines and the test menu of telvane.exe under Wine on telvane-board-sim, as an operator
works: a line file is imported through the real file dialog and drawn in blue over the
display; a triangle drawn with real pointer clicks and ended with a right click is written
by "Start Writing" with one laser-on period and saved as LinePattern.txt in the run
folder; the long stroke test runs from the menu to its end, leaves its record and brings
the stage back. Screenshots land in build/e2e-artifacts."""
import glob
import os
import subprocess
import sys
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "scripts"))
sys.path.insert(0, HERE)
from wine_session import WineSession  # noqa: E402
from test_controller_link import Board  # noqa: E402

TITLE = "Telvane"
IMPORT_LINE_PATTERNS = 32823
DELETE_ALL_LINES = 32818
LONG_STROKE_TEST = 32833
START_WRITING = (1362 + 50, 980 + 20)
LINE_WIDTH_1 = (1262 + 10, 517 + 10)
X_POSITION_BOX = (1262, 230, 50, 20)
ZOOM = 1232 / 737  # the camera view's display pixels per um, the zoom at start


def laser_periods(commands):
    """(raised, lowered) counts of the laser voltage channel in a board command log."""
    raised = lowered = 0
    up = False
    for command in commands:
        if command.startswith("G 5 "):
            value = int(command.split()[2])
            if value > 0 and not up:
                raised += 1
            elif value == 0 and up:
                lowered += 1
            up = value > 0
    return raised, lowered


def wait_quiet(board, seconds=3.0, timeout=400):
    """Waits until the board has had no new command for `seconds`; returns the log."""
    deadline = time.monotonic() + timeout
    seen, since = -1, time.monotonic()
    while time.monotonic() < deadline:
        count = len(board.commands())
        if count != seen:
            seen, since = count, time.monotonic()
        elif time.monotonic() - since >= seconds:
            return board.commands()
        time.sleep(0.5)
    raise AssertionError("the board never went quiet: %r" % board.commands()[-8:])


def pixel(session, shot, x, y):
    """(r, g, b) of main-window client point (x, y) in a screenshot."""
    sx, sy = session.inspect("screen", TITLE, x, y)
    channels = ",".join("%%[fx:int(255*p{%d,%d}.%s)]" % (sx, sy, c) for c in "rgb")
    out = subprocess.run(["convert", shot, "-format", channels, "info:"],
                         check=True, capture_output=True, text=True)
    return tuple(int(v) for v in out.stdout.split(","))


def run_folder(session):
    folders = glob.glob(os.path.join(session.desktop, "Orvalin_Data", "*_*"))
    return folders[0] if folders else None


class LinesUnderWine(unittest.TestCase):
    def start(self, session):
        board = Board(session)
        session.start("telvane.exe")
        return board

    def answer_file_dialog(self, session, unix_path):
        self.assertTrue(session.inspect("wait", "Open", 20000), "no file dialog")
        windows_path = "Z:" + unix_path.replace("/", "\\")
        subprocess.run(["xdotool", "search", "--name", "^Open$", "windowfocus", "--sync",
                        "type", "--delay", "30", windows_path], env=session.env, check=True)
        subprocess.run(["xdotool", "key", "Return"], env=session.env, check=True)

    def test_imported_lines_are_drawn_and_the_long_stroke_test_runs_to_its_end(self):
        with WineSession("line_import") as session:
            board = self.start(session)
            try:
                session.dismiss_message_boxes_until(TITLE)
                lines = os.path.join(session.desktop, "lines.txt")
                with open(lines, "w") as f:
                    f.write("0.000000,0.000000,100.000000,0.000000,10\n"
                            "100.000000,0.000000,100.000000,100.000000,10\n")
                session.inspect("command", TITLE, IMPORT_LINE_PATTERNS)
                self.answer_file_dialog(session, lines)
                # Blue (COLORREF 0xFF0000) along y 514 from x 616 and down x 783, once the
                # dialog has gone.
                points = [(700, 514), (616 + int(100 * ZOOM), 600)]
                deadline = time.monotonic() + 20
                while True:
                    shot = session.screenshot("lines-imported")
                    colours = [pixel(session, shot, *point) for point in points]
                    if all(b > 200 and r + g < 60 for r, g, b in colours):
                        break
                    self.assertLess(time.monotonic(), deadline, "lines not blue: %r" % colours)
                    time.sleep(1)

                session.inspect("command", TITLE, LONG_STROKE_TEST)
                commands = wait_quiet(board)
                folder = run_folder(session)
                self.assertIsNotNone(folder)
                with open(os.path.join(folder, "long stroke writing condition(0).txt")) as f:
                    self.assertEqual(f.readline(), "laser shift:(0,0,0)\n")
                # Five rows at 4.1 .. 4.5 V, the voltage lowered before each row move.
                self.assertEqual(laser_periods(commands), (5, 5))
                raised = [c for c in commands if c.startswith("G 5 ") and c != "G 5 0"]
                self.assertEqual(raised, ["G 5 209", "G 5 214", "G 5 219", "G 5 224",
                                          "G 5 229"])
                # The stage ends where it started.
                self.assertEqual([c for c in commands if c[0] == "m"][-1], "m0")
                self.assertEqual([c for c in commands if c[0] == "M"][-1], "M0")
                session.inspect("close", TITLE)
                self.assertEqual(session.wait_exit(), 0)
            finally:
                board.stop()

    def test_a_triangle_drawn_with_the_pointer_is_written_and_saved(self):
        with WineSession("line_drawing") as session:
            board = self.start(session)
            try:
                session.dismiss_message_boxes_until(TITLE)
                session.click_client(TITLE, *LINE_WIDTH_1)
                corners = [(616, 514), (716, 514), (716, 614), (616, 514)]
                for x, y in corners:
                    session.click_client(TITLE, x, y)
                    time.sleep(0.3)
                sx, sy = session.inspect("screen", TITLE, 616, 514)
                subprocess.run(["xdotool", "mousemove", str(sx), str(sy), "click", "3"],
                               env=session.env, check=True)
                time.sleep(1)
                session.screenshot("lines-drawn")

                before = len(board.commands())
                session.click_client(TITLE, *START_WRITING)
                commands = wait_quiet(board, seconds=4)[before:]
                session.screenshot("lines-written")
                self.assertEqual(laser_periods(commands), (1, 1))
                folder = run_folder(session)
                self.assertIsNotNone(folder)
                with open(os.path.join(folder, "LinePattern.txt")) as f:
                    saved = f.read().splitlines()
                self.assertEqual(len(saved), 3)
                self.assertTrue(all(line.endswith(",1") for line in saved), saved)
                session.inspect("close", TITLE)
                self.assertEqual(session.wait_exit(), 0)
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
