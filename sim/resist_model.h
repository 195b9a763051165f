// The resist on the virtual sample: it records the dose the laser gave it and develops
// dark where that dose passes its threshold. Dose at a point = the laser voltage (channel 5,
// 0..255 -> 0..5 V) times the time the spot's light fell there, weighted by the spot's
// profile: a round Gaussian of width sigma(Z) that grows, and whose peak falls, with the
// distance from focus (a beam waist: sigma = sigma0 * sqrt(1 + (dz / zR)^2)). Units: V s/um².
//
// The constants, and why. The default writing condition writes the fine pass at 2.3 V
// (channel 117) and 700 um/s on strokes 1 um apart, the coarse pass at 2.6 V (132) and
// 700 um/s on strokes 5 um apart (subfactor 5), both at the same Z when Dz is 0. A filled
// area then takes 2.29 / 700 / 1 = 3.3e-3 (fine) and 2.59 / 700 / 5 = 7.4e-4 (coarse).
// - The threshold sits at 0.45 of the coarse area dose, so the coarse pass's filled area
//   ends about half a stroke pitch beyond its outer strokes, where its blocks end.
// - sigma0 = 1.5 um is the narrowest spot that still fills the coarse pass's 5 um pitch:
//   between two strokes the dose stays at 0.66 of the area dose, above the threshold.
// - The fine pass, 4.4 times the coarse area dose, then grows an edge by 1.3 sigma (about
//   2 um) beyond the cell boundary; a line of one cell comes out about 4 um wide.
// - zR = 8 um: at Dz = 10 um sigma is 2.4 um and a single coarse stroke widens from 4.4 to
//   5.3 um; beyond about 20 um it weakens and narrows, and vanishes past 30 um.
// - The laser's focus is the camera's (Z = 0): the coarse focusing's sharpest picture is
//   where the spot is smallest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sim/virtual_station.h"

constexpr double kSpotSigmaUm = 1.5;
constexpr double kSpotRayleighUm = 8.0;
constexpr double kLaserFocusZUm = 0.0;
constexpr double kResistThreshold = 3.3e-4;  // V s/um²
constexpr double kLaserFullScaleVolts = 5.0;
constexpr int kLaserFullScalePwm = 255;

// Dose samples on a square lattice: sample (i, j) lies at stage (originX + i * pitch,
// originY + j * pitch), j counting upwards. A wrapping grid repeats with its size (the
// camera's texture); otherwise dose beyond it is dropped.
struct DoseGrid {
  double originXUm = 0;
  double originYUm = 0;
  double pitchUm = 1;
  int width = 0;
  int height = 0;
  bool wraps = false;
  std::vector<float> dose;  // width x height, row j at j * width

  DoseGrid() = default;
  DoseGrid(double x, double y, double pitch, int w, int h, bool wrapping = false);
  float at(int i, int j) const { return dose[static_cast<size_t>(j) * width + i]; }
};

double spotSigmaUm(double zUm);
double laserVolts(int pwm);
// Adds the dose of one piece of the exposure log, its stage positions shifted by
// (shiftX, shiftY) um (where the laser falls relative to the stage position).
void addDose(DoseGrid& grid, const ExposureSegment& piece, double shiftXUm = 0,
             double shiftYUm = 0);
void addDose(DoseGrid& grid, const std::vector<ExposureSegment>& pieces);
inline bool developedDark(float dose) { return dose >= kResistThreshold; }
