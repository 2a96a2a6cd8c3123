#!/usr/bin/env python3
"""Reads the program's DXF files back with ezdxf, an independent reader.

Usage: dxf_check.py OVTRACE IMAGE...

For every image, version and form of the curves: no errors and nothing to mend, as many entities as
there are outlines, the box that the header states to 1e-6, and enclosed areas that differ from the
exact ones by no more than the deviation along the outline. Coordinates are pixels. Where Inkscape is
installed, its DXF import must show as many paths, too.
"""

import json
import math
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

import ezdxf
from ezdxf import bbox

DEVIATION = 0.05  # what the program allows without being told
FORMS = {
    "R12": ["arcs", "lines"],
    "R2000": ["arcs", "lines", "spline", "quadratic"],
    "R2010": ["arcs", "lines", "spline", "quadratic"],
}
INKSCAPE_IMPORT = "/usr/share/inkscape/extensions/dxf_input.py"
OPTIONS = ["--colors", "4", "--min-path", "24"]


def trace(program, image, *options):
    command = [program, image, "-o", "-", *OPTIONS, *options]
    return subprocess.run(command, check=True, capture_output=True).stdout


def exact_outlines(program, image):
    """Start and pieces (control point or None, end) of every outline."""
    outlines = []
    for outline in json.loads(trace(program, image, "-f", "json"))["polylines"]:
        pieces = [
            (None if s[0] == "L" else (s[1], s[2]), (s[-2], s[-1])) for s in outline["segments"]
        ]
        outlines.append((tuple(outline["start"]), pieces))
    return outlines


def cross(a, b):
    return a[0] * b[1] - a[1] * b[0]


def minus(a, b):
    return (a[0] - b[0], a[1] - b[1])


def exact_area(outline):
    start, pieces = outline
    twice, length = 0.0, 0.0
    for control, end in pieces:
        twice += cross(start, end)
        if control is not None:
            twice += cross(minus(control, start), minus(end, start)) * 2 / 3
            length += math.dist(start, control) + math.dist(control, end)
        else:
            length += math.dist(start, end)
        start = end
    return twice / 2, length


def bulge_area(points):
    area = 0.0
    for (x, y, bulge), (nx, ny, _) in zip(points, points[1:] + points[:1]):
        area += (x * ny - y * nx) / 2
        if bulge:
            angle = 4 * math.atan(bulge)
            radius = math.dist((x, y), (nx, ny)) * (1 + bulge * bulge) / (4 * abs(bulge))
            area += radius * radius * (angle - math.sin(angle)) / 2
    return area


def spline_area(points):
    """Of a chain of cubic curves: the integral of x dy - y dx, halved."""
    area = 0.0
    for i in range(0, len(points) - 1, 3):
        a, b, c, d = points[i : i + 4]
        area += (
            6 * cross(a, b) + 3 * cross(a, c) + cross(a, d)
            + 3 * cross(b, c) + 3 * cross(b, d) + 6 * cross(c, d)
        ) / 20
    return area


def polyline_points(entity):
    if entity.dxftype() == "LWPOLYLINE":
        return [tuple(p) for p in entity.get_points("xyb")]
    return [(v.dxf.location.x, v.dxf.location.y, v.dxf.get("bulge", 0)) for v in entity.vertices]


def quadratic_extents(entities):
    """The box around lines and single quadratic curves; ezdxf comes only near it."""
    values = ([], [])
    for entity in entities:
        if entity.dxftype() == "LINE":
            points = [entity.dxf.start, entity.dxf.end]
        else:
            points = [entity.control_points[i] for i in range(3)]
        for axis in (0, 1):
            own = [point[axis] for point in points]
            values[axis].extend((own[0], own[-1]))
            bend = own[0] - 2 * own[1] + own[2] if len(own) == 3 else 0
            t = (own[0] - own[1]) / bend if bend else -1
            if 0 < t < 1:
                values[axis].append(own[0] + t * (2 * (own[1] - own[0]) + t * bend))
    return (min(values[0]), min(values[1])), (max(values[0]), max(values[1]))


def extents(entities, form):
    if form == "quadratic":
        return quadratic_extents(entities)
    box = bbox.extents(entities, flatten=1e-7)
    return (box.extmin.x, box.extmin.y), (box.extmax.x, box.extmax.y)


def count_inkscape_paths(file_name):
    """None when there is no Inkscape."""
    if not os.path.exists(INKSCAPE_IMPORT):
        return None
    command = [sys.executable, INKSCAPE_IMPORT, "--scalemethod=manual", "--scale=1.0", file_name]
    svg = xml.etree.ElementTree.fromstring(
        subprocess.run(command, check=True, capture_output=True).stdout
    )
    name = "{http://www.w3.org/2000/svg}"
    return len(svg.findall(f".//{name}path")) - len(svg.findall(f".//{name}defs//{name}path"))


def check(program, image, outlines, version, form, problems):
    name = f"{image} {version} {form}"
    with tempfile.NamedTemporaryFile(suffix=".dxf") as file:
        file.write(trace(program, image, "-f", "dxf", "--dxf-version", version, "--dxf-curves", form))
        file.flush()
        drawing = ezdxf.readfile(file.name)
        inkscape_paths = count_inkscape_paths(file.name)
    audit = drawing.audit()
    for entry in audit.errors + audit.fixes:
        problems.append(f"{name}: {entry.message}")
    entities = list(drawing.modelspace())
    if form == "quadratic":
        expected = sum(len(pieces) for _, pieces in outlines)
    else:
        expected = len(outlines)
    if len(entities) != expected:
        problems.append(f"{name}: {len(entities)} entities, not {expected}")
        return
    if inkscape_paths not in (None, expected):
        problems.append(f"{name}: Inkscape shows {inkscape_paths} paths, not {expected}")
    for corner, variable in zip(extents(entities, form), ("$EXTMIN", "$EXTMAX")):
        stated = drawing.header[variable]
        if math.dist(corner, stated[:2]) > 1e-6:
            problems.append(f"{name}: {variable} is {stated}, not {corner}")
    if form == "quadratic":
        return
    for entity, outline in zip(entities, outlines):
        area, length = exact_area(outline)
        if form == "spline":
            own, allowed = spline_area([tuple(p)[:2] for p in entity.control_points]), 1e-6
        else:
            own, allowed = bulge_area(polyline_points(entity)), DEVIATION * length + 1e-6
        if abs(own - area) > allowed:
            problems.append(f"{name}: an area of {own}, not {area}")


def main():
    program, *images = sys.argv[1:]
    problems = []
    for image in images:
        outlines = exact_outlines(program, image)
        for version, forms in FORMS.items():
            for form in forms:
                check(program, image, outlines, version, form, problems)
    print(f"{len(images)} images, {len(problems)} problems")
    print("\n".join(problems[:20]))
    return 1 if problems or not images else 0


if __name__ == "__main__":
    sys.exit(main())
