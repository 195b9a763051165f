// What every fuzz target shares: a private temporary desktop for the whole run (so the
// data folder, Config.txt and the run folder lie in it and nothing is written elsewhere),
// a fresh station before each input, and the input as a file there. The targets link
// the portable core and the virtual station's seams as the unit tests do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

// Once, from LLVMFuzzerInitialize: makes the temporary desktop (removed at exit) and
// sends the link's trace lines on standard output to /dev/null.
void fuzzInitialize();
// The records as the program starts them, the virtual clock and the recorders reset, the
// data paths on the temporary desktop with an empty run folder.
void freshStation();
// Writes the input as a file of the temporary desktop and returns its path.
std::filesystem::path writeInputFile(const char* name, const uint8_t* data, size_t size);
// Removes what the last input left in the run folder.
void clearRunFolder();
