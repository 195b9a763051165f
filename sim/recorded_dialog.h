// Control of the recorded dialogs that the tests link in place of the real ones: each
// run of a dialog starts with fresh controls, calls the dialog's opening, then plays the
// operator's actions scripted for it, in order, until the dialog ends itself. Every
// write to a control and every end is kept as one line of text.
#pragma once

#include <string>
#include <vector>

void recordedDialogReset();
// "run 130", "text 1020: 7", "check 1004: 1", "list 1029: 1mm|2mm", "select 1029: 6",
// "end 0", "left open" (the script ran out before the dialog ended).
const std::vector<std::string>& recordedDialogCalls();
std::string recordedDialogText(int controlId);
bool recordedDialogChecked(int controlId);
int recordedDialogSelection(int controlId);
std::vector<std::string> recordedDialogEntries(int controlId);

// The operator's actions on the next dialog run.
void recordedDialogType(int controlId, const std::string& text);  // replaces the box's text
void recordedDialogChoose(int controlId, int index);              // selects in a list; it notifies
void recordedDialogToggle(int controlId);  // a check box clicked: toggles, notifies
void recordedDialogPress(int controlId);   // a button clicked
