// The virtual camera's renderer. The sample is precomputed once as a repeating texture
// of texels of four sensor cells (two display pixels: 737 / 616 um); the resist's dose
// (sim/resist_model.h) is kept on the same repeating texels. A frame copies the texels under
// the field, darker where the resist developed, blurs by the defocus with one separable box
// pass, scales by lamp, gain and exposure, adds the laser spot and spreads each texel over
// its 4 x 4 Bayer samples. Everything is integer work on a 616 x 514 grid, so a frame stays well
// under the live view's 200 ms.
#include "sim/virtual_camera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "sim/resist_model.h"

namespace {

constexpr int kTextureSize = 2520;                     // texels: 30 grid periods, about 3 mm
constexpr int kViewWidth = kVirtualSensorWidth / 4;    // 616 texels
constexpr int kViewHeight = kVirtualSensorHeight / 4;  // 514 texels
constexpr double kTexelUm = kVirtualFieldUm / kViewWidth;
constexpr double kBlurTexelsPerUm = 1.0;  // blur radius per um of defocus: a shallow focus
constexpr int kMaxBlurTexels = 48;
constexpr int kLampOffPercent = 6;  // stray light with the lamp off

struct Rgb {
  uint8_t r, g, b;
};

struct Sample {
  std::vector<Rgb> texels;  // kTextureSize squared, row v = world y upwards
  DoseGrid resist;          // the dose at every texel's centre, same layout
  size_t segmentsApplied = 0;
  // Working grids of one frame, kept so that a frame allocates nothing.
  std::vector<std::array<int32_t, 3>> region;
  std::vector<std::array<int32_t, 3>> rows;
  std::vector<Rgb> picture;
  std::vector<uint8_t> evenRow, oddRow;
};

uint32_t hash(uint32_t x, uint32_t y) {
  uint32_t h = x * 374761393u + y * 668265263u;
  h = (h ^ (h >> 13)) * 1274126177u;
  return h ^ (h >> 16);
}

int wrapDistance(int value, int period) {
  int d = value % period;
  if (d < 0) d += period;
  return std::min(d, period - d);
}

Rgb shade(int r, int g, int b, int percent) {
  auto c = [&](int v) { return static_cast<uint8_t>(std::clamp(v * percent / 100, 0, 255)); };
  return {c(r), c(g), c(b)};
}

// The sample at texel (u, v), texel units throughout so that the pattern repeats
// seamlessly with the texture: grid lines every 84 texels (about 100 um), pads every 168,
// alignment crosses every 420 texels on crossings between the pads.
Rgb sampleTexel(int u, int v) {
  // Grain at two scales: fine speckle and a softer mottle.
  const int fine = static_cast<int>(hash(u, v) % 41) - 20;
  const int coarse = static_cast<int>(hash(u / 6, v / 6 + 7919) % 31) - 15;
  const int grain = 100 + fine + coarse;
  Rgb colour = shade(120, 135, 170, grain);

  // Gold pads, about 40 um square, on every other grid crossing.
  if (wrapDistance(u, 168) < 17 && wrapDistance(v, 168) < 17) {
    colour = shade(225, 190, 95, 90 + fine / 2);
  }
  // Grid lines, about 2.5 um wide.
  if (wrapDistance(u, 84) < 1 || wrapDistance(v, 84) < 1) colour = shade(60, 65, 85, grain);
  // Alignment crosses: arms about 120 um long and 5 um wide, on crossings between the pads.
  const int cx = (u + 126) % 420;
  const int cy = (v + 126) % 420;
  const int dx = std::abs(cx - 210);
  const int dy = std::abs(cy - 210);
  if ((dx < 2 && dy < 50) || (dy < 2 && dx < 50)) colour = shade(240, 240, 235, 100);
  // Block code beside each cross: eight squares of about 8 um filled by the bits of the
  // block index, so that neighbouring fields can be told apart.
  if (cy >= 226 && cy < 233 && cx >= 226 && cx < 282) {
    const int blockX = (u + 126) / 420;
    const int blockY = (v + 126) / 420;
    const int bit = (cx - 226) / 7;
    if (((blockX | (blockY << 3)) >> bit) & 1) colour = shade(200, 70, 60, 100);
  }
  return colour;
}

Sample& sample() {
  static Sample s = [] {
    Sample built;
    built.texels.resize(static_cast<size_t>(kTextureSize) * kTextureSize);
    for (int v = 0; v < kTextureSize; ++v) {
      for (int u = 0; u < kTextureSize; ++u) {
        built.texels[static_cast<size_t>(v) * kTextureSize + u] = sampleTexel(u, v);
      }
    }
    built.resist = DoseGrid(kTexelUm / 2, kTexelUm / 2, kTexelUm, kTextureSize, kTextureSize, true);
    const int side = 2 * kMaxBlurTexels;
    built.region.resize(static_cast<size_t>(kViewWidth + side) * (kViewHeight + side));
    built.rows.resize(static_cast<size_t>(kViewWidth) * (kViewHeight + side));
    built.picture.resize(static_cast<size_t>(kViewWidth) * kViewHeight);
    built.evenRow.resize(kVirtualSensorWidth);
    built.oddRow.resize(kVirtualSensorWidth);
    return built;
  }();
  return s;
}

int wrapTexel(int t) {
  const int w = t % kTextureSize;
  return w < 0 ? w + kTextureSize : w;
}

int texelOf(double um) { return static_cast<int>(std::floor(um / kTexelUm)); }

// Where the laser falls on the sample relative to the field's centre, um.
void spotOffsetUm(const StationView& view, double& x, double& y) {
  x = (view.spotDisplayX / 2.0 - kViewWidth / 2.0) * kTexelUm;
  y = (view.spotDisplayYUp / 2.0 - kViewHeight / 2.0) * kTexelUm;
}

// The resist takes the dose of every piece of the log not seen before, where the laser fell
// at that time; a shorter log than before means the board started anew.
void applyExposure(Sample& s, const StationView& view,
                   const std::vector<ExposureSegment>& written) {
  if (written.size() < s.segmentsApplied) {
    std::fill(s.resist.dose.begin(), s.resist.dose.end(), 0.0f);
    s.segmentsApplied = 0;
  }
  double shiftX = 0, shiftY = 0;
  spotOffsetUm(view, shiftX, shiftY);
  for (size_t i = s.segmentsApplied; i < written.size(); ++i)
    addDose(s.resist, written[i], shiftX, shiftY);
  s.segmentsApplied = written.size();
}

// The texels under the field plus a margin of radius, darkened where written.
void copyRegion(Sample& s, int left, int top, int radius) {
  const int width = kViewWidth + 2 * radius;
  const int height = kViewHeight + 2 * radius;
  for (int j = 0; j < height; ++j) {
    const int v = wrapTexel(top - (j - radius));  // image rows go down, v goes up
    const Rgb* texRow = &s.texels[static_cast<size_t>(v) * kTextureSize];
    const float* doseRow = &s.resist.dose[static_cast<size_t>(v) * kTextureSize];
    auto* out = &s.region[static_cast<size_t>(j) * width];
    for (int i = 0, u = wrapTexel(left - radius); i < width;
         ++i, u = u + 1 == kTextureSize ? 0 : u + 1) {
      // Developed resist is darker, and less so in the blue.
      const bool dark = developedDark(doseRow[u]);
      const int keep = dark ? 110 : 255;
      const int keepBlue = dark ? 160 : 255;
      out[i] = {texRow[u].r * keep / 255, texRow[u].g * keep / 255, texRow[u].b * keepBlue / 255};
    }
  }
}

// One separable box blur of the given radius from region into picture.
void blurRegion(Sample& s, int radius) {
  const int width = kViewWidth + 2 * radius;
  const int height = kViewHeight + 2 * radius;
  const int span = 2 * radius + 1;
  for (int j = 0; j < height; ++j) {
    const auto* in = &s.region[static_cast<size_t>(j) * width];
    auto* out = &s.rows[static_cast<size_t>(j) * kViewWidth];
    std::array<int32_t, 3> sum{0, 0, 0};
    for (int i = 0; i < span; ++i) {
      for (int c = 0; c < 3; ++c) sum[c] += in[i][c];
    }
    for (int i = 0; i < kViewWidth; ++i) {
      out[i] = sum;
      if (i + span < width) {
        for (int c = 0; c < 3; ++c) sum[c] += in[i + span][c] - in[i][c];
      }
    }
  }
  const int area = span * span;
  for (int i = 0; i < kViewWidth; ++i) {
    std::array<int32_t, 3> sum{0, 0, 0};
    for (int j = 0; j < span; ++j) {
      for (int c = 0; c < 3; ++c) sum[c] += s.rows[static_cast<size_t>(j) * kViewWidth + i][c];
    }
    for (int j = 0; j < kViewHeight; ++j) {
      s.picture[static_cast<size_t>(j) * kViewWidth + i] = {static_cast<uint8_t>(sum[0] / area),
                                                            static_cast<uint8_t>(sum[1] / area),
                                                            static_cast<uint8_t>(sum[2] / area)};
      if (j + span < kViewHeight + 2 * radius) {
        const auto& add = s.rows[static_cast<size_t>(j + span) * kViewWidth + i];
        const auto& drop = s.rows[static_cast<size_t>(j) * kViewWidth + i];
        for (int c = 0; c < 3; ++c) sum[c] += add[c] - drop[c];
      }
    }
  }
}

// How gain and exposure scale the picture, against the nominal picture.
double imagingFactor(const VirtualImaging& imaging) {
  if (imaging.automatic) return 1.0;
  return imaging.exposureUs / 30000.0 * std::pow(10.0, (imaging.gain - 20.0) / 20.0);
}

// The lit sample, in per cent of the nominal picture.
int brightnessPercent(const StationView& view, const VirtualImaging& imaging) {
  const double lamp = view.lampOn ? 100.0 : kLampOffPercent;
  return static_cast<int>(std::clamp(lamp * imagingFactor(imaging), 0.0, 800.0));
}

void scalePicture(Sample& s, int percent) {
  std::array<uint8_t, 256> scale{};
  for (int v = 0; v < 256; ++v) scale[v] = static_cast<uint8_t>(std::min(255, v * percent / 100));
  for (Rgb& p : s.picture) p = {scale[p.r], scale[p.g], scale[p.b]};
}

// The violet laser spot where the laser falls, its own light whether the lamp is on or not:
// as bright as the intensity channel says, as wide as the spot is at this Z.
void addLaserSpot(Sample& s, const StationView& view, const VirtualImaging& imaging) {
  if (view.laserPwm <= 0) return;
  const int radius =
      std::min(kMaxBlurTexels, 2 + static_cast<int>(2.5 * spotSigmaUm(view.zUm) / kTexelUm));
  const double peak = std::clamp(view.laserPwm * imagingFactor(imaging), 0.0, 1020.0);
  const int cx = view.spotDisplayX / 2;
  const int cy = kViewHeight - view.spotDisplayYUp / 2;  // picture rows go down
  for (int dy = -radius; dy <= radius; ++dy) {
    for (int dx = -radius; dx <= radius; ++dx) {
      const int d2 = dx * dx + dy * dy;
      const int x = cx + dx, y = cy + dy;
      if (d2 > radius * radius || x < 0 || x >= kViewWidth || y < 0 || y >= kViewHeight) continue;
      const int weight = static_cast<int>(peak * (radius * radius - d2) / (radius * radius));
      Rgb& p = s.picture[static_cast<size_t>(y) * kViewWidth + x];
      p.r = static_cast<uint8_t>(std::min(255, p.r + weight * 3 / 4));
      p.g = static_cast<uint8_t>(std::min(255, p.g + weight / 3));
      p.b = static_cast<uint8_t>(std::min(255, p.b + weight));
    }
  }
}

void writeBayer(Sample& s, uint8_t* raw) {
  for (int j = 0; j < kViewHeight; ++j) {
    const Rgb* row = &s.picture[static_cast<size_t>(j) * kViewWidth];
    for (int i = 0; i < kViewWidth; ++i) {
      const uint8_t r = row[i].r, g = row[i].g, b = row[i].b;
      uint8_t* even = &s.evenRow[4 * i];
      uint8_t* odd = &s.oddRow[4 * i];
      even[0] = r, even[1] = g, even[2] = r, even[3] = g;
      odd[0] = g, odd[1] = b, odd[2] = g, odd[3] = b;
    }
    uint8_t* out = raw + static_cast<size_t>(4 * j) * kVirtualSensorWidth;
    std::memcpy(out, s.evenRow.data(), kVirtualSensorWidth);
    std::memcpy(out + kVirtualSensorWidth, s.oddRow.data(), kVirtualSensorWidth);
    std::memcpy(out + 2 * kVirtualSensorWidth, s.evenRow.data(), kVirtualSensorWidth);
    std::memcpy(out + 3 * kVirtualSensorWidth, s.oddRow.data(), kVirtualSensorWidth);
  }
}

}  // namespace

void renderVirtualFrame(const StationView& view, const std::vector<ExposureSegment>& written,
                        const VirtualImaging& imaging, uint8_t* raw) {
  Sample& s = sample();
  applyExposure(s, view, written);
  const double defocusUm = std::fabs(view.zUm - kVirtualFocusZUm);
  const int radius = std::min(kMaxBlurTexels, static_cast<int>(defocusUm * kBlurTexelsPerUm));
  const int left = texelOf(view.xUm) - kViewWidth / 2;
  const int top = texelOf(view.yUm) + kViewHeight / 2;
  copyRegion(s, left, top, radius);
  blurRegion(s, radius);
  scalePicture(s, brightnessPercent(view, imaging));
  addLaserSpot(s, view, imaging);
  writeBayer(s, raw);
}
