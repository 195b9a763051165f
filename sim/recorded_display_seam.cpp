// The display-drawing and file-dialog seams as recorders: drawing is kept as text lines
// and pictures, saving writes a small file that starts with the PNG signature, and the
// file dialog answers with what the test queued. Pictures drawn straight onto a window
// are kept pixel by pixel, and picture files are pictures the test registered by path.
#include <algorithm>
#include <cstdio>
#include <deque>
#include <fstream>
#include <map>

#include "camera/file_dialog.h"
#include "pattern/picture_render.h"
#include "sim/recorded_display.h"

struct Canvas {
  SurfaceWindow window;
  bool direct = false;
  bool bitmap = false;
  bool context = false;
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;
};

namespace {

std::vector<std::string> calls;
std::map<SurfaceWindow, std::vector<uint8_t>> windowPictures;
std::map<std::string, int> failures;
std::deque<std::wstring> fileChoices;
std::map<std::wstring, RecordedPicture> pictureFiles;
// Pixels drawn straight onto each window (top-down, 4 bytes: blue, green, red, drawn).
std::map<SurfaceWindow, std::vector<uint8_t>> directPixels;

const char* windowName(SurfaceWindow window) {
  return window == SurfaceWindow::Main ? "main" : "display";
}

std::string hex(Rgb colour) {
  char text[8];
  std::snprintf(text, sizeof text, "%02x%02x%02x", colour.red, colour.green, colour.blue);
  return text;
}

std::string rectText(const IntRect& rect) {
  return std::to_string(rect.left) + "," + std::to_string(rect.top) + "," +
         std::to_string(rect.right) + "," + std::to_string(rect.bottom);
}

std::string pointText(IntPoint point) {
  return std::to_string(point.x) + "," + std::to_string(point.y);
}

bool failing(const std::string& step) {
  auto found = failures.find(step);
  if (found == failures.end() || found->second == 0) return false;
  --found->second;
  calls.push_back(step + " failed");
  return true;
}

}  // namespace

void recordedDisplayReset() {
  calls.clear();
  windowPictures.clear();
  failures.clear();
  fileChoices.clear();
  pictureFiles.clear();
  directPixels.clear();
}

const std::vector<std::string>& recordedDisplayCalls() { return calls; }

const std::vector<uint8_t>& recordedWindowPicture(SurfaceWindow window) {
  return windowPictures[window];
}

void recordedDisplayFail(const std::string& step, int count) { failures[step] = count; }

void recordedQueueFileChoice(const std::wstring& path) { fileChoices.push_back(path); }

void recordedRegisterPicture(const std::wstring& path, const RecordedPicture& picture) {
  pictureFiles[path] = picture;
}

bool recordedDirectPixel(SurfaceWindow window, int x, int y, Rgb& colour) {
  const auto found = directPixels.find(window);
  if (found == directPixels.end() || x < 0 || y < 0 || x >= kDisplayWidth + 250 ||
      y >= kDisplayHeight + 100)
    return false;
  const uint8_t* pixel = &found->second[(static_cast<size_t>(y) * (kDisplayWidth + 250) + x) * 4];
  if (pixel[3] == 0) return false;
  colour = {pixel[2], pixel[1], pixel[0]};
  return true;
}

void recordedForgetDirectPixels() { directPixels.clear(); }

Canvas* canvasNew(SurfaceWindow window) {
  Canvas* canvas = new Canvas;
  canvas->window = window;
  return canvas;
}

Canvas* canvasOnWindow(SurfaceWindow window) {
  calls.push_back(std::string("on window ") + windowName(window));
  Canvas* canvas = canvasNew(window);
  canvas->direct = true;
  return canvas;
}

bool canvasCreateBitmap(Canvas* canvas, int width, int height) {
  if (failing("bitmap")) return false;
  canvas->bitmap = true;
  canvas->width = width;
  canvas->height = height;
  canvas->pixels.assign(static_cast<size_t>(width) * height * 4, 0);
  calls.push_back("bitmap " + std::to_string(width) + "x" + std::to_string(height));
  return true;
}

bool canvasCreateContext(Canvas* canvas) {
  if (failing("context")) return false;
  canvas->context = true;
  return true;
}

bool canvasSetPixels(Canvas* canvas, const uint8_t* pixels, int width, int height) {
  if (!canvas->bitmap || !canvas->context || failing("pixels")) return false;
  canvas->pixels.assign(pixels, pixels + static_cast<size_t>(width) * height * 4);
  calls.push_back("pixels");
  return true;
}

void canvasSelectBitmap(Canvas*) {}
void canvasRestoreSelection(Canvas*) {}

void canvasRectangle(Canvas*, const IntRect& rect, Rgb pen, const Rgb* fill) {
  calls.push_back("rect " + rectText(rect) + " pen " + hex(pen) +
                  (fill != nullptr ? " fill " + hex(*fill) : std::string(" hollow")));
}

void canvasEllipse(Canvas*, const IntRect& rect, Rgb pen) {
  calls.push_back("ellipse " + rectText(rect) + " pen " + hex(pen));
}

void canvasText(Canvas*, int x, int y, const std::string& text, const Rgb* colour) {
  calls.push_back("text " + std::to_string(x) + "," + std::to_string(y) + " " +
                  (colour != nullptr ? hex(*colour) : std::string("plain")) + " " + text);
}

void canvasSetPixel(Canvas* canvas, int x, int y, Rgb colour) {
  if (canvas->direct) {
    // The main window is 1482 wide and about 1128 high: room for every client pixel.
    constexpr int kWidth = kDisplayWidth + 250;
    constexpr int kHeight = kDisplayHeight + 100;
    if (x < 0 || y < 0 || x >= kWidth || y >= kHeight) return;
    std::vector<uint8_t>& surface = directPixels[canvas->window];
    if (surface.empty()) surface.assign(static_cast<size_t>(kWidth) * kHeight * 4, 0);
    uint8_t* pixel = &surface[(static_cast<size_t>(y) * kWidth + x) * 4];
    pixel[0] = colour.blue;
    pixel[1] = colour.green;
    pixel[2] = colour.red;
    pixel[3] = 1;
    return;
  }
  if (x < 0 || y < 0 || x >= canvas->width || y >= canvas->height) return;
  // Bitmap rows are kept bottom-up like the pictures, so row y from the top is height-1-y.
  uint8_t* pixel =
      &canvas->pixels[(static_cast<size_t>(canvas->height - 1 - y) * canvas->width + x) * 4];
  pixel[0] = colour.blue;
  pixel[1] = colour.green;
  pixel[2] = colour.red;
}

void canvasLine(Canvas* canvas, IntPoint from, IntPoint to, int penWidth, Rgb colour) {
  calls.push_back(std::string("line ") + windowName(canvas->window) + " " + pointText(from) + "-" +
                  pointText(to) + " width " + std::to_string(penWidth) + " pen " + hex(colour));
}

void canvasInvertLine(Canvas* canvas, IntPoint from, IntPoint to) {
  calls.push_back(std::string("invert ") + windowName(canvas->window) + " " + pointText(from) +
                  "-" + pointText(to));
}

bool canvasBlit(Canvas* canvas, int x, int y) {
  if (!canvas->bitmap || failing("blit")) return false;
  calls.push_back(std::string("blit ") + windowName(canvas->window) + " " + std::to_string(x) +
                  "," + std::to_string(y));
  windowPictures[canvas->window] = canvas->pixels;
  return true;
}

bool canvasStretch(Canvas* canvas, const IntRect& rect) {
  if (!canvas->bitmap || failing("stretch")) return false;
  calls.push_back(std::string("stretch ") + windowName(canvas->window) + " " + rectText(rect));
  windowPictures[canvas->window] = canvas->pixels;
  return true;
}

bool canvasCopyFromWindow(Canvas* canvas) {
  if (!canvas->bitmap || failing("copy")) return false;
  calls.push_back(std::string("copy from ") + windowName(canvas->window));
  return true;
}

bool canvasSavePng(Canvas*, const std::filesystem::path& file) {
  calls.push_back("save " + file.filename().string());
  std::ofstream out(file, std::ios::binary);
  out << "\x89PNG\r\n\x1a\n";
  return static_cast<bool>(out);
}

void canvasDeleteBitmap(Canvas* canvas) {
  canvas->bitmap = false;
  calls.push_back("delete bitmap");
}

void canvasFree(Canvas* canvas) { delete canvas; }

bool fileDialogAskOpen(std::wstring& path) {
  if (fileChoices.empty()) return false;
  path = fileChoices.front();
  fileChoices.pop_front();
  return true;
}

bool renderPictureFile(const std::wstring& path, int width, int height, uint8_t* pixels) {
  const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;
  std::fill(pixels, pixels + bytes, uint8_t{0xFF});
  const auto found = pictureFiles.find(path);
  if (found == pictureFiles.end() || found->second.width <= 0 || found->second.height <= 0)
    return false;
  const RecordedPicture& picture = found->second;
  // Nearest source pixel, blended over white by its alpha: GDI+ stretching, simplified.
  for (int y = 0; y < height; ++y) {
    const int sy = static_cast<int>(static_cast<int64_t>(y) * picture.height / height);
    for (int x = 0; x < width; ++x) {
      const int sx = static_cast<int>(static_cast<int64_t>(x) * picture.width / width);
      const uint8_t* from = &picture.pixels[(static_cast<size_t>(sy) * picture.width + sx) * 4];
      uint8_t* to = &pixels[(static_cast<size_t>(y) * width + x) * 4];
      const int alpha = from[3];
      for (int c = 0; c < 3; ++c)
        to[c] = static_cast<uint8_t>((from[c] * alpha + 255 * (255 - alpha)) / 255);
      to[3] = 0;
    }
  }
  return true;
}
