"""telvane.exe under Wine talking to telvane-board-sim through COM3 (a Wine dosdevices
symlink to the board's pseudo-terminal), as the station's PC talks to its board: the
start-up opens the port twice with the exact command bytes, the laser switch and the
arrow-key jog reach the board, closing the program switches the outputs off, and a board that never answers
delays start-up only by the read time-outs."""
import glob
import os
import subprocess
import sys
import time
import unittest

SCRIPTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts")
sys.path.insert(0, SCRIPTS)
from wine_session import BIN, WineSession  # noqa: E402

TITLE = "Telvane"
OPEN_SEQUENCE = ["z", "p", "P", "Q", "s6", "a32000", "S1", "T1"]
LASER_ON_RADIO = (1362 + 10, 122 + 10)
Y_POSITION_BOX = (1327, 230, 50, 20)
PROGRESS_BOX = (1262, 380, 170, 20)
LAYER_BOXES = (2200, 2201, 2203)  # "Mask", "lines", "Mark"
START_WRITING = 2202


class Board:
    """telvane-board-sim linked as the session's COM3."""

    def __init__(self, session, *faults):
        self.log = os.path.join(session.folder, "board.log")
        link = os.path.join(session.prefix, "dosdevices", "com3")
        self.process = subprocess.Popen(
            [os.path.join(BIN, "telvane-board-sim"), "--link", link, "--log", self.log,
             *faults], stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True)
        self.process.stdout.readline()  # the terminal's path: the link exists from here on

    def commands(self):
        with open(self.log) as log:
            return [line.rstrip("\n").split(" ", 1)[1] for line in log]

    def wait_for(self, tail, timeout=20):
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            if self.commands()[-len(tail):] == tail:
                return
            time.sleep(0.2)
        raise AssertionError("board log ends %r, not %r" % (self.commands()[-8:], tail))

    def stop(self):
        self.process.terminate()
        self.process.wait(timeout=10)
        self.process.stdout.close()


class ControllerLinkUnderWine(unittest.TestCase):
    def test_start_up_laser_and_shutdown_bytes(self):
        with WineSession("controller_link") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                titles = [t for t, _ in session.dismiss_message_boxes_until(TITLE)]
                self.assertNotIn("Warning", titles)
                self.assertNotIn("Scanner Error", titles)
                self.assertNotIn("Communication Error", titles)
                self.assertEqual(board.commands()[:16], OPEN_SEQUENCE * 2)

                session.click_client(TITLE, *LASER_ON_RADIO)
                board.wait_for(["D 6 5", "G 5 117"])

                # The Up arrow jogs Y by +500 um: 800 steps, shown once the board reports.
                session.press_keys(TITLE, "Up")
                deadline = time.monotonic() + 30
                while session.box_text(TITLE, Y_POSITION_BOX) != "500":
                    self.assertLess(time.monotonic(), deadline, "the Y box never showed 500")
                    time.sleep(0.5)
                self.assertIn("M800", board.commands())

                session.inspect("close", TITLE)
                self.assertEqual(session.wait_exit(), 0)
                board.wait_for(["D 6 0", "G 5 0", "D 7 0"])
                self.assertIn('"D 7 0" was sent.', session.output())
            finally:
                board.stop()

    def test_start_writing_with_every_layer_off_runs_the_frame(self):
        with WineSession("writing_frame") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                session.dismiss_message_boxes_until(TITLE)
                children = session.controls(TITLE)["children"]
                rect = {c["id"]: c["rect"] for c in children if c["id"]}
                check = {c["id"]: c["check"] for c in children if c["id"]}
                self.assertEqual([check[i] for i in LAYER_BOXES], [1, 1, 1])
                for box in LAYER_BOXES:
                    x, y, _, _ = rect[box]
                    session.click_client(TITLE, x + 8, y + 10)
                check = {c["id"]: c["check"] for c in session.controls(TITLE)["children"]
                         if c["id"]}
                self.assertEqual([check[i] for i in LAYER_BOXES], [0, 0, 0])

                before = len(board.commands())
                x, y, _, _ = rect[START_WRITING]
                session.click_client(TITLE, x + 50, y + 20)
                deadline = time.monotonic() + 60
                while session.box_text(TITLE, PROGRESS_BOX) != "All Writings finished":
                    self.assertLess(time.monotonic(), deadline, "the run never finished")
                    time.sleep(0.5)
                session.screenshot("writing_frame_finished")
                run = board.commands()[before:]
                moves = [c for c in run if c[:1] in ("m", "M", "L")]
                # To the writing place (the laser shift, 0 here), the Z backlash steps, back.
                self.assertEqual(moves, ["m0", "M0", "L-3", "L0", "L-3", "L0", "m0", "M0"])
                self.assertLess(run.index("D 7 0"), run.index("m0"))
                caption = [c["caption"] for c in session.controls(TITLE)["children"]
                           if c["id"] == START_WRITING]
                self.assertEqual(caption, ["Start Writing"])
                records = glob.glob(os.path.join(session.desktop, "Orvalin_Data", "*",
                                                 "writing_condition(0).txt"))
                self.assertEqual(len(records), 1)
                session.inspect("close", TITLE)
                self.assertEqual(session.wait_exit(), 0)
            finally:
                board.stop()

    def test_a_silent_board_only_costs_the_read_time_outs(self):
        with WineSession("silent_board") as session:
            board = Board(session, "--silent")
            try:
                started = time.monotonic()
                session.start("telvane.exe")
                session.dismiss_message_boxes_until(TITLE)
                # Two opens, three 150 ms position reads each, plus Wine's own start.
                self.assertLess(time.monotonic() - started, 45)
                self.assertEqual(board.commands()[:16], OPEN_SEQUENCE * 2)
                session.inspect("close", TITLE)
                self.assertEqual(session.wait_exit(), 0)
                # The laser voltage was never raised: no "G 5 0" at the end.
                board.wait_for(["T1", "D 6 0", "D 7 0"])
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
