#!/usr/bin/env python3
"""Makes VedraIcons.ttf from the line drawings in outlines/ and the code points of VedraIcons.js.

Run by hand after a change to either (Debian packages python3-fonttools, python3-shapely):
    ./make-icon-font.py
Each drawing stands on a grid of 24 by 24 and is made of paths, circles and rectangles, stroked or
filled; strokes become outlines, and what overlaps is united.
"""

import re
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.basePen import BasePen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.svgLib.path import parse_path
from shapely.geometry import LineString, MultiPolygon, Point, Polygon, box
from shapely.ops import unary_union

FOLDER = Path(__file__).resolve().parent
UNITS = 1200  # 50 for each unit of the grid
GRID = 24
DESCENT = 200
TOLERANCE = 0.004  # of the grid
FAMILY = "VedraIcons"


class Flattener(BasePen):
    """Collects the lines that a path is close to."""

    STEPS = 24

    def __init__(self):
        super().__init__(None)
        self.lines = []

    def _moveTo(self, point):
        self.lines.append([point])

    def _lineTo(self, point):
        self.lines[-1].append(point)

    def _curveToOne(self, a, b, end):
        start = self._getCurrentPoint()
        for step in range(1, self.STEPS + 1):
            t = step / self.STEPS
            u = 1 - t
            self.lines[-1].append(tuple(
                u ** 3 * p + 3 * u * u * t * q + 3 * u * t * t * r + t ** 3 * s
                for p, q, r, s in zip(start, a, b, end)))

    def _closePath(self):
        self.lines[-1].append(self.lines[-1][0])


def lines_of(element):
    kind = element.tag.split("}")[-1]
    number = lambda name: float(element.get(name, "0"))
    if kind == "path":
        pen = Flattener()
        parse_path(element.get("d"), pen)
        return pen.lines
    if kind == "circle":
        ring = Point(number("cx"), number("cy")).buffer(number("r"), 32).exterior
        return [list(ring.coords)]
    if kind == "rect":
        radius = number("rx")
        core = box(number("x") + radius, number("y") + radius,
                   number("x") + number("width") - radius, number("y") + number("height") - radius)
        return [list(core.buffer(radius, 16).exterior.coords)]
    raise ValueError(f"{kind} is not drawn here")


def shape_of(path):
    root = ElementTree.parse(path).getroot()
    parts = []
    for element in root:
        lines = lines_of(element)
        if element.get("stroke", root.get("stroke")) != "none":
            width = float(element.get("stroke-width", root.get("stroke-width")))
            parts += [LineString(line).buffer(width / 2, 16) for line in lines]
        if element.get("fill", root.get("fill")) != "none":
            parts += [Polygon(line).buffer(0) for line in lines]
    return unary_union(parts).simplify(TOLERANCE)


def glyph_of(shape):
    pen = TTGlyphPen(None)
    scale = UNITS / GRID
    place = lambda x, y: (round(x * scale), round(UNITS - y * scale) - DESCENT)
    polygons = shape.geoms if isinstance(shape, MultiPolygon) else [shape]
    for polygon in polygons:
        # In a TrueType outline the outside runs clockwise, holes the other way round.
        for ring, clockwise in [(polygon.exterior, True)] + [(r, False) for r in polygon.interiors]:
            points = [place(x, y) for x, y in ring.coords[:-1]]
            area = sum(x1 * y2 - x2 * y1
                       for (x1, y1), (x2, y2) in zip(points, points[1:] + points[:1]))
            if (area < 0) != clockwise:
                points.reverse()
            pen.moveTo(points[0])
            for point in points[1:]:
                pen.lineTo(point)
            pen.closePath()
    return pen.glyph()


def main():
    script = (FOLDER / "../../js/VedraIcons.js").read_text()
    points = {int(code, 16): name
              for name, code in re.findall(r'var (\w+) = "\\u([0-9a-f]{4})"', script)}
    glyphs = {".notdef": TTGlyphPen(None).glyph()}
    for name in points.values():
        glyphs[name] = glyph_of(shape_of(FOLDER / "outlines" / f"{name}.svg"))

    font = FontBuilder(UNITS, isTTF=True)
    font.updateHead(created=0, modified=0)  # the same drawings give the same bytes
    font.setupGlyphOrder(list(glyphs))
    font.setupCharacterMap(points)
    font.setupGlyf(glyphs)
    table = font.font["glyf"]
    font.setupHorizontalMetrics({name: (UNITS, getattr(table[name], "xMin", 0)) for name in glyphs})
    font.setupHorizontalHeader(ascent=UNITS - DESCENT, descent=-DESCENT)
    font.setupNameTable({"familyName": FAMILY, "styleName": "Regular", "fullName": FAMILY,
                         "psName": FAMILY, "uniqueFontIdentifier": FAMILY, "version": "1.0"})
    font.setupOS2(sTypoAscender=UNITS - DESCENT, sTypoDescender=-DESCENT,
                  usWinAscent=UNITS - DESCENT, usWinDescent=DESCENT)
    font.setupPost()
    font.font.recalcTimestamp = False
    font.save(FOLDER / f"{FAMILY}.ttf")


if __name__ == "__main__":
    main()
