// The portable steps of start-up and shutdown: settings line, device opening with the
// operator's reports, and the orderly switch-off at exit. The Win32 entry point runs
// the window-class, GDI+ and message-loop steps around these.
#pragma once

// Reads Config.txt, sizes the pictures, allocates the cluster table, opens the
// controller port twice and connects the camera, each failure with its message box.
void startUpDevices();
// Writes Config.txt back, switches laser and illumination off.
void shutDownDevices();
