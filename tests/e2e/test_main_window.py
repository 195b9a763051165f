"""The main window of telvane.exe under Wine, met as an operator meets it on a PC with
no controller and no camera: the start-up reports are dismissed, every control sits at
its place with its caption, clicks on the column act, and closing the window writes the
settings line."""
import os
import sys
import unittest

SCRIPTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts")
sys.path.insert(0, SCRIPTS)
from wine_session import WineSession  # noqa: E402

TITLE = "Telvane"
BS_TYPE_MASK = 0x0F
BS_CHECKBOX, BS_RADIOBUTTON = 0x02, 0x04
BS_PUSHLIKE, ES_READONLY, WS_BORDER = 0x1000, 0x0800, 0x00800000
DEFAULT_SETTINGS = (b"Mag:1X, laser shift:(0,0,0), Arduino:3, Standa:1,2,3, "
                    b"Vin:2.30, Vout:2.60, Vv:1.30\n")

# (id, class, caption, rect): a sample down the whole column.
EXPECTED_CONTROLS = [
    (2102, "Button", "Camera Capture", [1262, 10, 110, 40]),
    (2112, "Button", "On", [1332, 60, 40, 20]),
    (2113, "Button", "Off", [1382, 60, 40, 20]),
    (3000, "Button", "On", [1362, 122, 40, 20]),
    (3106, "Button", "Off", [1382, 145, 40, 20]),
    (32001, "Button", "Mount", [1309, 170, 60, 25]),
    (2009, "Button", "Position (um)", [1262, 210, 100, 20]),
    (4004, "Button", "Y", [1315, 230, 13, 20]),
    (2013, "Button", "+", [1442, 220, 15, 20]),
    (2002, "Edit", "600", [1367, 255, 40, 20]),
    (2103, "Edit", "", [1257, 303, 200, 40]),
    (2117, "Button", "Blink", [1262, 465, 55, 20]),
    (2118, "Edit", "500", [1322, 465, 40, 20]),
    (2101, "Button", "Zoom Out", [1342, 582, 70, 20]),
    (32807, "Button", "Mask", [1262, 610, 70, 40]),
    (2121, "Button", "Center Writing Only", [1262, 750, 150, 20]),
    (2203, "Button", "Mark", [1362, 950, 55, 20]),
    (2202, "Button", "Start Writing", [1362, 980, 100, 40]),
    (2207, "Edit", "", [1362, 1030, 30, 20]),
]


def by_rect(children, rect):
    return [c for c in children if c["rect"] == rect]


class MainWindowUnderWine(unittest.TestCase):
    def test_operator_session_from_start_to_close(self):
        with WineSession("main_window") as session:
            session.start("telvane.exe")
            reports = session.dismiss_message_boxes_until(TITLE)
            # The port routine's own warnings come before each of the port reports.
            self.assertEqual([r for r in reports if r[0] != "Warning"],
                             [("Scanner Error", "No standa devices found"),
                              ("Communication Error", "No arduino devices found"),
                              ("Camera Error", "No Barsler camera found")])

            window = session.controls(TITLE)
            self.assertEqual(window["window"], [0, 0, 1482, 1128])
            children = [c for c in window["children"] if c["parent"] == window["handle"]]
            client_width, client_height = window["client"]
            for child in children:  # the whole column fits inside the client area
                x, y, width, height = child["rect"]
                self.assertLessEqual(x + width, client_width, child)
                self.assertLessEqual(y + height, client_height, child)
            display = [c for c in children if c["class"] == "Display Window"]
            self.assertEqual(len(display), 1)
            self.assertEqual(display[0]["rect"], [0, 0, 1232, 1028])

            with self.subTest("the column"):
                for control_id, cls, caption, rect in EXPECTED_CONTROLS:
                    found = [c for c in by_rect(children, rect) if c["id"] == control_id]
                    self.assertEqual(len(found), 1, "control %d at %s" % (control_id, rect))
                    self.assertEqual(found[0]["class"].lower(), cls.lower())
                    self.assertEqual(found[0]["caption"], caption, control_id)

            with self.subTest("progress and time boxes share 2006"):
                shared = [c for c in children if c["id"] == 2006]
                self.assertEqual(sorted(c["rect"] for c in shared),
                                 [[1262, 380, 170, 20], [1262, 435, 170, 20]])
                for box in shared:
                    self.assertTrue(box["style"] & ES_READONLY)

            with self.subTest("styles"):
                style = {c["id"]: c["style"] for c in children if c["id"]}
                self.assertTrue(style[2102] & BS_PUSHLIKE)
                self.assertEqual(style[2112] & BS_TYPE_MASK, BS_RADIOBUTTON)
                self.assertEqual(style[2200] & BS_TYPE_MASK, BS_CHECKBOX)
                self.assertTrue(style[2013] & WS_BORDER)
                self.assertFalse(style[2118] & ES_READONLY)

            with self.subTest("first states"):
                check = {c["id"]: c["check"] for c in children if c["id"]}
                self.assertEqual((check[32001], check[32002]), (1, 0))
                self.assertEqual((check[2112], check[2113]), (0, 1))
                self.assertEqual(by_rect(children, [1352, 100, 40, 20])[0]["caption"], "1")

            session.click_client(TITLE, 1332 + 10, 60 + 10)   # Video "On"
            session.click_client(TITLE, 1262 + 10, 750 + 10)  # "Center Writing Only"
            check = {c["id"]: c["check"] for c in session.controls(TITLE)["children"] if c["id"]}
            self.assertEqual((check[2112], check[2113]), (1, 0))
            self.assertEqual(check[2121], 1)

            session.screenshot("main_window")
            session.inspect("command", TITLE, 104)  # Help, "Information(&A)..."
            self.assertTrue(session.inspect("wait", "About Telvane", 10000))
            session.inspect("answer", "About Telvane", 1)
            session.inspect("close", TITLE)
            self.assertEqual(session.wait_exit(), 0)
            with open(os.path.join(session.desktop, "Orvalin_Data", "Config.txt"), "rb") as f:
                self.assertEqual(f.read(), DEFAULT_SETTINGS)


if __name__ == "__main__":
    unittest.main()
