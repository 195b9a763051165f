// The display-drawing and file-dialog seams as recorders: drawing is kept as text lines
// and as pixels, saving writes a small file that starts with the PNG signature, and the
// file dialog answers with what the test queued. The pixels follow GDI: bitmaps take
// pictures top row first, copies and stretches land on the main window's client area (the
// display window lies at its origin), and rectangles and single pixels are drawn where
// they are asked; lines, ellipses and texts are kept as calls only. Picture files are
// pictures the test registered by path, or 24-bit BMP files on disk (the program's own).
#include <algorithm>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "camera/file_dialog.h"
#include "pattern/picture_render.h"
#include "sim/picture_file.h"
#include "sim/recorded_display.h"
#include "sim/virtual_clock.h"

struct Canvas {
  SurfaceWindow window;
  bool direct = false;
  bool bitmap = false;
  bool context = false;
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;  // the bitmap, top row first, 4 bytes: blue, green, red, 0
};

namespace {

// The main window is 1482 wide and about 1128 high: room for every client pixel.
constexpr int kScreenWidth = kDisplayWidth + 250;
constexpr int kScreenHeight = kDisplayHeight + 100;

std::vector<std::string> calls;
std::map<std::string, int> failures;
std::deque<std::wstring> fileChoices;
std::map<std::wstring, RecordedPicture> pictureFiles;
// The client area, top row first, 4 bytes: blue, green, red, drawn since the reset.
std::vector<uint8_t> screen;

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

// Client pixel (x, y) of window, nullptr outside it.
uint8_t* screenPixel(SurfaceWindow window, int x, int y) {
  const int width = window == SurfaceWindow::Main ? kScreenWidth : kDisplayWidth;
  const int height = window == SurfaceWindow::Main ? kScreenHeight : kDisplayHeight;
  if (x < 0 || y < 0 || x >= width || y >= height) return nullptr;
  if (screen.empty()) screen.assign(static_cast<size_t>(kScreenWidth) * kScreenHeight * 4, 0);
  return &screen[(static_cast<size_t>(y) * kScreenWidth + static_cast<size_t>(x)) * 4];
}

uint8_t* bitmapPixel(Canvas* canvas, int x, int y) {
  if (!canvas->bitmap || x < 0 || y < 0 || x >= canvas->width || y >= canvas->height)
    return nullptr;
  return &canvas->pixels[(static_cast<size_t>(y) * canvas->width + static_cast<size_t>(x)) * 4];
}

void put(uint8_t* pixel, Rgb colour, uint8_t drawn) {
  if (pixel == nullptr) return;
  pixel[0] = colour.blue;
  pixel[1] = colour.green;
  pixel[2] = colour.red;
  pixel[3] = drawn;
}

Rgb colourAt(const uint8_t* pixel) { return {pixel[2], pixel[1], pixel[0]}; }

// Drawing goes onto the window for a canvas made on it, else into the canvas's bitmap.
void draw(Canvas* canvas, int x, int y, Rgb colour) {
  if (canvas->direct) {
    put(screenPixel(canvas->window, x, y), colour, 1);
  } else {
    put(bitmapPixel(canvas, x, y), colour, 0);
  }
}

// The bitmap's pixel (x, y) onto the window at (left + x, top + y).
void copyToWindow(Canvas* canvas, int x, int y, int left, int top) {
  const uint8_t* from = bitmapPixel(canvas, x, y);
  if (from != nullptr) put(screenPixel(canvas->window, left, top), colourAt(from), 1);
}

// Drawing on a window takes the program's time; whole milliseconds of it pass on the clock.
double windowDcCostUs = 0;
double pixelCostUs = 0;
double drawingOwedUs = 0;
void spendDrawingTime(double us) {
  drawingOwedUs += us;
  if (drawingOwedUs < 1000.0) return;
  const auto wholeMs = static_cast<uint64_t>(drawingOwedUs / 1000.0);
  drawingOwedUs -= double(wholeMs) * 1000.0;
  virtualClockAdvance(wholeMs);
}

}  // namespace

void recordedDisplaySetDrawingCost(double windowDcUs, double pixelUs) {
  windowDcCostUs = windowDcUs;
  pixelCostUs = pixelUs;
  drawingOwedUs = 0;
}

void recordedDisplayReset() {
  calls.clear();
  failures.clear();
  fileChoices.clear();
  pictureFiles.clear();
  screen.clear();
  recordedDisplaySetDrawingCost(0, 0);
}

const std::vector<std::string>& recordedDisplayCalls() { return calls; }

void recordedDisplayFail(const std::string& step, int count) { failures[step] = count; }

void recordedQueueFileChoice(const std::wstring& path) { fileChoices.push_back(path); }

void recordedRegisterPicture(const std::wstring& path, const RecordedPicture& picture) {
  pictureFiles[path] = picture;
}

Rgb recordedScreenPixel(int x, int y) {
  const uint8_t* pixel = screenPixel(SurfaceWindow::Main, x, y);
  return pixel != nullptr ? colourAt(pixel) : Rgb{0, 0, 0};
}

bool recordedDirectPixel(SurfaceWindow window, int x, int y, Rgb& colour) {
  const uint8_t* pixel = screenPixel(window, x, y);
  if (pixel == nullptr || pixel[3] == 0) return false;
  colour = colourAt(pixel);
  return true;
}

Canvas* canvasNew(SurfaceWindow window) {
  Canvas* canvas = new Canvas;
  canvas->window = window;
  return canvas;
}

Canvas* canvasOnWindow(SurfaceWindow window) {
  calls.push_back(std::string("on window ") + windowName(window));
  Canvas* canvas = canvasNew(window);
  canvas->direct = true;
  spendDrawingTime(windowDcCostUs);
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
  // The picture's rows are bottom-up; its top row lands on the bitmap's top row, and what
  // a smaller picture leaves uncovered keeps its pixels, as SetDIBits does.
  for (int row = 0; row < height; ++row) {
    for (int x = 0; x < std::min(width, canvas->width); ++x) {
      uint8_t* to = bitmapPixel(canvas, x, height - 1 - row);
      if (to != nullptr) std::copy_n(pixels + (static_cast<size_t>(row) * width + x) * 4, 3, to);
    }
  }
  calls.push_back("pixels");
  return true;
}

void canvasSelectBitmap(Canvas*) {}
void canvasRestoreSelection(Canvas*) {}

void canvasRectangle(Canvas* canvas, const IntRect& rect, Rgb pen, const Rgb* fill) {
  calls.push_back("rect " + rectText(rect) + " pen " + hex(pen) +
                  (fill != nullptr ? " fill " + hex(*fill) : std::string(" hollow")));
  // GDI orders the corners and leaves the right column and the bottom row out.
  const int left = std::min(rect.left, rect.right), right = std::max(rect.left, rect.right) - 1;
  const int top = std::min(rect.top, rect.bottom), bottom = std::max(rect.top, rect.bottom) - 1;
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) {
      const bool edge = x == left || x == right || y == top || y == bottom;
      if (edge || fill != nullptr) draw(canvas, x, y, edge ? pen : *fill);
    }
  }
}

void canvasEllipse(Canvas*, const IntRect& rect, Rgb pen) {
  calls.push_back("ellipse " + rectText(rect) + " pen " + hex(pen));
}

void canvasText(Canvas*, int x, int y, const std::string& text, const Rgb* colour) {
  calls.push_back("text " + std::to_string(x) + "," + std::to_string(y) + " " +
                  (colour != nullptr ? hex(*colour) : std::string("plain")) + " " + text);
}

void canvasSetPixel(Canvas* canvas, int x, int y, Rgb colour) {
  if (canvas->direct) spendDrawingTime(pixelCostUs);
  draw(canvas, x, y, colour);
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
  for (int by = 0; by < canvas->height; ++by) {
    for (int bx = 0; bx < canvas->width; ++bx) copyToWindow(canvas, bx, by, x + bx, y + by);
  }
  return true;
}

bool canvasStretch(Canvas* canvas, const IntRect& rect) {
  if (!canvas->bitmap || failing("stretch")) return false;
  calls.push_back(std::string("stretch ") + windowName(canvas->window) + " " + rectText(rect));
  const int width = rect.right - rect.left, height = rect.bottom - rect.top;
  // The nearest bitmap pixel: halftone stretching, simplified.
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      copyToWindow(canvas, x * canvas->width / width, y * canvas->height / height, rect.left + x,
                   rect.top + y);
    }
  }
  return true;
}

bool canvasCopyFromWindow(Canvas* canvas) {
  if (!canvas->bitmap || failing("copy")) return false;
  calls.push_back(std::string("copy from ") + windowName(canvas->window));
  for (int y = 0; y < canvas->height; ++y) {
    for (int x = 0; x < canvas->width; ++x) {
      const uint8_t* from = screenPixel(canvas->window, x, y);
      if (from != nullptr) put(bitmapPixel(canvas, x, y), colourAt(from), 0);
    }
  }
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
  RecordedPicture fromFile;  // read afresh at every call: the program rewrites its files
  if (found == pictureFiles.end() && !readPictureFile(path, fromFile)) return false;
  const RecordedPicture& picture = found != pictureFiles.end() ? found->second : fromFile;
  if (picture.width <= 0 || picture.height <= 0) return false;
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
