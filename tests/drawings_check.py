#!/usr/bin/env python3
"""Checks that no drawing takes a method by surprise: neither its time nor its memory nor its results.

Usage: drawings_check.py OVTRACE [--count N] [--seed S] [--keep FOLDER]

Drawings of up to two megapixels are made at random: filled and outlined shapes, lines of up to 150
pixels in width, fans of lines and hatching, plain or anti-aliased, blurred, of one bit, of few
colours, dithered, noisy or from JPEG. Each is traced by every method, which has to end well within a
processor time and a memory that are linear in the pixels, and to leave numbers within the image.
What works on small images and goes every way once, or every pair, on larger ones is found that way.
"""

import argparse
import json
import math
import os
import random
import resource
import shutil
import subprocess
import sys
import tempfile

import numpy
from PIL import Image, ImageDraw, ImageFilter

METHODS = ("outlines", "regions", "centerlines")
SECONDS = (2.0, 20e-6)  # for any image, and for each pixel: dithering by regions takes half of it
BYTES = (50e6, 500.0)
MOST_BYTES = 6 << 30
EMPTY = 3  # the exit status when an image has nothing to trace


def mark(draw, canvas, color):
    """One shape on a canvas, somewhere."""
    width, height = canvas.im.size
    x = sorted(draw.randrange(width) for _ in range(2))
    y = sorted(draw.randrange(height) for _ in range(2))
    box = (x[0], y[0], x[1], y[1])
    thick = min(draw.choice((1, 2, 3, 8, 20, 60, 150)), max(1, min(x[1] - x[0], y[1] - y[0]) // 2))
    style = {"fill": color if draw.random() < 0.5 else None, "outline": color, "width": thick}
    kind = draw.randrange(6)
    if kind == 0:
        canvas.rectangle(box, **style)
    elif kind == 1:
        canvas.ellipse(box, **style)
    elif kind == 2:
        canvas.line(box, fill=color, width=thick)
    elif kind == 3:
        canvas.arc(box, draw.randrange(360), draw.randrange(360), fill=color, width=thick)
    elif kind == 4:
        canvas.polygon([(draw.randrange(width), draw.randrange(height))
                        for _ in range(draw.randrange(3, 9))], fill=color)
    else:
        step, slant = draw.choice((2, 4, 7, 15)), draw.choice((0, 0, 0, 0.3))
        for left in range(x[0], x[1], step * 2):
            canvas.line((left, y[0], left + (y[1] - y[0]) * slant, y[1]), fill=color,
                        width=max(1, step // 2))


def worsened(draw, image, path):
    """The image as a scanner, a camera or a program may have left it, in a file; returns its name."""
    kind = draw.randrange(8)
    if kind == 0:
        image = image.filter(ImageFilter.GaussianBlur(draw.choice((0.5, 1, 3, 10))))
    elif kind == 1:
        image = image.convert("1")
    elif kind == 2:
        image = image.convert("L").point(lambda level: 255 * (level > 128)).convert("1")
    elif kind == 3:
        image = image.quantize(draw.choice((2, 4, 16, 64)))
    elif kind == 4:
        noise = numpy.random.default_rng(draw.randrange(1 << 32))
        levels = numpy.asarray(image).astype(int)
        levels = levels + noise.integers(-draw.choice((5, 21, 81)), 30, levels.shape)
        image = Image.fromarray(levels.clip(0, 255).astype(numpy.uint8))
    elif kind == 5:
        image.save(path + ".jpg", quality=draw.choice((30, 60, 90)))
        return path + ".jpg"
    image.save(path + ".png")
    return path + ".png"


def drawn(seed, folder):
    """The name and the pixels' count of a drawing's file."""
    draw = random.Random(seed)
    size = (draw.randrange(50, 1400), draw.randrange(50, 1400))
    colored = draw.random() < 0.6
    by = draw.choice((1, 1, 3))
    any_color = lambda: tuple(draw.randrange(256) for _ in range(3))
    ground = "white" if draw.random() < 0.8 else any_color()
    image = Image.new("RGB", (size[0] * by, size[1] * by), ground)
    canvas = ImageDraw.Draw(image)
    for _ in range(draw.choice((3, 10, 40, 200))):
        mark(draw, canvas, any_color() if colored else draw.choice(("black",) * 4 + ("white",)))
    if by > 1:
        image = image.resize(size, Image.LANCZOS)
    return worsened(draw, image, os.path.join(folder, f"seed{seed}")), size


def numbers(value):
    """All numbers of a JSON value."""
    if isinstance(value, dict):
        value = list(value.values())
    if isinstance(value, list):
        for item in value:
            yield from numbers(item)
    elif isinstance(value, float):
        yield value


def starts(value):
    """Where the lines of a JSON result start."""
    if isinstance(value, dict):
        if "start" in value:
            yield value["start"]
        value = list(value.values())
    if isinstance(value, list):
        for item in value:
            yield from starts(item)


def processor_seconds():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def faults(program, method, file, size):
    """What is wrong with one trace, as texts, and the seconds and bytes that it took."""
    pixels = size[0] * size[1]
    most_seconds, most_bytes = (limit[0] + limit[1] * pixels for limit in (SECONDS, BYTES))
    result = file + "." + method + ".json"

    def limited():
        resource.setrlimit(resource.RLIMIT_AS, (MOST_BYTES, MOST_BYTES))
        resource.setrlimit(resource.RLIMIT_CPU, (math.ceil(2 * most_seconds),) * 2)

    command = [program, "-q", "--stats", "json", "--method", method, "-o", result, file]
    before = processor_seconds()
    run = subprocess.run(command, preexec_fn=limited, capture_output=True, check=False)
    seconds = processor_seconds() - before
    found = [f"{seconds:.1f} s"] if seconds > most_seconds else []
    if run.returncode == EMPTY:
        return found, (seconds, 0)
    if run.returncode != 0:
        words = run.stderr.decode(errors="replace").strip()
        return [*found, f"status {run.returncode}: {words}"], (seconds, 0)
    taken = json.loads(run.stdout)["peakMemory"]
    if taken > most_bytes:
        found.append(f"{taken / 1e6:.0f} MB")
    with open(result, encoding="utf-8") as opened:
        drawing = json.load(opened)
    if not all(math.isfinite(number) for number in numbers(drawing)):
        found.append("a number that is none")
    if not all(-1 <= x <= size[0] + 1 and -1 <= y <= size[1] + 1 for x, y in starts(drawing)):
        found.append("a place outside the image")
    return found, (seconds, taken)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=0)
    parser.add_argument("--keep", help="folder for the drawings that went wrong")
    given = parser.parse_args()
    problems = 0
    worst = {method: (0.0, 0.0) for method in METHODS}
    for seed in range(given.seed, given.seed + given.count):
        with tempfile.TemporaryDirectory() as folder:
            file, size = drawn(seed, folder)
            for method in METHODS:
                found, figures = faults(given.program, method, file, size)
                worst[method] = tuple(map(max, worst[method], figures))
                if found:
                    problems += 1
                    print(f"seed {seed}, {size[0]} x {size[1]}, {method}: {'; '.join(found)}",
                          flush=True)
                    if given.keep:
                        shutil.copy(file, given.keep)
    for method, (seconds, size_bytes) in worst.items():
        print(f"{method}: at most {seconds:.2f} s, {size_bytes / 1e6:.0f} MB")
    print(f"{given.count} drawings, {problems} traces that went wrong")
    return 1 if problems or given.count <= 0 else 0


if __name__ == "__main__":
    sys.exit(main())
