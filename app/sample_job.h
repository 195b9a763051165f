// The sample job of the virtual station: a mask picture and a line file that a newcomer
// imports for a first job, put into the data folder at start-up when they are missing.
// The mask is black shapes without holes on white, a 1000 x 1000 grey PNG, one pixel
// a writing-area cell: a rectangle in the finely written centre, a disc and a triangle in
// the coarsely written outside. The line file holds one closed triangle of "1" lines
// where the mask has nothing. Called by telvane-sim.exe's start (sim/first_job_seam.cpp).
#pragma once

#include <filesystem>
#include <string>

inline constexpr const char* kSampleMaskName = "sample_mask.png";
inline constexpr const char* kSampleLinesName = "sample_lines.txt";

// The sample line file's text, in the line file's own format.
std::string sampleLineText();
// Writes each of the two files into folder unless a file of that name is there already
// (an operator's edited copy stays). A file that cannot be written is left out silently.
void placeSampleJob(const std::filesystem::path& folder);
