// The dialog seam on the real windows: one dialog procedure for every dialog run
// through it, which hands the opening and each WM_COMMAND id to the portable handlers
// of its DialogHandlers record, and the controls of the dialog open now.
#include <windows.h>
#include <windowsx.h>

#include <string>
#include <vector>

#include "app/dialog_controls.h"
#include "app/shell_windows_win32.h"

namespace {

HWND openDialog = nullptr;  // the dialog whose controls the calls below reach

INT_PTR CALLBACK dialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG: {
      SetWindowLongPtrW(dialog, DWLP_USER, lParam);
      openDialog = dialog;
      reinterpret_cast<const DialogHandlers*>(lParam)->opened();
      return TRUE;
    }
    case WM_COMMAND: {
      auto* handlers =
          reinterpret_cast<const DialogHandlers*>(GetWindowLongPtrW(dialog, DWLP_USER));
      if (handlers == nullptr) return FALSE;
      // Esc and the caption's close box arrive as IDCANCEL, which is the dialogs' id 2.
      openDialog = dialog;
      handlers->command(GET_WM_COMMAND_ID(wParam, lParam));
      return TRUE;
    }
    default: return FALSE;
  }
}

HWND control(int controlId) { return GetDlgItem(openDialog, controlId); }

}  // namespace

int dialogRun(int dialogId, const DialogHandlers& handlers) {
  HWND outer = openDialog;
  INT_PTR result = DialogBoxParamW(appInstance, MAKEINTRESOURCEW(dialogId), mainWindow, dialogProc,
                                   reinterpret_cast<LPARAM>(&handlers));
  openDialog = outer;
  return static_cast<int>(result);
}

void dialogEnd(int result) { EndDialog(openDialog, result); }

std::string dialogGetText(int controlId, int bufferChars) {
  if (bufferChars < 1) return {};
  std::vector<char> text(static_cast<size_t>(bufferChars), '\0');
  UINT length = GetDlgItemTextA(openDialog, controlId, text.data(), bufferChars);
  return std::string(text.data(), length);
}

void dialogSetText(int controlId, const std::string& text) {
  SetDlgItemTextA(openDialog, controlId, text.c_str());
}

bool dialogIsChecked(int controlId) { return Button_GetCheck(control(controlId)) == BST_CHECKED; }

void dialogSetCheck(int controlId, bool checked) {
  Button_SetCheck(control(controlId), checked ? BST_CHECKED : BST_UNCHECKED);
}

void dialogFillList(int controlId, const std::vector<std::string>& entries) {
  HWND list = control(controlId);
  ComboBox_ResetContent(list);
  for (const std::string& entry : entries) {
    std::wstring text(entry.begin(), entry.end());  // the entries are plain ASCII
    ComboBox_AddString(list, text.c_str());
  }
}

void dialogSelectListEntry(int controlId, int index) {
  ComboBox_SetCurSel(control(controlId), index);
}

int dialogListSelection(int controlId) { return ComboBox_GetCurSel(control(controlId)); }
