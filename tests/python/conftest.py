"""What the tests of the Python module share."""

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest

import lumofe

SIDE = 640  # of the inputs, pixels


def make_picture(side: int = SIDE) -> np.ndarray:
    """A picture of (side, side, 3): slopes, a checkerboard and noise, the same every time."""
    y, x = np.mgrid[0:side, 0:side]
    board = (x // 40 + y // 40) % 2 * 60
    noise = np.random.default_rng(1).integers(0, 20, (side, side))
    channels = [x * 160 // side + board, y * 160 // side + noise, (x + y) * 90 // side + board]
    return np.stack(channels, axis=2).astype(np.uint8)


@pytest.fixture(scope="session")
def picture() -> np.ndarray:
    return make_picture()


@pytest.fixture(scope="session")
def frame(picture: np.ndarray) -> np.ndarray:
    """The same picture, as an NV12 frame."""
    return lumofe.from_rgb(picture)


@pytest.fixture(scope="session")
def planar(picture: np.ndarray) -> np.ndarray:
    """The same picture, as a YV12 frame."""
    return lumofe.from_rgb(picture, "yv12")


@pytest.fixture
def cameras():
    """A function that makes cameras of the pictures' size, which are closed after the test."""
    made = []

    def make(**arguments) -> lumofe.Camera:
        made.append(lumofe.Camera(**{"input": (SIDE, SIDE), **arguments}))
        return made[-1]

    yield make
    for camera in made:
        camera.close()


def run_tool(*arguments: object) -> None:
    subprocess.run([os.environ["LUMOFE_TOOL"], *map(str, arguments)], check=True, timeout=60)


def source_folder() -> Path:
    return Path(__file__).resolve().parents[2]
