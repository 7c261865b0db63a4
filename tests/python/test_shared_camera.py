"""Cameras on threads, closing them, slots and memory."""

import gc
import os
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pytest
from conftest import SIDE

import lumofe

SLOTS = 16


def test_cameras_work_on_several_threads(frame, cameras):
    pans = [20 * i for i in range(SLOTS)]

    def show(camera: lumofe.Camera, pan: float) -> np.ndarray:
        camera.aim(pan=pan, tilt=50)
        return camera.dewarp(frame)

    alone = cameras()
    expected = [show(alone, pan) for pan in pans]
    assert not np.array_equal(expected[0], expected[1])
    alone.close()
    several = [cameras() for _ in pans]
    with ThreadPoolExecutor(8) as pool:
        for _ in range(5):
            for result, right in zip(pool.map(show, several, pans), expected):
                assert np.array_equal(result, right)


def test_one_camera_is_shared_by_threads(frame, cameras):
    camera = cameras(layout="quad")
    tilts = (20, 60)
    expected = []
    for tilt in tilts:
        camera.aim([(0, tilt)] * 4)
        expected.append(camera.dewarp(frame).tobytes())

    def work(number: int) -> set:
        seen = set()
        for _ in range(20):
            camera.aim([(0, tilts[number % 2])] * 4)
            seen.add(camera.dewarp(frame).tobytes())
            assert len(camera.views) == 4
        return seen

    with ThreadPoolExecutor(4) as pool:
        seen = set().union(*pool.map(work, range(4)))
    assert seen <= set(expected), "a frame between two aims"


def test_other_threads_run_while_a_frame_is_dewarped():
    frame = np.full((4096 * 3 // 2, 4096), 100, np.uint8)
    turns, done = [0], threading.Event()

    def turn() -> None:
        while not done.is_set():
            turns[0] += 1
            time.sleep(0)  # gives way

    interval = sys.getswitchinterval()
    with lumofe.Camera((4096, 4096), size=(4096, 3072)) as camera:
        other = threading.Thread(target=turn)
        other.start()
        # Nobody has to give way, so that nothing but dewarp() itself lets the other thread run.
        sys.setswitchinterval(1000)
        try:
            during = 0
            for _ in range(5):
                before = turns[0]
                camera.dewarp(frame)
                during += turns[0] - before
        finally:
            done.set()
            sys.setswitchinterval(interval)
            other.join()
    assert during > 0


def test_a_closed_camera_says_so(frame, cameras):
    camera = cameras()
    assert not camera.closed
    with camera as same:
        assert same is camera
    assert camera.closed
    camera.close()

    def set_circle() -> None:
        camera.circle = (320, 320, 300)

    for call in (
        lambda: camera.dewarp(frame),
        lambda: camera.aim(pan=5),
        lambda: camera.aim([(0, 0)]),
        lambda: camera.step(1, pan=1),
        lambda: camera.views,
        lambda: camera.circle,
        lambda: camera.direction_of(5, 5),
        lambda: camera.aim_at(320, 320),
        set_circle,
    ):
        with pytest.raises(RuntimeError, match="the camera is closed; make another one"):
            call()


def test_closing_waits_for_the_frame(frame):
    for _ in range(20):
        camera = lumofe.Camera((SIDE, SIDE))
        began = threading.Event()

        def work(camera: lumofe.Camera = camera, began: threading.Event = began) -> int:
            frames = 0
            try:
                while True:
                    camera.dewarp(frame)
                    frames += 1
                    began.set()
            except RuntimeError as error:
                assert "closed" in str(error)
            return frames

        with ThreadPoolExecutor(2) as pool:
            results = [pool.submit(work) for _ in range(2)]
            assert began.wait(30)
            camera.close()
            assert sum(result.result() for result in results) > 0


def test_the_seventeenth_camera_is_refused_until_another_one_goes(cameras):
    made = [cameras() for _ in range(SLOTS)]
    with pytest.raises(RuntimeError, match="all 16 camera slots of this process are in use"):
        cameras()
    made[3].close()
    lumofe.Camera((SIDE, SIDE))  # goes at once, as nobody holds it
    gc.collect()
    cameras()


def resident() -> int:
    pages = int(Path("/proc/self/statm").read_text().split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE")


def test_many_frames_leave_nothing_behind(frame, cameras):
    camera = cameras(layout="quad", size=(320, 240))

    def run(frames: int) -> None:
        for number in range(frames):
            camera.aim([(number % 360, 60)] * 4)
            result = camera.dewarp(frame)
            assert sys.getrefcount(result) == 2
            assert len(camera.views) == 4

    run(200)
    references, before = sys.getrefcount(frame), resident()
    run(2000)
    assert sys.getrefcount(frame) == references
    # A leaked result would be 230 MB.
    assert resident() - before < 2_000_000


def test_many_cameras_leave_nothing_behind(frame):
    def run(count: int) -> None:
        for _ in range(count):
            with lumofe.Camera((SIDE, SIDE), size=(320, 240)) as camera:
                camera.dewarp(frame)
            with pytest.raises(ValueError):
                lumofe.Camera((SIDE, SIDE), layout="fish")

    run(20)
    before = resident()
    run(100)
    # What one camera holds is a megabyte and more.
    assert resident() - before < 4_000_000
