// Control of the recorded operator that the tests link in place of the windows: every
// feedback call is kept as one line of text, in order; clicks are scripted at virtual
// times and message-box answers queued.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "station/feedback.h"

void recordedFeedbackReset();
// Every call so far, one line each, e.g. "box Progress: 50 %", "message Warning: ...".
const std::vector<std::string>& recordedCalls();
std::string recordedBoxText(Box box);
void recordedSetBoxText(Box box, const std::string& text);  // as if the operator typed it
// A left click on a window, taken from the queue once the virtual clock reaches atMs.
void recordedScriptClick(uint64_t atMs, QueuedTarget target);
// The main window closing (WM_QUIT in the queue) once the virtual clock reaches atMs.
void recordedScriptQuit(uint64_t atMs);
// A message that, when the program dispatches it, runs action (a button let go, a command
// chosen during a long operation), once the virtual clock reaches atMs. Script in time order.
void recordedScriptAction(uint64_t atMs, std::function<void()> action);
// Called with each status text as the program paints it, while the program waits on it.
void recordedWatchStatus(std::function<void(const std::string&)> watcher);
// The answer to the next Yes/No question (questions with nothing queued get No).
void recordedQueueAnswer(Answer answer);
// How many scripted clicks were dispatched (let through) rather than consumed.
int recordedDispatchedClicks();
