// The dialog seam as a recorder: the open dialog's controls are plain records, the
// operator's actions come from the test's script, and every write is kept as text.
#include <deque>
#include <map>

#include "app/dialog_controls.h"
#include "sim/recorded_dialog.h"

namespace {

enum class ActionKind { Type, Choose, Toggle, Press };

struct Action {
  ActionKind kind;
  int controlId;
  std::string text;
  int index;
};

struct ListControl {
  std::vector<std::string> entries;
  int selection = -1;
};

std::vector<std::string> calls;
std::deque<Action> script;
std::map<int, std::string> texts;
std::map<int, bool> checks;
std::map<int, ListControl> lists;
bool ended = false;
int endResult = 0;

std::string joined(const std::vector<std::string>& entries) {
  std::string out;
  for (const std::string& entry : entries) out += (out.empty() ? "" : "|") + entry;
  return out;
}

}  // namespace

void recordedDialogReset() {
  calls.clear();
  script.clear();
  texts.clear();
  checks.clear();
  lists.clear();
  ended = false;
}

const std::vector<std::string>& recordedDialogCalls() { return calls; }

std::string recordedDialogText(int controlId) { return texts[controlId]; }
bool recordedDialogChecked(int controlId) { return checks[controlId]; }
int recordedDialogSelection(int controlId) { return lists[controlId].selection; }
std::vector<std::string> recordedDialogEntries(int controlId) { return lists[controlId].entries; }

void recordedDialogType(int controlId, const std::string& text) {
  script.push_back({ActionKind::Type, controlId, text, 0});
}
void recordedDialogChoose(int controlId, int index) {
  script.push_back({ActionKind::Choose, controlId, {}, index});
}
void recordedDialogToggle(int controlId) {
  script.push_back({ActionKind::Toggle, controlId, {}, 0});
}
void recordedDialogPress(int controlId) { script.push_back({ActionKind::Press, controlId, {}, 0}); }

int dialogRun(int dialogId, const DialogHandlers& handlers) {
  texts.clear();
  checks.clear();
  lists.clear();
  ended = false;
  calls.push_back("run " + std::to_string(dialogId));
  handlers.opened();
  while (!ended && !script.empty()) {
    Action action = script.front();
    script.pop_front();
    switch (action.kind) {
      case ActionKind::Type: texts[action.controlId] = action.text; break;
      case ActionKind::Choose:
        lists[action.controlId].selection = action.index;
        handlers.command(action.controlId);
        break;
      case ActionKind::Toggle:
        checks[action.controlId] = !checks[action.controlId];
        handlers.command(action.controlId);
        break;
      case ActionKind::Press: handlers.command(action.controlId); break;
    }
  }
  if (!ended) {
    calls.push_back("left open");
    return -1;
  }
  return endResult;
}

void dialogEnd(int result) {
  ended = true;
  endResult = result;
  calls.push_back("end " + std::to_string(result));
}

std::string dialogGetText(int controlId, int bufferChars) {
  std::string text = texts[controlId];
  if (bufferChars >= 1 && static_cast<int>(text.size()) > bufferChars - 1)
    text.resize(static_cast<size_t>(bufferChars - 1));
  return text;
}

void dialogSetText(int controlId, const std::string& text) {
  texts[controlId] = text;
  calls.push_back("text " + std::to_string(controlId) + ": " + text);
}

bool dialogIsChecked(int controlId) { return checks[controlId]; }

void dialogSetCheck(int controlId, bool checked) {
  checks[controlId] = checked;
  calls.push_back("check " + std::to_string(controlId) + ": " + (checked ? "1" : "0"));
}

void dialogFillList(int controlId, const std::vector<std::string>& entries) {
  lists[controlId] = {entries, -1};
  calls.push_back("list " + std::to_string(controlId) + ": " + joined(entries));
}

void dialogSelectListEntry(int controlId, int index) {
  ListControl& list = lists[controlId];
  // As CB_SETCURSEL: an index outside the list clears the selection.
  list.selection = index >= 0 && index < static_cast<int>(list.entries.size()) ? index : -1;
  calls.push_back("select " + std::to_string(controlId) + ": " + std::to_string(list.selection));
}

int dialogListSelection(int controlId) { return lists[controlId].selection; }
