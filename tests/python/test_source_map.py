"""Where the pixels of a view come from."""

import numpy as np
import pytest
from conftest import SIDE

import lumofe

MOUNTS = ("ceiling", "wall", "floor")


def sampled(picture: np.ndarray, source: np.ndarray) -> np.ndarray:
    """The picture's channels at the places of the map, between four pixels; 0 where it has none."""
    places = np.nan_to_num(source)
    left, top = places[..., 0].astype(int), places[..., 1].astype(int)
    x, y = (places - np.floor(places)).transpose(2, 0, 1)[..., None]
    right, below = np.minimum(left + 1, SIDE - 1), np.minimum(top + 1, SIDE - 1)
    upper = picture[top, left] * (1 - x) + picture[top, right] * x
    lower = picture[below, left] * (1 - x) + picture[below, right] * x
    return upper * (1 - y) + lower * y


@pytest.mark.parametrize("mount", MOUNTS)
def test_sampling_a_picture_by_the_map_gives_the_view(mount, picture, cameras):
    camera = cameras(mount=mount, format="rgb", circle=(300, 330, 290), size=(320, 240))
    camera.aim(pan=40, tilt={"ceiling": 60, "wall": 10, "floor": -60}[mount], zoom=20)
    view = camera.dewarp(picture)
    source = camera.source_map()
    assert source.shape == (240, 320, 2) and source.dtype == np.float32
    shown = ~np.isnan(source).any(axis=2)
    assert shown.mean() > 0.9
    assert abs(sampled(picture, source) - view)[shown].max() <= 2


@pytest.mark.parametrize("mount", MOUNTS)
def test_sampling_a_frame_by_the_map_gives_the_luma_of_the_view(mount, frame, cameras):
    camera = cameras(mount=mount, size=(320, 240))
    luma = camera.dewarp(frame)[:240]
    source = camera.source_map()
    shown = ~np.isnan(source).any(axis=2)
    assert abs(sampled(frame[:SIDE, :, None], source)[..., 0] - luma)[shown].max() <= 2


def test_the_map_and_the_look_up_agree(frame, cameras):
    camera = cameras(size=(320, 240))
    camera.aim(pan=90, tilt=70, zoom=60)
    camera.dewarp(frame)
    x, y = camera.source_map()[120, 160]
    pan, _ = camera.direction_of(round(float(x)), round(float(y)))
    assert pan == pytest.approx(90, abs=1)


@pytest.mark.parametrize("mount", ["ceiling", "floor"])
def test_a_view_is_aimed_at_a_pixel(frame, cameras, mount):
    camera = cameras(size=(320, 240), mount=mount)
    for zoom in (100, None):  # None keeps it
        for x, y in ((SIDE // 2 + 60, SIDE // 2), (SIDE // 2, SIDE // 2 + 130)):
            camera.aim_at(x, y, zoom=zoom)
            camera.dewarp(frame)
            assert camera.views[0].zoom == pytest.approx(100, abs=1)
            assert camera.source_map()[120, 160] == pytest.approx((x, y), abs=6)


def test_what_cannot_be_aimed_at_is_refused(cameras):
    with pytest.raises(ValueError, match="x"):
        cameras().aim_at(SIDE, 0)
    with pytest.raises(ValueError, match="zoom"):
        cameras().aim_at(0, 0, zoom=101)
    with pytest.raises(ValueError, match="view"):
        cameras(layout="180").aim_at(300, 300)


def test_the_map_is_that_of_the_last_frame(frame, cameras):
    camera = cameras(size=(320, 240))
    with pytest.raises(RuntimeError, match="no frame was dewarped yet"):
        camera.source_map()
    camera.dewarp(frame)
    first = camera.source_map()
    camera.aim(pan=120, tilt=50)
    assert np.array_equal(camera.source_map(), first, equal_nan=True)
    camera.dewarp(frame)
    assert not np.array_equal(camera.source_map(), first, equal_nan=True)
    camera.circle = 300, 330, 290
    with pytest.raises(RuntimeError, match="no frame was dewarped yet"):
        camera.source_map()


def test_nothing_is_shown_beyond_the_input(frame, cameras):
    # The circle reaches below the picture, and so does the view.
    camera = cameras(circle=(320, 620, 300), size=(320, 240))
    camera.aim(pan=157.5, tilt=90)
    camera.dewarp(frame)
    assert np.isnan(camera.source_map()).any()


@pytest.mark.parametrize("layout", ("quad", "360", "180"))
def test_other_layouts_have_no_map(layout, frame, cameras):
    camera = cameras(layout=layout)
    camera.dewarp(frame)
    with pytest.raises(ValueError, match=f"layout '{layout}' has none"):
        camera.source_map()


def test_a_closed_camera_has_no_map(frame):
    with lumofe.Camera((SIDE, SIDE)) as camera:
        camera.dewarp(frame)
    with pytest.raises(RuntimeError, match="closed"):
        camera.source_map()
