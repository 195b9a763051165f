// Vector writing: see vector_writing.h. Reads top-down like the job: prepare, then per
// line approach at the 1 um speed, voltage up, the writing move, and at the end of each
// chain of touching lines voltage down, report and the stop check; then save the list.
#include "jobs/vector_writing.h"

#include <string>

#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "pattern/line_display.h"
#include "pattern/line_file.h"
#include "station/data_paths.h"
#include "station/responsive_wait.h"
#include "station/status_display.h"

namespace {

constexpr int kStopCheckWaitMs = 10;

// Width classes other than 1, 3, 6 and 10 keep the speed of the line before.
int lineSpeedFor(int widthClass, int previousSpeed) {
  switch (widthClass) {
    case 1: return station.line1Speed;
    case 3: return station.line3Speed;
    case 6: return station.line6Speed;
    case 10: return station.line10Speed;
    default: return previousSpeed;
  }
}

bool continuesChain(const LineSegment& line, const LineSegment& next) {
  return next.x1 == line.x2 && next.y1 == line.y2;
}

}  // namespace

double lineStageX(float xUm) {
  return station.stageX + station.offsetX + truncatedToInt(xUm) + laser.laserShiftX;
}

double lineStageY(float yUm) {
  return station.stageY + station.offsetY - truncatedToInt(yUm) + laser.laserShiftY;
}

void StartVectorWriting(LinePattern& lines) {
  // A stop given during the run's approach ends the run before any line.
  if (station.stopRequested == 1) return;
  if (lines.active == 1) {
    WriteLines(lines);
    if (station.stopRequested == 1) return;
    saveLines(dataPaths, buildLineText());
  }
  writingActive = 0;
}

void WriteLines(LinePattern& lines) {
  writingActive = 1;
  int lineSpeed = station.line1Speed;

  drawLines(SurfaceWindow::Display);
  station.writeReference = QueryAxisPosition(serialLink, 0);
  SwitchLaser(laser, 0);
  SetLaserVoltage(laser, 0.0);

  const std::vector<LineSegment>& segments = lines.segments;
  const size_t count = segments.size();
  for (size_t i = 0; i < count; ++i) {
    const LineSegment& line = segments[i];
    lineSpeed = lineSpeedFor(line.width, lineSpeed);
    MoveXY(lineStageX(line.x1), lineStageY(line.y1), station.line1Speed);
    SetLaserVoltage(laser, station.lineVoltage);
    MoveXY(lineStageX(line.x2), lineStageY(line.y2), lineSpeed);
    drawSegment(SurfaceWindow::Display, line, kWrittenLineColour);

    if (i + 1 < count && continuesChain(line, segments[i + 1])) continue;  // laser stays up

    SetLaserVoltage(laser, 0.0);
    showStagePosition();
    showStatus("Line " + std::to_string(i + 1) + "/" + std::to_string(count) + " has drawn.");
    waitResponsive(kStopCheckWaitMs);
    if (station.stopRequested == 1) break;
  }

  drawLines(SurfaceWindow::Display);
  showStagePosition();
  writingActive = 0;
}
