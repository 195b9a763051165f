"""telvane-sim.exe met as a newcomer meets it, in one session: it starts with the lamp and
the live view on and its sample mask and line file in the data folder; the first job
(scripts/first_job.py: the file dialog, "Mask Pattern", "Simulate Writing", "Start
Writing") ends with "All Writings finished", the green painting of the written cells on
the mask's dark cells as the program thresholds them, and the written resist showing dark
where the stage is sent to look at it. "Focus" lifts the stage, walks it down
past the sharpest place and ends there, the picture sharp again. Screenshots land in
build/e2e-artifacts."""
import collections
import glob
import os
import re
import shutil
import subprocess
import time
import unittest

from e2e_support import (INSIDE, TITLE, WineSession, agreement, cell_agreement, children,
                         close_program, png_dark_cells, points_of, wait_until)
from first_job import first_job
from wine_session import ARTIFACTS

GREEN = (0, 255, 0)
FOCUS, Z_BOX, INFORMATION_BOX = (1262 + 22, 170 + 12), (1392 + 25, 230 + 10), (1257 + 100, 303 + 20)


def painted(session, shot):
    """The black points of the status lines drawn over the "Information" box."""
    return points_of(session, shot, (0, 0, 0), 1259, 305, 196, 36)


def sent(session, since=0):
    """The commands the program sent the in-process board, from its trace, without the Z
    position queries of the stage waits."""
    return [c for c in re.findall(r'^"(.*)" was sent\.\r?$', session.output()[since:], re.M)
            if c != "Q"]


def measure(session, path, rect, *operations):
    """The mean of the screenshot's client rectangle rect (x, y, width, height), grey,
    after the given ImageMagick operations."""
    x, y, width, height = rect
    left, top = session.screen_point(TITLE, x, y)
    out = subprocess.run(["convert", path, "-crop", "%dx%d+%d+%d" % (width, height, left, top),
                          "-colorspace", "gray", *operations, "-format", "%[fx:mean]", "info:"],
                         check=True, capture_output=True, text=True)
    return float(out.stdout.strip())


def sharpness(session, path):
    """Mean edge strength of the middle of the display window in a screenshot."""
    return measure(session, path, (300, 250, 600, 500), "-edge", "1")


class VirtualStationUnderWine(unittest.TestCase):
    def test_first_job_from_start_to_the_written_pattern(self):
        with WineSession("virtual_station") as session:
            session.start("telvane-sim.exe")
            self.assertEqual(session.dismiss_message_boxes_until(TITLE), [])
            wait_until(lambda: [children(session)[i]["check"] for i in (2112, 3105)] == [1, 1],
                       20, "video and lamp not on at start")
            data = os.path.join(session.desktop, "Orvalin_Data")
            shots = first_job(session, data, ARTIFACTS)
            self.assertGreater(sharpness(session, shots[0]), 0.02)  # the lit sample, live
            self.assertTrue(os.path.exists(os.path.join(data, "sample_lines.txt")))
            # Where the resist was written it shows darker live: the rectangle's middle
            # against the unwritten sample below it.
            written, beside = (measure(session, shots[3], (566, y, 100, 40)) for y in (494, 680))
            self.assertLess(written, 0.75 * beside, (written, beside))

            target = png_dark_cells(os.path.join(data, "sample_mask.png"))
            painted = {(x - 116, y - 15) for x, y in points_of(session, shots[2], GREEN, *INSIDE)}
            fine, coarse = agreement(painted, target)
            self.assertTrue(fine >= 0.97 and coarse >= 0.90, (fine, coarse))
            # The developed resist, from the board's exposure log: 2 x 2 pixels a cell.
            pictures = glob.glob(os.path.join(data, "*", "exposure(*).png"))
            self.assertEqual(len(pictures), 1, pictures)
            shutil.copy(pictures[0], os.path.join(ARTIFACTS, "first-job-exposure.png"))
            counts = collections.Counter((x // 2, y // 2) for x, y in png_dark_cells(pictures[0]))
            developed = {cell for cell, dark in counts.items() if dark >= 2}  # as the program counts
            fine, coarse = cell_agreement(developed, target)
            print("exposure picture agrees on %.2f %% of the fine centre, %.2f %% outside"
                  % (100 * fine, 100 * coarse))
            self.assertTrue(fine >= 0.97 and coarse >= 0.90, (fine, coarse))
            close_program(session)

    def test_focus_walks_down_past_the_sharpest_place_and_ends_there(self):
        with WineSession("virtual_focus") as session:
            session.start("telvane-sim.exe")
            self.assertEqual(session.dismiss_message_boxes_until(TITLE), [])
            wait_until(lambda: children(session)[2112]["check"] == 1, 20, "no live view")
            time.sleep(2)
            shot = session.screenshot("focus-before")
            focused = sharpness(session, shot)
            self.assertFalse(painted(session, shot))
            since = len(session.output())
            session.click_client(TITLE, *FOCUS)
            # The status lines are painted over the "Information" box, not its text: the run's
            # end shows on the wire, X's speed set back to twice 300 um/s after the walk.
            wait_until(lambda: sent(session, since)[-3:-1] == ["s3840", "L0"], 40,
                       lambda: "focusing sent %r" % sent(session, since)[-6:])
            commands = sent(session, since)
            self.assertEqual(commands[:7], ["D 6 0", "D 7 5", "p", "s3840", "L800", "s1920", "p"])
            walk = [int(c[1:]) for c in commands[7:-3]]
            self.assertEqual(walk, list(range(792, walk[-1] - 1, -8)))  # 5 um steps from 500 um
            self.assertTrue(-80 <= walk[-1] < 0, walk[-1])  # a few steps past the sharpest place
            wait_until(lambda: session.inspect("text", TITLE, *Z_BOX) == "0", 20, "Z not at 0")
            float(session.inspect("text", TITLE, *INFORMATION_BOX))  # the last focus measure
            shot = session.screenshot("focus-ended")
            self.assertGreater(sharpness(session, shot), 0.8 * focused)
            self.assertTrue(painted(session, shot))  # "Course Focusing Completed", as drawn
            close_program(session)


if __name__ == "__main__":
    unittest.main()
