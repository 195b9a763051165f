"""The camera view of telvane-sim.exe: with the lamp and the video on the live picture
shows the virtual sample, sharp at the focus height; "Save Image" writes it as
optic(0).jpg holding PNG data; "Wide View" shows nine pictures round the stage; and the
picture blurs once "Wafer" lowers the stage. Screenshots land in build/e2e-artifacts."""
import glob
import os
import subprocess
import time
import unittest

from e2e_support import TITLE, WineSession, close_program, wait_until

SAVE_IMAGE, VIDEO_ON, ILLUMINATION_ON, WAFER, WIDE_VIEW = 32804, 2112, 3105, 32002, 2150


def sharpness(session, path):
    """Mean edge strength of the middle of the display window in a screenshot."""
    left, top = session.inspect("screen", TITLE, 300, 250)
    out = subprocess.run(["convert", path, "-crop", "600x500+%d+%d" % (left, top), "-colorspace",
                          "gray", "-edge", "1", "-format", "%[fx:mean]", "info:"],
                         check=True, capture_output=True, text=True)
    return float(out.stdout.strip())


class CameraViewUnderWine(unittest.TestCase):
    def test_live_picture_saved_picture_wide_view_and_focus(self):
        with WineSession("camera") as session:
            session.start("telvane-sim.exe")
            session.dismiss_message_boxes_until(TITLE)
            session.inspect("command", TITLE, ILLUMINATION_ON)
            session.inspect("command", TITLE, VIDEO_ON)
            time.sleep(3)
            sharp = sharpness(session, session.screenshot("camera-live-focused"))
            self.assertGreater(sharp, 0.02)

            session.inspect("command", TITLE, SAVE_IMAGE)
            pattern = os.path.join(session.desktop, "Orvalin_Data", "*", "optic(0).jpg")
            wait_until(lambda: glob.glob(pattern), 20, "no optic(0).jpg")
            with open(glob.glob(pattern)[0], "rb") as picture:
                self.assertEqual(picture.read(8), b"\x89PNG\r\n\x1a\n")

            session.inspect("command", TITLE, WIDE_VIEW)
            time.sleep(25)
            session.screenshot("camera-wide-view")

            session.inspect("command", TITLE, ILLUMINATION_ON)
            session.inspect("command", TITLE, VIDEO_ON)
            session.inspect("command", TITLE, WAFER)
            blurred = []
            wait_until(lambda: blurred.append(sharpness(session, session.screenshot(
                "camera-live-defocused"))) or blurred[-1] < sharp / 2, 60,
                lambda: "still sharp: %.4f of %.4f" % (blurred[-1], sharp), poll=3)
            close_program(session)


if __name__ == "__main__":
    unittest.main()
