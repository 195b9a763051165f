// The line file: one segment a line, "%f,%f,%f,%f,%d\n" (start x, start y, end x, end y in
// um from the display centre, x to the right and y downwards, then the width class).
// Importing replaces the list; saving after a vector writing run writes LinePattern.txt,
// LinePattern_0.txt, ... into the run folder, never over an existing file.
#pragma once

#include <filesystem>
#include <string>

#include "station/data_paths.h"

// One segment's line: start x, start y, end x, end y, width class.
inline constexpr const char* kLineFormat = "%f,%f,%f,%f,%d\n";

// Clears the list, reads the file line by line and draws the lines. A line that does not
// parse repeats the values read before it (zeros for the first line). An unopenable file
// is reported with "Unable to open file" / "File open error". Returns 0.
int importLines(const std::filesystem::path& path);
// The list as the file's text; it is also kept in the LinePattern record.
std::string buildLineText();
// Writes text to the next free LinePattern file of the run folder, whose name the folder
// record keeps. A file that cannot be opened is skipped silently. Returns 0.
int saveLines(DataPaths& paths, const std::string& text);
