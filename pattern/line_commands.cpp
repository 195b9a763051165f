// Handlers of the line commands: see line_commands.h.
#include "pattern/line_commands.h"

#include <string>

#include "app/responsive_wait.h"
#include "camera/picture_files.h"
#include "pattern/line_editing.h"
#include "pattern/line_file.h"
#include "resources/resource.h"

void onImportLinePatternsCommand() {
  if (operationRunning()) return;
  std::wstring path;
  AskFileToOpen(path);
  if (!path.empty()) importLines(path);
}

void onDeleteAllLinesCommand() {
  if (operationRunning()) return;
  deleteAllLines();
}

int widthRadioFor(int widthClass) {
  switch (widthClass) {
    case 1: return IDC_LINE_WIDTH_1;
    case 3: return IDC_LINE_WIDTH_3;
    case 6: return IDC_LINE_WIDTH_6;
    default: return IDC_LINE_WIDTH_10;
  }
}
