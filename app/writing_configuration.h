// The Writing Configuration dialog ("Configuration", resource 130): shows the writing
// parameters, the writing-area size, the laser shift and the outside block size, parses
// what the operator typed with the scanf formats, clamps it into its home record and
// writes it back; offers a step jog, "Go" to a typed position and the shutter switch.
// Values set stay set: there is no cancel. Its controls are reached through the dialog
// seam (dialog_controls.h); the command dispatch opens it.
#pragma once

// "Writing Configuration" (32821): live view paused while the dialog is open. Nothing
// while an operation runs.
void openWritingConfiguration();

// The dialog's handlers, run by the dialog seam.
void writingConfigurationOpened();
void writingConfigurationCommand(int controlId);
