// The ASCII DXF reader: see dxf_reader.h. A drawing is a sequence of pairs of lines, a
// group code and its value; code 0 starts a section, a table entry or an entity.
#include "pattern/dxf_reader.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <set>

namespace {

struct Pair {
  int code = 0;
  std::string value;
  size_t line = 0;  // of the code, from 1
};

std::string onLine(const char* what, size_t line) {
  char text[160];
  std::snprintf(text, sizeof text, "%s on line %zu.", what, line);
  return text;
}

std::string trimmed(const char* from, const char* to) {
  while (from < to && (*from == ' ' || *from == '\t' || *from == '\r')) ++from;
  while (to > from && (to[-1] == ' ' || to[-1] == '\t' || to[-1] == '\r')) --to;
  return std::string(from, to);
}

std::string readPairs(const char* data, size_t size, std::vector<Pair>& pairs) {
  const char* p = data;
  const char* end = data + size;
  size_t line = 0;
  std::vector<std::string> lines;
  while (p < end) {
    const char* stop = std::find(p, end, '\n');
    lines.push_back(trimmed(p, stop));
    p = stop == end ? end : stop + 1;
  }
  for (; line + 1 < lines.size(); line += 2) {
    const std::string& code = lines[line];
    char* after = nullptr;
    errno = 0;
    const long number = std::strtol(code.c_str(), &after, 10);
    if (code.empty() || *after != '\0' || errno != 0 || number < 0 || number > 1071)
      return onLine("A group code is not a number from 0 to 1071", line + 1);
    pairs.push_back({static_cast<int>(number), lines[line + 1], line + 1});
    if (number == 0 && lines[line + 1] == "EOF") return {};
  }
  return onLine("The file ends before its EOF", lines.size());
}

bool number(const Pair& pair, double& value, std::string& error) {
  char* after = nullptr;
  value = std::strtod(pair.value.c_str(), &after);
  if (pair.value.empty() || *after != '\0' || !std::isfinite(value)) {
    error = onLine("A coordinate is not a number", pair.line + 1);
    return false;
  }
  return true;
}

double umPerUnit(long units) {
  static const double kUm[] = {1000,
                               25400,
                               304800,
                               1609344e3,
                               1000,
                               1e4,
                               1e6,
                               1e9,
                               0.0254,
                               25.4,
                               914400,
                               1e-4,
                               1e-3,
                               1,
                               1e5,
                               1e7,
                               1e8,
                               1e15,
                               1.495978707e17,
                               9.4607304725808e21,
                               3.0856775814913673e22};
  return units >= 0 && units < static_cast<long>(std::size(kUm)) ? kUm[units] : 1000;
}

// One entity: its pairs from the one after its 0 up to the next 0.
struct Entity {
  std::string type;
  size_t line = 0;
  std::vector<const Pair*> pairs;
};

// The entity's points (10/20 and friends) and the rest, read into shape.
bool readEntity(const Entity& e, DxfShape& shape, int& flags, std::string& error) {
  double value = 0;
  LayoutPoint corners[4];
  int cornersSeen = 0;
  bool mirrored = false;
  for (const Pair* pair : e.pairs) {
    const int c = pair->code;
    if (c == 8) shape.layer = pair->value;
    if (c == 70 || c == 230) {
      if (!number(*pair, value, error)) return false;
      if (c == 70) flags = static_cast<int>(std::clamp(value, -1e9, 1e9));
      if (c == 230) mirrored = value < 0;
      continue;
    }
    if (c != 10 && c != 20 && c != 11 && c != 21 && c != 12 && c != 22 && c != 13 && c != 23 &&
        c != 40 && c != 42)
      continue;
    if (!number(*pair, value, error)) return false;
    if (e.type == "SOLID" || e.type == "TRACE") {
      const int corner = c % 10;
      if (corner > 3) continue;
      (c < 20 ? corners[corner].x : corners[corner].y) = value;
      cornersSeen |= 1 << corner;
    } else if (c == 10) {
      shape.points.push_back({value, 0});
      shape.bulges.push_back(0);
    } else if (c == 20 && !shape.points.empty()) {
      shape.points.back().y = value;
    } else if (c == 42 && !shape.bulges.empty()) {
      shape.bulges.back() = value;
    } else if (c == 40) {
      shape.radius = value;
    }
  }
  if (e.type == "SOLID" || e.type == "TRACE") {
    // The corners are given in the order 1, 2, 4, 3 around; a triangle repeats its third.
    if ((cornersSeen & 8) == 0) corners[3] = corners[2];
    shape.points = {corners[0], corners[1], corners[3], corners[2]};
    shape.bulges.assign(4, 0);
  }
  if (mirrored) {
    for (LayoutPoint& p : shape.points) p.x = -p.x;
    for (double& b : shape.bulges) b = -b;
  }
  return true;
}

// The arc from a to b whose bulge is the tangent of a quarter of its angle, as points
// after a up to before b.
bool appendArc(LayoutPoint a, LayoutPoint b, double bulge, double toleranceUm, LayoutPolygon& out) {
  const double chord = std::hypot(b.x - a.x, b.y - a.y);
  if (bulge == 0 || !(chord > 0)) return true;
  const double angle = 4 * std::atan(bulge);
  const double radius = chord / (2 * std::abs(std::sin(angle / 2)));
  const double toCentre = chord / 2 / std::tan(angle / 2);
  const LayoutPoint centre{(a.x + b.x) / 2 - (b.y - a.y) / chord * toCentre,
                           (a.y + b.y) / 2 + (b.x - a.x) / chord * toCentre};
  double step = std::numbers::pi / 4;
  if (radius > toleranceUm) step = std::min(step, 2 * std::acos(1 - toleranceUm / radius));
  const int pieces = static_cast<int>(std::clamp(std::ceil(std::abs(angle) / step), 1.0, 4096.0));
  const double start = std::atan2(a.y - centre.y, a.x - centre.x);
  if (out.size() + static_cast<size_t>(pieces) > kLayoutPointBudget) return false;
  for (int i = 1; i < pieces; ++i) {
    const double t = start + angle * i / pieces;
    out.push_back({centre.x + radius * std::cos(t), centre.y + radius * std::sin(t)});
  }
  return true;
}

}  // namespace

std::string readDxf(const char* data, size_t size, DxfDrawing& drawing) {
  drawing = {};
  std::vector<Pair> pairs;
  std::string error = readPairs(data, size, pairs);
  if (!error.empty()) return error;
  std::set<std::string> layers;
  std::string section;
  const Pair* open = nullptr;  // the POLYLINE whose vertices are being read
  DxfShape polyline;
  int polylineFlags = 0;
  for (size_t i = 0; i < pairs.size(); ++i) {
    const Pair& pair = pairs[i];
    if (pair.code == 9 && pair.value == "$INSUNITS" && section == "HEADER" &&
        i + 1 < pairs.size()) {
      double units = 0;
      if (!number(pairs[i + 1], units, error)) return error;
      drawing.umPerUnit = umPerUnit(static_cast<long>(std::clamp(units, -1.0, 1e6)));
      continue;
    }
    if (pair.code != 0) continue;
    if (pair.value == "SECTION") {
      if (i + 1 >= pairs.size() || pairs[i + 1].code != 2)
        return onLine("A SECTION has no name", pair.line);
      section = pairs[i + 1].value;
      continue;
    }
    if (pair.value == "ENDSEC") {
      if (open != nullptr) return onLine("A POLYLINE has no SEQEND", open->line);
      section.clear();
      continue;
    }
    Entity entity{pair.value, pair.line, {}};
    for (size_t j = i + 1; j < pairs.size() && pairs[j].code != 0; ++j)
      entity.pairs.push_back(&pairs[j]);
    if (section == "TABLES" && entity.type == "LAYER") {
      for (const Pair* p : entity.pairs)
        if (p->code == 2) layers.insert(p->value);
      continue;
    }
    if (section != "ENTITIES") continue;
    if (open != nullptr) {
      if (entity.type == "VERTEX") {
        DxfShape vertex;
        int vertexFlags = 0;
        if (!readEntity(entity, vertex, vertexFlags, error)) return error;
        // Control points of spline fits are not on the curve.
        if ((vertexFlags & 16) == 0 && !vertex.points.empty()) {
          polyline.points.push_back(vertex.points.front());
          polyline.bulges.push_back(vertex.bulges.front());
        }
        continue;
      }
      if (entity.type != "SEQEND")
        return onLine("A POLYLINE's vertices end without SEQEND", pair.line);
      // Closed polylines only; meshes (16) and polyface meshes (64) have no outline.
      if ((polylineFlags & 1) != 0 && (polylineFlags & (16 | 64)) == 0 &&
          polyline.points.size() >= 3)
        drawing.shapes.push_back(std::move(polyline));
      open = nullptr;
      continue;
    }
    DxfShape shape;
    int flags = 0;
    if (entity.type == "POLYLINE") {
      polyline = {};
      polylineFlags = 0;
      if (!readEntity(entity, polyline, polylineFlags, error)) return error;
      polyline.points.clear();  // a POLYLINE's own 10/20 is only its elevation
      polyline.bulges.clear();
      open = &pair;
      layers.insert(polyline.layer);
    } else if (entity.type == "LWPOLYLINE") {
      if (!readEntity(entity, shape, flags, error)) return error;
      layers.insert(shape.layer);
      if ((flags & 1) != 0 && shape.points.size() >= 3) drawing.shapes.push_back(std::move(shape));
    } else if (entity.type == "CIRCLE") {
      if (!readEntity(entity, shape, flags, error)) return error;
      if (shape.radius < 0) return onLine("A CIRCLE has a negative radius", pair.line);
      if (shape.points.empty()) return onLine("A CIRCLE has no centre", pair.line);
      shape.circle = true;
      layers.insert(shape.layer);
      if (shape.radius > 0) drawing.shapes.push_back(std::move(shape));
    } else if (entity.type == "SOLID" || entity.type == "TRACE") {
      if (!readEntity(entity, shape, flags, error)) return error;
      layers.insert(shape.layer);
      drawing.shapes.push_back(std::move(shape));
    }
  }
  if (open != nullptr) return onLine("A POLYLINE has no SEQEND", open->line);
  drawing.layers.assign(layers.begin(), layers.end());
  return {};
}

std::string dxfShapes(const DxfDrawing& drawing, const std::string& layer, double toleranceUm,
                      LayoutShapes& shapes) {
  const double k = drawing.umPerUnit;
  const double toleranceUnits = toleranceUm / k;
  for (const DxfShape& shape : drawing.shapes) {
    if (shape.layer != layer) continue;
    LayoutPolygon polygon;
    bool spent = false;
    if (shape.circle) {
      polygon = circlePolygon(shape.points[0].x, shape.points[0].y, shape.radius, toleranceUnits);
    } else {
      for (size_t i = 0; i < shape.points.size() && !spent; ++i) {
        polygon.push_back(shape.points[i]);
        spent = !appendArc(shape.points[i], shape.points[(i + 1) % shape.points.size()],
                           shape.bulges[i], toleranceUnits, polygon);
      }
    }
    for (LayoutPoint& p : polygon) p = {p.x * k, p.y * k};
    if (spent || !shapes.add(std::move(polygon)))
      return "The layout has more than " + std::to_string(shapes.pointBudget / 1'000'000) +
             " million corners on this layer.";
  }
  if (shapes.polygons.empty()) return "The layer " + layer + " holds no shapes.";
  return {};
}
