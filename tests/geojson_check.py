#!/usr/bin/env python3
"""Reads GeoJSON files back as a geographic library does.

Usage: geojson_check.py OVTRACE IMAGE...

Every outline is a valid feature: no edges that cross, no empty areas. Beside the images, small ones of noise and of coarse blots are
traced, whose outlines are as hard as they come.
"""

import json
import os
import random
import subprocess
import sys
import tempfile

from shapely.geometry import shape
from shapely.validation import explain_validity

SEEDS = range(12)


def features(program, image, *options):
    command = [program, image, "-f", "geojson", "-o", "-", *options]
    result = subprocess.run(command, capture_output=True)
    if result.returncode not in (0, 3):
        raise RuntimeError(result.stderr.decode())
    return [shape(feature["geometry"]) for feature in json.loads(result.stdout)["features"]]


def draw(folder, seed):
    """A PPM file: noise in a few colours, by single pixels or by squares of some."""
    draw = random.Random(seed)
    width, height, side = draw.randint(8, 40), draw.randint(8, 40), draw.choice((1, 1, 3))
    colors = [[draw.randint(0, 255) for _ in range(3)] for _ in range(draw.choice((2, 3, 200)))]
    squares = [[draw.choice(colors) for _ in range(width)] for _ in range(height)]
    name = os.path.join(folder, f"noise{seed}.ppm")
    with open(name, "wb") as file:
        file.write(b"P6 %d %d 255\n" % (width, height))
        for y in range(height):
            for x in range(width):
                file.write(bytes(squares[y // side][x // side]))
    return name


def check(program, image, problems):
    shapes = features(program, image, "--method", "outlines")
    for each in shapes:
        if not each.is_valid:
            problems.append(f"{os.path.basename(image)}: {explain_validity(each)}")
        elif each.area == 0:
            problems.append(f"{os.path.basename(image)}: an empty area")
    return len(shapes)


def main():
    program, *images = sys.argv[1:]
    problems, count = [], 0
    for image in images:
        count += check(program, image, problems)
    with tempfile.TemporaryDirectory() as folder:
        for seed in SEEDS:
            count += check(program, draw(folder, seed), problems)
    print(f"{count} features, {len(problems)} problems")
    print("\n".join(problems[:20]))
    return 1 if problems or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
