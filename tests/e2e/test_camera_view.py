"""The live view of telvane-sim.exe shows the virtual sample: "Save Image" writes it as
optic(0).jpg (PNG data), a wide view mosaic shows nine pictures round the stage, and the
live picture is sharp at the focus height and blurs once "Wafer" lowers the stage.
Screenshots land in build/e2e-artifacts."""
import glob
import os
import subprocess
import sys
import time

SCRIPTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts")
sys.path.insert(0, SCRIPTS)
from wine_session import WineSession  # noqa: E402

SAVE_IMAGE = 32804
VIDEO_ON = 2112
ILLUMINATION_ON = 3105
WAFER = 32002
WIDE_VIEW = 2150


def sharpness(session, path):
    """Mean edge strength of the middle of the display window in a screenshot."""
    left, top = session.inspect("screen", "Telvane", 300, 250)
    crop = "600x500+%d+%d" % (left, top)
    out = subprocess.run(["convert", path, "-crop", crop, "-colorspace", "gray", "-edge", "1",
                          "-format", "%[fx:mean]", "info:"],
                         check=True, capture_output=True, text=True)
    return float(out.stdout.strip())


def main():
    with WineSession("camera") as session:
        session.start("telvane-sim.exe")
        session.dismiss_message_boxes_until("Telvane")
        session.inspect("command", "Telvane", ILLUMINATION_ON)
        session.inspect("command", "Telvane", VIDEO_ON)
        time.sleep(3)
        focused = session.screenshot("camera-live-focused")
        sharp = sharpness(session, focused)

        # "Save Image": optic(0).jpg in the run folder, holding PNG data.
        session.inspect("command", "Telvane", SAVE_IMAGE)
        saved = []
        deadline = time.monotonic() + 20
        while not saved and time.monotonic() < deadline:
            time.sleep(1)
            saved = glob.glob(os.path.join(session.desktop, "Orvalin_Data", "*", "optic(0).jpg"))
        assert saved, "no optic(0).jpg under %s" % session.desktop
        with open(saved[0], "rb") as picture:
            assert picture.read(8) == b"\x89PNG\r\n\x1a\n"

        session.inspect("command", "Telvane", WIDE_VIEW)
        time.sleep(25)
        session.screenshot("camera-wide-view")

        session.inspect("command", "Telvane", ILLUMINATION_ON)
        session.inspect("command", "Telvane", VIDEO_ON)
        session.inspect("command", "Telvane", WAFER)
        blurred = sharp
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline and blurred > sharp / 2:
            time.sleep(3)
            defocused = session.screenshot("camera-live-defocused")
            blurred = sharpness(session, defocused)
        print("edge strength focused %.4f, defocused %.4f" % (sharp, blurred))
        assert sharp > 0.02, sharp
        assert sharp > 2 * blurred, (sharp, blurred)
    return 0


if __name__ == "__main__":
    sys.exit(main())
