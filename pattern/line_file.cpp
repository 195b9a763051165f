// Reading and writing the line file: see line_file.h.
#include "pattern/line_file.h"

#include <cstdio>
#include <fstream>

#include "camera/picture_files.h"
#include "pattern/line_display.h"
#include "pattern/line_editing.h"
#include "station/feedback.h"
#include "station/text_format.h"

namespace {}  // namespace

int importLines(const std::filesystem::path& path) {
  deleteAllLines();
  std::ifstream file(path);
  if (!file) {
    feedbackMessageBox("Unable to open file", "File open error", MessageKind::Ok);
  } else {
    // Not reset between lines: a line that does not parse repeats the one before it.
    LineSegment segment = {0.0f, 0.0f, 0.0f, 0.0f, 0};
    for (std::string line; std::getline(file, line);) {
      std::sscanf(line.c_str(), kLineFormat, &segment.x1, &segment.y1, &segment.x2, &segment.y2,
                  &segment.width);
      linePattern.segments.push_back(segment);
    }
  }
  drawLines(SurfaceWindow::Display);
  return 0;
}

std::string buildLineText() {
  std::string& text = linePattern.text;
  text.clear();
  for (const LineSegment& s : linePattern.segments)
    text +=
        formatText(kLineFormat, double(s.x1), double(s.y1), double(s.x2), double(s.y2), s.width);
  return text;
}

int saveLines(DataPaths& paths, const std::string& text) {
  ensureRunFolder(paths, 0);
  paths.lineFileName = UniqueFileName(paths, L"LinePattern", L"txt");
  std::ofstream file{std::filesystem::path(paths.lineFileName)};
  if (file) file << text;
  return 0;
}
