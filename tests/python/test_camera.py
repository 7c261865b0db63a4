"""lumofe.Camera: the same pictures as the tool's, steering, arguments."""

import json
import warnings
from pathlib import Path

import numpy as np
import pytest
from conftest import SIDE, run_tool
from PIL import Image

import lumofe

LAYOUTS = ("single", "quad", "360", "180")
MOUNTS = ("ceiling", "wall", "floor")
VIEWS = {"single": 1, "quad": 4, "360": 2, "180": 0}


def some_aims(layout: str, mount: str) -> list:
    tilt = {"ceiling": 55, "wall": 10, "floor": -55}[mount]
    return [(10 + 17.5 * i, tilt + 4 * i, 20 * i) for i in range(VIEWS[layout])]


def tool_options(camera: lumofe.Camera, aims: list) -> list:
    options = ["--view", camera.layout, "--mount", camera.mount, "--circle", "300,330,290"]
    for aim in aims:
        options += ["--ptz", ",".join(map(str, aim))]
    return options


def planar_bytes(frame: np.ndarray) -> bytes:
    """An NV12 frame with its U and V in planes."""
    luma, chroma = np.split(frame, [frame.shape[0] // 3 * 2])
    return luma.tobytes() + chroma[:, ::2].tobytes() + chroma[:, 1::2].tobytes()


def rendered_frame(frame: np.ndarray, folder: Path, options: list) -> tuple:
    """Header and planes of what the tool makes of an NV12 frame."""
    header = f"YUV4MPEG2 W{SIDE} H{SIDE} F25:1 Ip A1:1 C420jpeg\nFRAME\n".encode()
    (folder / "in.y4m").write_bytes(header + planar_bytes(frame))
    run_tool("render", folder / "in.y4m", "-o", folder / "out.y4m", *options)
    return (folder / "out.y4m").read_bytes().split(b"FRAME\n", 1)


def rendered_picture(picture: np.ndarray, folder: Path, options: list) -> np.ndarray:
    """What the tool, which feeds RGB, makes of a picture."""
    Image.fromarray(picture).save(folder / "in.png")
    run_tool("render", folder / "in.png", "-o", folder / "out.png", "--format", "rgb", *options)
    with Image.open(folder / "out.png") as rendered:
        return np.asarray(rendered)


@pytest.mark.parametrize("mount", MOUNTS)
@pytest.mark.parametrize("layout", LAYOUTS)
def test_frames_are_those_of_the_tool(layout, mount, frame, cameras, tmp_path):
    camera = cameras(layout=layout, mount=mount, circle=(300, 330, 290))
    aims = some_aims(layout, mount)
    camera.aim(aims)
    header, pixels = rendered_frame(frame, tmp_path, tool_options(camera, aims))
    assert f" W{camera.size[0]} H{camera.size[1]} ".encode() in header
    assert pixels == planar_bytes(camera.dewarp(frame))
    assert len(set(pixels)) > 50, "a picture"


@pytest.mark.parametrize("mount", MOUNTS)
@pytest.mark.parametrize("layout", LAYOUTS)
def test_pictures_are_those_of_the_tool(layout, mount, picture, cameras, tmp_path):
    camera = cameras(layout=layout, mount=mount, format="rgb", circle=(300, 330, 290))
    aims = some_aims(layout, mount)
    camera.aim(aims)
    rendered = rendered_picture(picture, tmp_path, tool_options(camera, aims))
    assert np.array_equal(camera.dewarp(picture), rendered)


def test_pictures_are_those_of_the_tool_where_the_circle_is_cut_off(picture, cameras, tmp_path):
    # The library leaves out the last row; the view looks at those above.
    camera = cameras(format="rgb", circle=(320, 500, 300))
    camera.aim(pan=157.5, tilt=50)
    result = camera.dewarp(picture)
    options = ["--circle", "320,500,300", "--pan", 157.5, "--tilt", 50]
    assert np.array_equal(result, rendered_picture(picture, tmp_path, options))
    changed = picture.copy()
    changed[-2] = 255
    assert not np.array_equal(camera.dewarp(changed), result)


@pytest.mark.parametrize("layout", LAYOUTS)
def test_planar_frames_show_the_same_as_semi_planar_ones(layout, frame, planar, cameras):
    semi = cameras(layout=layout).dewarp(frame)
    result = cameras(layout=layout, format="yv12").dewarp(planar)
    different = (lumofe.to_rgb(result, "yv12") != lumofe.to_rgb(semi)).any(axis=2)
    # The first chroma sample of the quad is another one, which reaches as far as this.
    if layout == "quad":
        different[:3, :3] = False
    assert not different.any()


def test_colours_stay(cameras):
    red = np.zeros((SIDE, SIDE, 3), np.uint8)
    red[:] = (200, 40, 10)
    result = cameras(format="rgb").dewarp(red)
    assert (result[result.shape[0] // 2, result.shape[1] // 2] == (200, 40, 10)).all()


def test_arguments_can_be_read_back(cameras):
    camera = cameras(layout="quad", mount="floor", format="yv12", circle=(300, 330.5, 290))
    assert (camera.input, camera.layout, camera.mount, camera.format) == (
        (SIDE, SIDE), "quad", "floor", "yv12")
    assert camera.circle == (300, 331, 290)
    assert camera.size == (640, 480)
    assert camera.input_shape == (960, 640)
    assert camera.output_shape == (720, 640)
    assert "layout='quad'" in repr(camera)
    camera.close()
    assert repr(camera).endswith("closed>")


def test_the_circle_is_centred_by_default():
    with lumofe.Camera((800, 600)) as camera:
        assert camera.circle == (400, 300, 300)


@pytest.mark.parametrize("mount", MOUNTS)
@pytest.mark.parametrize("layout", ("single", "quad", "360"))
def test_views_bring_the_same_picture_back_after_steps(layout, mount, frame, cameras):
    camera = cameras(layout=layout, mount=mount)
    last = VIEWS[layout]
    camera.aim(some_aims(layout, mount))
    before = camera.dewarp(frame)
    for step in ({"zoom": 3}, {"pan": 3}, {"tilt": 2}):
        camera.step(last, **step)
        camera.dewarp(frame)
    moved = camera.dewarp(frame)
    assert not np.array_equal(moved, before)
    views = camera.views
    assert len(views) == last
    camera.aim(some_aims(layout, mount))
    assert not np.array_equal(camera.dewarp(frame), moved)
    camera.aim(views)
    assert np.array_equal(camera.dewarp(frame), moved)


def test_views_beyond_the_range_of_aims_are_told_at_its_end(frame, cameras):
    camera = cameras(layout="quad")
    camera.step(2, tilt=-1000)
    camera.dewarp(frame)
    assert camera.views[1].tilt == 90
    camera.aim(camera.views)


def test_steps_move_right_and_down_and_closer(frame, cameras):
    camera = cameras()
    camera.aim(pan=50, tilt=40)

    def moved(**step) -> lumofe.View:
        camera.step(1, **step)
        camera.dewarp(frame)
        return camera.views[0]

    assert moved(pan=20).pan > 50
    assert moved(tilt=20).tilt < 40
    assert moved(zoom=2).zoom > 0
    still = camera.views
    camera.dewarp(frame)
    assert camera.views == still, "the step goes on"


def test_one_view_is_aimed_by_name_and_keeps_the_rest(frame, cameras):
    named, listed = cameras(layout="quad"), cameras(layout="quad")
    aims = [(0, 70, 0), (90, 61, 0), (180, 70, 0), (270, 70, 0)]
    for camera in (named, listed):
        camera.aim(aims)
    named.aim(view=2, zoom=50)
    listed.aim([aims[0], (90, 61, 50)])
    assert np.array_equal(named.dewarp(frame), listed.dewarp(frame))
    assert named.views[1].zoom == 50

    # From where a step led to.
    named.step(3, pan=30)
    named.dewarp(frame)
    pan = named.views[2].pan
    assert pan != 180
    named.aim(view=3, tilt=40)
    named.dewarp(frame)
    assert (named.views[2].pan, named.views[2].tilt) == (pan, 40)


def test_the_circle_moves_live(frame, cameras):
    for layout in LAYOUTS:
        moved, there = cameras(layout=layout), cameras(layout=layout, circle=(300, 330, 200))
        moved.dewarp(frame)
        moved.circle = (300, 330, 200)
        assert moved.circle == (300, 330, 200)
        assert np.array_equal(moved.dewarp(frame), there.dewarp(frame))


def test_the_panorama_turns_live(frame, cameras):
    turned, there = cameras(layout="180"), cameras(layout="180", pano_offset=-45)
    before = turned.dewarp(frame)
    turned.pano_offset = -45
    assert turned.pano_offset == -45
    after = turned.dewarp(frame)
    assert np.array_equal(after, there.dewarp(frame))
    assert not np.array_equal(after, before)


def test_the_panorama_of_the_ceiling_is_turned_over(frame, cameras):
    upright, raw = cameras(layout="180"), cameras(layout="180", upright=False)
    rows = upright.size[1]
    assert np.array_equal(upright.dewarp(frame)[:rows], raw.dewarp(frame)[:rows][::-1])


def test_directions_are_those_of_the_raw_picture(cameras):
    pan, tilt = cameras(layout="quad").direction_of(SIDE // 2 + 160, SIDE // 2)
    assert (pan, tilt) == (pytest.approx(90, abs=0.5), pytest.approx(45, abs=0.5))
    pan, tilt = cameras().direction_of(SIDE // 2 + 160, SIDE // 2)
    assert (pan, tilt) == (pytest.approx(67.5, abs=0.5), pytest.approx(45, abs=0.5))


def test_a_panorama_that_is_cut_off_is_warned_of():
    with pytest.warns(UserWarning, match="radius of 380 pixels is too much for an input of 800x5"):
        lumofe.Camera((800, 500), layout="360", circle=(400, 250, 380)).close()
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        lumofe.Camera((800, 500), layout="quad", circle=(400, 250, 380)).close()


REFUSED = [
    ({"layout": "fish"}, "layout: 'fish' is unknown; choose one of single, quad, 360, 180"),
    ({"layout": 360}, "layout: 360 is unknown"),
    ({"mount": "desk"}, "mount: 'desk' is unknown; choose one of ceiling, wall, floor"),
    ({"format": "bgr"}, "format: 'bgr' is unknown; choose one of nv12, yv12, rgb"),
    ({"input": (300, 640)}, "input: 300 is outside 320 to 4096 pixels of width"),
    ({"input": (640, 4098)}, "input: 4098 is outside 240 to 4096 pixels of height"),
    ({"input": (641, 640)}, "input: expected an even width and height, got 641x640"),
    ({"input": (640, 640, 3)}, "input: expected (width, height), got (640, 640, 3)"),
    ({"size": (8, 600)}, "size: 8 is outside 16 to 4096 pixels of width"),
    ({"size": (801, 600)}, "size: nv12 needs an even width and height; the nearest is (800, 600)"),
    ({"size": (636, 480), "layout": "quad"}, "the nearest that it composes is (640, 480)"),
    ({"circle": (640, 0, 300)}, "circle, x: 640 is outside 0 to 639 pixels"),
    ({"circle": (0, -1, 300)}, "circle, y: -1 is outside 0 to 639 pixels"),
    ({"circle": (0, 0, float("nan"))}, "circle, radius: nan is outside 16 to 4096 pixels"),
    ({"circle": (0, 0)}, "circle: expected (x, y, radius), got (0, 0)"),
    ({"pano_offset": 361, "layout": "180"}, "pano_offset: 361 is outside -360 to 360 degrees"),
    ({"pano_offset": 5}, "pano_offset: turns layout '180' of ceiling and floor only"),
]


@pytest.mark.parametrize(("arguments", "message"), REFUSED)
def test_arguments_out_of_range_are_refused(arguments, message, cameras):
    with pytest.raises(ValueError) as error:
        cameras(**arguments)
    assert message in str(error.value)


def test_an_odd_size_is_taken_for_pictures_of_the_single_view(picture, cameras):
    assert cameras(format="rgb", size=(321, 201)).dewarp(picture).shape == (201, 321, 3)


REFUSED_AIMS = [
    ({"aims": [(0, 70), (0, 95, 0)]}, "aims, view 2, tilt: 95 is outside 0 to 90 degrees"),
    ({"aims": [(400, 70)]}, "aims, view 1, pan: 400 is outside -360 to 360 degrees"),
    ({"aims": [(0, 70, 101)]}, "aims, view 1, zoom: 101 is outside 0 to 100 percent"),
    ({"aims": [(0, 70)] * 5}, "aims: layout 'quad' steers 4 views, got 5 aims"),
    ({"aims": (0, 70, 0)}, "aims: expected (pan, tilt) or (pan, tilt, zoom) for view 1, got 0"),
    ({"aims": [(0,)]}, "for view 1, got (0,)"),
    ({"view": 5, "pan": 0}, "view: 5 is outside 1 to 4 of layout 'quad'"),
    ({"tilt": float("nan")}, "tilt: nan is outside 0 to 90 degrees, the range of mount 'ceiling'"),
]


@pytest.mark.parametrize(("arguments", "message"), REFUSED_AIMS)
def test_aims_out_of_range_are_refused_and_steer_nothing(arguments, message, cameras):
    camera = cameras(layout="quad")
    before = camera.views
    with pytest.raises(ValueError) as error:
        camera.aim(**arguments)
    assert message in str(error.value)
    assert camera.views == before


def test_aim_takes_either_a_list_or_names(cameras):
    for arguments in ({}, {"aims": [(0, 0)], "pan": 5}):
        with pytest.raises(TypeError, match="give either aims or some of pan, tilt and zoom"):
            cameras().aim(**arguments)


def test_what_a_layout_has_not_is_refused(cameras):
    panorama = cameras(layout="180")
    assert panorama.views == []
    with pytest.raises(ValueError, match="layout '180' has no view to steer"):
        panorama.step(1, pan=1)
    camera = cameras()
    with pytest.raises(ValueError, match="view: 0 is outside 1 to 1 of layout 'single'"):
        camera.step(0, pan=1)
    with pytest.raises(ValueError, match="tilt: 40000 is outside"):
        camera.step(1, tilt=40000)
    with pytest.raises(ValueError, match="y: 640 is outside 0 to 639 pixels"):
        camera.direction_of(0, 640)
    with pytest.raises(ValueError, match="circle, radius: 5 is outside"):
        camera.circle = (300, 300, 5)
    assert camera.circle == (320, 320, 320)


CAMERA_FILE = {
    "version": 1,
    "input": {"width": SIDE, "height": SIDE},
    "mount": "floor",
    "circle": {"x": 300, "y": 330, "radius": 290},
    "layout": "quad",
    "presets": {
        "door": {
            "layout": "360",
            "views": [
                {"pan": 90, "tilt": -60.5, "zoom": 0, "offset": 12},
                {"pan": -10, "tilt": -45, "zoom": 25},
            ],
        },
        "round": {"layout": "180", "turn": -45},
    },
}


@pytest.fixture
def camera_file(tmp_path):
    path = tmp_path / "hall.json"
    path.write_text(json.dumps(CAMERA_FILE))
    return path


@pytest.mark.parametrize(("preset", "layout"), [(None, "quad"), ("door", "360"), ("round", "180")])
def test_a_camera_file_makes_the_camera_that_the_tool_makes(
        preset, layout, camera_file, frame, tmp_path):
    options = ["--camera", camera_file, *(["--preset", preset] if preset else [])]
    with lumofe.Camera.from_file(camera_file, preset) as camera:
        assert (camera.layout, camera.mount, camera.circle) == (layout, "floor", (300, 330, 290))
        _, pixels = rendered_frame(frame, tmp_path, options)
        assert planar_bytes(camera.dewarp(frame)) == pixels


def test_a_preset_sets_the_views(camera_file, cameras):
    there = cameras(layout="360", mount="floor", circle=(300, 330, 290))
    before = there.views
    there.aim([lumofe.View(90, -60.5, 0, 12), (-10, -45, 25)])
    with lumofe.Camera.from_file(camera_file, "door") as camera:
        assert camera.views == there.views != before
    with lumofe.Camera.from_file(camera_file, "round") as camera:
        assert camera.pano_offset == -45


def test_a_camera_file_leaves_the_rest_to_the_caller(camera_file):
    with lumofe.Camera.from_file(
            str(camera_file), layout="single", format="rgb", size=(320, 240)) as camera:
        assert (camera.layout, camera.format, camera.size) == ("single", "rgb", (320, 240))


def test_what_is_no_camera_file_is_refused(camera_file, tmp_path):
    with pytest.raises(FileNotFoundError):
        lumofe.Camera.from_file(tmp_path / "none.json")
    with pytest.raises(ValueError, match="hall.json: there is no preset 'desk'"):
        lumofe.Camera.from_file(camera_file, "desk")
    with pytest.raises(TypeError, match="a preset has its layout"):
        lumofe.Camera.from_file(camera_file, "door", layout="quad")
    camera_file.write_bytes(b"\xff\xfe")
    with pytest.raises(ValueError, match="hall.json"):
        lumofe.Camera.from_file(camera_file)
