// The dialog seam: running a modal dialog and reading and writing the controls of the
// dialog that is open. The configuration dialogs keep every rule (parsing, limits,
// write-back, moves) in portable code and reach their controls only through here.
// Windows: dialog_controls_win32.cpp (DialogBoxParamW and one procedure that only
// cracks messages). Tests: sim/recorded_dialog_seam.cpp keeps the controls as records
// and plays the operator's typing, choices and clicks from the test's script.
#pragma once

#include <string>
#include <vector>

// What a dialog does: fill its controls when it opens, act on a command id (a button,
// a check box, or any notification of a list).
struct DialogHandlers {
  void (*opened)();
  void (*command)(int controlId);
};

// Runs dialog resource dialogId modally, owned by the main window, until dialogEnd.
// Returns the value given to dialogEnd.
int dialogRun(int dialogId, const DialogHandlers& handlers);
void dialogEnd(int result);

// At most bufferChars - 1 characters of the control's text, as GetDlgItemTextA with a
// buffer of that size gives; empty when the text cannot be read.
std::string dialogGetText(int controlId, int bufferChars);
void dialogSetText(int controlId, const std::string& text);
bool dialogIsChecked(int controlId);
void dialogSetCheck(int controlId, bool checked);
// Drop-down lists: the entries in order, the selected index (-1 for none).
void dialogFillList(int controlId, const std::vector<std::string>& entries);
void dialogSelectListEntry(int controlId, int index);
int dialogListSelection(int controlId);
