// telvane-inspect: a console tool that `make run` and the end-to-end tests (through
// scripts/wine_session.py) run in the program's Wine prefix to look at its windows from
// outside, as an operator sees them, and to act on them.
// Every answer is one JSON value on standard output; exit code 0 on success, 1 when the
// window asked for is not there, 2 on a usage error.
//
//   windows                        top-level visible windows: handle, class, title, text
//   list TITLE                     the window's sizes, its client origin on the screen,
//                                  and every descendant: id, class, caption, rect in
//                                  client pixels, style, check state
//   command TITLE ID               post WM_COMMAND ID to the window (a menu entry, or
//   answer TITLE ID                a dialog's button: 1 OK, 6 Yes, 7 No)
//   close TITLE                    post WM_CLOSE to the window
//   text TITLE X Y                 the text of the child at client point (X, Y): one
//                                  message, so it answers even while the program is busy
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string json(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    if (static_cast<unsigned char>(c) >= 0x20) out += c;
  }
  return out + "\"";
}

// WM_GETTEXT rather than GetWindowText: across processes the latter gives only the
// caption stored with the window, never the text an edit control holds.
std::string textOf(HWND window) {
  char text[512] = {};
  DWORD_PTR length = 0;
  SendMessageTimeoutA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text),
                      SMTO_ABORTIFHUNG, 2000, &length);
  return text;
}

std::string classOf(HWND window) {
  char name[256] = {};
  GetClassNameA(window, name, sizeof name);
  return name;
}

std::string handleText(HWND window) {
  char text[32];
  std::snprintf(text, sizeof text, "\"%llx\"",
                static_cast<unsigned long long>(reinterpret_cast<UINT_PTR>(window)));
  return text;
}

BOOL CALLBACK collectTopLevel(HWND window, LPARAM out) {
  if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(out)->push_back(window);
  return TRUE;
}

std::vector<HWND> topLevelWindows() {
  std::vector<HWND> windows;
  EnumWindows(collectTopLevel, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

HWND findTopLevel(const std::string& title) {
  for (HWND window : topLevelWindows()) {
    if (textOf(window) == title) return window;
  }
  return nullptr;
}

// The message text of a message box is its static child 0xFFFF.
int listWindows() {
  std::string out = "[";
  for (HWND window : topLevelWindows()) {
    HWND label = GetDlgItem(window, 0xFFFF);
    if (out.size() > 1) out += ",";
    out += "{\"handle\":" + handleText(window) + ",\"class\":" + json(classOf(window)) +
           ",\"title\":" + json(textOf(window)) +
           ",\"text\":" + json(label != nullptr ? textOf(label) : "") + "}";
  }
  std::printf("%s]\n", out.c_str());
  return 0;
}

struct ChildList {
  HWND parent;
  std::string json;
};

BOOL CALLBACK describeChild(HWND child, LPARAM data) {
  ChildList& list = *reinterpret_cast<ChildList*>(data);
  RECT rect;
  GetWindowRect(child, &rect);
  MapWindowPoints(HWND_DESKTOP, list.parent, reinterpret_cast<POINT*>(&rect), 2);
  const LRESULT check =
      _stricmp(classOf(child).c_str(), "Button") == 0 ? SendMessageA(child, BM_GETCHECK, 0, 0) : 0;
  char line[256];
  std::snprintf(
      line, sizeof line, "{\"id\":%d,\"rect\":[%ld,%ld,%ld,%ld],\"style\":%lu,\"check\":%d,",
      GetDlgCtrlID(child), rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
      static_cast<unsigned long>(GetWindowLongA(child, GWL_STYLE)), static_cast<int>(check));
  if (list.json.size() > 1) list.json += ",";
  list.json += line;
  list.json += "\"class\":" + json(classOf(child)) + ",\"caption\":" + json(textOf(child)) + "}";
  return TRUE;
}

int listChildren(HWND window) {
  RECT client;
  RECT outer;
  POINT origin = {0, 0};
  GetClientRect(window, &client);
  GetWindowRect(window, &outer);
  ClientToScreen(window, &origin);
  ChildList list = {window, "["};
  EnumChildWindows(window, describeChild, reinterpret_cast<LPARAM>(&list));
  std::printf(
      "{\"client\":[%ld,%ld],\"origin\":[%ld,%ld],\"window\":[%ld,%ld,%ld,%ld],"
      "\"children\":%s]}\n",
      client.right, client.bottom, origin.x, origin.y, outer.left, outer.top,
      outer.right - outer.left, outer.bottom - outer.top, list.json.c_str());
  return 0;
}

int usage() {
  std::fprintf(stderr,
               "usage: telvane-inspect windows | list TITLE | command TITLE ID | "
               "answer TITLE ID | close TITLE | text TITLE X Y\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage();
  const std::string verb = argv[1];
  if (verb == "windows") return listWindows();
  if (argc < 3) return usage();
  HWND window = findTopLevel(argv[2]);
  if (window == nullptr) {
    std::printf("null\n");
    return 1;
  }
  if (verb == "list") return listChildren(window);
  if ((verb == "command" || verb == "answer") && argc == 4) {
    PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(std::atoi(argv[3])), 0);
    std::printf("true\n");
    return 0;
  }
  if (verb == "text" && argc == 5) {
    const POINT point = {std::atoi(argv[3]), std::atoi(argv[4])};
    HWND child = ChildWindowFromPointEx(window, point, CWP_SKIPINVISIBLE);
    std::printf("%s\n", child != nullptr && child != window ? json(textOf(child)).c_str() : "null");
    return 0;
  }
  if (verb == "close") {
    PostMessageA(window, WM_CLOSE, 0, 0);
    std::printf("true\n");
    return 0;
  }
  return usage();
}
