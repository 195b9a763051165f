// The operator's pattern commands of the "File" and "Raster Writing" menus and the
// picture buttons: one handler per command id, called by the command dispatch. Each does
// nothing while an operation runs (operationRunning).
#pragma once

void onImportImageCommand();          // 32812 "Import Image"
void onImportAlignmentMarkCommand();  // 32824 "Import Alignment Mark"
void onShowMaskFileCommand();         // 2130: the mask picture drawn again, zoom kept
void onAlignMarkCommand();            // 2120 "AlignMark": the mark picture drawn again
void onMaskPatternCommand();          // 32807 "Mask Pattern" and the "Mask" button
void onShowTargetPatternCommand();    // 32813
void onFindEdgesCommand();            // 32794
void onGroupingCommand();             // 32806
void onSimulateWritingCommand();      // 32814
void onFinalPatternCommand();         // 32816
// 32834: the latest exposure picture over the writing area; a message box when there is none.
void onShowExposurePictureCommand();
void onEraseMaskPatternCommand();  // 32832
