// The virtual camera: a colour microscope camera looking at a virtual sample on the
// virtual stage. The renderer turns what the station does (stage X/Y/Z, lamp, laser,
// what the laser has written) into one raw BayerRG8 frame of 2464 x 2056 samples; the
// seam adapter (virtual_camera_seam.cpp) puts it behind the camera-SDK seam with the
// camera's parameters and switchable faults.
//
// The sample: a bluish resist-coated substrate with a fine grain (so a focus measure finds
// contrast), thin grid lines every 100 um, gold pads every 200 um and alignment crosses
// with a block code every 500 um, so every place looks different and a jog shows
// movement. It repeats every 2048 texels (about 2.45 mm). A larger stage y shows the
// sample further up the picture, a larger x further right.
// Focus: sharp at stage Z = kVirtualFocusZUm; the blur radius grows with |Z - focus|.
// The resist darkens where it developed (sim/resist_model.h); the laser spot shows where the
// laser falls, in its own light, with the lamp on or off.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/virtual_station.h"

constexpr int kVirtualSensorWidth = 2464;
constexpr int kVirtualSensorHeight = 2056;
constexpr double kVirtualFocusZUm = 0.0;
constexpr double kVirtualFieldUm = 737.0;  // sample width across the picture

// How the camera is set: manual gain and exposure scale the brightness (gain 20 and
// 30000 us give the nominal picture); automatic brightness gives the nominal picture.
struct VirtualImaging {
  double gain = 20.0;
  double exposureUs = 30000.0;
  bool automatic = false;
};

// Renders one frame into raw (kVirtualSensorWidth x kVirtualSensorHeight bytes).
void renderVirtualFrame(const StationView& view, const std::vector<ExposureSegment>& written,
                        const VirtualImaging& imaging, uint8_t* raw);

// Control of the virtual camera behind the seam, for tests and the simulation.
void virtualCameraReset();                   // present, default parameters, no faults
void virtualCameraSetPresent(bool present);  // false: no device is found
// Results with index first .. first + count - 1 (counted from the reset) fail.
void virtualCameraFailResults(int first, int count);
// Every result delivers a frame of this one value instead of the rendered sample.
void virtualCameraUseFixedFrame(uint8_t value);
// Every result delivers exactly these bytes, however many: a camera set to another image
// size or pixel format than the program expects.
void virtualCameraUseFrameBytes(const std::vector<uint8_t>& bytes);
// Open, grabbing and parameter calls since the reset, one line each ("set Gain 20.0").
const std::vector<std::string>& virtualCameraLog();
void virtualCameraSetPixelFormatEntry(int64_t entry);
