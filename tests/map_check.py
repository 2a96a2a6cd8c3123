#!/usr/bin/env python3
"""Reads files of regions and centre lines back with independent readers.

Usage: map_check.py OVTRACE IMAGE...

GeoJSON: every ring is closed, and each of its edges is one of the neighbour as well, the other way
round, or lies on the image's rim or beside what is transparent; areas sum to the image's when
nothing is transparent. DXF in every version: no errors and nothing to mend by ezdxf; shared edges are
written once; hatches have the areas of the regions; holes are marked.
"""

import json
import subprocess
import sys
import tempfile
from collections import Counter

import ezdxf
from ezdxf import path as paths


def trace(program, image, *options):
    command = [program, image, "-o", "-", *options]
    result = subprocess.run(command, capture_output=True)
    if result.returncode not in (0, 3):
        raise RuntimeError(result.stderr.decode())
    return result.stdout


def area(ring):
    return sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(ring, ring[1:])) / 2


def check_coverage(program, image, problems):
    drawing = json.loads(trace(program, image, "--method", "regions", "-f", "json"))
    width, height = drawing["width"], drawing["height"]
    features = json.loads(trace(program, image, "--method", "regions", "-f", "geojson"))["features"]
    edges, total = Counter(), 0.0
    for feature in features:
        polygons = feature["geometry"]["coordinates"]
        if feature["geometry"]["type"] == "Polygon":
            polygons = [polygons]
        rings = [(number, [tuple(p) for p in ring]) for polygon in polygons
                 for number, ring in enumerate(polygon)]
        for number, ring in rings:
            if ring[0] != ring[-1] or len(ring) < 4:
                problems.append(f"{image}: a ring of {len(ring)} corners, or not closed")
            if (area(ring) > 0) != (number == 0):
                problems.append(f"{image}: ring {number} runs the wrong way round")
            total += area(ring)
            edges.update(zip(ring, ring[1:]))
    uses = Counter(abs(use) for s in drawing["shapes"] for ring in s["rings"] for use in ring)
    whole = abs(total - width * height) < 1e-6 * width * height
    for (a, b), count in edges.items():
        on_rim = any(a[i] == b[i] and a[i] in (0, side) for i, side in ((0, width), (1, height)))
        if count != 1 or (whole and not on_rim and edges[(b, a)] != 1):
            problems.append(f"{image}: the edge {a} {b} has no other side")
            break
    if max(uses.values(), default=0) > 2:
        problems.append(f"{image}: a boundary of more than two regions")
    return drawing, len(edges), total


def read_dxf(program, image, problems, *options):
    with tempfile.NamedTemporaryFile(suffix=".dxf") as file:
        file.write(trace(program, image, "-f", "dxf", *options))
        file.flush()
        document = ezdxf.readfile(file.name)
    audit = document.audit()
    for entry in audit.errors + audit.fixes:
        problems.append(f"{image} {' '.join(options)}: {entry.message}")
    return list(document.modelspace())


def hatch_area(hatch):
    rings = []
    for path in paths.from_hatch(hatch):
        ring = [(p.x, p.y) for p in path.flattening(0.01)]
        rings.append(abs(area(ring + ring[:1])))
    return 2 * max(rings) - sum(rings)


def check_regions(program, image, drawing, total, problems):
    rings = sum(len(shape["rings"]) for shape in drawing["shapes"])
    holes = rings - len(drawing["shapes"])
    used = {abs(use) for s in drawing["shapes"] for ring in s["rings"] for use in ring}
    for version in ("R12", "R2000", "R2010"):
        method = ("--method", "regions", "--dxf-version", version)
        entities = read_dxf(program, image, problems, *method)
        marked = sum(1 for e in entities if e.has_xdata("OVTRACE"))
        if (len(entities), marked) != (rings, holes):
            problems.append(f"{image} {version}: {len(entities)} rings, {marked} of them holes")
        entities = read_dxf(program, image, problems, *method, "--dxf-edges", "shared")
        if len(entities) != len(used):
            problems.append(f"{image} {version}: {len(entities)} edges, not {len(used)}")
        if version == "R12":
            continue
        hatches = read_dxf(program, image, problems, *method, "--dxf-hatch")
        filled = sum(hatch_area(h) for h in hatches if h.dxftype() == "HATCH")
        if abs(filled - total) > 0.002 * abs(total) + 1:
            problems.append(f"{image} {version}: hatches fill {filled}, not {total}")


def check_strokes(program, image, problems):
    drawing = json.loads(trace(program, image, "--method", "centerlines", "-f", "json"))
    rings = sum(len(shape["rings"]) for shape in drawing["shapes"])
    for version in ("R12", "R2000", "R2010"):
        entities = read_dxf(
            program, image, problems, "--method", "centerlines", "--dxf-version", version
        )
        if len(entities) != len(drawing["strokes"]) + rings:
            problems.append(f"{image} {version}: {len(entities)} entities of centre lines")
    return len(drawing["strokes"])


def main():
    program, *images = sys.argv[1:]
    problems = []
    for image in images:
        drawing, edges, total = check_coverage(program, image, problems)
        check_regions(program, image, drawing, total, problems)
        strokes = check_strokes(program, image, problems)
        print(f"{image}: {len(drawing['shapes'])} regions, {edges} edges, {strokes} strokes")
    print(f"{len(images)} images, {len(problems)} problems")
    print("\n".join(problems[:20]))
    return 1 if problems or not images else 0


if __name__ == "__main__":
    sys.exit(main())
