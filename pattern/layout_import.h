// Layout import: a GDSII (.gds) or DXF (.dxf) file read into its layers and top cells,
// one layer of one top cell rasterized at the magnification into a LayoutRaster, and
// the part of it inside the writing area written as the mask picture, so that every
// step after "Import Image" works on it unchanged. The readers are gdsii_reader and
// dxf_reader, the rasterization layout_geometry; the dialog is the application's.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "pattern/dxf_reader.h"
#include "pattern/gdsii_reader.h"
#include "pattern/layout_raster.h"

struct LayoutDocument {
  bool isDxf = false;
  GdsiiLibrary library;
  DxfDrawing drawing;
  const std::vector<std::string>& layers() const { return isDxf ? drawing.layers : library.layers; }
  // Empty for a DXF drawing, which is one cell.
  const std::vector<std::string>& topCells() const { return library.topCells; }
};

// Reads the file: GDSII unless its name ends in ".dxf" (any case). Empty on success,
// else the message for the operator.
std::string openLayoutFile(const std::filesystem::path& path, LayoutDocument& document);
// The layer of the top cell (ignored for DXF) rasterized in cells of cellUm: see
// rasterizeLayout. Empty on success, else the message; raster is untouched then.
std::string rasterizeLayoutLayer(const LayoutDocument& document, const std::string& layer,
                                 const std::string& topCell, double cellUm, bool centreBox,
                                 LayoutRaster& raster);
// The writing area's 1000 x 1000 cells around the writing reference as a picture of
// 1000 x 1000 pixels, black where the raster is dark (cells of the area outside it are
// white), written as a 24-bit BMP file. False when the file could not be written.
bool writeWritingAreaPicture(const LayoutRaster& raster, const std::filesystem::path& path);
