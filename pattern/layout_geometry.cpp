// Layout outlines and their rasterization: see layout_geometry.h.
#include "pattern/layout_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>

bool LayoutShapes::add(LayoutPolygon polygon) {
  if (points > pointBudget || polygon.size() > pointBudget - points) return false;
  points += polygon.size();
  polygons.push_back(std::move(polygon));
  return true;
}

LayoutPolygon circlePolygon(double centreX, double centreY, double radius, double toleranceUm) {
  // A chord of angle a strays r (1 - cos(a / 2)) inside the circle.
  int corners = 8;
  if (radius > toleranceUm && toleranceUm > 0) {
    const double angle = 2 * std::acos(1 - toleranceUm / radius);
    corners = static_cast<int>(std::clamp(std::ceil(2 * std::numbers::pi / angle), 8.0, 4096.0));
  }
  LayoutPolygon polygon;
  polygon.reserve(static_cast<size_t>(corners));
  for (int i = 0; i < corners; ++i) {
    const double a = 2 * std::numbers::pi * i / corners;
    polygon.push_back({centreX + radius * std::cos(a), centreY + radius * std::sin(a)});
  }
  return polygon;
}

namespace {

struct Direction {
  double x = 0;
  double y = 0;
};

Direction unitAlong(LayoutPoint from, LayoutPoint to) {
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  return {(to.x - from.x) / length, (to.y - from.y) / length};
}

LayoutPoint offset(LayoutPoint p, Direction d, double distance) {
  return {p.x + d.x * distance, p.y + d.y * distance};
}

// A miter longer than this many half-widths is cut off (bevelled), as layout tools do.
constexpr double kMiterLimit = 8;

}  // namespace

bool appendPathOutline(const std::vector<LayoutPoint>& points, double width, double beginExtension,
                       double endExtension, bool roundEnds, double toleranceUm,
                       LayoutShapes& shapes) {
  std::vector<LayoutPoint> path;
  for (const LayoutPoint& p : points) {
    if (path.empty() || p.x != path.back().x || p.y != path.back().y) path.push_back(p);
  }
  const double half = std::abs(width) / 2;
  if (path.size() < 2 || !(half > 0)) return true;
  const size_t last = path.size() - 2;  // index of the last segment
  for (size_t i = 0; i + 1 < path.size(); ++i) {
    const Direction along = unitAlong(path[i], path[i + 1]);
    const Direction normal{-along.y, along.x};
    const LayoutPoint a = offset(path[i], along, i == 0 ? -beginExtension : 0);
    const LayoutPoint b = offset(path[i + 1], along, i == last ? endExtension : 0);
    if (!shapes.add({offset(a, normal, half), offset(a, normal, -half), offset(b, normal, -half),
                     offset(b, normal, half)}))
      return false;
    if (i == last) break;
    // The corner at path[i + 1]: the wedge between both segments on the outer side, up
    // to where the two offset edges meet.
    const Direction next = unitAlong(path[i + 1], path[i + 2]);
    const Direction nextNormal{-next.y, next.x};
    const double turn = along.x * next.y - along.y * next.x;
    if (turn == 0) continue;
    const double side = turn > 0 ? -half : half;  // the outer side's offset
    const LayoutPoint v = path[i + 1];
    const double cosine = normal.x * nextNormal.x + normal.y * nextNormal.y;
    LayoutPolygon wedge{v, offset(v, normal, side)};
    if (1 + cosine > 2 / (kMiterLimit * kMiterLimit)) {
      const double reach = side / (1 + cosine);
      wedge.push_back(
          {v.x + (normal.x + nextNormal.x) * reach, v.y + (normal.y + nextNormal.y) * reach});
    }
    wedge.push_back(offset(v, nextNormal, side));
    if (!shapes.add(std::move(wedge))) return false;
  }
  return !roundEnds ||
         (shapes.add(circlePolygon(path.front().x, path.front().y, half, toleranceUm)) &&
          shapes.add(circlePolygon(path.back().x, path.back().y, half, toleranceUm)));
}

namespace {

struct Crossing {
  int64_t row;
  double x;
  int winding;
  bool operator<(const Crossing& other) const {
    return row != other.row ? row < other.row : x < other.x;
  }
};

}  // namespace

bool rasterizeLayout(const std::vector<LayoutPolygon>& polygons, double cellUm, bool centreBox,
                     LayoutRaster& raster, std::string& message) {
  double minX = INFINITY, minY = INFINITY, maxX = -INFINITY, maxY = -INFINITY;
  for (const LayoutPolygon& polygon : polygons) {
    for (const LayoutPoint& p : polygon) {
      if (!std::isfinite(p.x) || !std::isfinite(p.y)) {
        message = "The layout has a point beyond every number.";
        return false;
      }
      minX = std::min(minX, p.x);
      maxX = std::max(maxX, p.x);
      minY = std::min(minY, p.y);
      maxY = std::max(maxY, p.y);
    }
  }
  if (!(cellUm > 0)) {
    message = "The magnification is not above 0.";
    return false;
  }
  if (!(minX <= maxX && minY <= maxY)) {
    message = "The layer holds no shapes.";
    return false;
  }
  const double shiftX = centreBox ? -(minX + maxX) / 2 : 0;
  const double shiftY = centreBox ? -(minY + maxY) / 2 : 0;
  // Cells ix0 .. ix1 - 1 and iy0 .. iy1 - 1 of the reference grid: cell i spans
  // [i, i + 1) x cellUm.
  const double fx0 = std::floor((minX + shiftX) / cellUm),
               fx1 = std::ceil((maxX + shiftX) / cellUm);
  const double fy0 = std::floor((minY + shiftY) / cellUm),
               fy1 = std::ceil((maxY + shiftY) / cellUm);
  const double width = std::max(fx1 - fx0, 1.0), height = std::max(fy1 - fy0, 1.0);
  constexpr double kFarthestCell = 1e12;
  if (std::max({std::abs(fx0), std::abs(fx1), std::abs(fy0), std::abs(fy1)}) > kFarthestCell) {
    message = "The layout lies too far from its origin.";
    return false;
  }
  if (!(width * height <= kLayoutCellBudget)) {
    char text[160];
    std::snprintf(text, sizeof text,
                  "The layout is too large: %.0f x %.0f cells of %g um (at most %.0f million).",
                  width, height, cellUm, kLayoutCellBudget / 1e6);
    message = text;
    return false;
  }
  const auto ix0 = static_cast<int64_t>(fx0), iy0 = static_cast<int64_t>(fy0);
  const int w = static_cast<int>(width), h = static_cast<int>(height);
  std::vector<uint8_t> dark(static_cast<size_t>(w) * static_cast<size_t>(h), 0);
  bool any = false;
  std::vector<Crossing> crossings;
  for (const LayoutPolygon& polygon : polygons) {
    crossings.clear();
    for (size_t i = 0; i < polygon.size(); ++i) {
      const LayoutPoint& a = polygon[i];
      const LayoutPoint& b = polygon[(i + 1) % polygon.size()];
      if (a.y == b.y) continue;
      const double ay = (a.y + shiftY) / cellUm - 0.5, by = (b.y + shiftY) / cellUm - 0.5;
      // Rows whose centre line y (in cells, less a half) lies in [low, high).
      const double rows0 = static_cast<double>(iy0), rows1 = rows0 + h;
      const auto first =
          static_cast<int64_t>(std::clamp(std::ceil(std::min(ay, by)), rows0, rows1));
      const auto end = static_cast<int64_t>(std::clamp(std::ceil(std::max(ay, by)), rows0, rows1));
      const int winding = b.y > a.y ? 1 : -1;
      for (int64_t row = first; row < end; ++row) {
        const double t = (static_cast<double>(row) - ay) / (by - ay);
        crossings.push_back({row, ((a.x + shiftX) + t * (b.x - a.x)) / cellUm - 0.5, winding});
      }
    }
    std::sort(crossings.begin(), crossings.end());
    int count = 0;
    for (size_t i = 0; i + 1 < crossings.size(); ++i) {
      count += crossings[i].winding;
      if (crossings[i + 1].row != crossings[i].row) {
        count = 0;
        continue;
      }
      if (count == 0) continue;
      // Cells whose centre (ix, less the half taken above) lies in [x, next x).
      const double cols0 = static_cast<double>(ix0), cols1 = cols0 + w;
      const auto from = static_cast<int64_t>(std::clamp(std::ceil(crossings[i].x), cols0, cols1));
      const auto to = static_cast<int64_t>(std::clamp(std::ceil(crossings[i + 1].x), cols0, cols1));
      const size_t rowStart =
          static_cast<size_t>(iy0 + h - 1 - crossings[i].row) * static_cast<size_t>(w);
      for (int64_t ix = from; ix < to; ++ix) {
        dark[rowStart + static_cast<size_t>(ix - ix0)] = 1;
        any = true;
      }
    }
  }
  if (!any) {
    message = "The layer's shapes cover no cell at this magnification.";
    return false;
  }
  raster.widthCells = w;
  raster.heightCells = h;
  raster.cellUm = cellUm;
  raster.centreXUm = (static_cast<double>(ix0) + width / 2) * cellUm;
  raster.centreYUm = (static_cast<double>(iy0) + height / 2) * cellUm;
  raster.dark = std::move(dark);
  return true;
}
