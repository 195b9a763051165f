// The exposure picture of a writing run, a seam: after the run, the resist over the writing
// area as it developed, saved beside the run's writing-condition record. The virtual station
// (sim/exposure_record_seam.cpp) develops its board's exposure log and saves the picture;
// with a real board (exposure_record_absent.cpp) there is nothing to develop.
#pragma once

#include <filesystem>

// Saves the picture of the 1000 x 1000 cells whose cell (0, 0) was written at stage
// (cell0XUm, cell0YUm), cellUm apart, at path. False when no picture was saved.
bool recordExposurePicture(const std::filesystem::path& path, double cell0XUm, double cell0YUm,
                           double cellUm);
