// The resist's dose: see resist_model.h. Each piece of the exposure log is a straight
// stretch crossed at constant speed (or a stand at rest); its dose is the spot's Gaussian
// integrated along the stretch, in closed form: across it the Gaussian, along it the
// difference of two error functions. Pieces along X or Y (every raster stroke) separate into
// a row of weights times a column of weights, so a stroke costs a few multiply-adds per
// sample; slanted pieces are summed sample by sample.
#include "sim/resist_model.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kReachSigmas = 4.0;  // the spot's light beyond 4 sigma is dropped
constexpr double kPi = 3.14159265358979323846;

// Fraction of a unit Gaussian below x.
double belowFraction(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

struct Span {
  int first, last;  // sample indices, inclusive; empty when first > last
};

// The samples of one axis within [lowUm, highUm].
Span spanOf(double lowUm, double highUm, double originUm, double pitchUm, int count, bool wraps) {
  Span s{static_cast<int>(std::ceil((lowUm - originUm) / pitchUm)),
         static_cast<int>(std::floor((highUm - originUm) / pitchUm))};
  if (wraps) {
    s.last = std::min(s.last, s.first + count - 1);
  } else {
    s.first = std::max(s.first, 0);
    s.last = std::min(s.last, count - 1);
  }
  return s;
}

int wrapIndex(int index, int count) {
  const int w = index % count;
  return w < 0 ? w + count : w;
}

}  // namespace

DoseGrid::DoseGrid(double x, double y, double pitch, int w, int h, bool wrapping)
    : originXUm(x),
      originYUm(y),
      pitchUm(pitch),
      width(w),
      height(h),
      wraps(wrapping),
      dose(static_cast<size_t>(w) * static_cast<size_t>(h), 0.0f) {}

double spotSigmaUm(double zUm) {
  const double dz = (zUm - kLaserFocusZUm) / kSpotRayleighUm;
  return kSpotSigmaUm * std::sqrt(1.0 + dz * dz);
}

double laserVolts(int pwm) { return pwm * kLaserFullScaleVolts / kLaserFullScalePwm; }

void addDose(DoseGrid& grid, const ExposureSegment& piece, double shiftXUm, double shiftYUm) {
  const double sigma = spotSigmaUm(piece.zUm);
  const double seconds = std::max(0.0, piece.t1Ms - piece.t0Ms) / 1000.0;
  const double energy = laserVolts(piece.laserPwm) * seconds;  // V s, spread over the piece
  if (energy <= 0 || grid.width <= 0 || grid.height <= 0) return;
  const double x0 = piece.x0Um + shiftXUm, y0 = piece.y0Um + shiftYUm;
  const double x1 = piece.x1Um + shiftXUm, y1 = piece.y1Um + shiftYUm;
  const double reach = kReachSigmas * sigma;
  const Span cols = spanOf(std::min(x0, x1) - reach, std::max(x0, x1) + reach, grid.originXUm,
                           grid.pitchUm, grid.width, grid.wraps);
  const Span rows = spanOf(std::min(y0, y1) - reach, std::max(y0, y1) + reach, grid.originYUm,
                           grid.pitchUm, grid.height, grid.wraps);
  if (cols.first > cols.last || rows.first > rows.last) return;
  const double length = std::hypot(x1 - x0, y1 - y0);
  const double inv2s2 = 1.0 / (2.0 * sigma * sigma);
  auto add = [&](int i, int j, double value) {
    const int u = grid.wraps ? wrapIndex(i, grid.width) : i;
    const int v = grid.wraps ? wrapIndex(j, grid.height) : j;
    grid.dose[static_cast<size_t>(v) * grid.width + u] += static_cast<float>(value);
  };
  // Weight of one axis for a stretch [a, b] along it (a point when a == b), per unit energy.
  auto alongWeight = [&](double p, double a, double b) {
    if (b - a < 1e-9) return std::exp(-(p - a) * (p - a) * inv2s2) / (std::sqrt(2 * kPi) * sigma);
    return (belowFraction((b - p) / sigma) - belowFraction((a - p) / sigma)) / (b - a);
  };
  const bool alongX = std::fabs(y1 - y0) < 1e-9;
  const bool alongY = std::fabs(x1 - x0) < 1e-9;
  if (alongX || alongY) {
    // Separable: weight(x) * weight(y), one of them the across-Gaussian (or a point).
    std::vector<double> wx(static_cast<size_t>(cols.last - cols.first + 1));
    std::vector<double> wy(static_cast<size_t>(rows.last - rows.first + 1));
    for (int i = cols.first; i <= cols.last; ++i) {
      const double x = grid.originXUm + i * grid.pitchUm;
      wx[i - cols.first] = alongWeight(x, std::min(x0, x1), alongX ? std::max(x0, x1) : x0);
    }
    for (int j = rows.first; j <= rows.last; ++j) {
      const double y = grid.originYUm + j * grid.pitchUm;
      wy[j - rows.first] = alongWeight(y, std::min(y0, y1), alongY ? std::max(y0, y1) : y0);
    }
    for (int j = rows.first; j <= rows.last; ++j) {
      const double row = energy * wy[j - rows.first];
      if (row == 0) continue;
      for (int i = cols.first; i <= cols.last; ++i) add(i, j, row * wx[i - cols.first]);
    }
    return;
  }
  // Slanted: across the Gaussian, along the error-function difference, sample by sample.
  const double ux = (x1 - x0) / length, uy = (y1 - y0) / length;
  const double across = energy / (length * std::sqrt(2 * kPi) * sigma);
  for (int j = rows.first; j <= rows.last; ++j) {
    const double y = grid.originYUm + j * grid.pitchUm - y0;
    for (int i = cols.first; i <= cols.last; ++i) {
      const double x = grid.originXUm + i * grid.pitchUm - x0;
      const double s = x * ux + y * uy;
      const double d = x * uy - y * ux;
      if (std::fabs(d) > reach || s < -reach || s > length + reach) continue;
      add(i, j,
          across * std::exp(-d * d * inv2s2) *
              (belowFraction((length - s) / sigma) - belowFraction(-s / sigma)));
    }
  }
}

void addDose(DoseGrid& grid, const std::vector<ExposureSegment>& pieces) {
  for (const ExposureSegment& piece : pieces) addDose(grid, piece);
}
