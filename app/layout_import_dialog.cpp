// "Import Layout": see layout_import_dialog.h.
#include "app/layout_import_dialog.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "app/dialog_controls.h"
#include "camera/picture_files.h"
#include "pattern/field_display.h"
#include "pattern/field_plan.h"
#include "pattern/layout_import.h"
#include "pattern/pattern_commands.h"
#include "pattern/pattern_stores.h"
#include "resources/resource.h"
#include "station/data_paths.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"

namespace {

const char* const kTitle = "Import Layout";

// What the open dialog shows and what the operator chose in it.
struct Choice {
  LayoutDocument document;
  std::string layer;
  std::string topCell;
  bool centreBox = false;
  double overlapUm = 0;
};
Choice choice;

void complain(const std::filesystem::path& file, const std::string& message) {
  feedbackMessageBox(file.filename().string() + ": " + message, kTitle, MessageKind::Ok);
}

// The overlap of neighbouring fields: from 0 up to half a writing area.
bool readOverlap(double& overlapUm) {
  const double limit = kPatternSide / 2.0 * station.magnification;
  const std::string text = dialogGetText(IDC_LAYOUT_OVERLAP, 32);
  char rest = 0;
  if (std::sscanf(text.c_str(), "%lf %c", &overlapUm, &rest) == 1 && overlapUm >= 0 &&
      overlapUm <= limit)
    return true;
  char message[120];
  std::snprintf(message, sizeof message, "Field overlap (um) must be a number from 0 to %g.",
                limit);
  feedbackMessageBox(message, kTitle, MessageKind::Ok);
  return false;
}

std::string selected(int controlId, const std::vector<std::string>& entries) {
  const int index = dialogListSelection(controlId);
  return index >= 0 && static_cast<size_t>(index) < entries.size() ? entries[index] : "";
}

}  // namespace

void importLayoutOpened() {
  dialogFillList(IDC_LAYOUT_LAYER, choice.document.layers());
  dialogSelectListEntry(IDC_LAYOUT_LAYER, 0);
  dialogFillList(IDC_LAYOUT_TOP_CELL, choice.document.topCells());
  dialogSelectListEntry(IDC_LAYOUT_TOP_CELL, choice.document.topCells().empty() ? -1 : 0);
  dialogSetCheck(IDC_LAYOUT_CENTRE, false);
  char overlap[32];
  std::snprintf(overlap, sizeof overlap, "%g", fieldOverlapUm);
  dialogSetText(IDC_LAYOUT_OVERLAP, overlap);
}

void importLayoutCommand(int controlId) {
  if (controlId == IDC_LAYOUT_CANCEL) {
    dialogEnd(IDC_LAYOUT_CANCEL);
    return;
  }
  if (controlId != IDC_LAYOUT_OK || !readOverlap(choice.overlapUm)) return;
  choice.layer = selected(IDC_LAYOUT_LAYER, choice.document.layers());
  choice.topCell = selected(IDC_LAYOUT_TOP_CELL, choice.document.topCells());
  choice.centreBox = dialogIsChecked(IDC_LAYOUT_CENTRE);
  dialogEnd(IDC_LAYOUT_OK);
}

void onImportLayoutCommand() {
  if (operationRunning() == 1) return;
  std::wstring chosen;
  AskFileToOpen(chosen);
  if (chosen.empty()) return;
  const std::filesystem::path file(chosen);
  choice = {};
  std::string error = openLayoutFile(file, choice.document);
  if (!error.empty()) {
    complain(file, error);
    return;
  }
  if (dialogRun(IDD_IMPORT_LAYOUT, {importLayoutOpened, importLayoutCommand}) != IDC_LAYOUT_OK)
    return;
  LayoutRaster raster;
  error = rasterizeLayoutLayer(choice.document, choice.layer, choice.topCell, station.magnification,
                               choice.centreBox, raster);
  if (!error.empty()) {
    complain(file, error);
    return;
  }
  ensureRunFolder(dataPaths, 0);
  const std::filesystem::path picture = dataPaths.runFolder / "layout.bmp";
  if (!writeWritingAreaPicture(raster, picture)) {
    complain(picture, "The mask picture cannot be written.");
    return;
  }
  heldLayout = std::move(raster);
  fieldOverlapUm = choice.overlapUm;
  choice = {};
  takeMaskPicture(picture.wstring());
  // A layout larger than the writing area is shown whole, with the fields it is written in.
  if (layoutNeedsFields(heldLayout))
    showLayoutFields(heldLayout, planFields(heldLayout, fieldOverlapUm), -1);
}
