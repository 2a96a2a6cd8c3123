#!/usr/bin/env python3
"""Checks that maps of regions are valid coverages, as GEOS sees their GeoJSON files.

Usage: coverage_check.py OVTRACE [--count N] [--seed S] [IMAGE...] [-- OPTION...]

Beside the images, N small ones are drawn: noise, blots, blots drawn smoothly, mixes of colours, shapes, with
and without opacity, of 1 to 40 pixels a side, a few of 200. Every polygon has to be valid; every edge
has to be one of the neighbour as well, the other way round, or to lie on the image's rim or beside
what is transparent; edges meet in common corners alone; areas sum to that of all of them together,
and to the image's where nothing is transparent.
"""

import argparse
import collections
import json
import os
import subprocess
import sys
import tempfile

import numpy
from PIL import Image
from shapely.geometry import MultiLineString, shape
from shapely.ops import unary_union
from shapely.validation import explain_validity

BATCH = 100


def blots(draw, width, height, count):
    """Numbers below count in smooth patches."""
    field = draw.random((height, width))
    for _ in range(int(draw.integers(1, 4))):
        wide = numpy.pad(field, 1, mode="edge")
        field = sum(wide[i:i + height, j:j + width] for i in range(3) for j in range(3)) / 9
    return numpy.searchsorted(numpy.quantile(field, numpy.linspace(0, 1, count + 1)[1:-1]), field)


def shapes(draw, width, height, count):
    """Numbers below count in discs, rectangles and stripes."""
    found = numpy.zeros((height, width), int)
    y, x = numpy.mgrid[0:height, 0:width]
    for _ in range(int(draw.integers(1, 9))):
        left, top = draw.random() * width, draw.random() * height
        size = draw.random() * min(width, height) / 2 + 1
        kind = int(draw.integers(0, 3))
        if kind == 0:
            inside = (x - left) ** 2 + (y - top) ** 2 < size * size
        elif kind == 1:
            inside = (abs(x - left) < size) & (abs(y - top) < draw.random() * size + 1)
        else:
            across = draw.normal(size=2)
            far = ((x - left) * across[0] + (y - top) * across[1]) / numpy.hypot(*across)
            inside = abs(far) < draw.random() * 4 + 1
        found[inside] = int(draw.integers(0, count))
    return found


def reduced(colors, by):
    """Each square of pixels as one, its colour the mean by opacity."""
    height, width = (side // by for side in colors.shape[:2])
    opacity = colors[..., 3:] / 255.0
    weighted = numpy.concatenate([colors[..., :3] * opacity, colors[..., 3:]], 2)
    mean = weighted.reshape(height, by, width, by, 4).mean((1, 3))
    plain = mean[..., :3] / numpy.maximum(mean[..., 3:] / 255.0, 1e-9)
    return numpy.concatenate([plain, mean[..., 3:]], 2)


def drawn(seed):
    """An image of four channels."""
    draw = numpy.random.default_rng(seed)
    limits = (100, 201) if draw.random() < 0.03 else (1, 41)
    width, height = (int(side) for side in draw.integers(*limits, 2))
    count = int(draw.integers(2, 7))
    colors = draw.integers(0, 256, (count, 4))
    colors[:, 3] = draw.choice([0, 0, 128, 255, 255, 255], count) if draw.random() < 0.25 else 255
    kind = int(draw.integers(0, 6))
    if kind == 0:
        image = colors[draw.integers(0, count, (height, width))]
    elif kind == 1:
        image = colors[blots(draw, width, height, count)]
    elif kind == 2:
        by = int(draw.integers(2, 5))
        image = reduced(colors[blots(draw, width * by, height * by, count)], by)
    elif kind == 3:
        noise = draw.integers(0, count, (height, width))
        noise[draw.random((height, width)) < draw.random() * 0.9] = 0
        image = colors[noise]
    elif kind == 4:
        share = draw.random((height, width, 1))
        plain = colors[blots(draw, width, height, count)]
        mixed = plain * share + colors[draw.integers(0, count, (height, width))] * (1 - share)
        image = numpy.where(draw.random((height, width, 1)) < draw.random(), mixed, plain)
    else:
        image = reduced(colors[shapes(draw, width * 4, height * 4, count)], 4)
    return numpy.clip(numpy.round(image), 0, 255).astype(numpy.uint8)


def edges_of(areas):
    edges = collections.Counter()
    for area in areas:
        for polygon in getattr(area, "geoms", [area]):
            for ring in [polygon.exterior, *polygon.interiors]:
                corners = list(ring.coords)
                edges.update((a, b) for a, b in zip(corners, corners[1:]) if a != b)
    return edges


def faults(path, image):
    """What is wrong with a file, as texts."""
    with open(path, encoding="utf-8") as file:
        areas = [shape(feature["geometry"]) for feature in json.load(file)["features"]]
    size = image.shape[1::-1]
    whole = bool((image[..., 3] > 0).all())
    if not areas:
        return ["empty"] if (image[..., 3] > 0).any() else []
    found = [explain_validity(area) for area in areas if not area.is_valid][:3]
    edges = edges_of(areas)
    if max(edges.values()) > 1:
        found.append("an edge of two areas on one side")
    on_rim = lambda a, b: any(a[i] == b[i] and a[i] in (0, size[i]) for i in (0, 1))
    if whole and any((b, a) not in edges and not on_rim(a, b) for a, b in edges):
        found.append("an edge without its other side")
    if not MultiLineString(list({tuple(sorted(edge)) for edge in edges})).is_simple:
        found.append("edges that meet")
    total = sum(area.area for area in areas)
    whole_area = size[0] * size[1]
    wanted = whole_area if whole else unary_union([area.buffer(0) for area in areas]).area
    if abs(total - wanted) > 1e-6 * whole_area:
        found.append(f"areas sum to {total}, not {wanted}")
    return found


def check(program, files, options):
    """Traces image files in one go; a text for each that is no valid coverage."""
    problems = []
    with tempfile.TemporaryDirectory() as folder:
        command = [program, *files, "-q", "--output-dir", folder, "-f", "geojson", *options]
        subprocess.run(command, capture_output=True, check=False)
        for file in files:
            name = os.path.splitext(os.path.basename(file))[0]
            with Image.open(file) as opened:
                grey16 = opened.mode.startswith("I")
                image = numpy.asarray(opened.convert("L" if grey16 else "RGBA").convert("RGBA"))
            result = os.path.join(folder, name + ".geojson")
            found = faults(result, image) if os.path.exists(result) else ["no file"]
            if found:
                problems.append(f"{name}: {image.shape[1]} x {image.shape[0]}: {'; '.join(found)}")
    return problems


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("images", nargs="*")
    parser.add_argument("--count", type=int, default=0)
    parser.add_argument("--seed", type=int, default=0)
    arguments = sys.argv[1:]
    cut = arguments.index("--") if "--" in arguments else len(arguments)
    given, options = parser.parse_intermixed_args(arguments[:cut]), arguments[cut + 1:]
    problems = []
    for image in given.images:
        problems += check(given.program, [image], options)
    for start in range(given.seed, given.seed + given.count, BATCH):
        with tempfile.TemporaryDirectory() as folder:
            files = []
            for seed in range(start, min(start + BATCH, given.seed + given.count)):
                files.append(os.path.join(folder, f"seed{seed}.png"))
                Image.fromarray(drawn(seed), "RGBA").save(files[-1])
            problems += check(given.program, files, options)
    count = len(given.images) + given.count
    print("\n".join(problems))
    print(f"{count} images, {len(problems)} that are no valid coverage")
    return 1 if problems or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
