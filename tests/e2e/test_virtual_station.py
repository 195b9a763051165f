"""telvane-sim.exe met as a newcomer meets it, in one session: it starts with the lamp and
the live view on and its sample mask and line file in the data folder; the first job
(scripts/first_job.py: the file dialog, "Mask Pattern", "Simulate Writing", "Start
Writing") ends with "All Writings finished", the green painting of the written cells on
the mask's dark cells as the program thresholds them. Screenshots land in
build/e2e-artifacts."""
import os
import subprocess
import unittest

from e2e_support import (INSIDE, TITLE, WineSession, agreement, children, close_program,
                         png_dark_cells, points_of, wait_until)
from first_job import first_job
from wine_session import ARTIFACTS

GREEN = (0, 255, 0)


def sharpness(session, path):
    """Mean edge strength of the middle of the display window in a screenshot."""
    left, top = session.screen_point(TITLE, 300, 250)
    out = subprocess.run(["convert", path, "-crop", "600x500+%d+%d" % (left, top), "-colorspace",
                          "gray", "-edge", "1", "-format", "%[fx:mean]", "info:"],
                         check=True, capture_output=True, text=True)
    return float(out.stdout.strip())


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

            target = png_dark_cells(os.path.join(data, "sample_mask.png"))
            painted = {(x - 116, y - 15) for x, y in points_of(session, shots[2], GREEN, *INSIDE)}
            fine, coarse = agreement(painted, target)
            self.assertTrue(fine >= 0.97 and coarse >= 0.90, (fine, coarse))
            close_program(session)


if __name__ == "__main__":
    unittest.main()
