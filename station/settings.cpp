#include "station/settings.h"

#include <cstdio>
#include <fstream>
#include <string>

#include "station/station.h"
#include "station/text_format.h"

namespace {
// The reading side takes voltages at any precision, the writing side rounds them to
// two decimals; settings written back thus lose the third decimal on every run.
constexpr const char* kReadFormat =
    "Mag:%dX, laser shift:(%d,%d,%d), Arduino:%d, Standa:%d,%d,%d, Vin:%lf, Vout:%lf, Vv:%lf\n";
constexpr const char* kWriteFormat =
    "Mag:%dX, laser shift:(%d,%d,%d), Arduino:%d, Standa:%d,%d,%d, Vin:%.2lf, Vout:%.2lf, "
    "Vv:%.2lf\n";
constexpr size_t kLineLimit = 99;  // characters of the first line that are parsed
}  // namespace

bool readSettingsFile(const std::filesystem::path& path, int32_t& controllerPort) {
  std::ifstream file(path);
  if (!file) return false;
  std::string line;
  std::getline(file, line);
  if (line.size() > kLineLimit) line.resize(kLineLimit);
  int comPort = controllerPort;
  // Scanning stores field by field and stops at the first mismatch, so a damaged line
  // still yields its leading values.
  const int fields =
      std::sscanf(line.c_str(), kReadFormat, &station.magnification, &laser.laserShiftX,
                  &laser.laserShiftY, &laser.laserShiftZ, &comPort, &station.standaMotor1Axis,
                  &station.standaMotor2Axis, &station.standaMotor3Axis, &station.insideVoltage,
                  &station.outsideVoltage, &station.lineVoltage);
  if (fields >= 5) controllerPort = comPort;
  return true;
}

bool writeSettingsFile(const std::filesystem::path& path, int32_t controllerPort) {
  // Binary, so that the line ends in a line feed alone on Windows too.
  std::ofstream file(path, std::ios::binary);
  if (!file) return false;
  file << formatText(kWriteFormat, station.magnification, laser.laserShiftX, laser.laserShiftY,
                     laser.laserShiftZ, static_cast<int>(controllerPort), station.standaMotor1Axis,
                     station.standaMotor2Axis, station.standaMotor3Axis, station.insideVoltage,
                     station.outsideVoltage, station.lineVoltage);
  return static_cast<bool>(file);
}
