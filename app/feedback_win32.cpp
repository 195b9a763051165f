// The operator-feedback seam on the real windows: box texts, the status lines painted
// over the "Information" box, button texts, radio and check marks, focus, timer 1,
// message boxes, and the thread's message queue as the responsive wait takes it.
#include <windows.h>

#include <vector>

#include "app/main_controls_win32.h"
#include "app/shell_windows_win32.h"
#include "station/feedback.h"

namespace {

MSG takenMessage = {};

HWND boxHandle(Box box) {
  const MainControlHandles& h = mainControls;
  switch (box) {
    case Box::Status: return h.statusBox;
    case Box::Progress: return h.progressBox;
    case Box::Time: return h.timeBox;
    case Box::PositionX: return h.positionXBox;
    case Box::PositionY: return h.positionYBox;
    case Box::PositionZ: return h.positionZBox;
    case Box::LaserVoltage: return h.laserVoltageBox;
    case Box::WritingArea: return h.writingAreaBox;
    case Box::WritingSpeed: return h.writingSpeedBox;
    case Box::Blink: return h.blinkBox;
    case Box::Gain: return h.gainBox;
    case Box::Exposure: return h.exposureBox;
    case Box::Dx: return h.dxBox;
    case Box::Dy: return h.dyBox;
    // The camera set-up names its mode here, but the main window has no control for it.
    case Box::CameraStatus: return nullptr;
  }
  return nullptr;
}

QueuedTarget targetOf(HWND window) {
  if (window != nullptr && window == displayWindow) return QueuedTarget::DisplayWindow;
  if (window != nullptr && (window == mainWindow || IsChild(mainWindow, window))) {
    return QueuedTarget::MainWindow;
  }
  return QueuedTarget::OtherWindow;
}

}  // namespace

void feedbackSetBoxText(Box box, const std::string& text) {
  SetWindowTextA(boxHandle(box), text.c_str());
}

std::string feedbackGetBoxText(Box box, int maxChars) {
  if (maxChars < 1) return {};
  std::vector<char> text(static_cast<size_t>(maxChars), '\0');
  int length = GetWindowTextA(boxHandle(box), text.data(), maxChars);
  return std::string(text.data(), static_cast<size_t>(length > 0 ? length : 0));
}

void feedbackPaintStatus(const std::string& newest, const std::string& previous) {
  HWND box = mainControls.statusBox;
  // Before the window exists (camera set-up at start) there is nowhere to paint, and
  // GetDC of no window would paint over the whole screen.
  if (box == nullptr) return;
  HDC dc = GetDC(box);
  if (dc == nullptr) return;
  TextOutA(dc, 2, 2, newest.c_str(), static_cast<int>(newest.size()));
  TextOutA(dc, 2, 22, previous.c_str(), static_cast<int>(previous.size()));
  ReleaseDC(box, dc);
}

void feedbackSetButtonText(int controlId, const std::string& text) {
  SetDlgItemTextA(mainWindow, controlId, text.c_str());
}

void feedbackCheckRadio(int firstId, int lastId, int checkedId) {
  CheckRadioButton(mainWindow, firstId, lastId, checkedId);
}

void feedbackSetCheck(int controlId, bool checked) {
  CheckDlgButton(mainWindow, controlId, checked ? BST_CHECKED : BST_UNCHECKED);
}

void feedbackFocusMainWindow() { SetFocus(mainWindow); }

void feedbackDrawMainText(int x, int y, const std::string& text, int red, int green, int blue) {
  if (mainWindow == nullptr) return;  // GetDC of no window is the whole screen
  HDC dc = GetDC(mainWindow);
  if (dc == nullptr) return;
  SetTextColor(dc, RGB(red, green, blue));
  SetBkMode(dc, TRANSPARENT);
  TextOutA(dc, x, y, text.c_str(), static_cast<int>(text.size()));
  ReleaseDC(mainWindow, dc);
}

void feedbackRedrawMainWindow() {
  if (mainWindow == nullptr) return;  // InvalidateRect of no window repaints every window
  InvalidateRect(mainWindow, nullptr, TRUE);
  UpdateWindow(mainWindow);
}

void feedbackShowCrossCursor() { SetCursor(LoadCursorW(nullptr, IDC_CROSS)); }

void feedbackSetLiveTimer(bool running) {
  if (running) {
    SetTimer(mainWindow, 1, 200, nullptr);
  } else {
    KillTimer(mainWindow, 1);
  }
}

Answer feedbackMessageBox(const std::string& text, const std::string& title, MessageKind kind,
                          bool ownedByMainWindow) {
  HWND owner = ownedByMainWindow ? mainWindow : nullptr;
  int result = MessageBoxA(owner, text.c_str(), title.c_str(),
                           kind == MessageKind::YesNo ? MB_YESNO : MB_OK);
  if (kind == MessageKind::Ok) return Answer::Ok;
  return result == IDYES ? Answer::Yes : Answer::No;
}

bool feedbackTakeMessage(QueuedMessage& message) {
  if (!PeekMessageW(&takenMessage, nullptr, 0, 0, PM_REMOVE)) return false;
  if (takenMessage.message == WM_QUIT) {
    // Left for the message loop, which ends the program once the running operation
    // has stopped.
    PostQuitMessage(static_cast<int>(takenMessage.wParam));
    message = {QueuedKind::Quit, QueuedTarget::OtherWindow};
    return true;
  }
  message.kind =
      takenMessage.message == WM_LBUTTONDOWN ? QueuedKind::LeftButtonDown : QueuedKind::Other;
  message.target = targetOf(takenMessage.hwnd);
  return true;
}

void feedbackDispatchTakenMessage() {
  TranslateMessage(&takenMessage);
  DispatchMessageW(&takenMessage);
}
