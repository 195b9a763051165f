// The file-open dialog seam. Windows (file_dialog_win32.cpp): the system IFileOpenDialog
// with no owner, no filters and default options. Tests: sim/recorded_display_seam.cpp
// answers with what the test queued.
#pragma once

#include <string>

// True when the operator confirmed a file; path is its file-system path.
bool fileDialogAskOpen(std::wstring& path);
