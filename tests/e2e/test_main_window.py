"""Start-up and the main window of telvane.exe under Wine, with telvane-board-sim as the
board on COM3 and no camera: the port is opened twice with the exact command bytes, the
camera's absence is reported, the controls sit at their places, clicks and keys on the
real windows reach the board, and closing the window switches the outputs off and writes
the settings line."""
import os
import unittest

from e2e_support import TITLE, Board, WineSession, children, close_program, wait_until

OPEN_SEQUENCE = ["z", "p", "P", "Q", "s6", "a32000", "S1", "T1"]
DEFAULT_SETTINGS = (b"Mag:1X, laser shift:(0,0,0), Arduino:3, Standa:1,2,3, "
                    b"Vin:2.30, Vout:2.60, Vv:1.30\n")
Y_POSITION_BOX = [1327, 230, 50, 20]
BS_TYPE_MASK, BS_CHECKBOX, BS_RADIOBUTTON, BS_PUSHLIKE = 0x0F, 0x02, 0x04, 0x1000
ES_READONLY = 0x0800
# (id, class, caption, rect): a sample down the whole column.
EXPECTED_CONTROLS = [
    (2102, "Button", "Camera Capture", [1262, 10, 110, 40]),
    (2112, "Button", "On", [1332, 60, 40, 20]),
    (3000, "Button", "On", [1362, 122, 40, 20]),
    (32001, "Button", "Mount", [1309, 170, 60, 25]),
    (2002, "Edit", "600", [1367, 255, 40, 20]),
    (2117, "Button", "Blink", [1262, 465, 55, 20]),
    (2109, "Button", "Erase", [1407, 517, 55, 20]),
    (32807, "Button", "Mask", [1262, 610, 70, 40]),
    (2203, "Button", "Mark", [1362, 950, 55, 20]),
    (2202, "Button", "Start Writing", [1362, 980, 100, 40]),
]


class MainWindowUnderWine(unittest.TestCase):
    def test_operator_session_from_start_to_close(self):
        with WineSession("main_window") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                reports = session.dismiss_message_boxes_until(TITLE)
                self.assertEqual(reports, [("Camera Error", "No Barsler camera found")])
                self.assertEqual(board.commands()[:16], OPEN_SEQUENCE * 2)

                window = session.controls(TITLE)
                self.assertEqual(window["window"], [0, 0, 1482, 1128])
                width, height = window["client"]
                for child in window["children"]:  # the whole column fits the client area
                    x, y, w, h = child["rect"]
                    self.assertLessEqual((x + w, y + h), (width, height), child)
                display = [c for c in window["children"] if c["class"] == "Display Window"]
                self.assertEqual([c["rect"] for c in display], [[0, 0, 1232, 1028]])
                shared = [c for c in window["children"] if c["id"] == 2006]
                self.assertEqual(sorted(c["rect"] for c in shared),
                                 [[1262, 380, 170, 20], [1262, 435, 170, 20]])
                self.assertTrue(all(c["style"] & ES_READONLY for c in shared))
                control = children(session)
                for control_id, cls, caption, rect in EXPECTED_CONTROLS:
                    found = control[control_id]
                    self.assertEqual((found["class"].lower(), found["caption"], found["rect"]),
                                     (cls.lower(), caption, rect), control_id)
                self.assertTrue(control[2102]["style"] & BS_PUSHLIKE)
                self.assertEqual(control[2112]["style"] & BS_TYPE_MASK, BS_RADIOBUTTON)
                self.assertEqual(control[2200]["style"] & BS_TYPE_MASK, BS_CHECKBOX)
                self.assertEqual([control[i]["check"] for i in (32001, 2113, 2106, 2200)],
                                 [1, 1, 1, 1])

                session.click_client(TITLE, 1332 + 10, 60 + 10)   # Video "On"
                session.click_client(TITLE, 1262 + 10, 750 + 10)  # "Center Writing Only"
                session.click_client(TITLE, 1362 + 10, 122 + 10)  # laser "On"
                board.wait_for(["D 6 5", "G 5 117"])
                control = children(session)
                self.assertEqual([control[i]["check"] for i in (2112, 2113, 2121)], [1, 0, 1])
                # The Up arrow jogs Y by +500 um: 800 steps, shown once the board reports.
                session.press_keys(TITLE, "Up")
                wait_until(lambda: session.box_text(TITLE, Y_POSITION_BOX) == "500", 30,
                           "the Y box never showed 500")
                self.assertIn("M800", board.commands())
                session.screenshot("main_window")

                session.inspect("command", TITLE, 104)  # Help, "Information(&A)..."
                self.assertTrue(session.inspect("wait", "About Telvane", 10000))
                session.inspect("command", "About Telvane", 1)
                close_program(session)
                board.wait_for(["D 6 0", "G 5 0", "D 7 0"])
                self.assertIn('"D 7 0" was sent.', session.output())
                with open(os.path.join(session.desktop, "Orvalin_Data", "Config.txt"), "rb") as f:
                    self.assertEqual(f.read(), DEFAULT_SETTINGS)
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
