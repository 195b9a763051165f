// The settings line Config.txt: eleven device settings on one line, read at start and
// written at exit. Each value lives in its home record: the station and laser records,
// and the controller's port number, whose home (the serial link) the caller passes in.
// This module only moves them between the line and the homes.
#pragma once

#include <cstdint>
#include <filesystem>

// Reads the first line (cut at 99 characters) into the homes; values after the first
// mismatch keep what they had. False when the file could not be opened.
bool readSettingsFile(const std::filesystem::path& path, int32_t& controllerPort);
// Writes the line from the homes, voltages with two decimals. False when not written.
bool writeSettingsFile(const std::filesystem::path& path, int32_t controllerPort);
