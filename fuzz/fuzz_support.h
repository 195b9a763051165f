// What every fuzz target shares: a private temporary desktop for the whole run (so the
// data folder, Config.txt and the run folder lie in it and nothing is written elsewhere),
// a fresh station before each input, and the input as a file there. The targets link
// the portable core and the virtual station's seams as the unit tests do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

struct LayoutShapes;

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
// The layout targets' shapes: budgets of a million corners and placements, so that the
// budgets' refusal is reached within a second.
void setFuzzLayoutBudgets(LayoutShapes& shapes);
// Rasterizes the shapes at cells of 1 to 10 um (by first, the input's first byte), and at
// least the layout's extent / 2000 so that one input stays fast, box-centred when first's
// high bit is set; the first raster of an input is also written as the writing area's
// picture.
void rasterizeFuzzLayout(const LayoutShapes& shapes, uint8_t first, bool& written);
