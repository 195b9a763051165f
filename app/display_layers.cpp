// The mask and mark layers arrive with pattern preparation; the lines are drawn last, on top.
#include "app/display_layers.h"

#include "pattern/line_display.h"

void redrawDisplayLayers() {
  if (linesEnabled == 1) drawLines(SurfaceWindow::Display);
}
