// The sample job: see sample_job.h. The mask is an 8-bit grey PNG of the station's own
// writer.
#include "app/sample_job.h"

#include <cstdlib>
#include <fstream>
#include <system_error>

#include "pattern/line_file.h"
#include "station/png_file.h"
#include "station/text_format.h"

namespace {

constexpr int kSide = 1000;  // pixels each way, one a cell

// Dark where the sample's shapes are; x to the right, y downwards, in pixels.
bool sampleDark(int x, int y) {
  const bool rectangle = x >= 430 && x < 570 && y >= 465 && y < 535;  // inside the centre
  const int dx = x - 250;
  const int dy = y - 250;
  const bool disc = dx * dx + dy * dy < 70 * 70;
  // Apex (750, 700), base from (525, 850) to (975, 850).
  const bool triangle = y < 850 && 3 * (y - 700) >= 2 * std::abs(x - 750);
  return rectangle || disc || triangle;
}

void writeIfMissing(const std::filesystem::path& path, const char* data, size_t size) {
  std::error_code error;
  if (std::filesystem::exists(path, error) || error) return;
  std::ofstream file(path, std::ios::binary);
  file.write(data, static_cast<std::streamsize>(size));
}

PngPicture sampleMask() {
  PngPicture picture;
  picture.width = picture.height = kSide;
  picture.pixels.resize(static_cast<size_t>(kSide) * kSide);
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x)
      picture.pixels[static_cast<size_t>(y) * kSide + x] = sampleDark(x, y) ? 0 : 255;
  }
  return picture;
}

}  // namespace

std::string sampleLineText() {
  // Corners in um from the display centre, y downwards: below left of the mask's centre.
  const float corners[4][2] = {{-300, 250}, {-150, 250}, {-225, 120}, {-300, 250}};
  std::string text;
  for (int i = 0; i < 3; ++i) {
    text += formatText(kLineFormat, double(corners[i][0]), double(corners[i][1]),
                       double(corners[i + 1][0]), double(corners[i + 1][1]), 1);
  }
  return text;
}

void placeSampleJob(const std::filesystem::path& folder) {
  std::error_code error;
  if (!std::filesystem::exists(folder / kSampleMaskName, error) && !error)
    writePng(folder / kSampleMaskName, sampleMask());
  const std::string lines = sampleLineText();
  writeIfMissing(folder / kSampleLinesName, lines.data(), lines.size());
}
