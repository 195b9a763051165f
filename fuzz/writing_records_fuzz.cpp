// The writing-condition record and the picture names with the values the fuzzer gives:
// every field the record prints (the settings line's eight values, the voltages, speeds
// and defocus) and the numbers of the record and of the "optic" and "camera" pictures,
// taken from the input as raw ints and doubles (any NaN, infinity or extreme). The
// record is then read back: it must hold its five lines.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "camera/display_surface.h"
#include "camera/picture_files.h"
#include "fuzz/fuzz_support.h"
#include "jobs/writing_condition.h"
#include "link/serial_link.h"
#include "station/data_paths.h"
#include "station/station.h"

namespace {

// Fields come from the input in order; bytes past its end read as 0.
class Fields {
 public:
  Fields(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  template <typename T>
  void next(T& value) {
    unsigned char bytes[sizeof(T)] = {};
    for (unsigned char& byte : bytes)
      if (at_ < size_) byte = data_[at_++];
    std::memcpy(&value, bytes, sizeof(T));
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t at_ = 0;
};

int recordLines(const std::filesystem::path& path) {
  std::ifstream file(path);
  int lines = 0;
  for (std::string line; std::getline(file, line);) ++lines;
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  freshStation();
  Fields fields(data, size);
  StationParameters& s = station;
  for (int* value :
       {&writingConditionCounter, &opticNumber, &cameraNumber, &s.magnification, &laser.laserShiftX,
        &laser.laserShiftY, &laser.laserShiftZ, &serialLink.comPort, &s.standaMotor1Axis,
        &s.standaMotor2Axis, &s.standaMotor3Axis, &s.insideSpeed, &s.outsideSpeed, &s.writingSpeed,
        &s.line1Speed, &s.line3Speed, &s.line6Speed, &s.line10Speed})
    fields.next(*value);
  for (double* value : {&s.insideVoltage, &s.outsideVoltage, &s.lineVoltage, &s.defocusUm})
    fields.next(*value);

  const int recordNumber = writingConditionCounter;
  writeWritingCondition();
  const auto record =
      dataPaths.runFolder / ("writing_condition(" + std::to_string(recordNumber) + ").txt");
  if (recordLines(record) != 5) std::abort();
  SaveViewImage(dataPaths, SurfaceWindow::Main);
  Canvas* canvas = canvasNew(SurfaceWindow::Main);
  saveCameraPicture(canvas);
  canvasFree(canvas);
  clearRunFolder();
  return 0;
}
