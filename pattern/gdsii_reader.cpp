// The GDSII stream reader: see gdsii_reader.h. A stream is a sequence of records, each a
// 2-byte big-endian length (header included), a record type and a data type byte.
#include "pattern/gdsii_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>
#include <set>
#include <utility>

namespace {

enum Record : uint8_t {
  kHeader = 0x00,
  kBgnLib = 0x01,
  kUnits = 0x03,
  kEndLib = 0x04,
  kBgnStr = 0x05,
  kStrName = 0x06,
  kEndStr = 0x07,
  kBoundary = 0x08,
  kPath = 0x09,
  kSref = 0x0A,
  kAref = 0x0B,
  kText = 0x0C,
  kLayer = 0x0D,
  kDatatype = 0x0E,
  kWidth = 0x0F,
  kXy = 0x10,
  kEndEl = 0x11,
  kSname = 0x12,
  kColRow = 0x13,
  kNode = 0x15,
  kStrans = 0x1A,
  kMag = 0x1B,
  kAngle = 0x1C,
  kPathType = 0x21,
  kBox = 0x2D,
  kBoxType = 0x2E,
  kBgnExtn = 0x30,
  kEndExtn = 0x31,
  kLastKnown = 0x3B,  // LIBSECUR, the last type of the stream format
};

std::string at(const char* what, size_t offset) {
  char text[160];
  std::snprintf(text, sizeof text, "%s at byte %zu.", what, offset);
  return text;
}

int16_t int16At(const uint8_t* p) { return static_cast<int16_t>((p[0] << 8) | p[1]); }
int32_t int32At(const uint8_t* p) {
  return static_cast<int32_t>((static_cast<uint32_t>(p[0]) << 24) |
                              (static_cast<uint32_t>(p[1]) << 16) |
                              (static_cast<uint32_t>(p[2]) << 8) | p[3]);
}
// The 8-byte real: sign, 7-bit exponent of 16 biased by 64, 56-bit fraction.
double real8At(const uint8_t* p) {
  uint64_t fraction = 0;
  for (int i = 1; i < 8; ++i) fraction = (fraction << 8) | p[i];
  const double value = std::ldexp(static_cast<double>(fraction), 4 * ((p[0] & 0x7F) - 64) - 56);
  return (p[0] & 0x80) != 0 ? -value : value;
}

struct Reader {
  const uint8_t* data;
  size_t size;
  size_t offset = 0;  // of the current record
  uint8_t type = 0;
  const uint8_t* body = nullptr;
  size_t length = 0;  // of the body

  // The next record; false with the message when the file ends inside one.
  bool next(std::string& error) {
    if (size - offset < 4) {
      error = at("The file ends before its ENDLIB record", offset);
      return false;
    }
    const size_t total = (static_cast<size_t>(data[offset]) << 8) | data[offset + 1];
    if (total < 4 || total % 2 != 0) {
      error = at("A record has an impossible length", offset);
      return false;
    }
    if (total > size - offset) {
      error = at("The file ends inside a record", offset);
      return false;
    }
    type = data[offset + 2];
    if (type > kLastKnown) {
      char text[64];
      std::snprintf(text, sizeof text, "Unknown record type 0x%02X", type);
      error = at(text, offset);
      return false;
    }
    body = data + offset + 4;
    length = total - 4;
    return true;
  }
  void advance() { offset += length + 4; }
  bool need(size_t bytes, std::string& error) const {
    if (length >= bytes) return true;
    error = at("A record is too short for its values", offset);
    return false;
  }
  std::string text() const {
    std::string s(reinterpret_cast<const char*>(body), length);
    while (!s.empty() && s.back() == '\0') s.pop_back();
    return s;
  }
};

std::string layerKey(int layer, int datatype) {
  return std::to_string(layer) + "/" + std::to_string(datatype);
}

// The records of one element, from its first record to ENDEL.
bool readElement(Reader& r, GdsiiElement& element, std::string& error) {
  switch (r.type) {
    case kBoundary: element.kind = GdsiiElement::Kind::Boundary; break;
    case kPath: element.kind = GdsiiElement::Kind::Path; break;
    case kBox: element.kind = GdsiiElement::Kind::Box; break;
    case kSref: element.kind = GdsiiElement::Kind::Reference; break;
    default: element.kind = GdsiiElement::Kind::Array; break;
  }
  for (;;) {
    r.advance();
    if (!r.next(error)) return false;
    switch (r.type) {
      case kEndEl: return true;
      case kLayer:
        if (!r.need(2, error)) return false;
        element.layer = int16At(r.body);
        break;
      case kDatatype:
      case kBoxType:
        if (!r.need(2, error)) return false;
        element.datatype = int16At(r.body);
        break;
      case kWidth:
        if (!r.need(4, error)) return false;
        element.width = int32At(r.body);
        break;
      case kPathType:
        if (!r.need(2, error)) return false;
        element.pathType = int16At(r.body);
        break;
      case kBgnExtn:
        if (!r.need(4, error)) return false;
        element.beginExtension = int32At(r.body);
        break;
      case kEndExtn:
        if (!r.need(4, error)) return false;
        element.endExtension = int32At(r.body);
        break;
      case kXy:
        element.points.clear();
        for (size_t i = 0; i + 8 <= r.length; i += 8)
          element.points.push_back({static_cast<double>(int32At(r.body + i)),
                                    static_cast<double>(int32At(r.body + i + 4))});
        break;
      case kSname: element.cellName = r.text(); break;
      case kStrans:
        if (!r.need(2, error)) return false;
        element.reflected = (r.body[0] & 0x80) != 0;
        break;
      case kMag:
        if (!r.need(8, error)) return false;
        element.magnification = real8At(r.body);
        break;
      case kAngle:
        if (!r.need(8, error)) return false;
        element.angleDegrees = real8At(r.body);
        break;
      case kColRow:
        if (!r.need(4, error)) return false;
        element.columns = int16At(r.body);
        element.rows = int16At(r.body + 2);
        break;
      case kBgnStr:
      case kEndStr:
      case kEndLib:
      case kBoundary:
      case kPath:
      case kSref:
      case kAref:
      case kBox:
      case kText:
      case kNode: error = at("An element has no ENDEL", r.offset); return false;
      default: break;  // properties, flags, plex numbers: nothing to draw
    }
  }
}

// What an element needs to mean a shape or a placement.
bool checkElement(const GdsiiElement& e, size_t offset, std::string& error) {
  const size_t needed = e.kind == GdsiiElement::Kind::Boundary ? 3
                        : e.kind == GdsiiElement::Kind::Path   ? 1
                        : e.kind == GdsiiElement::Kind::Box    ? 4
                        : e.kind == GdsiiElement::Kind::Array  ? 3
                                                               : 1;
  if (e.points.size() < needed) {
    error = at("An element has too few XY points", offset);
    return false;
  }
  if (e.kind == GdsiiElement::Kind::Array && (e.columns < 1 || e.rows < 1)) {
    error = at("An array reference has no columns or rows", offset);
    return false;
  }
  if ((e.kind == GdsiiElement::Kind::Reference || e.kind == GdsiiElement::Kind::Array) &&
      !(e.magnification > 0)) {
    error = at("A reference has a magnification that is not above 0", offset);
    return false;
  }
  return true;
}

// An affine placement: p' = (a p.x + b p.y + x, c p.x + d p.y + y); scale is the length
// factor (for path widths).
struct Placement {
  double a = 1, b = 0, c = 0, d = 1, x = 0, y = 0, scale = 1;
  LayoutPoint apply(LayoutPoint p) const { return {a * p.x + b * p.y + x, c * p.x + d * p.y + y}; }
  // This placement after the reference's own (reflect, magnify, rotate, move to origin).
  Placement then(const GdsiiElement& e, LayoutPoint origin) const {
    const double radians = e.angleDegrees * std::numbers::pi / 180;
    const double m = e.magnification, cs = std::cos(radians) * m, sn = std::sin(radians) * m;
    const double f = e.reflected ? -1 : 1;
    // The reference's own matrix: rotation times magnification times (1, 0; 0, f).
    const double ra = cs, rb = -sn * f, rc = sn, rd = cs * f;
    Placement out;
    out.a = a * ra + b * rc;
    out.b = a * rb + b * rd;
    out.c = c * ra + d * rc;
    out.d = c * rb + d * rd;
    const LayoutPoint o = apply(origin);
    out.x = o.x;
    out.y = o.y;
    out.scale = scale * m;
    return out;
  }
};

struct Walk {
  const GdsiiLibrary& library;
  std::map<std::string, size_t> index;
  int layer = 0;
  int datatype = 0;
  double toleranceUm = 0;
  LayoutShapes& shapes;
  std::vector<int> holds;  // per structure: -1 unknown, 0 no, 1 the layer lies in it or below
  std::string error;

  // Whether structure s (or anything it refers to) holds the layer; finds loops, missing
  // cells and nesting beyond the limit on the way.
  bool holdsLayer(size_t s, std::vector<size_t>& stack) {
    if (holds[s] >= 0) return holds[s] == 1;
    if (std::find(stack.begin(), stack.end(), s) != stack.end()) {
      error =
          "The cell " + library.structures[s].name + " refers to itself through its references.";
      return false;
    }
    if (stack.size() >= static_cast<size_t>(kLayoutNestingLimit)) {
      error = "References nest deeper than " + std::to_string(kLayoutNestingLimit) + " levels.";
      return false;
    }
    stack.push_back(s);
    bool found = false;
    for (const GdsiiElement& e : library.structures[s].elements) {
      if (e.kind == GdsiiElement::Kind::Reference || e.kind == GdsiiElement::Kind::Array) {
        const auto child = index.find(e.cellName);
        if (child == index.end()) {
          error = "The cell " + library.structures[s].name + " refers to a cell \"" + e.cellName +
                  "\" the file does not hold.";
          return false;
        }
        found = holdsLayer(child->second, stack) || found;
        if (!error.empty()) return false;
      } else if (e.layer == layer && e.datatype == datatype) {
        found = true;
      }
    }
    stack.pop_back();
    holds[s] = found ? 1 : 0;
    return found;
  }

  bool add(LayoutPolygon polygon) { return shapes.add(std::move(polygon)) || spent(); }
  bool spent() {
    error = "The layout has more than " + std::to_string(shapes.pointBudget / 1'000'000) +
            " million corners on this layer.";
    return false;
  }

  bool place(size_t s, const Placement& p) {
    if (++shapes.placements > shapes.placementBudget) {
      error = "The layout places its cells more than " +
              std::to_string(shapes.placementBudget / 1'000'000) + " million times.";
      return false;
    }
    for (const GdsiiElement& e : library.structures[s].elements) {
      if (e.kind == GdsiiElement::Kind::Reference || e.kind == GdsiiElement::Kind::Array) {
        const size_t child = index.at(e.cellName);
        if (holds[child] != 1) continue;
        if (e.kind == GdsiiElement::Kind::Reference) {
          if (!place(child, p.then(e, e.points[0]))) return false;
          continue;
        }
        // The array's lattice steps are given in the parent's frame by its 2nd and 3rd points.
        const LayoutPoint o = e.points[0];
        const double cx = (e.points[1].x - o.x) / e.columns, cy = (e.points[1].y - o.y) / e.columns;
        const double rx = (e.points[2].x - o.x) / e.rows, ry = (e.points[2].y - o.y) / e.rows;
        for (int row = 0; row < e.rows; ++row) {
          for (int column = 0; column < e.columns; ++column) {
            const LayoutPoint at{o.x + column * cx + row * rx, o.y + column * cy + row * ry};
            if (!place(child, p.then(e, at))) return false;
          }
        }
        continue;
      }
      if (e.layer != layer || e.datatype != datatype) continue;
      LayoutPolygon polygon;
      for (const LayoutPoint& q : e.points) polygon.push_back(p.apply(q));
      if (e.kind == GdsiiElement::Kind::Boundary || e.kind == GdsiiElement::Kind::Box) {
        if (e.kind == GdsiiElement::Kind::Box) polygon.resize(4);
        if (polygon.size() > 3 && polygon.back().x == polygon.front().x &&
            polygon.back().y == polygon.front().y)
          polygon.pop_back();
        if (!add(std::move(polygon))) return false;
        continue;
      }
      const double unit = e.width < 0 ? library.umPerDatabaseUnit : p.scale;
      const double width = std::abs(e.width) * unit;
      const double extension = e.pathType == 2 ? width / 2 : 0;
      const double begin = e.pathType == 4 ? e.beginExtension * unit : extension;
      const double end = e.pathType == 4 ? e.endExtension * unit : extension;
      if (!appendPathOutline(polygon, width, begin, end, e.pathType == 1, toleranceUm, shapes))
        return spent();
    }
    return true;
  }
};

}  // namespace

std::string readGdsii(const uint8_t* data, size_t size, GdsiiLibrary& library) {
  library = {};
  Reader r{data, size};
  std::string error;
  if (!r.next(error)) return error;
  if (r.type != kHeader) return at("The file does not start with a GDSII HEADER record", 0);
  std::set<std::pair<int, int>> layers;
  std::set<std::string> referenced;
  GdsiiStructure* open = nullptr;
  for (;;) {
    r.advance();
    if (!r.next(error)) return error;
    switch (r.type) {
      case kEndLib: {
        if (open != nullptr) return at("A cell has no ENDSTR", r.offset);
        if (!(library.umPerDatabaseUnit > 0 && std::isfinite(library.umPerDatabaseUnit)))
          return "The file has no usable UNITS record.";
        for (const auto& [layer, datatype] : layers)
          library.layers.push_back(layerKey(layer, datatype));
        for (const GdsiiStructure& s : library.structures)
          if (referenced.count(s.name) == 0) library.topCells.push_back(s.name);
        return {};
      }
      case kUnits:
        if (!r.need(16, error)) return error;
        library.umPerDatabaseUnit = real8At(r.body + 8) * 1e6;
        break;
      case kBgnStr:
        if (open != nullptr) return at("A cell begins inside another", r.offset);
        library.structures.emplace_back();
        open = &library.structures.back();
        break;
      case kStrName:
        if (open == nullptr) return at("A cell name stands outside a cell", r.offset);
        open->name = r.text();
        break;
      case kEndStr:
        if (open == nullptr) return at("ENDSTR without a cell", r.offset);
        open = nullptr;
        break;
      case kBoundary:
      case kPath:
      case kBox:
      case kSref:
      case kAref: {
        if (open == nullptr) return at("An element stands outside a cell", r.offset);
        const size_t start = r.offset;
        GdsiiElement element;
        if (!readElement(r, element, error) || !checkElement(element, start, error)) return error;
        if (element.kind == GdsiiElement::Kind::Reference ||
            element.kind == GdsiiElement::Kind::Array)
          referenced.insert(element.cellName);
        else
          layers.insert({element.layer, element.datatype});
        open->elements.push_back(std::move(element));
        break;
      }
      case kText:
      case kNode: {
        if (open == nullptr) return at("An element stands outside a cell", r.offset);
        GdsiiElement ignored;
        if (!readElement(r, ignored, error)) return error;
        break;
      }
      case kXy:
      case kEndEl:
      case kLayer:
      case kDatatype:
      case kWidth:
      case kSname:
      case kColRow:
      case kStrans:
      case kMag:
      case kAngle:
      case kPathType:
      case kBoxType:
      case kBgnExtn:
      case kEndExtn: return at("An element's record stands outside an element", r.offset);
      default: break;  // library name, dates, fonts, reference libraries: nothing to draw
    }
  }
}

std::string gdsiiShapes(const GdsiiLibrary& library, const std::string& layer,
                        const std::string& topCell, double toleranceUm, LayoutShapes& shapes) {
  Walk walk{library, {}, 0, 0, toleranceUm, shapes, {}, {}};
  if (std::sscanf(layer.c_str(), "%d/%d", &walk.layer, &walk.datatype) != 2)
    return "The file has no layer " + layer + ".";
  for (size_t i = 0; i < library.structures.size(); ++i)
    walk.index.emplace(library.structures[i].name, i);
  const auto top = walk.index.find(topCell);
  if (top == walk.index.end()) return "The file has no cell " + topCell + ".";
  walk.holds.assign(library.structures.size(), -1);
  std::vector<size_t> stack;
  const bool holds = walk.holdsLayer(top->second, stack);
  if (!walk.error.empty()) return walk.error;
  if (!holds) return "The layer " + layer + " holds no shapes in cell " + topCell + ".";
  Placement base;
  base.a = base.d = base.scale = library.umPerDatabaseUnit;
  if (!walk.place(top->second, base)) return walk.error;
  if (shapes.polygons.empty())
    return "The layer " + layer + " holds no shapes in cell " + topCell + ".";
  return {};
}
