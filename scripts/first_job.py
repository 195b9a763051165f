"""The first job on telvane-sim.exe, driven through its real windows as a newcomer does
it: the sample mask picked in the file dialog, "Mask Pattern", "Simulate Writing", a
pointer click on "Start Writing" and the wait for "All Writings finished", then the lamp
and the live view "On" clicked and the stage sent, from Writing Configuration, to where
the resist was written, to look at it. Used by `make run` without a display and by the
end-to-end tests. Standard library only."""
import os
import re
import time

from wine_session import wait_until

TITLE = "Telvane"
IMPORT_IMAGE, MASK_PATTERN, SIMULATE, WRITING_CONFIGURATION = 32812, 32807, 32814, 32821
CONFIGURATION, POSITION_X, POSITION_Y, GO, DONE = "Configuration", 1007, 1012, 1100, 2
START_WRITING = (1362 + 50, 980 + 20)
VIDEO_ON, VIDEO_OFF, LAMP_ON = (1332 + 10, 70), (1382 + 10, 70), (1332 + 10, 155)
PROGRESS_BOX = [1262, 380, 170, 20]
SAMPLE_MASK = "sample_mask.png"
FIELD_TEXELS = (616, 514)  # the virtual camera's field, 737 um across, 2 display pixels a texel
TEXEL_UM = 737.0 / FIELD_TEXELS[0]


def written_place(data_folder):
    """Where the stage shows the middle of the written pattern. The laser shift in
    Config.txt is the spot's display pixel (x, and y up from the bottom); the run adds its
    numbers to the stage as micrometres, and the spot falls at that pixel, half a texel
    each, off the middle of the field's texels. A fresh station's (0, 0) puts the
    pattern 368 um left of and 307 um below where the camera looked."""
    shift = (0, 0)
    try:
        with open(os.path.join(data_folder, "Config.txt")) as config:
            found = re.search(r"laser shift:\((-?\d+),(-?\d+),", config.read())
        if found:
            shift = (int(found.group(1)), int(found.group(2)))
    except OSError:
        pass
    return tuple(round(s + (s - texels) / 2 * TEXEL_UM) for s, texels in zip(shift, FIELD_TEXELS))


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
    look_at(session, written_place(data_folder))
    taken.append(session.screenshot(prefix + "-written-live", shots))
    return taken


def look_at(session, place):
    """Sends the stage to place (um) with Writing Configuration's "Go", as an operator
    does, and closes the dialog once the stage is there."""
    session.inspect("command", TITLE, WRITING_CONFIGURATION)
    if not session.wait_window(CONFIGURATION):
        raise AssertionError("no Writing Configuration dialog")
    for box, um in zip((POSITION_X, POSITION_Y), place):
        session.type_into(CONFIGURATION, box, str(um))
    session.click_control(CONFIGURATION, GO)
    wait_until(lambda: [session.inspect("text", TITLE, x, 240) for x in (1287, 1352)] ==
               [str(um) for um in place], 60, "the stage never reached %r" % (place,), poll=1)
    session.click_control(CONFIGURATION, DONE)
    time.sleep(3)  # live frames of the place
