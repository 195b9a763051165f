// The virtual station as its camera sees it, read from the one virtual board. Stage
// positions are the carriage's, from power-on, so zeroing an axis does not move the view.
#include "sim/virtual_station.h"

#include "sim/virtual_board.h"

VirtualBoard& stationBoard() {
  static VirtualBoard board = [] {
    VirtualBoard fresh;
    boardReset(fresh);
    return fresh;
  }();
  return board;
}

StationView virtualStationView(uint64_t nowMs) {
  VirtualBoard& board = stationBoard();
  boardAdvance(board, nowMs);
  StationView view;
  view.xUm = boardAxisUm(board, 0, nowMs);
  view.yUm = boardAxisUm(board, 1, nowMs);
  view.zUm = boardAxisUm(board, 2, nowMs);
  view.lampOn = boardPin(board, kBoardLampPin) > 0;
  view.laserOn = boardPin(board, kBoardLaserPin) > 0;
  view.laserPwm = boardPwm(board, kBoardLaserChannel);
  return view;
}

std::vector<ExposureSegment> virtualStationExposure(uint64_t nowMs) {
  VirtualBoard& board = stationBoard();
  boardAdvance(board, nowMs);
  std::vector<ExposureSegment> segments;
  segments.reserve(board.exposure.size());
  for (const BoardExposure& e : board.exposure)
    segments.push_back({e.x0Um, e.y0Um, e.x1Um, e.y1Um, e.laserPwm, e.t0Ms, e.t1Ms, e.zUm});
  return segments;
}
