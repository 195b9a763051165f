// The control column of the main window: see main_controls_win32.h.
#include "app/main_controls_win32.h"

#include <cwchar>

#include "pattern/line_editing.h"
#include "pattern/line_pattern.h"
#include "resources/resource.h"

MainControlHandles mainControls = {};

namespace {

enum class Kind { Push, Plain, PlainBordered, Radio, Check, Box, ReadOnlyBox, StatusBox, Label };

struct ControlLayout {
  Kind kind;
  int id;  // 0: no function
  const WCHAR* caption;
  int x, y, width, height;
  HWND* handle;  // where the handle is kept, or null
};

DWORD styleOf(Kind kind) {
  DWORD base = WS_CHILD | WS_VISIBLE;
  switch (kind) {
    case Kind::Push: return base | BS_PUSHLIKE;
    case Kind::Plain: return base | BS_PUSHBUTTON;
    case Kind::PlainBordered: return base | BS_PUSHBUTTON | WS_BORDER;
    case Kind::Radio: return base | BS_RADIOBUTTON;
    case Kind::Check: return base | BS_CHECKBOX;
    case Kind::Box: return base | WS_BORDER;
    case Kind::ReadOnlyBox: return base | WS_BORDER | ES_READONLY;
    case Kind::StatusBox: return base | WS_BORDER | ES_READONLY | ES_MULTILINE;
    case Kind::Label: return base;
  }
  return base;
}

const WCHAR* classOf(Kind kind) {
  switch (kind) {
    case Kind::Box:
    case Kind::ReadOnlyBox:
    case Kind::StatusBox: return L"EDIT";
    case Kind::Label: return L"STATIC";
    default: return L"BUTTON";
  }
}

void createControls(HWND window, const ControlLayout* layouts, size_t count) {
  HINSTANCE instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window, GWLP_HINSTANCE));
  for (size_t i = 0; i < count; ++i) {
    const ControlLayout& layout = layouts[i];
    HWND control =
        CreateWindowW(classOf(layout.kind), layout.caption, styleOf(layout.kind), layout.x,
                      layout.y, layout.width, layout.height, window,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(layout.id)), instance, nullptr);
    // The dialog font, not the bold system font: the captions fit their fixed places.
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                 FALSE);
    if (layout.handle != nullptr) *layout.handle = control;
  }
}

// Keys of the editable boxes: Tab moves to the next box of the group, Enter sends the
// box's command and gives the main window the focus, Esc only gives the focus back.
struct BoxKeys {
  HWND* box;
  HWND* tabTarget;  // null: Tab does nothing of ours
  int enterCommand;
  bool escapeFocusesMain;
  WNDPROC editProcedure;
};

BoxKeys boxKeys[] = {
    {&mainControls.positionXBox, &mainControls.positionYBox, IDC_MOVE_X, true, nullptr},
    {&mainControls.positionYBox, &mainControls.positionZBox, IDC_MOVE_Y, true, nullptr},
    {&mainControls.positionZBox, &mainControls.positionXBox, IDC_MOVE_Z, true, nullptr},
    {&mainControls.dxBox, &mainControls.dyBox, IDC_APPLY_DX, true, nullptr},
    {&mainControls.dyBox, &mainControls.dxBox, IDC_APPLY_DY, true, nullptr},
    {&mainControls.gainBox, nullptr, IDM_APPLY_GAIN_EXPOSURE, false, nullptr},
    {&mainControls.exposureBox, nullptr, IDM_APPLY_GAIN_EXPOSURE, false, nullptr},
    {&mainControls.writingSpeedBox, nullptr, IDC_WRITING_SPEED_ENTER, false, nullptr},
};

BoxKeys* keysOf(HWND box) {
  for (BoxKeys& keys : boxKeys) {
    if (*keys.box == box) return &keys;
  }
  return nullptr;
}

LRESULT CALLBACK boxKeyProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
  BoxKeys* keys = keysOf(box);
  if (keys == nullptr) return DefWindowProcW(box, message, wParam, lParam);
  if (message == WM_KEYDOWN) {
    HWND main = GetParent(box);
    switch (wParam) {
      case VK_TAB:
        if (keys->tabTarget != nullptr) SetFocus(*keys->tabTarget);
        break;
      case VK_RETURN:
        SendMessageW(main, WM_COMMAND, static_cast<WPARAM>(keys->enterCommand), 0);
        SetFocus(main);
        break;
      case VK_ESCAPE:
        if (keys->escapeFocusesMain) SetFocus(main);
        break;
      default: break;
    }
  }
  return CallWindowProcW(keys->editProcedure, box, message, wParam, lParam);
}

void installBoxKeys() {
  for (BoxKeys& keys : boxKeys) {
    keys.editProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(*keys.box, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(boxKeyProc)));
  }
}

}  // namespace

void createMainControls(HWND window) {
  MainControlHandles& h = mainControls;
  const ControlLayout layouts[] = {
      {Kind::Push, IDC_CAMERA_CAPTURE, L"Camera Capture", 1262, 10, 110, 40, nullptr},
      {Kind::Push, IDC_WIDE_VIEW, L"Wide View", 1377, 10, 70, 40, nullptr},
      {Kind::Label, 0, L"Video", 1262, 60, 40, 20, nullptr},
      {Kind::Radio, IDC_VIDEO_ON, L"On", 1332, 60, 40, 20, nullptr},
      {Kind::Radio, IDC_VIDEO_OFF, L"Off", 1382, 60, 40, 20, nullptr},
      {Kind::Label, 0, L"Writing Area", 1262, 100, 90, 20, nullptr},
      {Kind::ReadOnlyBox, 0, L"", 1352, 100, 40, 20, &h.writingAreaBox},
      {Kind::Label, 0, L"mm", 1399, 100, 25, 20, nullptr},
      {Kind::Push, IDC_FOCUS, L"Focus", 1262, 170, 45, 25, nullptr},
      {Kind::Radio, IDC_MOUNT, L"Mount", 1309, 170, 60, 25, nullptr},
      {Kind::Radio, IDC_WAFER, L"Wafer", 1377, 170, 67, 25, nullptr},
      {Kind::Plain, IDC_POSITION_READ, L"Position (um)", 1262, 210, 100, 20, nullptr},
      {Kind::Plain, IDC_MOVE_X, L"X", 1250, 230, 12, 20, nullptr},
      {Kind::Box, 0, L"", 1262, 230, 50, 20, &h.positionXBox},
      {Kind::Plain, IDC_MOVE_Y, L"Y", 1315, 230, 13, 20, nullptr},
      {Kind::Box, 0, L"", 1327, 230, 50, 20, &h.positionYBox},
      {Kind::Plain, IDC_MOVE_Z, L"Z", 1380, 230, 12, 20, nullptr},
      {Kind::Box, 0, L"", 1392, 230, 50, 20, &h.positionZBox},
      {Kind::PlainBordered, IDC_STEP_PLUS, L"+", 1442, 220, 15, 20, nullptr},
      {Kind::PlainBordered, IDC_STEP_MINUS, L"-", 1442, 240, 15, 20, nullptr},
      {Kind::Label, 0, L"Writing Speed", 1262, 255, 100, 20, nullptr},
      {Kind::ReadOnlyBox, IDC_WRITING_SPEED_BOX, L"", 1367, 255, 40, 20, &h.writingSpeedBox},
      {Kind::Label, 0, L"Information", 1257, 280, 75, 20, nullptr},
      {Kind::StatusBox, IDC_STATUS_BOX, L"", 1257, 303, 200, 40, &h.statusBox},
      {Kind::Label, 0, L"Progress", 1262, 355, 75, 20, nullptr},
      {Kind::ReadOnlyBox, IDC_PROGRESS_BOX, L"", 1262, 380, 170, 20, &h.progressBox},
      {Kind::Label, 0, L"Time (estimated)", 1262, 410, 130, 20, nullptr},
      {Kind::ReadOnlyBox, IDC_PROGRESS_BOX, L"", 1262, 435, 170, 20, &h.timeBox},
      {Kind::Push, IDC_BLINK, L"Blink", 1262, 465, 55, 20, nullptr},
      {Kind::Box, IDC_BLINK_BOX, L"", 1322, 465, 40, 20, &h.blinkBox},
      {Kind::Label, 0, L"ms", 1362, 465, 20, 20, nullptr},
      {Kind::Plain, IDC_SHOW, L"Show", 1252, 560, 40, 40, nullptr},
      {Kind::Plain, IDC_ALL, L"All", 1297, 560, 40, 40, nullptr},
      {Kind::Plain, IDC_ZOOM_IN, L"Zoom In", 1342, 558, 70, 20, nullptr},
      {Kind::Plain, IDC_ZOOM_OUT, L"Zoom Out", 1342, 582, 70, 20, nullptr},
      {Kind::Plain, IDM_MASK_PATTERN, L"Mask", 1262, 610, 70, 40, nullptr},
      {Kind::Plain, IDC_ALIGN_MARK, L"AlignMark", 1342, 610, 70, 40, nullptr},
      {Kind::Label, 0, L"Camera Configuration", 1262, 665, 180, 20, nullptr},
      {Kind::Label, 0, L"Gain", 1262, 685, 50, 20, nullptr},
      {Kind::Label, 0, L"Expo.", 1322, 685, 50, 20, nullptr},
      {Kind::Label, 0, L"B", 1382, 685, 50, 20, nullptr},
      {Kind::Box, 0, L"", 1262, 710, 50, 20, &h.gainBox},
      {Kind::Box, 0, L"", 1322, 710, 50, 20, &h.exposureBox},
      {Kind::Box, 0, L"", 1382, 710, 50, 20, nullptr},
      {Kind::Check, IDC_CENTER_WRITING_ONLY, L"Center Writing Only", 1262, 750, 150, 20, nullptr},
      {Kind::Label, 0, L"Draw Line (um)", 1262, 495, 120, 20, nullptr},
      {Kind::Radio, IDC_LINE_WIDTH_1, L"1", 1262, 517, 35, 20, nullptr},
      {Kind::Radio, IDC_LINE_WIDTH_3, L"3", 1297, 517, 35, 20, nullptr},
      {Kind::Radio, IDC_LINE_WIDTH_6, L"6", 1332, 517, 35, 20, nullptr},
      {Kind::Radio, IDC_LINE_WIDTH_10, L"10", 1367, 517, 40, 20, nullptr},
      {Kind::Radio, IDC_LINE_ERASE, L"Erase", 1407, 517, 55, 20, nullptr},
      {Kind::Check, IDC_MASK_LAYER, L"Mask", 1252, 950, 55, 20, nullptr},
      {Kind::Check, IDC_LINES_LAYER, L"lines", 1309, 950, 55, 20, nullptr},
      {Kind::Check, IDC_MARK_LAYER, L"Mark", 1362, 950, 55, 20, nullptr},
      {Kind::Push, IDC_GO_TO_WRITING, L"Go to Writing", 1242, 980, 110, 40, &h.goToWritingButton},
      {Kind::Push, IDC_START_WRITING, L"Start Writing", 1362, 980, 100, 40, &h.startWritingButton},
      {Kind::Label, 0, L"Dx", 1242, 1030, 30, 20, nullptr},
      {Kind::Box, IDC_DX_BOX, L"", 1282, 1030, 30, 20, &h.dxBox},
      {Kind::Label, 0, L"Dy", 1322, 1030, 30, 20, nullptr},
      {Kind::Box, IDC_DY_BOX, L"", 1362, 1030, 30, 20, &h.dyBox},
  };
  createControls(window, layouts, sizeof layouts / sizeof layouts[0]);
  CheckRadioButton(window, IDC_LINE_WIDTH_1, IDC_LINE_ERASE, widthRadioFor(linePattern.widthClass));
  installBoxKeys();
}

void createLaserControls(const LaserOutput& laser, HWND window) {
  WCHAR voltage[100];
  std::swprintf(voltage, 100, L"%.2lf", laser.laserVoltage);
  const ControlLayout layouts[] = {
      {Kind::Label, 0, L"laser", 1262, 122, 40, 20, nullptr},
      {Kind::ReadOnlyBox, 0, voltage, 1307, 122, 33, 20, &mainControls.laserVoltageBox},
      {Kind::Label, 0, L"V", 1344, 122, 10, 20, nullptr},
      {Kind::Radio, IDC_LASER_ON, L"On", 1362, 122, 40, 20, nullptr},
      {Kind::Radio, IDC_LASER_OFF, L"Off", 1412, 122, 40, 20, nullptr},
      {Kind::Label, 0, L"illum.", 1262, 145, 55, 20, nullptr},
      {Kind::Radio, IDC_ILLUMINATION_ON, L"On", 1332, 145, 40, 20, nullptr},
      {Kind::Radio, IDC_ILLUMINATION_OFF, L"Off", 1382, 145, 40, 20, nullptr},
  };
  createControls(window, layouts, sizeof layouts / sizeof layouts[0]);
}
