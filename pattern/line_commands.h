// The operator's commands on the line list, one handler each, called by the command
// dispatch: "Import Line Patterns" and "Delete all lines". Both leave the list alone
// while an operation runs. The width buttons call setWidthClass and startErasing
// (line_editing.h) directly.
#pragma once

void onImportLinePatternsCommand();  // 32823
void onDeleteAllLinesCommand();      // 32818
