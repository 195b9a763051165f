// Start-up runs before any window exists, so its message boxes have no owner.
#include "app/startup.h"

#include "camera/Basler_camera.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "pattern/cluster_table.h"
#include "station/data_paths.h"
#include "station/feedback.h"
#include "station/settings.h"
#include "station/station.h"
#include "station/view_geometry.h"

IntSize cameraImageSize = {0, 0};
IntSize pictureImageSize = {0, 0};

void startUpDevices() {
  if (readSettingsFile(dataPaths.configPath, serialLink.comPort)) recomputeViewGeometry(station);
  cameraImageSize = {kDisplayWidth, kDisplayHeight};
  pictureImageSize = {kDisplayWidth, kDisplayHeight};
  // The camera picture is the whole display, not the 1000 x 1000 of a pattern picture.
  displayFrame.width = kDisplayWidth;
  displayFrame.height = kDisplayHeight;
  allocateClusterTable();

  // One port, opened twice: the two attempts only word the failure differently.
  if (OpenSerialLink(serialLink, false) == 0) {
    feedbackMessageBox("No standa devices found", "Scanner Error", MessageKind::Ok, false);
  }
  if (OpenSerialLink(serialLink, false) == 0) {
    feedbackMessageBox("No arduino devices found", "Communication Error", MessageKind::Ok, false);
  }

  if (CameraConnect(camera) != 0) {
    CameraSetup(camera, 1);
    CameraSetup(camera, 4);
  } else {
    feedbackMessageBox("No Barsler camera found", "Camera Error", MessageKind::Ok, false);
  }
}

void shutDownDevices() {
  writeSettingsFile(dataPaths.configPath, serialLink.comPort);
  SwitchLaser(laser, 0);
  SwitchIllumination(0);
  freeClusterTable();
}
