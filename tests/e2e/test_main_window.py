"""Start-up, the main window, a line job and the two configuration dialogs of telvane.exe
under Wine, with telvane-board-sim as the board on COM3 and no camera, met as an operator
meets them: the port is opened twice with the exact command bytes and the camera's
absence reported; the controls sit at their places; clicks and keys reach the board; a
triangle drawn with the pointer is written and saved; in the dialogs "7mm" is chosen, a
voltage typed and applied, a raw command sent; closing the window switches the outputs
off and writes the choices into Config.txt."""
import glob
import os
import subprocess
import time
import unittest

from e2e_support import (TITLE, Board, WineSession, children, close_program, points_of,
                         wait_progress, wait_until)

OPEN_SEQUENCE = ["z", "p", "P", "Q", "s6", "a32000", "S1", "T1"]
# (id, class, caption, rect): a sample down the whole column.
MAIN_CONTROLS = [
    (2102, "Button", "Camera Capture", [1262, 10, 110, 40]),
    (2112, "Button", "On", [1332, 60, 40, 20]),
    (32001, "Button", "Mount", [1309, 170, 60, 25]),
    (2002, "Edit", "600", [1367, 255, 40, 20]),
    (2109, "Button", "Erase", [1407, 517, 55, 20]),
    (2202, "Button", "Start Writing", [1362, 980, 100, 40]),
]
WRITING, DEVICE = "Configuration", "Device Configuration"
# A sample of each dialog's controls with their captions or first texts.
WRITING_CONTROLS = {1002: "Line Drawing mode", 913: "Apply", 1100: "Go", 1004: "Shutter open",
                    1: "Set", 2: "Done", 1029: "1mm", 1006: "2.30", 1227: "1.30", 1018: "700"}
DEVICE_CONTROLS = {1000: "3", 1008: "Initialize", 1004: "Connected", 1032: "UP", 1009: "Send",
                   1011: "Recieve", 1014: "MoveTo", 1030: "Y", 1101: "Zero Point", 2: "Close"}


class MainWindowUnderWine(unittest.TestCase):
    def check_window(self, session, title, captions):
        """The controls' captions, all of them inside the window's client area."""
        window = session.controls(title)
        control = {c["id"]: c for c in window["children"]}
        self.assertEqual({i: control[i]["caption"] for i in captions}, captions)
        for child in window["children"]:
            x, y, w, h = child["rect"]
            if child["class"] != "ComboBox":  # a closed list is shorter than its resource
                self.assertLessEqual((x + w, y + h), tuple(window["client"]), child)
        return window, control

    def click(self, session, title, control_id):
        x, y, w, h = children(session, title)[control_id]["rect"]
        session.click_client(title, x + w // 2, y + h // 2)

    def type_into(self, session, title, control_id, text):
        """Clicks into the box, selects what it holds and types over it."""
        self.click(session, title, control_id)
        for args in (["key", "End", "shift+Home", "BackSpace"], ["type", text]):
            subprocess.run(["xdotool", args[0], "--delay", "100", *args[1:]], env=session.env,
                           check=True)

    def wait_caption(self, session, title, control_id, expected):
        wait_until(lambda: children(session, title)[control_id]["caption"] == expected, 20,
                   "%s %d never read %r" % (title, control_id, expected))

    def open_dialog(self, session, command, title, expected):
        session.inspect("command", TITLE, command)
        self.assertTrue(session.wait_window(title), title)
        self.check_window(session, title, expected)

    def close_dialog(self, session, title, control_id):
        self.click(session, title, control_id)
        wait_until(lambda: all(w["title"] != title for w in session.windows()), 20,
                   "%r stays" % title)

    def test_operator_session_from_start_to_close(self):
        with WineSession("main_window") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                reports = session.dismiss_message_boxes_until(TITLE)
                self.assertEqual(reports, [("Camera Error", "No Barsler camera found")])
                self.assertEqual(board.commands()[:16], OPEN_SEQUENCE * 2)

                window, control = self.check_window(
                    session, TITLE, {i: caption for i, _, caption, _ in MAIN_CONTROLS})
                self.assertEqual([(control[i]["class"].lower(), control[i]["rect"])
                                  for i, _, _, _ in MAIN_CONTROLS],
                                 [(cls.lower(), rect) for _, cls, _, rect in MAIN_CONTROLS])
                self.assertEqual(window["window"], [0, 0, 1482, 1128])
                display = [c for c in window["children"] if c["class"] == "Display Window"]
                self.assertEqual([c["rect"] for c in display], [[0, 0, 1232, 1028]])
                shared = [c for c in window["children"] if c["id"] == 2006]
                self.assertEqual(sorted(c["rect"] for c in shared),
                                 [[1262, 380, 170, 20], [1262, 435, 170, 20]])
                self.assertEqual([control[i]["check"] for i in (32001, 2113, 2106, 2200)],
                                 [1, 1, 1, 1])

                session.click_client(TITLE, 1262 + 10, 750 + 10)  # "Center Writing Only"
                session.click_client(TITLE, 1332 + 10, 60 + 10)   # Video "On": focus back
                control = children(session)
                self.assertEqual([control[i]["check"] for i in (2112, 2113, 2121)], [1, 0, 1])
                # The Up arrow jogs Y by +500 um: 800 steps, shown once the board reports.
                session.press_keys(TITLE, "Up")
                wait_until(lambda: session.box_text(TITLE, [1327, 230, 50, 20]) == "500", 30,
                           "the Y box never showed 500")
                self.assertIn("M800", board.commands())
                session.screenshot("main_window")

                # A triangle drawn with the "1" width, shown in blue, written with one laser-on
                # period and saved as LinePattern.txt in the run folder.
                session.click_client(TITLE, 1382 + 10, 60 + 10)  # Video "Off"
                session.click_client(TITLE, 1262 + 10, 517 + 10)  # "1"
                for x, y in [(616, 514), (716, 514), (716, 614), (616, 514)]:
                    session.click_client(TITLE, x, y)
                session.click_client(TITLE, 616, 514, button=3)
                time.sleep(1)
                shot = session.screenshot("lines-drawn")
                self.assertLessEqual({(666, 514), (716, 564), (666, 564)},  # the three sides
                                     points_of(session, shot, (0, 0, 255), 600, 500, 130, 130))
                before = len(board.commands())
                session.click_client(TITLE, 1362 + 50, 980 + 20)  # "Start Writing"
                wait_progress(session, "All Writings finished", timeout=120)
                voltages = [c for c in board.commands()[before:] if c.startswith("G 5 ")]
                self.assertEqual([v == "G 5 0" for v in voltages], [False, True], voltages)
                saved = glob.glob(os.path.join(session.desktop, "Orvalin_Data", "*",
                                               "LinePattern.txt"))
                with open(saved[0]) as f:
                    lines = f.read().splitlines()
                self.assertEqual([line[-2:] for line in lines], [",1"] * 3)

                self.open_dialog(session, 32821, WRITING, WRITING_CONTROLS)
                self.click(session, WRITING, 1029)  # the list, "7mm" picked by its letter
                subprocess.run(["xdotool", "key", "--delay", "200", "7", "Return"],
                               env=session.env, check=True)
                self.wait_caption(session, WRITING, 1020, "7")
                self.assertEqual(session.box_text(TITLE, [1352, 100, 40, 20]), "7")
                self.type_into(session, WRITING, 1006, "2.345")
                self.click(session, WRITING, 913)  # "Apply" switches the laser on
                self.wait_caption(session, WRITING, 1006, "2.3")
                board.wait_for(["D 6 5", "G 5 119"])
                session.screenshot("writing_configuration")
                self.close_dialog(session, WRITING, 2)
                session.click_client(TITLE, 1412 + 10, 122 + 10)  # laser "Off"
                board.wait_for(["D 6 0", "G 5 0"])

                self.open_dialog(session, 32820, DEVICE, DEVICE_CONTROLS)
                self.type_into(session, DEVICE, 1001, "G 5 100")
                self.click(session, DEVICE, 1009)  # "Send"
                board.wait_for(["G 5 100"])
                session.screenshot("device_configuration")
                self.close_dialog(session, DEVICE, 2)  # off, though the program held 0 V
                board.wait_for(["D 6 0", "G 5 0"])

                session.inspect("command", TITLE, 104)  # Help, "Information(&A)..."
                self.assertTrue(session.wait_window("About Telvane"))
                session.inspect("answer", "About Telvane", 1)
                close_program(session)
                board.wait_for(["D 6 0", "D 7 0"])  # laser and lamp off (0 V already held)
                self.assertIn('"D 7 0" was sent.', session.output())
                with open(os.path.join(session.desktop, "Orvalin_Data", "Config.txt")) as f:
                    self.assertEqual(f.read(), "Mag:7X, laser shift:(0,0,0), Arduino:3, "
                                     "Standa:1,2,3, Vin:2.35, Vout:2.60, Vv:1.30\n")
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
