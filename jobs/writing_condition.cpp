#include "jobs/writing_condition.h"

#include <fstream>
#include <string>

#include "link/serial_link.h"
#include "station/data_paths.h"
#include "station/station.h"
#include "station/text_format.h"

int writingConditionCounter = 0;

void writeWritingCondition() {
  ensureRunFolder(dataPaths, 0);
  const int number = writingConditionCounter;
  writingConditionCounter = nextFileNumber(number);
  const std::string name = "writing_condition(" + std::to_string(number) + ").txt";
  std::ofstream file(dataPaths.runFolder / name);
  if (!file) return;

  const StationParameters& s = station;
  file << formatText(
      "Mag:%dX, laser shift:(%d,%d,%d), Arduino:%d, Standa:%d,%d,%d\n"
      "Laser voltage: %.2f V(inside), %.2f V(outside), %.2f V(line)\n"
      "Filling speed (in, out, skip): %d, %d, %d (um/s)\n"
      "Vector writing speed (1um, 3um, 6um, 10um): %d, %d, %d, %d (um/s)\n"
      "defocus (Dz): %.1lf um\n",
      s.magnification, laser.laserShiftX, laser.laserShiftY, laser.laserShiftZ,
      static_cast<int>(serialLink.comPort), s.standaMotor1Axis, s.standaMotor2Axis,
      s.standaMotor3Axis, s.insideVoltage, s.outsideVoltage, s.lineVoltage, s.insideSpeed,
      s.outsideSpeed, s.writingSpeed, s.line1Speed, s.line3Speed, s.line6Speed, s.line10Speed,
      s.defocusUm);
}
