#!/usr/bin/env python3
"""Puts views all around a fisheye picture on one sheet.

    contact_sheet.py hall.jpg sheet.png --circle 800,640,610 --tilt 60

The raw picture comes first, then one view for each step of pan, clockwise.
"""

import argparse
import sys

import lumofe
import numpy as np
from PIL import Image

GAP = 8  # pixels between the tiles


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("picture", help="fisheye picture, 320x240 to 4096x4096 pixels")
    parser.add_argument("sheet", help="picture to write, .png or .jpg")
    parser.add_argument("--mount", choices=("ceiling", "floor"), default="ceiling")
    parser.add_argument("--circle", help="x,y,radius in pixels (default: centred, inside)")
    parser.add_argument("--tilt", type=float, default=60, help="0 to 90 degrees (default 60)")
    parser.add_argument("--views", type=int, default=8, help="how many, 1 to 36 (default 8)")
    return parser.parse_args()


def even(picture: np.ndarray) -> np.ndarray:
    """The picture without an odd last row or column."""
    height, width = picture.shape[:2]
    return np.ascontiguousarray(picture[: height & ~1, : width & ~1])


def tile_pictures(picture: np.ndarray, tiles: list, size: tuple) -> Image.Image:
    """The picture in the upper left corner, then the tiles row by row."""
    width, height = size
    columns = max(2, round((len(tiles) + 1) ** 0.5))
    rows = -(-(len(tiles) + 1) // columns)
    sheet = Image.new("RGB", (columns * (width + GAP) + GAP, rows * (height + GAP) + GAP), "white")
    raw = Image.fromarray(picture)
    raw.thumbnail(size)
    for number, tile in enumerate([raw, *map(Image.fromarray, tiles)]):
        row, column = divmod(number, columns)
        x, y = GAP + column * (width + GAP), GAP + row * (height + GAP)
        sheet.paste(tile, (x + (width - tile.width) // 2, y + (height - tile.height) // 2))
    return sheet


def make_sheet(options: argparse.Namespace) -> None:
    if not 1 <= options.views <= 36:
        raise ValueError(f"--views: {options.views} is outside 1 to 36")
    with Image.open(options.picture) as file:
        picture = even(np.asarray(file.convert("RGB")))
    height, width = picture.shape[:2]
    circle = None
    if options.circle:
        circle = tuple(float(part) for part in options.circle.split(","))

    size = 400, 300
    tilt = options.tilt if options.mount == "ceiling" else -options.tilt
    tiles = []
    with lumofe.Camera(
        (width, height), mount=options.mount, format="rgb", circle=circle, size=size
    ) as camera:
        for number in range(options.views):
            camera.aim(pan=360 * number / options.views, tilt=tilt)
            tiles.append(camera.dewarp(picture))
    tile_pictures(picture, tiles, size).save(options.sheet)


if __name__ == "__main__":
    try:
        make_sheet(arguments())
    except (OSError, ValueError) as error:
        sys.exit(f"contact_sheet.py: {error}")
