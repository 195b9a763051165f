#!/usr/bin/env python3
"""The layout import against layouts written by other programs: gdspy writes GDSII and
ezdxf writes DXF at test time, their own geometry (gdspy's polygons, ezdxf's flattened
paths) is rasterized here with a point-in-polygon test at each cell centre, and the
import's raster (telvane-layout-raster) must agree on at least 99.5 % of the cells, every
disagreement within a cell of a shape's edge. Debian's python3-gdspy and python3-ezdxf
install for /usr/bin/python3, which runs this file's checks."""
import os
import subprocess
import sys
import tempfile

if sys.executable != "/usr/bin/python3" and os.path.exists("/usr/bin/python3"):
    os.execv("/usr/bin/python3", ["/usr/bin/python3", *sys.argv])

import ezdxf  # noqa: E402
import ezdxf.path  # noqa: E402
import gdspy  # noqa: E402
import numpy  # noqa: E402

TOOL = os.path.join(os.environ.get("TELVANE_BIN", "build/bin"), "telvane-layout-raster")


def run_import(path, layer, top, cell, centre=False):
    args = [TOOL, path, layer, top, str(cell)] + (["centre"] if centre else [])
    out = subprocess.run(args, capture_output=True, check=True).stdout
    header, _, cells = out.partition(b"\n")
    w, h, cell_um, cx, cy = header.split()
    w, h = int(w), int(h)
    dark = numpy.frombuffer(cells, dtype=numpy.uint8).reshape(h, w)
    return dark, float(cx) - w * float(cell_um) / 2, float(cy) + h * float(cell_um) / 2


def inside(polygons, xs, ys):
    """Non-zero winding of each polygon at the points, united over the polygons."""
    result = numpy.zeros(xs.shape, dtype=bool)
    for poly in polygons:
        poly = numpy.asarray(poly, dtype=float)[:, :2]
        winding = numpy.zeros(xs.shape, dtype=int)
        for (ax, ay), (bx, by) in zip(poly, numpy.roll(poly, -1, axis=0)):
            if ay == by:
                continue
            up = (ay <= ys) & (ys < by)
            down = (by <= ys) & (ys < ay)
            x_at = ax + (ys - ay) * (bx - ax) / (by - ay)
            winding += numpy.where(up & (xs < x_at), 1, 0) - numpy.where(down & (xs < x_at), 1, 0)
        result |= winding != 0
    return result


def edge_distance(polygons, x, y):
    best = numpy.inf
    for poly in polygons:
        poly = numpy.asarray(poly, dtype=float)[:, :2]
        a, b = poly, numpy.roll(poly, -1, axis=0)
        d = b - a
        t = numpy.clip(((x - a[:, 0]) * d[:, 0] + (y - a[:, 1]) * d[:, 1]) / numpy.maximum((d**2).sum(1), 1e-30), 0, 1)
        best = min(best, numpy.hypot(a[:, 0] + t * d[:, 0] - x, a[:, 1] + t * d[:, 1] - y).min())
    return best


def compare(name, polygons, dark, left, top, cell):
    """Our raster, padded by two cells, against the reference at the same cell centres."""
    h, w = dark.shape
    ours = numpy.pad(dark, 2).astype(bool)
    cols = left + (numpy.arange(w + 4) - 2 + 0.5) * cell
    rows = top - (numpy.arange(h + 4) - 2 + 0.5) * cell
    xs, ys = numpy.meshgrid(cols, rows)
    theirs = inside(polygons, xs, ys)
    differ = numpy.argwhere(ours != theirs)
    shapes = theirs | ours
    agree = 100.0 * (1 - len(differ) / max(shapes.sum(), 1))
    print(f"{name}: cell {cell} um, {shapes.sum()} cells dark in either, {len(differ)} differ, {agree:.3f} % agree")
    assert agree >= 99.5, name
    for r, c in differ:
        assert edge_distance(polygons, xs[r, c], ys[r, c]) <= cell, (name, xs[r, c], ys[r, c])
    return agree


def gdsii_layout(folder):
    lib = gdspy.GdsLibrary(unit=1e-6, precision=1e-9)
    unit = gdspy.Cell("UNIT", exclude_from_current=True)
    lib.add(unit)
    unit.add(gdspy.Polygon([(0, 0), (40, 0), (40, 10), (10, 10), (10, 30), (0, 30)], layer=1))
    unit.add(gdspy.FlexPath([(0, -20), (30, -20), (30, -50)], 6, ends="round", layer=1, gdsii_path=True))
    top = gdspy.Cell("TOP", exclude_from_current=True)
    lib.add(top)
    top.add(gdspy.Rectangle((-200, -200), (-150, -150), layer=1))
    top.add(gdspy.Round((120, -160), 37, layer=1, tolerance=0.01))
    for i, ends in enumerate(["flush", "round", "extended", (4, 9)]):
        top.add(gdspy.FlexPath([(-250, 40 * i), (-180, 40 * i + 15), (-120, 40 * i)], 8 + 2 * i,
                               ends=ends, layer=1, gdsii_path=True))
    top.add(gdspy.CellReference(unit, (60, 60), rotation=30, magnification=1.5, x_reflection=True))
    top.add(gdspy.CellArray(unit, 3, 2, (70, 90), (-60, 150), rotation=90, x_reflection=True))
    top.add(gdspy.CellArray(unit, 2, 2, (55, 80), (140, 40), rotation=-45, magnification=0.8))
    top.add(gdspy.Rectangle((0.3, -20.3), (50.3, 29.7), layer=7))
    path = os.path.join(folder, "test.gds")
    lib.write_gds(path)
    read = gdspy.GdsLibrary(infile=path)
    return path, read.cell_dict["TOP"].get_polygons(by_spec=True)[(1, 0)]


def dxf_layout(folder):
    doc = ezdxf.new()
    doc.units = 13  # micrometres
    msp = doc.modelspace()
    a = {"layer": "METAL"}
    msp.add_lwpolyline([(0, 0, 0), (200, 0, 0.5), (200, 100, 0), (0, 120, -0.3)], format="xyb", close=True, dxfattribs=a)
    msp.add_polyline2d([(-300, -300), (-100, -280), (-200, -100)], close=True, dxfattribs=a)
    msp.add_circle((150, -200), 70, dxfattribs=a)
    msp.add_solid([(-300, 100), (-150, 100), (-300, 250), (-120, 300)], dxfattribs=a)
    msp.add_solid([(300, 100), (400, 100), (350, 250)], dxfattribs=a)
    msp.add_circle((0, 0), 500, dxfattribs={"layer": "OTHER"})
    path = os.path.join(folder, "test.dxf")
    doc.saveas(path)
    read = ezdxf.readfile(path)
    polygons = [[(p.x, p.y) for p in ezdxf.path.make_path(e).flattening(0.01)]
                for e in read.modelspace().query('*[layer=="METAL"]')]
    return path, polygons


def main():
    with tempfile.TemporaryDirectory() as folder:
        gds, gds_polygons = gdsii_layout(folder)
        listing = subprocess.run([TOOL, gds], capture_output=True, check=True, text=True).stdout
        assert listing.split("\n") == ["layer 1/0", "layer 7/0", "top TOP", ""], listing
        dxf, dxf_polygons = dxf_layout(folder)
        listing = subprocess.run([TOOL, dxf], capture_output=True, check=True, text=True).stdout
        assert "layer METAL" in listing and "layer OTHER" in listing, listing
        for cell in (1, 3):
            compare("GDSII", gds_polygons, *run_import(gds, "1/0", "TOP", cell), cell)
            compare("DXF", dxf_polygons, *run_import(dxf, "METAL", "", cell), cell)
        centred = run_import(gds, "1/0", "TOP", 2, centre=True)
        box = numpy.concatenate(gds_polygons)
        shift = (box.min(0) + box.max(0)) / 2
        compare("GDSII centred", [p - shift for p in gds_polygons], *centred, 2)
        # A 50 um square, off the cell grid, is 50 um wide within one cell at every magnification.
        for cell in range(1, 11):
            dark, _, _ = run_import(gds, "7/0", "TOP", cell)
            assert abs(dark.sum(1).max() * cell - 50) <= cell and abs(dark.sum(0).max() * cell - 50) <= cell
    return 0


if __name__ == "__main__":
    sys.exit(main())
