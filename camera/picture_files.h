// Picture files and the file-open question: saving the main window's display area as
// "optic(%d).jpg" and the snapshot as "camera(%d).jpg" (both PNG data, whatever the
// name says), unique file names in the run folder, and the file-open dialog used by the
// import commands. The two picture counters live here; the encoder and the dialog are
// behind the display-drawing seam and file_dialog.h.
#pragma once

#include <string>

#include "camera/display_surface.h"
#include "station/data_paths.h"

extern int opticNumber;   // next "optic" picture of this run
extern int cameraNumber;  // next "camera" picture of this run

// Saves the top-left 1232 x 1028 pixels of window. 1, or 0 after 20 failures to create
// the drawing context.
int SaveViewImage(DataPaths& paths, SurfaceWindow window);
// The snapshot's bitmap as the next "camera" picture (the saving branch of RenderSnapshot).
void saveCameraPicture(Canvas* canvas);
// "base.extension" in the run folder, or "base_n.extension" with the first n from 0
// that names no existing file.
std::wstring UniqueFileName(const DataPaths& paths, const std::wstring& base,
                            const std::wstring& extension);
// Asks for a file to open; on confirmation path is set and "File:%S" shown. Always 1.
int AskFileToOpen(std::wstring& path);
