// telvane-layout-raster: the layout import's reading and rasterization from the command
// line, for the tests that check it against layouts made by other programs. Linux only.
//
//   telvane-layout-raster FILE                      prints "layer L" and "top C" lines
//   telvane-layout-raster FILE LAYER TOP CELL_UM [centre] [picture BMP]
//       prints "W H CELL_UM CENTRE_X_UM CENTRE_Y_UM", then the raster's rows from the
//       top, one byte a cell (0 or 1); writes the writing area's picture when asked
// A file the import refuses: its message on standard error, exit status 1.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "pattern/layout_import.h"

int main(int argc, char** argv) {
  if (argc != 2 && argc < 5) {
    std::fprintf(stderr, "usage: %s FILE [LAYER TOP CELL_UM [centre] [picture BMP]]\n", argv[0]);
    return 2;
  }
  LayoutDocument document;
  std::string error = openLayoutFile(argv[1], document);
  if (error.empty() && argc == 2) {
    for (const std::string& layer : document.layers()) std::printf("layer %s\n", layer.c_str());
    for (const std::string& top : document.topCells()) std::printf("top %s\n", top.c_str());
    return 0;
  }
  bool centre = false;
  std::string picture;
  for (int i = 5; i < argc; ++i) {
    if (std::string(argv[i]) == "centre") centre = true;
    if (std::string(argv[i]) == "picture" && i + 1 < argc) picture = argv[++i];
  }
  LayoutRaster raster;
  if (error.empty())
    error = rasterizeLayoutLayer(document, argv[2], argv[3], std::atof(argv[4]), centre, raster);
  if (!error.empty()) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  if (!picture.empty() && !writeWritingAreaPicture(raster, picture)) return 1;
  std::printf("%d %d %.17g %.17g %.17g\n", raster.widthCells, raster.heightCells, raster.cellUm,
              raster.centreXUm, raster.centreYUm);
  std::fwrite(raster.dark.data(), 1, raster.dark.size(), stdout);
  return 0;
}
