"""to_rgb and from_rgb."""

import numpy as np
import pytest

import lumofe

COLOURS = {  # BT.601, full range
    (255, 0, 0): (76, 85, 255),
    (0, 255, 0): (150, 44, 21),
    (0, 0, 255): (29, 255, 107),
    (120, 120, 120): (120, 128, 128),
}


@pytest.mark.parametrize(("rgb", "yuv"), COLOURS.items())
def test_a_colour_has_its_bytes_in_each_plane(rgb, yuv):
    picture = np.full((6, 8, 3), rgb, np.uint8)
    semi, planar = lumofe.from_rgb(picture), lumofe.from_rgb(picture, "yv12")
    assert semi.shape == planar.shape == (9, 8)
    for frame, u, v in ((semi, semi[6:, ::2], semi[6:, 1::2]),
                        (planar, planar.reshape(-1)[60:], planar.reshape(-1)[48:60])):
        for plane, value in zip((frame[:6], u, v), yuv):
            assert np.abs(plane.astype(int) - value).max() <= 1
    for frame, name in ((semi, "nv12"), (planar, "yv12")):
        assert np.abs(lumofe.to_rgb(frame, name).astype(int) - picture).max() <= 3


def test_pictures_come_back_nearly_as_they_were():
    y, x = np.mgrid[0:120, 0:160]
    picture = np.stack([x, y, x // 2 + y // 2], axis=2).astype(np.uint8)
    for name in ("nv12", "yv12"):
        back = lumofe.to_rgb(lumofe.from_rgb(picture, name), name)
        assert np.abs(back.astype(int) - picture).max() <= 4


def test_other_pictures_are_refused():
    for array, message in [
        (np.zeros((5, 8, 3), np.uint8), "picture: expected shape (height, width, 3) of an even"),
        (np.zeros((6, 8, 4), np.uint8), "got (6, 8, 4)"),
        (np.zeros((0, 8, 3), np.uint8), "got (0, 8, 3)"),
        (np.zeros((6, 8, 3)), "picture: expected dtype uint8, got float64"),
    ]:
        with pytest.raises(ValueError) as error:
            lumofe.from_rgb(array)
        assert message in str(error.value)
    for shape in ((8, 8), (9, 7), (0, 8)):
        with pytest.raises(ValueError, match=r"frame: expected shape \(height \* 3 / 2, width\)"):
            lumofe.to_rgb(np.zeros(shape, np.uint8))
    with pytest.raises(ValueError, match="format: 'rgb' is unknown; choose one of nv12, yv12"):
        lumofe.to_rgb(np.zeros((9, 8), np.uint8), "rgb")
