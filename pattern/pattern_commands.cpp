// The pattern commands: see pattern_commands.h.
#include "pattern/pattern_commands.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "camera/display_surface.h"
#include "camera/live_render.h"
#include "camera/live_view_control.h"
#include "camera/picture_files.h"
#include "pattern/display_layers.h"
#include "pattern/edge_finding.h"
#include "pattern/grouping.h"
#include "pattern/layout_raster.h"
#include "pattern/mask_import.h"
#include "pattern/writing_simulation.h"
#include "station/data_paths.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/view_geometry.h"

namespace {

const Rgb kWhite{255, 255, 255};

void showWholeWritingArea() {
  station.zoom = 1.0 / station.magnification;
  recomputeViewGeometry(station);
}

// The file dialog; a picked file becomes the held path and is drawn into image. False when
// nothing was picked.
bool importPicture(std::wstring& heldPath, ImageBuffer& image) {
  std::wstring chosen;
  AskFileToOpen(chosen);
  if (chosen.empty()) return false;
  heldPath = chosen;
  showWholeWritingArea();
  importPictureToImage(&heldPath, image);
  return true;
}

// With no picture imported the button shows what an import of a file that does not load
// gives: the writing area wiped white and the picture captured white.
void redrawPicture(const std::wstring& heldPath, ImageBuffer& image) {
  if (operationRunning() == 1) return;
  importPictureToImage(heldPath.empty() ? nullptr : &heldPath, image);
}

void whiteDisplay() {
  Canvas* window = canvasOnWindow(SurfaceWindow::Display);
  canvasRectangle(window, station.displayRect, kWhite, &kWhite);
  canvasFree(window);
}

}  // namespace

void takeMaskPicture(const std::wstring& path) {
  maskPicturePath = path;
  showWholeWritingArea();
  importPictureToImage(&maskPicturePath, maskImage);
}

void onImportImageCommand() {
  if (operationRunning() == 1) return;
  // A picked picture replaces a held layout: the run writes the picture, not the fields.
  if (importPicture(maskPicturePath, maskImage)) heldLayout = LayoutRaster();
}

void onImportAlignmentMarkCommand() {
  if (operationRunning() == 1) return;
  importPicture(alignmentMarkPicturePath, alignmentMarkImage);
}

void onShowMaskFileCommand() { redrawPicture(maskPicturePath, maskImage); }

void onAlignMarkCommand() { redrawPicture(alignmentMarkPicturePath, alignmentMarkImage); }

void onMaskPatternCommand() {
  if (operationRunning() == 1 || maskPicturePath.empty()) return;
  showWholeWritingArea();
  renderMaskPattern(true, maskPicturePath, maskImage);
}

void onShowTargetPatternCommand() {
  if (operationRunning() == 1) return;
  buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
  whiteDisplay();
  RenderSnapshot(simulationImage.pixels, simulationImage.width, simulationImage.height, 0);
}

void onFindEdgesCommand() {
  if (operationRunning() == 1) return;
  findEdges(targetPattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, kPatternSide,
            kPatternSide);
}

void onGroupingCommand() {
  if (operationRunning() == 1 || clusterTable == nullptr) return;
  groupClusters(edgePoints, edgePointCount, clusterTable, clusterCount, 1);
}

void onSimulateWritingCommand() {
  if (operationRunning() == 1) return;
  changeZoom(0);
}

void onFinalPatternCommand() {
  if (operationRunning() == 1) return;
  whiteDisplay();
  RenderPatternView(SurfaceWindow::Display, finalPattern.cells, kPatternSide, kPatternSide);
}

void onShowExposurePictureCommand() {
  if (operationRunning() == 1) return;
  std::error_code ignored;
  const std::filesystem::path& picture = dataPaths.latestExposurePicture;
  if (picture.empty() || !std::filesystem::exists(picture, ignored)) {
    feedbackMessageBox(
        "No exposure picture yet: the virtual station saves one after every writing run.",
        "Show Exposure Picture", MessageKind::Ok);
    return;
  }
  static ImageBuffer exposureImage;  // taken once, kept for the run like every picture
  // The next live frame would paint over the picture within 200 ms; the Video radio shows
  // the operator how to get the live view back.
  setLiveView(kLiveViewOff);
  showWholeWritingArea();
  const std::wstring path = picture.wstring();
  importPictureToImage(&path, exposureImage);
}

void onEraseMaskPatternCommand() {
  if (operationRunning() == 1) return;
  importPictureToImage(nullptr, maskImage);
}
