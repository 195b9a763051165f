// The real main window in this process: the keys of the editable boxes, the feedback
// seam on the real controls, and how the responsive wait's message taking sorts clicks.
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <tuple>

#include "app/main_controls_win32.h"
#include "app/main_window_win32.h"
#include "camera/Basler_camera.h"
#include "link/serial_link.h"
#include "resources/resource.h"
#include "station/feedback.h"
#include "station/station.h"

namespace {

void pumpPendingMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void pressKey(HWND window, WPARAM key) { SendMessageW(window, WM_KEYDOWN, key, 0); }

std::string textOf(HWND window) {
  char text[100] = {};
  GetWindowTextA(window, text, sizeof text);
  return text;
}

class MainWindow : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    HINSTANCE instance = GetModuleHandleW(nullptr);
    registerWindowClasses(instance);
    ASSERT_TRUE(initInstance(instance, SW_SHOW));
    SetForegroundWindow(mainWindow);
    pumpPendingMessages();
  }
  static void TearDownTestSuite() {
    DestroyWindow(mainWindow);
    pumpPendingMessages();
  }
  void SetUp() override { pumpPendingMessages(); }
};

TEST_F(MainWindow, TabCyclesThePositionBoxesAndTheOffsetBoxes) {
  const MainControlHandles& h = mainControls;
  SetFocus(h.positionXBox);
  for (HWND next : {h.positionYBox, h.positionZBox, h.positionXBox}) {
    pressKey(GetFocus(), VK_TAB);
    EXPECT_EQ(GetFocus(), next);
  }
  SetFocus(h.dxBox);
  pressKey(GetFocus(), VK_TAB);
  EXPECT_EQ(GetFocus(), h.dyBox);
  pressKey(GetFocus(), VK_TAB);
  EXPECT_EQ(GetFocus(), h.dxBox);
}

TEST_F(MainWindow, EnterAndEscapeGiveTheFocusBackToTheMainWindow) {
  SetFocus(mainControls.writingSpeedBox);
  std::string speed = textOf(mainControls.writingSpeedBox);
  pressKey(mainControls.writingSpeedBox, VK_RETURN);
  EXPECT_EQ(GetFocus(), mainWindow);
  EXPECT_EQ(textOf(mainControls.writingSpeedBox), speed);

  SetFocus(mainControls.positionZBox);
  pressKey(mainControls.positionZBox, VK_ESCAPE);
  EXPECT_EQ(GetFocus(), mainWindow);

  SetFocus(mainControls.gainBox);
  pressKey(mainControls.gainBox, VK_ESCAPE);
  EXPECT_EQ(GetFocus(), mainControls.gainBox) << "Esc in Gain is the edit control's own";
}

// The progress and time boxes share one id, so they are reached by their role.
TEST_F(MainWindow, BoxesAreWrittenByRoleAndReadUpToTheLimit) {
  feedbackSetBoxText(Box::Progress, "42 %");
  feedbackSetBoxText(Box::Time, "0 (2) min.");
  EXPECT_EQ(textOf(mainControls.progressBox), "42 %");
  EXPECT_EQ(textOf(mainControls.timeBox), "0 (2) min.");
  feedbackSetBoxText(Box::PositionX, "123456789012345");
  EXPECT_EQ(feedbackGetBoxText(Box::PositionX, 11), "1234567890");
  EXPECT_EQ(feedbackGetBoxText(Box::PositionX, 100), "123456789012345");
}

// Checking a box and a radio is seen end to end; unchecking and a button's new caption here.
TEST_F(MainWindow, ChecksAreClearedAndCaptionsChangedByTheProgram) {
  feedbackSetCheck(IDC_MARK_LAYER, true);
  feedbackSetCheck(IDC_MARK_LAYER, false);
  EXPECT_EQ(IsDlgButtonChecked(mainWindow, IDC_MARK_LAYER), BST_UNCHECKED);
  feedbackSetButtonText(IDC_START_WRITING, "Stop");
  EXPECT_EQ(textOf(mainControls.startWritingButton), "Stop");
}

TEST_F(MainWindow, ClicksAreSortedByTheWindowTheyHit) {
  HWND other = CreateWindowW(L"STATIC", L"other", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                             GetModuleHandleW(nullptr), nullptr);
  HWND button = GetDlgItem(mainWindow, IDC_BLINK);
  const std::tuple<HWND, UINT, QueuedKind, QueuedTarget> clicks[] = {
      {displayWindow, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::DisplayWindow},
      {button, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::MainWindow},
      {mainWindow, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::MainWindow},
      {other, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::OtherWindow},
      {displayWindow, WM_RBUTTONDOWN, QueuedKind::Other, QueuedTarget::DisplayWindow}};
  for (const auto& [window, message, kind, target] : clicks) {
    pumpPendingMessages();
    PostMessageW(window, message, 0, 0);
    QueuedMessage taken = {};
    ASSERT_TRUE(feedbackTakeMessage(taken));
    EXPECT_EQ(taken.kind, kind);
    EXPECT_EQ(taken.target, target);
  }
  QueuedMessage none = {};
  pumpPendingMessages();
  EXPECT_FALSE(feedbackTakeMessage(none));
  DestroyWindow(other);
}

TEST_F(MainWindow, AQuitTakenDuringAWaitIsLeftForTheMessageLoop) {
  PostQuitMessage(3);
  QueuedMessage taken = {};
  ASSERT_TRUE(feedbackTakeMessage(taken));
  EXPECT_EQ(taken.kind, QueuedKind::Quit);
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3u);
}

}  // namespace

namespace {

// Enter in each box runs that box's command: with no board the moves land in the
// position model, the offsets and camera values in their records.
TEST_F(MainWindow, EnterInEachBoxRunsItsCommand) {
  const MainControlHandles& h = mainControls;
  const std::tuple<HWND, const char*, std::function<double()>, double> boxes[] = {
      {h.positionXBox, "123", [] { return serialLink.positionUm[0]; }, 123.0},
      {h.positionYBox, "-45", [] { return serialLink.positionUm[1]; }, -45.0},
      {h.positionZBox, "7", [] { return serialLink.positionUm[2]; }, 7.0},
      {h.dxBox, "1000", [] { return station.offsetX; }, 300.0},
      {h.dyBox, "-12", [] { return station.offsetY; }, -12.0},
      {h.gainBox, "5", [] { return double(camera.gain); }, 5.0},
  };
  for (const auto& [box, text, value, expected] : boxes) {
    SetWindowTextA(box, text);
    SetFocus(box);
    pressKey(box, VK_RETURN);
    EXPECT_EQ(value(), expected) << text;
  }
}

}  // namespace
