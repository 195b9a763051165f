// The camera's operator commands of the main window, one handler each, called by the
// command dispatch: the snapshot with illumination, wide view, Gain/Expo. entry, the
// automatic setting, blue only, saving the image, and the first frame at window creation.
#pragma once

void onCameraCapture();  // "Camera Capture" (2102)
// Live view off, laser off, the camera at its set exposure, one frame grabbed with the
// lamp on for it, shown on the display. After "Go to Writing" and the Dx/Dy moves too.
void takeIlluminatedSnapshot();
void onWideView();            // "Wide View" (2150)
void onCameraManualEntry();   // Enter in "Gain" or "Expo." (32830)
void onCameraAutoSetting();   // "Camera auto setting" (32809)
void onCameraBlueOnly();      // "Camera Blue only" (32817)
void onSaveImage();           // "Save Image" (32804)
void showFirstCameraFrame();  // when the main window has been created
