// The operator-feedback seam: everything the portable core shows to the operator or
// takes from the windows' message queue. Controls are named by role (two boxes share
// id 2006, so ids alone cannot name them). Windows: feedback_win32.cpp (the main window's
// controls, MessageBoxA, PeekMessageW). Tests: sim/recorded_feedback_seam.cpp records
// every call in order and plays operator actions scripted on the virtual clock.
#pragma once

#include <string>

enum class Box {
  Status,    // "Information" (2103): painted over, see feedbackPaintStatus
  Progress,  // "Progress" (2006)
  Time,      // "Time (estimated)" (2006, reached by its handle)
  PositionX,
  PositionY,
  PositionZ,
  LaserVoltage,  // "laser ... V"
  WritingArea,   // "Writing Area ... mm"
  WritingSpeed,  // 2002
  Blink,         // 2118
  Gain,
  Exposure,
  Dx,            // 2206
  Dy,            // 2207
  CameraStatus,  // the camera-status text control of "Camera Configuration"
};

void feedbackSetBoxText(Box box, const std::string& text);
// At most maxChars characters of the box's text, as GetWindowTextA with that limit gives.
std::string feedbackGetBoxText(Box box, int maxChars);

// Draws the two status lines over the "Information" box at (2, 2) and (2, 22).
void feedbackPaintStatus(const std::string& newest, const std::string& previous);

void feedbackSetButtonText(int controlId, const std::string& text);
void feedbackCheckRadio(int firstId, int lastId, int checkedId);
void feedbackSetCheck(int controlId, bool checked);
void feedbackFocusMainWindow();
// Text drawn straight onto the main window's client area (the jog pad's "moving"), in the
// colour given; it stays until the window repaints.
void feedbackDrawMainText(int x, int y, const std::string& text, int red, int green, int blue);
// Repaints the main window's client area now (the jog pad drawn afresh).
void feedbackRedrawMainWindow();
// The pointer shows the cross now, where it is, until a window it moves over sets its own
// (the display window keeps the cross while the eraser is on).
void feedbackShowCrossCursor();
// Timer 1 of the main window, the live view's 200 ms tick.
void feedbackSetLiveTimer(bool running);

// Message boxes, owned by the main window unless the owner is null (before it exists).
enum class MessageKind { Ok, YesNo };
enum class Answer { Ok, Yes, No };
Answer feedbackMessageBox(const std::string& text, const std::string& title, MessageKind kind,
                          bool ownedByMainWindow = true);

// The message queue as the responsive wait sees it.
// Quit: the program is ending (its main window is gone); the quit itself stays queued
// for the message loop.
enum class QueuedKind { LeftButtonDown, Quit, Other };
enum class QueuedTarget { DisplayWindow, MainWindow, OtherWindow };
struct QueuedMessage {
  QueuedKind kind;
  QueuedTarget target;
};
// Takes the next message of the thread off the queue (PeekMessageW, remove); false if none.
bool feedbackTakeMessage(QueuedMessage& message);
// Translates and dispatches the message taken last.
void feedbackDispatchTakenMessage();
