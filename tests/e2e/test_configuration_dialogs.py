"""The two configuration dialogs of telvane.exe under Wine, with telvane-board-sim as the
board on COM3, met as an operator meets them: opened from the Configuration menu, values
typed into the boxes, "7mm" chosen, "Set", "Apply", "Send", the Standa "Initialize", a
port that does not exist and "Close" pressed with the pointer, and the choices found in
Config.txt after the program is closed."""
import os
import subprocess
import unittest

from e2e_support import TITLE, Board, WineSession, children, close_program, wait_until

WRITING, DEVICE = "Configuration", "Device Configuration"
WRITING_CONFIGURATION, DEVICE_CONFIGURATION = 32821, 32820
WRITING_AREA_BOX = [1352, 100, 40, 20]
LASER_OFF_RADIO = (1412 + 10, 122 + 10)
# A sample of each dialog's controls with their captions or first texts.
WRITING_CONTROLS = {1002: "Line Drawing mode", 913: "Apply", 1100: "Go", 1004: "Shutter open",
                    1: "Set", 2: "Done", 1029: "1mm", 1006: "2.30", 1227: "1.30", 1018: "700",
                    1126: "40", 1015: "100"}
DEVICE_CONTROLS = {1000: "3", 1008: "Initialize", 1004: "Connected", 1032: "UP", 1009: "Send",
                   1011: "Recieve", 1014: "MoveTo", 1030: "Y", 1101: "Zero Point", 2: "Close"}


class ConfigurationDialogsUnderWine(unittest.TestCase):
    def open_dialog(self, session, command, title, expected=None):
        session.inspect("command", TITLE, command)
        self.assertTrue(session.inspect("wait", title, 10000), title)
        window = session.controls(title)
        if expected:
            control = children(session, title)
            self.assertEqual({i: control[i]["caption"] for i in expected}, expected)
            width, height = window["client"]
            for child in window["children"]:
                x, y, w, h = child["rect"]
                if child["class"] != "ComboBox":  # a closed list is shorter than its resource
                    self.assertLessEqual((x + w, y + h), (width, height), child)

    def click(self, session, title, control_id):
        x, y, w, h = children(session, title)[control_id]["rect"]
        session.click_client(title, x + w // 2, y + h // 2)

    def keys(self, session, *args):
        subprocess.run(["xdotool", *args], env=session.env, check=True)

    def type_into(self, session, title, control_id, text):
        """Clicks into the box, selects what it holds and types over it."""
        self.click(session, title, control_id)
        self.keys(session, "key", "--delay", "100", "End", "shift+Home", "BackSpace")
        self.keys(session, "type", "--delay", "100", text)

    def choose(self, session, title, control_id, first_letter):
        """Opens the drop-down list with the pointer and picks the entry by its letter."""
        self.click(session, title, control_id)
        self.keys(session, "key", "--delay", "200", first_letter, "Return")

    def wait_caption(self, session, title, control_id, expected):
        wait_until(lambda: children(session, title)[control_id]["caption"] == expected, 20,
                   "%s %d never read %r" % (title, control_id, expected))

    def press_and_wait_gone(self, session, title, control_id):
        self.click(session, title, control_id)
        wait_until(lambda: session.inspect("wait", title, 0) is None, 20, "%r stays" % title)

    def answer_box(self, session, title):
        self.assertTrue(session.inspect("wait", title, 20000), "no %r box" % title)
        session.inspect("answer", title, 1)

    def test_both_dialogs_from_the_menu_to_config_txt(self):
        with WineSession("configuration_dialogs") as session:
            board = Board(session)
            try:
                session.start("telvane.exe")
                session.dismiss_message_boxes_until(TITLE)

                self.open_dialog(session, WRITING_CONFIGURATION, WRITING, WRITING_CONTROLS)
                self.choose(session, WRITING, 1029, "7")
                self.wait_caption(session, WRITING, 1020, "7")
                self.assertEqual(session.box_text(TITLE, WRITING_AREA_BOX), "7")
                self.type_into(session, WRITING, 1019, "50")
                self.click(session, WRITING, 1)  # "Set": the speed goes up to its floor
                self.wait_caption(session, WRITING, 1019, "100")
                self.type_into(session, WRITING, 1006, "2.345")
                self.click(session, WRITING, 913)  # "Apply"
                self.wait_caption(session, WRITING, 1006, "2.3")
                board.wait_for(["D 6 5", "G 5 119"])
                session.screenshot("writing_configuration")
                self.press_and_wait_gone(session, WRITING, 2)  # "Done"
                session.click_client(TITLE, *LASER_OFF_RADIO)
                board.wait_for(["D 6 0", "G 5 0"])

                self.open_dialog(session, DEVICE_CONFIGURATION, DEVICE, DEVICE_CONTROLS)
                self.type_into(session, DEVICE, 1001, "G 5 100")
                self.click(session, DEVICE, 1009)  # "Send"
                board.wait_for(["G 5 100"])
                self.choose(session, DEVICE, 1030, "N")
                self.wait_caption(session, DEVICE, 1030, "None")
                session.screenshot("device_configuration")
                self.click(session, DEVICE, 1100)  # Standa "Initialize": the port reopens
                self.answer_box(session, "Scanner")
                board.wait_for(["S1", "T1"])
                # "Close" switches the laser off though the program held 0 V.
                self.press_and_wait_gone(session, DEVICE, 2)
                board.wait_for(["D 6 0", "G 5 0"])

                # Port 45 is taken as 30; the reopening finds no such port.
                self.open_dialog(session, DEVICE_CONFIGURATION, DEVICE)
                self.type_into(session, DEVICE, 1000, "45")
                self.click(session, DEVICE, 1008)
                self.answer_box(session, "Warning")
                self.wait_caption(session, DEVICE, 1000, "45")
                self.assertEqual(children(session, DEVICE)[1004]["check"], 0)
                self.press_and_wait_gone(session, DEVICE, 2)

                close_program(session)
                with open(os.path.join(session.desktop, "Orvalin_Data", "Config.txt")) as f:
                    settings = f.read()
                self.assertIn("Mag:7X", settings)
                self.assertIn("Arduino:30, Standa:1,0,3,", settings)
                self.assertIn("Vin:2.35", settings)  # 2.345 kept in single precision
            finally:
                board.stop()


if __name__ == "__main__":
    unittest.main()
