"""The example that makes a contact sheet."""

import subprocess
import sys

import numpy as np
import pytest
from conftest import SIDE, source_folder
from PIL import Image

import lumofe

EXAMPLE = source_folder() / "examples" / "python" / "contact_sheet.py"


def run(*arguments: object) -> subprocess.CompletedProcess:
    return subprocess.run([sys.executable, EXAMPLE, *map(str, arguments)],
                          capture_output=True, text=True, timeout=60)


@pytest.fixture
def picture_file(picture, tmp_path):
    # A row and a column too many.
    Image.fromarray(np.pad(picture, ((0, 1), (0, 1), (0, 0)))).save(tmp_path / "hall.png")
    return tmp_path / "hall.png"


@pytest.mark.parametrize(("mount", "tilt"), [("ceiling", 50), ("floor", -50)])
def test_the_sheet_shows_the_picture_and_its_views(mount, tilt, picture, picture_file, tmp_path):
    done = run(picture_file, tmp_path / "sheet.png", "--mount", mount, "--tilt", 50,
               "--circle", "300,330,290", "--views", 5)
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
    with Image.open(tmp_path / "sheet.png") as file:
        sheet = np.asarray(file)
    assert sheet.shape == (3 * 308 + 8, 2 * 408 + 8, 3)
    with lumofe.Camera((SIDE, SIDE), mount=mount, format="rgb", circle=(300, 330, 290),
                       size=(400, 300)) as camera:
        for number in range(5):
            camera.aim(pan=72 * number, tilt=tilt)
            row, column = divmod(number + 1, 2)
            y, x = 8 + 308 * row, 8 + 408 * column
            assert np.array_equal(sheet[y : y + 300, x : x + 400], camera.dewarp(picture))
    # The raw picture is 300 x 300 in the first tile's middle.
    assert abs(sheet[8:308, 58:358].mean() - picture.mean()) < 2


@pytest.mark.parametrize(("arguments", "message"), [
    (("--views", 0), "--views: 0 is outside 1 to 36"),
    (("--tilt", 91), "tilt: 91 is outside 0 to 90 degrees"),
    (("--circle", "1,2"), "circle: expected (x, y, radius)"),
])
def test_what_is_wrong_is_said(arguments, message, picture_file, tmp_path):
    done = run(picture_file, tmp_path / "sheet.png", *arguments)
    assert done.returncode == 1
    assert done.stderr.startswith("contact_sheet.py: ") and message in done.stderr
    assert not (tmp_path / "sheet.png").exists()
    assert run(tmp_path / "none.png", tmp_path / "sheet.png").returncode == 1
