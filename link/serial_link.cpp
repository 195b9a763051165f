// Opening, closing, writing and reading the controller port. The trace lines on standard
// output are for the developer; the operator sees only the message box of a failed open.
#include "link/serial_link.h"

#include <cstdio>
#include <cstring>

#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/system_services.h"

namespace {

constexpr uint32_t kPositionReplyMaxBytes = 10;  // a read bounded at 50 + 10 x 10 ms
constexpr uint32_t kFreeReplyMaxBytes = 50;
constexpr uint32_t kBoardResetMs = 100;                        // opening the port resets the board
constexpr SerialLineSettings kLineSettings = {9600, 8, 0, 0};  // 9600 8N1
constexpr SerialTimeouts kTimeouts = {10, 10, 50, 10, 50};

}  // namespace

SerialLink serialLink;

int OpenSerialPort(SerialLink& link, bool ownedByMainWindow) {
  if (link.failed == 0) CloseSerialLink(link);
  link.handle = serialOpen(link.comPort);
  if (link.handle == kInvalidSerialHandle) {
    feedbackMessageBox("Error in  opening serial port", "Warning", MessageKind::Ok,
                       ownedByMainWindow);
    link.failed = 1;
    return 0;
  }
  link.failed = 0;

  SerialLineSettings settings;
  link.lastCallResult = serialGetLineSettings(link.handle, settings);
  if (!link.lastCallResult) {
    std::snprintf(link.commandText, sizeof link.commandText, "GetCommState failed with error %d.\n",
                  static_cast<int>(serialLastError()));
    std::printf("fail in GetCommState\n");
    return 2;
  }
  std::printf("\nBaudRate = %d, ByteSize = %d, Parity = %d, StopBits = %d\n",
              static_cast<int>(settings.baudRate), settings.byteSize, settings.parity,
              settings.stopBits);
  link.lastCallResult = serialSetLineSettings(link.handle, kLineSettings);
  if (!link.lastCallResult) {
    std::snprintf(link.commandText, sizeof link.commandText, "SetCommState failed with error %d.\n",
                  static_cast<int>(serialLastError()));
    return 0;
  }
  link.lastCallResult = serialGetLineSettings(link.handle, settings);
  if (!link.lastCallResult) {
    std::snprintf(link.commandText, sizeof link.commandText, "GetCommState failed with error %d.\n",
                  static_cast<int>(serialLastError()));
    return 0;
  }
  SerialTimeouts timeouts = kTimeouts;
  if (!serialSetTimeouts(link.handle, timeouts)) {
    std::printf("Error to Setting Time outs");
    return 0;
  }
  if (!serialGetTimeouts(link.handle, timeouts)) std::printf("Error in Get Comm Timeout");
  std::fflush(stdout);

  systemSleepMs(kBoardResetMs);
  return 1;
}

int CloseSerialLink(SerialLink& link) {
  if (link.handle == kInvalidSerialHandle || link.failed == 1) return 0;
  link.failed = 1;
  serialClose(link.handle);
  // A closed handle is never used again: waits then end at once instead of reading it.
  link.handle = kInvalidSerialHandle;
  return 0;
}

int WriteCommandText(SerialLink& link, const char* text) {
  if (link.failed == 1) return 0;
  uint32_t length = static_cast<uint32_t>(std::strlen(text)) + 1;  // with the NUL terminator
  link.lastCallResult = serialWrite(link.handle, text, length, link.bytesTransferred);
  if (link.lastCallResult) {
    std::printf("\"%s\" was sent.\n", text);
    std::fflush(stdout);
    return 1;
  }
  link.failed = 1;
  char error[sizeof link.commandText];
  std::snprintf(error, sizeof error, "Error for %s: %d", text, static_cast<int>(serialLastError()));
  std::memcpy(link.commandText, error, sizeof error);
  return 0;
}

int SendCommand(SerialLink& link, const char* text) {
  std::snprintf(link.ioBuffer, sizeof link.ioBuffer, "%s", text);
  return WriteCommandText(link, link.ioBuffer);
}

uint32_t ReadPositionReply(SerialLink& link) {
  if (link.handle == kInvalidSerialHandle) return 0;
  link.lastCallResult =
      serialRead(link.handle, link.ioBuffer, kPositionReplyMaxBytes, link.bytesTransferred);
  if (!link.lastCallResult) return 0;
  link.ioBuffer[link.bytesTransferred] = '\0';
  return link.bytesTransferred;
}

std::optional<std::string> ReadReplyText(SerialLink& link) {
  if (link.failed == 1 || link.handle == kInvalidSerialHandle) return std::nullopt;
  char text[100] = {};
  uint32_t count = 0;
  link.lastCallResult = serialRead(link.handle, text, kFreeReplyMaxBytes, count);
  link.bytesTransferred = count;
  if (!link.lastCallResult || count == 0) waitResponsive(10);
  if (!link.lastCallResult) return std::nullopt;
  return std::string(text);
}
