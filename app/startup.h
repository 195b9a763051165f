// The portable steps of start-up and shutdown: settings line, picture sizes, cluster
// table, device opening with the operator's reports, and the orderly switch-off at
// exit. The Win32 entry point runs the window-class, GDI+, window and message-loop steps
// around these, and kills timer 1 and shuts GDI+ down itself.
#pragma once

#include "station/station.h"

extern IntSize cameraImageSize;   // size at which the main window redraws the camera image
extern IntSize pictureImageSize;  // the second picture size, set with the first

// Reads Config.txt (recomputing the geometry when it exists), sets both picture sizes to
// the display, allocates the cluster table, opens the controller port twice and
// connects the camera, each failure with its message box.
void startUpDevices();
// Writes Config.txt back, switches laser and illumination off, frees the cluster table.
void shutDownDevices();
// Once the main window is up, what the program starts with beyond the defaults.
// telvane.exe (app/first_job_absent.cpp): nothing, every output stays off.
// telvane-sim.exe (sim/first_job_seam.cpp): the sample job in the data folder, and the
// lamp and the live view switched on as their "On" buttons do.
void startFirstJob();
