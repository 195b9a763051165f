// "Import Layout" (File menu, 32836): the file dialog, then the "Import Layout" dialog
// (resource 140) with the file's own layers, its top cells, "Centre the layout's bounding
// box" and "Field overlap (um)"; then the layer is rasterized at the magnification into
// heldLayout, and the writing area's part of it becomes the mask picture (a picture file
// in the run folder, as "Import Image" would take it). A file or layer the import refuses
// gets a message and leaves the held layout, the mask picture and its path as they were.
// The dialog's controls are reached through the dialog seam (dialog_controls.h).
#pragma once

void onImportLayoutCommand();  // nothing while an operation runs

// The dialog's handlers, run by the dialog seam.
void importLayoutOpened();
void importLayoutCommand(int controlId);
