// The station record: the one global StationParameters (view geometry, writing
// conditions, motor-axis assignment and run state) and the laser output record. It owns
// the fields and their defaults; geometry is derived in view_geometry.cpp, the writing
// condition record is written by writing_condition.cpp, the settings line by settings.cpp.
#pragma once

struct IntPoint {
  int x;
  int y;
};
struct IntSize {
  int width;
  int height;
};
struct IntRect {
  int left;
  int top;
  int right;
  int bottom;
};

constexpr int kDisplayWidth = 1232;  // display window, pixels
constexpr int kDisplayHeight = 1028;
constexpr double kCameraFieldUm = 737.0;            // camera field across the display width
constexpr double kCameraViewZoom = 1232.0 / 737.0;  // display pixels per um in camera view

struct StationParameters {
  StationParameters();

  // View geometry.
  double cellPitchUm = 1.0;
  IntPoint targetBoxTopLeft = {492, 411};
  IntPoint targetBoxBottomRight = {739, 616};
  int cellsX = 0;
  int cellsY = 0;
  int magnification = 1;  // um per writing-area cell; saved as "Mag:%dX"
  float targetWidthUm = 0;
  float targetHeightUm = 0;
  int previewWidth = 0;
  int previewHeight = 0;
  int cellPixels = 0;
  int displayCenterX = 616;
  int displayCenterY = 514;
  int previewScale = 1;
  int progressSteps = 0;
  int reservedGeometry = 300;  // set, never read
  int standaMotor1Axis = 1;    // 0 None, 1 X, 2 Y, 3 Z
  int standaMotor2Axis = 2;
  int standaMotor3Axis = 3;
  int spotMarkRadius = 5;  // pixels, the red circle at the laser spot
  double zoom = 1.0;       // display pixels per um
  double zoomReset = kCameraViewZoom;
  double cameraScale = kCameraViewZoom;
  IntRect displayRect = {0, 0, kDisplayWidth, kDisplayHeight};
  IntSize writingAreaSize = {1000, 1000};  // cells
  IntSize displaySize = {kDisplayWidth, kDisplayHeight};
  IntRect writingAreaRect = {};
  IntRect scaledAreaRect = {};
  IntRect cameraRect = {};

  // Run state.
  double stageX = 0.0;  // um, remembered at the start of a run
  double stageY = 0.0;
  double stageZ = 0.0;
  int startTick = 0;  // low 32 bits of the tick count when a run started
  double writeReference = 0.0;
  int reservedRun = 0;
  int focusingActive = 0;
  int stopRequested = 0;

  // Writing condition: speeds in um/s, voltages in V.
  int writingSpeed = 600;  // skip speed, laser off
  int insideSpeed = 700;
  int outsideSpeed = 700;
  int line1Speed = 120;
  int line3Speed = 100;
  int line6Speed = 60;
  int line10Speed = 40;
  double insideVoltage = 2.3;
  double outsideVoltage = 2.6;
  double lineVoltage = 1.3;

  double zLiftUm = 680.0;
  int zLifted = 1;
  double defocusUm = 0.0;  // -30..30 um, added to the focus Z for raster writing
  int offsetMode = 0;
  double offsetX = 0.0;  // um, -300..300
  double offsetY = 0.0;
  int cellCount = 100000;
  int doneCells = 0;
  int moveBusy = 0;
  int previewMax = 400;
  IntRect scratchRect = {};
};

struct LaserOutput {
  int laserOn = 0;
  double laserVoltage = 0.0;  // the voltage last set
  int laserShiftX = 0;        // display pixels from the left; also um added to stage X
  int laserShiftY = 0;        // display pixels up from the bottom edge
  int laserShiftZ = 0;        // um
  int laserChannel = 5;       // controller PWM channel of the laser voltage
};

extern StationParameters station;
extern LaserOutput laser;
