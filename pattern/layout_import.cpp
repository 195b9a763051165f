// Layout import: see layout_import.h.
#include "pattern/layout_import.h"

#include <cctype>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>

#include "pattern/layout_geometry.h"
#include "pattern/pattern_stores.h"

namespace {

// Circles and arcs stray at most an eighth of a cell from their true outline.
constexpr double kToleranceCells = 0.125;

bool endsWithDxf(const std::filesystem::path& path) {
  std::string ext = path.extension().string();
  for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return ext == ".dxf";
}

void put16(std::string& out, uint32_t v) {
  out += static_cast<char>(v & 0xFF);
  out += static_cast<char>((v >> 8) & 0xFF);
}
void put32(std::string& out, uint32_t v) {
  put16(out, v & 0xFFFF);
  put16(out, v >> 16);
}

}  // namespace

std::string openLayoutFile(const std::filesystem::path& path, LayoutDocument& document) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return "The file cannot be opened.";
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  document = {};
  document.isDxf = endsWithDxf(path);
  std::string error = document.isDxf ? readDxf(bytes.data(), bytes.size(), document.drawing)
                                     : readGdsii(reinterpret_cast<const uint8_t*>(bytes.data()),
                                                 bytes.size(), document.library);
  if (error.empty() && document.layers().empty()) error = "The file holds no shapes.";
  if (error.empty() && !document.isDxf && document.topCells().empty())
    error = "Every cell of the file is referred to by another: there is no top cell.";
  return error;
}

std::string rasterizeLayoutLayer(const LayoutDocument& document, const std::string& layer,
                                 const std::string& topCell, double cellUm, bool centreBox,
                                 LayoutRaster& raster) {
  LayoutShapes shapes;
  const double tolerance = cellUm * kToleranceCells;
  std::string error = document.isDxf
                          ? dxfShapes(document.drawing, layer, tolerance, shapes)
                          : gdsiiShapes(document.library, layer, topCell, tolerance, shapes);
  if (!error.empty()) return error;
  LayoutRaster made;
  if (!rasterizeLayout(shapes.polygons, cellUm, centreBox, made, error)) return error;
  raster = std::move(made);
  return {};
}

bool writeWritingAreaPicture(const LayoutRaster& raster, const std::filesystem::path& path) {
  constexpr uint32_t kSide = kPatternSide;
  constexpr uint32_t kRowBytes = kSide * 3;  // a multiple of 4: no padding
  std::string out;
  out.reserve(54 + kRowBytes * kSide);
  out += "BM";
  put32(out, 54 + kRowBytes * kSide);
  put32(out, 0);
  put32(out, 54);
  put32(out, 40);  // BITMAPINFOHEADER
  put32(out, kSide);
  put32(out, kSide);  // positive: rows bottom-up
  put16(out, 1);
  put16(out, 24);
  put32(out, 0);
  put32(out, kRowBytes * kSide);
  put32(out, 2835);
  put32(out, 2835);
  put32(out, 0);
  put32(out, 0);
  // Cell (ix, iy) of the raster lies at cell (ix - ix0, ...) of the reference grid, where
  // the area's cells run from -500 to 499 on both axes.
  const double cell = raster.cellUm;
  const auto x0 = std::llround(raster.centreXUm / cell - raster.widthCells / 2.0);
  const auto yTop = std::llround(raster.centreYUm / cell + raster.heightCells / 2.0);
  for (uint32_t row = 0; row < kSide; ++row) {  // bottom-up
    const long long iy = static_cast<long long>(row) - kSide / 2;
    const long long rasterRow = yTop - 1 - iy;
    for (uint32_t column = 0; column < kSide; ++column) {
      const long long rasterColumn = static_cast<long long>(column) - kSide / 2 - x0;
      bool dark =
          rasterRow >= 0 && rasterRow < raster.heightCells && rasterColumn >= 0 &&
          rasterColumn < raster.widthCells &&
          raster.dark[static_cast<size_t>(rasterRow) * static_cast<size_t>(raster.widthCells) +
                      static_cast<size_t>(rasterColumn)] != 0;
      out.append(3, dark ? '\0' : '\xFF');
    }
  }
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(out.data(), static_cast<std::streamsize>(out.size()));
  return static_cast<bool>(file);
}
