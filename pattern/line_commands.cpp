// Handlers of the line commands: see line_commands.h.
#include "pattern/line_commands.h"

#include <string>

#include "camera/picture_files.h"
#include "pattern/line_editing.h"
#include "pattern/line_file.h"
#include "resources/resource.h"
#include "station/responsive_wait.h"

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
