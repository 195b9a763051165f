// Where the program's files go: the data folder on the desktop, the settings line
// Config.txt, the dated run folder for pictures, records and line files, the mask and
// alignment-mark file names, and the per-cell mark grid. Writing the files is left to
// the Parts that save them; they call ensureRunFolder first.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

struct DataPaths {
  // Builds the folder names from the desktop and creates the data folder; sizes the
  // mark grid from station.cellsX x station.cellsY, so the station must exist first.
  DataPaths();

  std::filesystem::path desktopFolder;
  std::filesystem::path dataFolder;  // desktop\Orvalin_Data
  std::filesystem::path configPath;  // data folder\Config.txt
  std::filesystem::path runFolder;   // data folder\run name, valid once created
  std::wstring maskFileName = L"mask.png";
  std::wstring alignmentMarkFileName = L"alignment_mark.png";
  std::wstring lineFileName;                    // the line file saved last, empty before the first
  std::filesystem::path latestExposurePicture;  // saved after the latest run, empty before
  std::vector<std::vector<int32_t>> cellMarks;  // [cellsX][cellsY], zero-filled
  int runFolderCreated = 0;
};

extern DataPaths dataPaths;

// The number after a numbered file's (record, "optic" and "camera" picture): after the
// largest int comes the smallest, as a 32-bit counter wraps, never undefined.
inline int nextFileNumber(int number) {
  return static_cast<int>(static_cast<uint32_t>(number) + 1u);
}

// Creates the run folder, named "%02d%02d%02d_%02d-%02d" from the local time, when
// forceNew is non-zero or none was made yet; otherwise keeps the earlier name. Every
// caller passes forceNew = 0, so one run of the program writes into one folder.
void ensureRunFolder(DataPaths& paths, int forceNew);
