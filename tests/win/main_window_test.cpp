// The real main window in this process: the keys of the editable boxes, and how the
// responsive wait's message taking sorts clicks. (The feedback seam's writes to the real
// controls are seen end to end, tests/e2e.)
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

// Tab cycles the position boxes and the offset boxes; Enter in a box runs its command
// (with no board the moves land in the position model) and gives the focus back, as Esc
// does.
TEST_F(MainWindow, TheBoxesKeys) {
  const MainControlHandles& h = mainControls;
  SetFocus(h.positionXBox);
  for (HWND next : {h.positionYBox, h.positionZBox, h.positionXBox}) {
    pressKey(GetFocus(), VK_TAB);
    EXPECT_EQ(GetFocus(), next);
  }
  SetFocus(h.dyBox);
  pressKey(GetFocus(), VK_TAB);
  EXPECT_EQ(GetFocus(), h.dxBox);
  const std::tuple<HWND, const char*, std::function<double()>, double> boxes[] = {
      {h.positionYBox, "-45", [] { return serialLink.positionUm[1]; }, -45.0},
      {h.positionZBox, "7", [] { return serialLink.positionUm[2]; }, 7.0},
      {h.dxBox, "1000", [] { return station.offsetX; }, 300.0},
      {h.gainBox, "5", [] { return double(camera.gain); }, 5.0},
  };
  for (const auto& [box, text, value, expected] : boxes) {
    SetWindowTextA(box, text);
    SetFocus(box);
    pressKey(box, VK_RETURN);
    EXPECT_EQ(value(), expected) << text;
    EXPECT_EQ(GetFocus(), mainWindow) << text;
  }
  SetFocus(h.positionZBox);
  pressKey(h.positionZBox, VK_ESCAPE);
  EXPECT_EQ(GetFocus(), mainWindow);
}

// Clicks are sorted by the window they hit; a quit is left for the message loop.
TEST_F(MainWindow, TheWaitTakesClicksByWindowAndLeavesAQuit) {
  HWND other = CreateWindowW(L"STATIC", L"other", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                             GetModuleHandleW(nullptr), nullptr);
  const std::tuple<HWND, UINT, QueuedKind, QueuedTarget> clicks[] = {
      {displayWindow, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::DisplayWindow},
      {GetDlgItem(mainWindow, IDC_BLINK), WM_LBUTTONDOWN, QueuedKind::LeftButtonDown,
       QueuedTarget::MainWindow},
      {mainWindow, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::MainWindow},
      {other, WM_LBUTTONDOWN, QueuedKind::LeftButtonDown, QueuedTarget::OtherWindow},
      {displayWindow, WM_RBUTTONDOWN, QueuedKind::Other, QueuedTarget::DisplayWindow}};
  for (const auto& [window, message, kind, target] : clicks) {
    pumpPendingMessages();
    PostMessageW(window, message, 0, 0);
    QueuedMessage taken = {};
    ASSERT_TRUE(feedbackTakeMessage(taken));
    EXPECT_EQ(std::tuple(taken.kind, taken.target), std::tuple(kind, target));
  }
  DestroyWindow(other);
  pumpPendingMessages();
  PostQuitMessage(3);
  QueuedMessage taken = {};
  ASSERT_TRUE(feedbackTakeMessage(taken));
  EXPECT_EQ(taken.kind, QueuedKind::Quit);
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3u);
}

}  // namespace
