// Picture files read from disk into the recorded display's picture records, so that the
// programs on the virtual station import a mask the way "Import Image" does on Windows,
// where GDI+ reads it. Uncompressed BMP (1, 4, 8, 24 and 32 bits a pixel) and PNG (every
// colour type, 8 bits a channel, palettes and grey of 1 to 8 bits, not interlaced).
#pragma once

#include <filesystem>

#include "sim/recorded_display.h"

// False when the file is missing or not a picture of those kinds.
bool readPictureFile(const std::filesystem::path& path, RecordedPicture& picture);
