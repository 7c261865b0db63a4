#!/usr/bin/env python3
"""Finds something in flat views around a fisheye picture, and where that lies in the picture.

    find_in_views.py hall.jpg found.png --circle 800,640,610 --colour 70,125,138

Each view is given to detect(), a stand-in for a detector of people or cars: it boxes what has the
colour. The box is mapped back to the raw picture, where finds of several views that are the same
thing become one. The picture is written with the outlines of all.
"""

import argparse
import sys

import lumofe
import numpy as np
from PIL import Image, ImageDraw

SIZE = 640, 480  # of a view; what the detector was trained with
NEAR = 24  # how far from the colour, in each channel
BLOCK = 8  # pixels a side, to which boxes are exact
FEWEST = 12  # blocks of what is worth telling
SAME = 0.3  # from this share of their area on, boxes are of the same thing


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("picture", help="fisheye picture, even sides of 320x240 to 4096x4096")
    parser.add_argument("found", help="picture to write, .png or .jpg")
    parser.add_argument("--mount", choices=("ceiling", "floor"), default="ceiling")
    parser.add_argument("--circle", help="x,y,radius in pixels (default: centred, inside)")
    parser.add_argument("--tilt", type=float, default=75, help="0 to 90 degrees (default 75)")
    parser.add_argument("--views", type=int, default=8, help="how many, 1 to 16 (default 8)")
    parser.add_argument("--colour", default="70,125,138", help="red,green,blue to look for")
    return parser.parse_args()


def detect(view: np.ndarray, colour: np.ndarray) -> list:
    """Boxes (left, top, right, bottom) of what has the colour; the last two are just outside."""
    width, height = SIZE
    mask = (abs(view.astype(int) - colour) < NEAR).all(axis=2)
    full = mask.reshape(height // BLOCK, BLOCK, width // BLOCK, BLOCK).mean(axis=(1, 3)) > 0.5
    boxes = []
    left = set(zip(*np.nonzero(full)))
    while left:
        region = [left.pop()]
        for row, column in region:  # grows while it is gone through
            near = {(row - 1, column), (row + 1, column), (row, column - 1), (row, column + 1)}
            region += near & left
            left -= near
        if len(region) >= FEWEST:
            rows, columns = np.array(region).T * BLOCK
            boxes.append(
                (columns.min(), rows.min(), columns.max() + BLOCK, rows.max() + BLOCK)
            )
    return boxes


def cut_off(box: tuple) -> bool:
    """Whether what was found goes on outside of the view, where the next one shows it whole."""
    left, top, right, bottom = box
    return left == 0 or top == 0 or right == SIZE[0] or bottom == SIZE[1]


def outline(box: tuple, source: np.ndarray) -> np.ndarray:
    """The box's border in the raw picture, (points, 2): its straight lines are curves there."""
    left, top, right, bottom = box
    inside = source[top:bottom, left:right]
    border = np.concatenate(
        [inside[0], inside[1:, -1], inside[-1, -2::-1], inside[-2:0:-1, 0]]
    )
    return border[~np.isnan(border).any(axis=1)]


def raw_box(points: np.ndarray) -> tuple:
    """The upright box around an outline."""
    return (*np.floor(points.min(axis=0)).astype(int), *np.ceil(points.max(axis=0)).astype(int) + 1)


def area(box: tuple) -> int:
    return max(0, box[2] - box[0]) * max(0, box[3] - box[1])


def overlap(a: tuple, b: tuple) -> float:
    """What two boxes share, of the area that they cover together."""
    both = area((max(a[0], b[0]), max(a[1], b[1]), min(a[2], b[2]), min(a[3], b[3])))
    return both / (area(a) + area(b) - both)


def separate(boxes: list) -> list:
    """One box for each thing: the smallest, which fits best."""
    things: list = []
    for box in sorted(boxes, key=area):
        if all(overlap(box, thing) < SAME for thing in things):
            things.append(box)
    return things


def told(box: tuple) -> str:
    return ",".join(map(str, box))


def finds_of(picture: np.ndarray, options: argparse.Namespace) -> list:
    """(number of the view, box in it, outline in the raw picture) of all that is found."""
    height, width = picture.shape[:2]
    circle = None
    if options.circle:
        circle = tuple(float(part) for part in options.circle.split(","))
    colour = np.array([int(part) for part in options.colour.split(",")])
    finds = []
    with lumofe.Camera(
        (width, height), mount=options.mount, format="rgb", circle=circle, size=SIZE
    ) as camera:
        for number in range(options.views):
            tilt = options.tilt if options.mount == "ceiling" else -options.tilt
            camera.aim(pan=360 * number / options.views, tilt=tilt)
            boxes = detect(camera.dewarp(picture), colour)
            # Of a view that stays, one map serves all frames.
            source = camera.source_map()
            finds += [(number + 1, box, outline(box, source)) for box in boxes if not cut_off(box)]
    return finds


def find(options: argparse.Namespace) -> None:
    if not 1 <= options.views <= 16:
        raise ValueError(f"--views: {options.views} is outside 1 to 16")
    with Image.open(options.picture) as file:
        picture = np.array(file.convert("RGB"))
    shown = Image.fromarray(picture)
    draw = ImageDraw.Draw(shown)
    boxes = []
    for number, box, points in finds_of(picture, options):
        boxes.append(raw_box(points))
        print(f"view {number}: {told(box)} is {told(boxes[-1])} of the picture")
        draw.line([*map(tuple, points), tuple(points[0])], fill="yellow", width=3)
    things = separate(boxes)
    for left, top, right, bottom in things:
        draw.rectangle((left, top, right - 1, bottom - 1), outline="white", width=3)
    print(f"{len(things)} found", *map(told, things))
    shown.save(options.found)


if __name__ == "__main__":
    try:
        find(arguments())
    except (OSError, ValueError) as error:
        sys.exit(f"find_in_views.py: {error}")
