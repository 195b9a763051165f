// The raster stores and their accessors; see pattern_stores.h.
#include "pattern/pattern_stores.h"

#include <algorithm>

#include "camera/heap_blocks.h"
#include "pattern/line_pattern.h"
#include "station/station.h"

namespace {

int clampIndex(int value, int size) { return std::clamp(value, 0, size - 1); }

size_t pixelOffset(const ImageBuffer& image, int x, int y) {
  const int cx = clampIndex(x, image.width);
  const int cy = clampIndex(y, image.height);
  return (static_cast<size_t>(cy) * static_cast<size_t>(image.width) + static_cast<size_t>(cx)) * 4;
}

int32_t** allocateRows(bool zeroed) {
  auto** rows = new int32_t*[kPatternSide];
  for (int x = 0; x < kPatternSide; ++x) {
    rows[x] = zeroed ? new int32_t[kPatternSide]() : new int32_t[kPatternSide];
  }
  return rows;
}

void freeRows(int32_t** rows) {
  if (rows == nullptr) return;
  for (int x = 0; x < kPatternSide; ++x) delete[] rows[x];
  delete[] rows;
}

// A picture nothing was imported into reads as bright, so it never asks for exposure.
ImageBuffer freshPicture(int width = kPatternSide, int height = kPatternSide) {
  ImageBuffer picture(width, height);
  if (picture.pixels != nullptr) std::fill_n(picture.pixels, picture.byteSize, uint8_t{0xFF});
  return picture;
}

}  // namespace

// A grid nothing was built into reads as bright: edge finding or a run on it before the
// first build finds nothing to write, and the zoomed target starts all bright.
MaskPattern::MaskPattern() {
  const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
  cells = allocateRunBlock<int32_t>(count, kHeapAllocArrayFailureText);
  if (cells != nullptr) std::fill_n(cells, count, kBrightCell);
}

void setCell(MaskPattern& pattern, int x, int y, int32_t value) {
  const int cx = clampIndex(x, pattern.width);
  const int cy = clampIndex(y, pattern.height);
  pattern.cells[static_cast<size_t>(cy) * static_cast<size_t>(pattern.width) +
                static_cast<size_t>(cx)] = value;
}

int32_t getCell(const MaskPattern& pattern, int x, int y) {
  return getCell(pattern.cells, pattern.width, pattern.height, x, y);
}

int32_t getCell(const int32_t* cells, int width, int height, int x, int y) {
  const int cx = clampIndex(x, width);
  const int cy = clampIndex(y, height);
  return cells[static_cast<size_t>(cy) * static_cast<size_t>(width) + static_cast<size_t>(cx)];
}

uint8_t getRed(const ImageBuffer& image, int x, int y) {
  return image.pixels[pixelOffset(image, x, y) + 2];
}
uint8_t getGreen(const ImageBuffer& image, int x, int y) {
  return image.pixels[pixelOffset(image, x, y) + 1];
}
uint8_t getBlue(const ImageBuffer& image, int x, int y) {
  return image.pixels[pixelOffset(image, x, y)];
}
void setRed(ImageBuffer& image, int x, int y, uint8_t value) {
  image.pixels[pixelOffset(image, x, y) + 2] = value;
}
void setGreen(ImageBuffer& image, int x, int y, uint8_t value) {
  image.pixels[pixelOffset(image, x, y) + 1] = value;
}
void setBlue(ImageBuffer& image, int x, int y, uint8_t value) {
  image.pixels[pixelOffset(image, x, y)] = value;
}

int grey(const ImageBuffer& image, int x, int y) {
  const size_t at = static_cast<size_t>(std::clamp(y, 0, 999)) * 4000 +
                    static_cast<size_t>(std::clamp(x, 0, 999)) * 4;
  return (image.pixels[at] + image.pixels[at + 1] + image.pixels[at + 2]) / 3;
}

CellGrid::CellGrid() {
  edgeCodes = allocateRows(false);
  visitTable = allocateRows(true);
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; ++x) setCell(finalPattern, x, y, kBrightCell);
  }
}

CellGrid::~CellGrid() {
  freeRows(edgeCodes);
  freeRows(visitTable);
}

// One unit, so that construction follows this order.
MaskPattern targetPattern;
MaskPattern zoomedPattern;
MaskPattern finePattern;
MaskPattern coarsePattern;
MaskPattern finalPattern;
LinePattern linePattern;
int linesEnabled = 1;
CellGrid cellGrid;
ImageBuffer maskImage = freshPicture();
ImageBuffer alignmentMarkImage = freshPicture();
// The whole display, so that the composed picture replaces everything the display showed;
// white for "Show Target Pattern" before any redraw.
ImageBuffer simulationImage = freshPicture(kDisplayWidth, kDisplayHeight);

EdgePoint edgePoints[kEdgePointCapacity];
int32_t edgePointCount = 0;
EdgePoint remainingPoints[kEdgePointCapacity];
int32_t remainingPointCount = 0;
