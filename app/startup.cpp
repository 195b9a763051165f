// Start-up runs before any window exists, so its message boxes have no owner.
#include "app/startup.h"

#include "app/data_paths.h"
#include "app/feedback.h"
#include "app/settings.h"
#include "app/station.h"
#include "app/view_geometry.h"
#include "camera/Basler_camera.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "pattern/cluster_table.h"

IntSize cameraImageSize = {0, 0};
IntSize pictureImageSize = {0, 0};

void startUpDevices() {
  if (readSettingsFile(dataPaths.configPath)) recomputeViewGeometry(station);
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
  writeSettingsFile(dataPaths.configPath);
  SwitchLaser(laser, 0);
  SwitchIllumination(0);
  freeClusterTable();
}
