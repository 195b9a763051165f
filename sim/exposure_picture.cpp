// The exposure picture: see exposure_picture.h.
#include "sim/exposure_picture.h"

#include <algorithm>

#include "jobs/raster_writing.h"
#include "sim/picture_file.h"
#include "sim/resist_model.h"
#include "station/png_file.h"

bool DevelopedArea::cellDark(int column, int row) const {
  const int k = kExposurePixelsPerCell;
  const int top = side - (row + 1) * k;
  int count = 0;
  for (int b = 0; b < k; ++b)
    for (int a = 0; a < k; ++a) count += pixelDark(column * k + a, top + b) ? 1 : 0;
  return 2 * count >= k * k;
}

DevelopedArea developExposure(const std::vector<ExposureSegment>& log, const ExposureArea& area) {
  const int k = kExposurePixelsPerCell;
  const double pitch = area.cellUm / k;
  // Pixel (i, j up) samples the middle of its part of the cell.
  const double first = (0.5 - 0.5 * k) * pitch;
  DoseGrid grid(area.cell0XUm + first, area.cell0YUm + first, pitch, area.cells * k,
                area.cells * k);
  addDose(grid, log);
  DevelopedArea developed;
  developed.side = area.cells * k;
  developed.dark.resize(grid.dose.size());
  for (int j = 0; j < grid.height; ++j) {
    uint8_t* out = &developed.dark[static_cast<size_t>(grid.height - 1 - j) * grid.width];
    for (int i = 0; i < grid.width; ++i) out[i] = developedDark(grid.at(i, j)) ? 1 : 0;
  }
  return developed;
}

bool saveExposurePicture(const std::filesystem::path& path, const DevelopedArea& developed) {
  PngPicture picture;
  picture.width = picture.height = developed.side;
  picture.channels = 1;
  picture.pixels.resize(developed.dark.size());
  std::transform(developed.dark.begin(), developed.dark.end(), picture.pixels.begin(),
                 [](uint8_t dark) { return dark ? kExposureDarkGrey : kExposureLightGrey; });
  return writePng(path, picture);
}

bool saveExposurePicture(const std::wstring& path, const ExposureArea& area, uint64_t nowMs) {
  return saveExposurePicture(std::filesystem::path(path),
                             developExposure(virtualStationExposure(nowMs), area));
}

bool loadExposurePicture(const std::filesystem::path& path, DevelopedArea& developed) {
  RecordedPicture picture;  // rows bottom-up, blue, green, red, alpha
  if (!readPictureFile(path, picture) || picture.width != picture.height) return false;
  developed.side = picture.width;
  developed.dark.resize(static_cast<size_t>(picture.width) * picture.height);
  for (int y = 0; y < picture.height; ++y) {
    const uint8_t* row =
        &picture.pixels[static_cast<size_t>(picture.height - 1 - y) * picture.width * 4];
    for (int x = 0; x < picture.width; ++x)
      developed.dark[static_cast<size_t>(y) * picture.width + x] = row[x * 4] < 128 ? 1 : 0;
  }
  return true;
}

ExposureAgreement exposureAgreement(const DevelopedArea& developed, const MaskPattern& target,
                                    int cellSize) {
  const int s = std::max(cellSize, 1);
  const int n = kPatternSide / s;
  const int centreFirst = n / 2 - kCoarseCentreHalfCells / s;
  const int centreEnd = n / 2 + kCoarseCentreHalfCells / s;
  auto inside = [](int v, int first, int end) { return v >= first && v < end; };
  ExposureAgreement result;
  int fineAgree = 0, coarseAgree = 0;
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; ++x) {
      const bool targetDark = target.cells[static_cast<size_t>(y) * target.width + x] == kDarkCell;
      const bool agrees = developed.cellDark(x, y) == targetDark;
      if (inside(x, kFineCentreFirst, kFineCentreEnd) &&
          inside(y, kFineCentreFirst, kFineCentreEnd)) {
        ++result.fineCells;
        fineAgree += agrees;
      }
      const int i = x / s, j = y / s;
      if (s > 1 && i < n && j < n &&
          !(inside(i, centreFirst, centreEnd) && inside(j, centreFirst, centreEnd))) {
        ++result.coarseCells;
        coarseAgree += agrees;
      }
    }
  }
  auto percent = [](int part, int whole) { return whole > 0 ? 100.0 * part / whole : 100.0; };
  result.fineCentrePercent = percent(fineAgree, result.fineCells);
  result.coarseOutsidePercent = percent(coarseAgree, result.coarseCells);
  return result;
}
