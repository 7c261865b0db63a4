"""The example that finds something in flat views."""

import re
import subprocess
import sys

import numpy as np
import pytest
from conftest import run_tool, source_folder
from PIL import Image

EXAMPLE = source_folder() / "examples" / "python" / "find_in_views.py"
BLUEGREEN = 70, 125, 138  # the picture on the scene's east wall


def run(*arguments: object) -> subprocess.CompletedProcess:
    return subprocess.run([sys.executable, EXAMPLE, *map(str, arguments)],
                          capture_output=True, text=True, timeout=60)


def numbers(text: str) -> np.ndarray:
    return np.array([int(number) for number in text.split(",")])


@pytest.fixture(scope="module")
def room(tmp_path_factory):
    path = tmp_path_factory.mktemp("room") / "room.png"
    run_tool("scene", path, "--size", 1024)
    return path


def test_what_several_views_show_is_found_once_and_where_it_is(room, tmp_path):
    done = run(room, tmp_path / "found.png", "--views", 16)
    assert (done.returncode, done.stderr) == (0, "")
    finds = re.findall(r"view \d+: ([\d,]+) is ([\d,]+) of the picture\n", done.stdout)
    assert len(finds) > 1
    with Image.open(room) as file:
        raw = np.asarray(file.convert("RGB")).astype(int)
    # The north wall has some of the colour, too.
    rows, columns = np.nonzero((abs(raw - BLUEGREEN) < 24).all(axis=2)[512:, 512:])
    there = 512 + np.array([columns.min(), rows.min(), columns.max() + 1, rows.max() + 1])
    outwards = [-1, -1, 1, 1]
    for _, box in finds:
        # Boxes are exact to the detector's blocks, and upright ones in views are larger in the raw
        # picture.
        margins = (numbers(box) - there) * outwards
        assert margins.min() > -20 and margins.max() < 100
    found = re.search(r"\n1 found ([\d,]+)\n$", done.stdout)
    assert found
    assert abs(numbers(found[1]) - there).max() < 60
    with Image.open(tmp_path / "found.png") as file:
        changed = (np.asarray(file).astype(int) != raw).any(axis=2)
    assert changed.any() and changed.mean() < 0.1


def test_nothing_is_found_of_a_colour_that_is_not_there(room, tmp_path):
    done = run(room, tmp_path / "found.png", "--colour", "0,255,0")
    assert (done.returncode, done.stdout) == (0, "0 found\n")


def test_what_is_wrong_is_said(room, tmp_path):
    done = run(room, tmp_path / "found.png", "--views", 0)
    assert done.returncode == 1
    assert done.stderr == "find_in_views.py: --views: 0 is outside 1 to 16\n"
    assert run(tmp_path / "none.png", tmp_path / "found.png").returncode == 1
