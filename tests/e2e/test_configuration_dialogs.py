"""The two configuration dialogs of telvane.exe under Wine, with telvane-board-sim as
the board on COM3, met as an operator meets them: opened from the Configuration menu,
values typed into the boxes, "7mm" chosen, "Set", "Apply", "Send", the Standa
"Initialize" and "Close" pressed with the pointer, and the choices found in Config.txt
after the program is closed."""
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
WRITING = "Configuration"
DEVICE = "Device Configuration"
WRITING_CONFIGURATION, DEVICE_CONFIGURATION = 32821, 32820
WRITING_AREA_BOX = [1352, 100, 40, 20]
LASER_OFF_RADIO = (1412 + 10, 122 + 10)

# Every control with its caption or first text.
WRITING_CONTROLS = {
    1002: "Line Drawing mode", 913: "Apply", 1100: "Go", 1010: "-X", 1011: "+X", 1013: "-Y",
    1014: "+Y", 1004: "Shutter open", 1: "Set", 2: "Done", 1029: "1mm", 1020: "1", 1021: "5",
    1006: "2.30", 1009: "2.60", 1227: "1.30", 1018: "700", 1019: "700", 1022: "120",
    1024: "100", 1025: "60", 1126: "40", 1023: "0.0", 1007: "0.0", 1012: "0.0", 1008: "0",
    1016: "0", 1017: "0", 1015: "100"}
DEVICE_CONTROLS = {
    1000: "3", 1008: "Initialize", 1004: "Connected", 1032: "UP", 1012: "DOWN", 1001: "",
    1009: "Send", 1011: "Recieve", 1002: "", 1014: "MoveTo", 903: "", 1029: "X", 1030: "Y",
    1031: "Z", 1100: "Initialize", 1101: "Zero Point", 1005: "Connected", 1033: "Initialize",
    900: "Connected", 1: "Set", 2: "Close"}


class ConfigurationDialogsUnderWine(unittest.TestCase):
    def controls(self, session, title):
        window = session.controls(title)
        return window, {c["id"]: c for c in window["children"]}

    def check_layout(self, session, title, expected):
        window, children = self.controls(session, title)
        self.assertEqual({i: children[i]["caption"] for i in expected if i in children}, expected)
        width, height = window["client"]
        for child in window["children"]:
            x, y, w, h = child["rect"]
            if child["class"] != "ComboBox":  # a closed list is shorter than its resource
                self.assertLessEqual(x + w, width, child)
                self.assertLessEqual(y + h, height, child)

    def click(self, session, title, control_id):
        x, y, w, h = self.controls(session, title)[1][control_id]["rect"]
        session.click_client(title, x + w // 2, y + h // 2)

    def type_into(self, session, title, control_id, text):
        """Clicks into the box, selects what it holds and types over it."""
        self.click(session, title, control_id)
        keys = ["End", "shift+Home", "BackSpace"]
        subprocess.run(["xdotool", "key", "--delay", "100", *keys], env=session.env, check=True)
        if text:
            subprocess.run(["xdotool", "type", "--delay", "100", text], env=session.env,
                           check=True)

    def choose(self, session, title, control_id, first_letter):
        """Opens the drop-down list with the pointer and picks the entry by its letter."""
        self.click(session, title, control_id)
        subprocess.run(["xdotool", "key", "--delay", "200", first_letter, "Return"],
                       env=session.env, check=True)

    def caption(self, session, title, control_id):
        return self.controls(session, title)[1][control_id]["caption"]

    def wait_caption(self, session, title, control_id, expected, timeout=20):
        deadline = time.monotonic() + timeout
        while self.caption(session, title, control_id) != expected:
            self.assertLess(time.monotonic(), deadline, "%s %d: %r" % (title, control_id, expected))
            time.sleep(0.3)

    def wait_gone(self, session, title, timeout=20):
        deadline = time.monotonic() + timeout
        while session.inspect("wait", title, 0) is not None:
            self.assertLess(time.monotonic(), deadline, "%r stays open" % title)
            time.sleep(0.3)

    def answer_box(self, session, title):
        self.assertTrue(session.inspect("wait", title, 20000), "no %r box" % title)
        session.inspect("answer", title, 1)

    def test_both_dialogs_from_the_menu_to_config_txt(self):
        with WineSession("configuration_dialogs") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                session.dismiss_message_boxes_until(TITLE)

                session.inspect("command", TITLE, WRITING_CONFIGURATION)
                self.assertTrue(session.inspect("wait", WRITING, 10000))
                self.check_layout(session, WRITING, WRITING_CONTROLS)
                self.choose(session, WRITING, 1029, "7")
                self.wait_caption(session, WRITING, 1020, "7")
                self.assertEqual(session.box_text(TITLE, WRITING_AREA_BOX), "7")
                self.type_into(session, WRITING, 1019, "50")
                self.type_into(session, WRITING, 1006, "6")
                self.type_into(session, WRITING, 1022, "500")
                self.type_into(session, WRITING, 1021, "x")
                self.click(session, WRITING, 1)  # "Set"
                self.wait_caption(session, WRITING, 1019, "100")
                self.assertEqual(self.caption(session, WRITING, 1006), "5.00")
                self.assertEqual(self.caption(session, WRITING, 1022), "300")
                self.assertEqual(self.caption(session, WRITING, 1021), "5")
                self.type_into(session, WRITING, 1006, "2.345")
                self.click(session, WRITING, 913)  # "Apply"
                self.wait_caption(session, WRITING, 1006, "2.3")
                board.wait_for(["D 6 5", "G 5 119"])
                session.screenshot("writing_configuration")
                self.click(session, WRITING, 2)  # "Done"
                self.wait_gone(session, WRITING)
                # The laser off from the main window: the program now holds 0 V.
                session.click_client(TITLE, *LASER_OFF_RADIO)
                board.wait_for(["D 6 0", "G 5 0"])

                session.inspect("command", TITLE, DEVICE_CONFIGURATION)
                self.assertTrue(session.inspect("wait", DEVICE, 10000))
                self.check_layout(session, DEVICE, DEVICE_CONTROLS)
                self.assertEqual(self.controls(session, DEVICE)[1][1004]["check"], 1)
                self.type_into(session, DEVICE, 1001, "G 5 100")
                self.click(session, DEVICE, 1009)  # "Send"
                board.wait_for(["G 5 100"])
                self.choose(session, DEVICE, 1030, "N")
                self.wait_caption(session, DEVICE, 1030, "None")
                session.screenshot("device_configuration")
                self.click(session, DEVICE, 1100)  # Standa "Initialize": the port reopens
                self.answer_box(session, "Scanner")
                board.wait_for(["S1", "T1"])
                self.click(session, DEVICE, 2)  # "Close": off, though the program held 0 V
                board.wait_for(["D 6 0", "G 5 0"])
                self.wait_gone(session, DEVICE)

                # Port 45 is taken as 30; the reopening finds no such port.
                session.inspect("command", TITLE, DEVICE_CONFIGURATION)
                self.assertTrue(session.inspect("wait", DEVICE, 10000))
                self.type_into(session, DEVICE, 1000, "45")
                self.click(session, DEVICE, 1008)
                self.answer_box(session, "Warning")
                self.wait_caption(session, DEVICE, 1000, "45")
                self.assertEqual(self.controls(session, DEVICE)[1][1004]["check"], 0)
                self.click(session, DEVICE, 2)
                self.wait_gone(session, DEVICE)

                session.inspect("close", TITLE)
                self.assertEqual(session.wait_exit(), 0)
                with open(os.path.join(session.desktop, "Orvalin_Data", "Config.txt")) as f:
                    settings = f.read()
                self.assertIn("Mag:7X", settings)
                self.assertIn("Arduino:30, Standa:1,0,3,", settings)
                self.assertIn("Vin:2.35", settings)  # 2.345 kept in single precision
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
