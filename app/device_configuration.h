// The Device Configuration dialog (resource 138): the controller's COM port and its
// reopening, the axes of the three Standa motors with the stage reopening, "Zero Point",
// a test move of the stage, a raw command for the board and its answer, the camera's
// re-initialisation, and "Close", which always switches the laser off. Its values go to
// their homes at once (serialLink.comPort, station.standaMotor1Axis..3) and reach
// Config.txt at exit. Its controls are reached through the dialog seam
// (dialog_controls.h); the command dispatch opens it.
#pragma once

// "Device Configuration" (32820). Nothing while an operation runs.
void openDeviceConfiguration();

// The dialog's handlers, run by the dialog seam.
void deviceConfigurationOpened();
void deviceConfigurationCommand(int controlId);
