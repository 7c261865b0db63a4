"""Which arrays are taken, and that they are not copied."""

import re
from pathlib import Path

import numpy as np
import pytest

import lumofe


def refused(camera, *arrays) -> str:
    with pytest.raises((TypeError, ValueError)) as error:
        camera.dewarp(*arrays)
    return str(error.value)


def test_other_arrays_are_refused(frame, picture, cameras):
    camera = cameras()
    shape = re.escape("frame: expected shape (960, 640), got ")
    for array, message in [
        (frame[:-1], shape + re.escape("(959, 640)")),
        (picture, shape + re.escape("(640, 640, 3)")),
        (frame.reshape(-1), shape + re.escape("(614400,)")),
        (frame.astype(float), "frame: expected dtype uint8, got float64"),
        (frame.view(np.int8), "frame: expected dtype uint8, got int8"),
        (frame[:, ::-1], "frame: expected a C-contiguous array"),
        (np.asfortranarray(frame), "frame: expected a C-contiguous array"),
        (frame.tobytes(), "frame: expected a numpy array, got bytes"),
    ]:
        assert re.match(message, refused(camera, array))


def test_other_outputs_are_refused(frame, cameras):
    camera = cameras()
    locked = np.empty(camera.output_shape, np.uint8)
    locked.setflags(write=False)
    for out, message in [
        (np.empty((720, 641), np.uint8), "out: expected shape (720, 640), got (720, 641)"),
        (np.empty(camera.output_shape), "out: expected dtype uint8, got float64"),
        (locked, "out: the array is read-only; give another one"),
        (frame[100:820], "out: overlaps the input; give another array"),
    ]:
        assert refused(camera, frame, out) == message


def test_the_given_output_is_filled_and_returned(frame, cameras):
    camera = cameras()
    store = np.full((3, *camera.output_shape), 77, np.uint8)
    assert camera.dewarp(frame, out=store[1]) is not store
    result = camera.dewarp(frame, store[1])
    assert np.shares_memory(result, store)
    assert np.array_equal(store[1], camera.dewarp(frame))
    assert (store[0] == 77).all() and (store[2] == 77).all()


@pytest.mark.parametrize("layout", ("360", "180"))
def test_what_the_output_held_is_not_seen(layout, frame, cameras):
    camera = cameras(layout=layout)
    results = [camera.dewarp(frame, np.full(camera.output_shape, value, np.uint8))
               for value in (0, 255)]
    assert np.array_equal(*results)


def test_a_read_only_frame_is_taken_and_left_alone(frame, cameras):
    locked = frame.copy()
    locked.setflags(write=False)
    camera = cameras()
    assert np.array_equal(camera.dewarp(locked), camera.dewarp(frame))
    assert np.array_equal(locked, frame)


def peak_growth(camera: lumofe.Camera, frame: np.ndarray, out: np.ndarray) -> int:
    """Bytes that memory grows by, at most, while a frame is dewarped."""

    def status(field: str) -> int:
        lines = Path("/proc/self/status").read_text()
        return int(re.search(rf"{field}:\s+(\d+) kB", lines)[1]) * 1024

    camera.dewarp(frame, out)
    Path("/proc/self/clear_refs").write_text("5")  # the peak begins anew
    before = status("VmRSS")
    camera.dewarp(frame, out)
    return status("VmHWM") - before


def test_a_frame_is_not_copied():
    # So large that memory for a copy comes from the system anew each time.
    frame = np.full((4096, 4096, 3), 100, np.uint8)
    for layout, copied in (("single", False), ("quad", True)):
        size = (640, 480)
        with lumofe.Camera((4096, 4096), layout, format="rgb", size=size) as camera:
            growth = peak_growth(camera, frame, np.empty(camera.output_shape, np.uint8))
            assert (growth > frame.nbytes / 2) == copied, f"{layout}: {growth} bytes"
