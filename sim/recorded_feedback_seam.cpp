// The operator-feedback seam as a recorder: what the program shows is kept as text,
// and the operator's clicks and answers come from the test's script.
#include <deque>
#include <functional>
#include <map>

#include "sim/recorded_feedback.h"
#include "sim/virtual_clock.h"

namespace {

struct ScriptedClick {
  uint64_t atMs;
  QueuedTarget target;
  QueuedKind kind;
  std::function<void()> action;  // what dispatching an Other message does
};

std::vector<std::string> calls;
std::map<Box, std::string> boxTexts;
std::deque<ScriptedClick> clicks;
std::deque<Answer> answers;
int dispatchedClicks = 0;
std::function<void()> takenAction;
std::function<void(const std::string&)> statusWatcher;

const char* boxName(Box box) {
  switch (box) {
    case Box::Status: return "Status";
    case Box::Progress: return "Progress";
    case Box::Time: return "Time";
    case Box::PositionX: return "PositionX";
    case Box::PositionY: return "PositionY";
    case Box::PositionZ: return "PositionZ";
    case Box::LaserVoltage: return "LaserVoltage";
    case Box::WritingArea: return "WritingArea";
    case Box::WritingSpeed: return "WritingSpeed";
    case Box::Blink: return "Blink";
    case Box::Gain: return "Gain";
    case Box::Exposure: return "Exposure";
    case Box::Dx: return "Dx";
    case Box::Dy: return "Dy";
    case Box::CameraStatus: return "CameraStatus";
  }
  return "?";
}

const char* targetName(QueuedTarget target) {
  switch (target) {
    case QueuedTarget::DisplayWindow: return "display";
    case QueuedTarget::MainWindow: return "main";
    case QueuedTarget::OtherWindow: return "other";
  }
  return "?";
}

}  // namespace

void recordedFeedbackReset() {
  calls.clear();
  boxTexts.clear();
  clicks.clear();
  answers.clear();
  dispatchedClicks = 0;
  takenAction = nullptr;
  statusWatcher = nullptr;
}

void recordedWatchStatus(std::function<void(const std::string&)> watcher) {
  statusWatcher = std::move(watcher);
}

const std::vector<std::string>& recordedCalls() { return calls; }

std::string recordedBoxText(Box box) {
  auto found = boxTexts.find(box);
  return found == boxTexts.end() ? std::string() : found->second;
}

void recordedSetBoxText(Box box, const std::string& text) { boxTexts[box] = text; }

void recordedScriptClick(uint64_t atMs, QueuedTarget target) {
  clicks.push_back({atMs, target, QueuedKind::LeftButtonDown, nullptr});
}

void recordedScriptAction(uint64_t atMs, std::function<void()> action) {
  clicks.push_back({atMs, QueuedTarget::MainWindow, QueuedKind::Other, std::move(action)});
}

void recordedScriptQuit(uint64_t atMs) {
  clicks.push_back({atMs, QueuedTarget::OtherWindow, QueuedKind::Quit, nullptr});
}

void recordedQueueAnswer(Answer answer) { answers.push_back(answer); }

int recordedDispatchedClicks() { return dispatchedClicks; }

void feedbackSetBoxText(Box box, const std::string& text) {
  boxTexts[box] = text;
  calls.push_back(std::string("box ") + boxName(box) + ": " + text);
}

std::string feedbackGetBoxText(Box box, int maxChars) {
  std::string text = recordedBoxText(box);
  if (maxChars >= 1 && static_cast<int>(text.size()) > maxChars - 1) text.resize(maxChars - 1);
  return text;
}

void feedbackPaintStatus(const std::string& newest, const std::string& previous) {
  calls.push_back("status: " + newest + "|" + previous);
  if (statusWatcher) statusWatcher(newest);
}

void feedbackSetButtonText(int controlId, const std::string& text) {
  calls.push_back("button " + std::to_string(controlId) + ": " + text);
}

void feedbackCheckRadio(int firstId, int lastId, int checkedId) {
  calls.push_back("radio " + std::to_string(firstId) + "-" + std::to_string(lastId) + ": " +
                  std::to_string(checkedId));
}

void feedbackSetCheck(int controlId, bool checked) {
  calls.push_back("check " + std::to_string(controlId) + ": " + (checked ? "1" : "0"));
}

void feedbackFocusMainWindow() { calls.push_back("focus main"); }

void feedbackDrawMainText(int x, int y, const std::string& text, int red, int green, int blue) {
  calls.push_back("text " + std::to_string(x) + "," + std::to_string(y) + " rgb(" +
                  std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(blue) +
                  "): " + text);
}

void feedbackRedrawMainWindow() { calls.push_back("redraw main"); }

void feedbackShowCrossCursor() { calls.push_back("cursor cross"); }

void feedbackSetLiveTimer(bool running) {
  calls.push_back(running ? "timer 1: 200 ms" : "timer 1: killed");
}

Answer feedbackMessageBox(const std::string& text, const std::string& title, MessageKind kind,
                          bool ownedByMainWindow) {
  calls.push_back(std::string(kind == MessageKind::YesNo ? "question " : "message ") + title +
                  ": " + text + (ownedByMainWindow ? "" : " (no owner)"));
  if (kind == MessageKind::Ok) return Answer::Ok;
  if (answers.empty()) return Answer::No;
  Answer answer = answers.front();
  answers.pop_front();
  return answer;
}

bool feedbackTakeMessage(QueuedMessage& message) {
  virtualClockSystemCalled();  // a look at the message queue is a call into the system
  if (clicks.empty() || clicks.front().atMs > virtualClockNow()) return false;
  message = {clicks.front().kind, clicks.front().target};
  takenAction = clicks.front().action;
  calls.push_back(message.kind == QueuedKind::Quit
                      ? std::string("quit")
                      : std::string("click ") + targetName(clicks.front().target));
  clicks.pop_front();
  return true;
}

void feedbackDispatchTakenMessage() {
  if (takenAction) {
    std::function<void()> action = std::move(takenAction);
    takenAction = nullptr;
    action();
    return;
  }
  ++dispatchedClicks;
  calls.push_back("dispatch");
}
