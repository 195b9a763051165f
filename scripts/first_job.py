"""The first job on telvane-sim.exe, driven through its real windows as a newcomer does
it: the sample mask picked in the file dialog, "Mask Pattern", "Simulate Writing", a
pointer click on "Start Writing" and the wait for "All Writings finished", then the lamp
and the live view "On" clicked to look at the written resist. Used by `make run` without
a display and by the end-to-end tests. Standard library only."""
import os
import time

from wine_session import wait_until

TITLE = "Telvane"
IMPORT_IMAGE, MASK_PATTERN, SIMULATE = 32812, 32807, 32814
START_WRITING = (1362 + 50, 980 + 20)
VIDEO_ON, VIDEO_OFF, LAMP_ON = (1332 + 10, 70), (1382 + 10, 70), (1332 + 10, 155)
PROGRESS_BOX = [1262, 380, 170, 20]
SAMPLE_MASK = "sample_mask.png"


def menu(session, command, settle=3):
    session.inspect("command", TITLE, command)
    time.sleep(settle)


def first_job(session, data_folder, shots, prefix="first-job", timeout=300):
    """Runs the first job in a started telvane-sim.exe; returns the screenshots' paths:
    the live sample, the simulation, the written pattern and the written resist live."""
    session.dismiss_message_boxes_until(TITLE)
    mask = os.path.join(data_folder, SAMPLE_MASK)
    wait_until(lambda: os.path.exists(mask), 20, "no sample mask in %s" % data_folder)
    time.sleep(2)  # the first live frames and the jog pad paint
    taken = [session.screenshot(prefix + "-live", shots)]
    session.click_client(TITLE, *VIDEO_OFF)  # the live frames would paint over the pattern
    session.inspect("command", TITLE, IMPORT_IMAGE)
    session.answer_file_dialog(mask)
    menu(session, MASK_PATTERN)
    menu(session, SIMULATE)
    taken.append(session.screenshot(prefix + "-simulation", shots))
    session.click_client(TITLE, *START_WRITING)
    session.wait_caption(TITLE, "All Writings finished", timeout, PROGRESS_BOX)
    taken.append(session.screenshot(prefix + "-written", shots))
    session.click_client(TITLE, *LAMP_ON)
    session.click_client(TITLE, *VIDEO_ON)
    time.sleep(3)
    taken.append(session.screenshot(prefix + "-written-live", shots))
    return taken
