"""telvane.exe on a bare PC, in one session: with no controller and no camera it reports
both ports and the camera at start-up and keeps working. The board (telvane-board-sim on
COM3) is then connected from Device Configuration's "Initialize"; a triangle drawn with
the pointer is written with one laser-on period and saved; a mask's writing is stopped by
a click on the display and "Yes": the laser is at 0 V while the question is open, the
stroke under way is not cut short and no further stroke is exposed; closing the window
switches the lamp off and writes the choices into Config.txt. A board that hangs up in the
middle of a mask's writing leaves the run to end on the failed link, the window answering."""
import glob
import os
import subprocess
import time
import unittest

from e2e_support import (TITLE, Board, WineSession, children, close_program,
                         points_of, wait_until)
from first_job import IMPORT_IMAGE, MASK_PATTERN, PROGRESS_BOX, START_WRITING

PORT_WARNING = ("Warning", "Error in  opening serial port")
REPORTS = [PORT_WARNING, ("Scanner Error", "No standa devices found"),
           PORT_WARNING, ("Communication Error", "No arduino devices found"),
           ("Camera Error", "No Barsler camera found")]
OPEN_SEQUENCE = ["z", "p", "P", "Q", "s6", "a32000", "S1", "T1"]
DEVICE, INITIALIZE, CONNECTED = "Device Configuration", 1008, 1004
STOP_COMMANDS = {"n", "N", "O"}


def voltages(commands):
    return [int(c.split()[2]) for c in commands if c.startswith("G 5 ")]


def connect(session, board):
    session.inspect("command", TITLE, 32820)  # Device Configuration
    assert session.wait_window(DEVICE)
    session.click_control(DEVICE, INITIALIZE)
    wait_until(lambda: children(session, DEVICE)[CONNECTED]["check"] == 1, 20, "not connected")
    wait_until(lambda: board.commands()[:8] == OPEN_SEQUENCE, 10,  # the last bytes still on the line
               lambda: "the board took %r" % board.commands()[:8])
    session.click_control(DEVICE, 2)  # "Close"


def import_mask(session):
    mask = os.path.join(session.folder, "mask.png")
    subprocess.run(["convert", "-size", "1000x1000", "xc:white", "-fill", "black",
                    "-draw", "rectangle 420,420,580,580", mask], check=True)
    session.inspect("command", TITLE, IMPORT_IMAGE)
    session.answer_file_dialog(mask)
    session.inspect("command", TITLE, MASK_PATTERN)
    time.sleep(3)


class BareStationUnderWine(unittest.TestCase):
    def test_reports_then_board_connected_lines_written_and_a_stop(self):
        with WineSession("bare_station") as session:
            session.start("telvane.exe")
            self.assertEqual(session.dismiss_message_boxes_until(TITLE), REPORTS)
            board = Board(session)
            try:
                connect(session, board)

                # A triangle of "1" lines: drawn in blue, one laser-on period, saved.
                session.click_client(TITLE, 1262 + 10, 517 + 10)
                for x, y in [(616, 514), (716, 514), (716, 614), (616, 514)]:
                    session.click_client(TITLE, x, y)
                session.click_client(TITLE, 616, 514, button=3)
                wait_until(lambda: {(666, 514), (716, 564), (666, 564)} <= points_of(
                    session, session.screenshot("bare-lines-drawn"), (0, 0, 255), 600, 500, 130,
                    130), 20, "the triangle's sides are not drawn in blue", poll=1)
                before = len(board.commands())
                session.click_client(TITLE, *START_WRITING)
                session.wait_caption(TITLE, "All Writings finished", 120, PROGRESS_BOX)
                self.assertEqual([v > 0 for v in voltages(board.commands()[before:])],
                                 [True, False])
                saved = glob.glob(os.path.join(session.desktop, "Orvalin_Data", "*",
                                               "LinePattern.txt"))
                with open(saved[0]) as f:
                    self.assertEqual([line[-2:] for line in f.read().splitlines()], [",1"] * 3)
                session.click_control(TITLE, 2201)  # "lines" off: the mask alone next

                # A mask's writing stopped during a stroke.
                import_mask(session)
                before = len(board.commands())
                session.click_client(TITLE, *START_WRITING)
                wait_until(lambda: any(voltages(board.commands()[before:])), 120, "no stroke")
                session.click_client(TITLE, 300, 300)  # on the display
                self.assertTrue(session.wait_window("Warning"))
                asked = board.commands()
                self.assertEqual(voltages(asked)[-1], 0)  # dark while the question is open
                session.screenshot("bare-stop-question")
                session.inspect("answer", "Warning", 6)  # "Yes"
                counts = [0, -1]
                wait_until(lambda: counts.append(len(board.commands())) or
                           counts[-1] == counts[-3], 60, "the board never settled", poll=1.5)
                after = board.commands()[len(asked):]
                self.assertFalse(any(voltages(after)), after)
                self.assertFalse(STOP_COMMANDS & set(asked[before:] + after), after)
                self.assertIn("D 6 0", after)

                close_program(session)
                board.wait_for(["D 6 0", "D 7 0"])
                with open(os.path.join(session.desktop, "Orvalin_Data", "Config.txt")) as f:
                    self.assertTrue(f.read().startswith("Mag:1X, laser shift:(0,0,0), Arduino:3"))
            finally:
                board.stop()

    def test_a_board_hanging_up_during_a_mask_leaves_the_run_to_end_on_the_failed_link(self):
        with WineSession("hang_up") as session:
            session.start("telvane.exe")
            session.dismiss_message_boxes_until(TITLE)
            board = Board(session, ["--hang-up-after", "60"])
            try:
                connect(session, board)
                import_mask(session)
                session.click_client(TITLE, *START_WRITING)
                board.process.wait(timeout=60)  # it closes its terminal and exits
                with open(board.log) as log:
                    self.assertTrue(log.read().rstrip().endswith("hung up"))
                self.assertTrue(any(voltages(board.commands())), "hung up before a stroke")
                session.wait_caption(TITLE, "All Writings finished", 120, PROGRESS_BOX)
                self.assertTrue(children(session))  # the window still answers
                close_program(session)
            finally:
                board.process.wait(timeout=10)
                board.process.stdout.close()


if __name__ == "__main__":
    unittest.main()
