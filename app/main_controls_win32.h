// The control column of the main window: creates every button, radio, check box, box
// and label at its place, keeps the handles other modules write through, and gives the
// editable boxes their Tab / Enter / Esc keys. First states are set by the portable
// onMainWindowCreated; what a control does is command_dispatch.cpp.
#pragma once

#include <windows.h>

#include "station/station.h"

struct MainControlHandles {
  HWND positionXBox;
  HWND positionYBox;
  HWND positionZBox;
  HWND statusBox;  // "Information"
  HWND progressBox;
  HWND timeBox;  // shares id 2006 with the progress box
  HWND laserVoltageBox;
  HWND writingAreaBox;
  HWND writingSpeedBox;
  HWND blinkBox;
  HWND gainBox;
  HWND exposureBox;
  HWND dxBox;
  HWND dyBox;
  HWND startWritingButton;
  HWND goToWritingButton;
};
extern MainControlHandles mainControls;

// Every control of the column except the laser and illumination rows.
void createMainControls(HWND window);
// The "laser" and "illum." rows: eight controls.
void createLaserControls(const LaserOutput& laser, HWND window);
