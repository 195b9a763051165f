// The operator-feedback seam on the real windows. Placeholder until the main window lands.
#include <windows.h>

#include "app/feedback.h"

void feedbackSetBoxText(Box, const std::string&) {}
std::string feedbackGetBoxText(Box, int) { return {}; }
void feedbackPaintStatus(const std::string&, const std::string&) {}
void feedbackSetButtonText(int, const std::string&) {}
void feedbackCheckRadio(int, int, int) {}
void feedbackSetCheck(int, bool) {}
void feedbackFocusMainWindow() {}
void feedbackDrawMainText(int, int, const std::string&, int, int, int) {}
void feedbackRedrawMainWindow() {}
void feedbackSetLiveTimer(bool) {}

Answer feedbackMessageBox(const std::string& text, const std::string& title, MessageKind kind, bool) {
  int result = MessageBoxA(nullptr, text.c_str(), title.c_str(), kind == MessageKind::YesNo ? MB_YESNO : MB_OK);
  if (kind == MessageKind::Ok) return Answer::Ok;
  return result == IDYES ? Answer::Yes : Answer::No;
}

bool feedbackTakeMessage(QueuedMessage&) { return false; }
void feedbackDispatchTakenMessage() {}
