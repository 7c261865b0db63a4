"""A fisheye camera."""

import math
import operator
import os
import warnings
from collections.abc import Iterable, Sequence
from pathlib import Path
from types import TracebackType
from typing import Optional, Union

import numpy as np
from numpy.typing import NDArray

from . import _core
from ._names import check_range, member
from ._view import Aim, View

_MIN_SIDE, _MAX_SIDE = 16, 4096  # of the output, pixels
_MIN_RADIUS, _MAX_RADIUS = 16, 4096  # pixels
_MAX_STEP = 1000


class Camera:
    """A fisheye camera whose frames are dewarped.

    input: (width, height) of its frames, even, (320, 240) to (4096, 4096)
    layout: "single" (one view), "quad" (four), "360" (two above a panorama strip) or "180" (a
        panorama in two halves, on the wall in one)
    mount: "ceiling", "wall" or "floor"
    format: "nv12", "yv12" or "rgb", of the frames that go in and come out
    circle: (x, y, radius) of the fisheye circle, input pixels, rounded to whole ones: the centre in
        the input, the radius 16 to 4096. None: centred, half the shorter side
    size: (width, height) of the output, 16 to 4096, even but for "rgb" frames of the single view.
        None: the largest that the layout composes from such an input, 4:3; of "360" and of "180" on
        ceiling and floor 16:9
    pano_offset: turns the "180" of ceiling and floor, whole degrees, -360 to 360, clockwise
    upright: turns over the ceiling's "180", which the library draws upside down

    Raises ValueError for an argument out of range, and for a size that the layout does not compose
    without a gap: the message names the nearest that it does. Raises RuntimeError when the process
    has sixteen cameras already. Warns with UserWarning of a panorama that is cut off.

    Use it in a with statement, or close() it. One camera can be used by several threads, which then
    wait for one another; different cameras work at the same time. All that needs the camera raises
    RuntimeError once it is closed.
    """

    def __init__(
        self,
        input: tuple[int, int],
        layout: str = "single",
        mount: str = "ceiling",
        format: str = "nv12",
        circle: Optional[tuple[float, float, float]] = None,
        size: Optional[tuple[int, int]] = None,
        pano_offset: int = 0,
        upright: bool = True,
    ) -> None:
        self._view = member("layout", layout, _core.View.__members__)
        self._mount = member("mount", mount, _core.Mount.__members__)
        pixels = member("format", format, _core.PixelFormat.__members__)
        self._layout, self._mounting, self._format = layout, mount, format
        self._input = _input_size(input)
        self._size = self._output_size(size)
        self._check_pano_offset(pano_offset)
        self._core = _core.Camera(
            self._input,
            self._size,
            self._checked_circle(circle),
            self._view,
            self._mount,
            pixels,
            pano_offset,
            upright,
        )

    @classmethod
    def from_file(
        cls,
        path: Union[str, "os.PathLike[str]"],
        preset: Optional[str] = None,
        *,
        layout: Optional[str] = None,
        format: str = "nv12",
        size: Optional[tuple[int, int]] = None,
        upright: bool = True,
    ) -> "Camera":
        """The camera that a camera file of the lumofe tool describes.

        path: the file, JSON
        preset: name of the preset that the views begin at; its layout is taken. None: they begin
            at the layout's own directions
        layout: without a preset, another layout than the file's
        format, size, upright: as in Camera()

        Raises OSError for a file that cannot be read, ValueError for one that is no camera file,
        for a preset that it does not hold and as Camera() does.
        """
        if preset is not None and layout is not None:
            raise TypeError("from_file: a preset has its layout; give one or the other")
        input, mount, circle, own_layout, aims, pano_offset = _core.camera_of(
            Path(path).read_bytes(), os.fspath(path), preset
        )
        if layout is None:
            layout = own_layout
        camera = cls(input, layout, mount, format, circle, size, pano_offset, upright)
        camera._core.aim_all(aims)
        return camera

    def close(self) -> None:
        """Gives the camera's slot back. Does nothing when it is closed."""
        self._core.close()

    def __enter__(self) -> "Camera":
        return self

    def __exit__(
        self,
        kind: Optional[type[BaseException]],
        error: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return (
            f"<lumofe.Camera input={self._input} layout={self._layout!r} mount={self._mounting!r} "
            f"format={self._format!r} size={self._size}{' closed' if self.closed else ''}>"
        )

    @property
    def closed(self) -> bool:
        """Whether the camera was closed."""
        return self._core.closed

    @property
    def input(self) -> tuple[int, int]:
        """(width, height) of the frames that go in."""
        return self._input

    @property
    def size(self) -> tuple[int, int]:
        """(width, height) of the frames that come out."""
        return self._size

    @property
    def layout(self) -> str:
        """The layout's name."""
        return self._layout

    @property
    def mount(self) -> str:
        """The mounting's name."""
        return self._mounting

    @property
    def format(self) -> str:
        """The format's name."""
        return self._format

    @property
    def input_shape(self) -> tuple[int, ...]:
        """Shape of the arrays that go in."""
        return self._core.input_shape

    @property
    def output_shape(self) -> tuple[int, ...]:
        """Shape of the arrays that come out."""
        return self._core.output_shape

    def dewarp(
        self, frame: NDArray[np.uint8], out: Optional[NDArray[np.uint8]] = None
    ) -> NDArray[np.uint8]:
        """Dewarps a frame. Returns out, or a new array when that is None.

        frame: input_shape, uint8, C-contiguous. "nv12" and "yv12": (height * 3 / 2, width), the
            chroma below the luma; "rgb": (height, width, 3)
        out: output_shape, likewise; is written to, must not overlap frame

        The frame is not copied, but where "rgb" and "yv12" are converted to NV12: "rgb" in all
        layouts but "single", "yv12" in "360" and "180". Other threads run meanwhile; they must
        leave both arrays alone.

        Raises ValueError for another shape, dtype or layout of the array, TypeError for no array.
        """
        return self._core.dewarp(frame, out)

    def aim(
        self,
        aims: Optional[Iterable[Aim]] = None,
        *,
        view: int = 1,
        pan: Optional[float] = None,
        tilt: Optional[float] = None,
        zoom: Optional[float] = None,
    ) -> None:
        """Steers the views; holds from the next frame on. Either all at once or one by name.

        aims: (pan, tilt), (pan, tilt, zoom) or a View for view 1, 2, ...; the others stay
        view: number of the view, 1 and up, that the rest is for; what is None stays
        pan, tilt: degrees. Ceiling: -360 to 360 and 0 (down) to 90; floor: -360 to 360 and 0 (up)
            to -90; wall: -90 (left) to 90 and -90 (up) to 90
        zoom: percent, 0 (widest) to 100

        On ceiling and floor pan runs clockwise as seen in the raw picture; 0 is the picture's top,
        in the single view 22.5 degrees clockwise of it. Raises ValueError for a value out of range
        and for views that the layout has not; nothing is steered then.
        """
        named = {"pan": pan, "tilt": tilt, "zoom": zoom}
        given = {name: value for name, value in named.items() if value is not None}
        if (aims is None) == (not given):
            raise TypeError("aim: give either aims or some of pan, tilt and zoom")
        if aims is None:
            self._check_view(view)
            for name, value in given.items():
                self._check_direction("", name, value)
            self._core.aim_one(view, pan, tilt, zoom)
        else:
            self._core.aim_all(self._checked_aims(aims))

    @property
    def views(self) -> list[View]:
        """Where the views look, in steps of 0.25 degrees of pan and 2 of tilt.

        aim() brings the same views back, even those that steps led to; but view 2 of the "quad",
        which one large step can take beyond the range of aims, is told to be at the range's end.
        Empty in layout "180".
        """
        return [View(*aim) for aim in self._core.aims()]

    def step(self, view: int, pan: int = 0, tilt: int = 0, zoom: int = 0) -> None:
        """Moves a view with the next frame, as a joystick or mouse does; one view a frame.

        view: number of the view, 1 and up
        pan, tilt: how far the stick moved, -1000 to 1000; to the right and down are positive.
            Only the larger of the two is used
        zoom: steps, -1000 to 1000; closer is positive. Stops at the ends of the range

        Raises ValueError for a value out of range.
        """
        self._check_view(view)
        for name, value in (("pan", pan), ("tilt", tilt), ("zoom", zoom)):
            check_range(name, value, -_MAX_STEP, _MAX_STEP, "steps")
        self._core.step(view, pan, tilt, zoom)

    @property
    def circle(self) -> tuple[int, int, int]:
        """(x, y, radius) of the fisheye circle, input pixels. Can be set; the views stay."""
        return self._core.circle()

    @circle.setter
    def circle(self, circle: tuple[float, float, float]) -> None:
        self._core.set_circle(self._checked_circle(circle))

    @property
    def pano_offset(self) -> int:
        """What the "180" of ceiling and floor is turned by, degrees clockwise. Can be set."""
        return self._core.pano_offset()

    @pano_offset.setter
    def pano_offset(self, degrees: int) -> None:
        self._check_pano_offset(degrees)
        self._core.turn_panorama(degrees)

    def direction_of(self, x: int, y: int) -> tuple[float, float]:
        """(pan, tilt) in degrees, as aim() takes them, of a pixel of the input.

        x, y: pixels from the left and from the top; raises ValueError outside of the input
        """
        check_range("x", x, 0, self._input[0] - 1, "pixels")
        check_range("y", y, 0, self._input[1] - 1, "pixels")
        return self._core.direction_of(x, y)

    def aim_at(self, x: int, y: int, view: int = 1, zoom: Optional[float] = None) -> None:
        """Steers a view so that its middle shows a pixel of the input, or as near as the view goes.

        x, y: pixels from the left and from the top
        view: number of the view, 1 and up
        zoom: percent, 0 (widest) to 100; what it has when left out

        The library renders a few frames of its own for it. A view that is zoomed out shows the
        pixel, though not in its middle. Raises ValueError for a value out of range and for views
        that the layout has not.
        """
        self._check_view(view)
        check_range("x", x, 0, self._input[0] - 1, "pixels")
        check_range("y", y, 0, self._input[1] - 1, "pixels")
        if zoom is not None:
            self._check_direction("", "zoom", zoom)
        self._core.aim_at(view, x, y, zoom)

    def source_map(self) -> NDArray[np.float32]:
        """Where each pixel of the last dewarped frame lies in the input: (height, width, 2).

        [row, column] holds x and y, input pixels from the left and from the top, to 1/256; NaN
        where the view shows nothing of the input. Single view only; it holds until the next frame
        after the view or the circle was moved.

        Raises ValueError in other layouts, RuntimeError when no frame was dewarped since the
        camera was made or its circle set.
        """
        if self._layout != "single":
            raise ValueError(
                f"source_map: layout {self._layout!r} has none; make a camera of layout 'single' "
                "for each view"
            )
        return self._core.source_map()

    def _output_size(self, size: Optional[tuple[int, int]]) -> tuple[int, int]:
        if size is None:
            return _core.default_size(self._view, self._mount, self._input)
        width, height = _two(size, "size")
        check_range("size", width, _MIN_SIDE, _MAX_SIDE, "pixels of width")
        check_range("size", height, _MIN_SIDE, _MAX_SIDE, "pixels of height")
        near = _core.nearest_size(self._view, self._mount, (width, height), self._input)
        if near != (width, height):
            raise ValueError(
                f"size: layout {self._layout!r} leaves gaps at {width}x{height} from this input; "
                f"the nearest that it composes is {near}"
            )
        if self._format != "rgb" and (width % 2 or height % 2):
            raise ValueError(
                f"size: {self._format} needs an even width and height; "
                f"the nearest is {(width & ~1, height & ~1)}"
            )
        return near

    def _checked_circle(
        self, circle: Optional[tuple[float, float, float]]
    ) -> tuple[int, int, int]:
        width, height = self._input
        if circle is None:
            circle = width // 2, height // 2, min(width, height) // 2
        if len(circle) != 3:
            raise ValueError(f"circle: expected (x, y, radius), got {circle!r}")
        for value, name, low, high in zip(
            circle,
            ("x", "y", "radius"),
            (0, 0, _MIN_RADIUS),
            (width - 1, height - 1, _MAX_RADIUS),
        ):
            check_range(f"circle, {name}", value, low, high, "pixels")
        # Halves upwards, as the tool does.
        x, y, radius = (math.floor(value + 0.5) for value in circle)
        unwraps = self._mounting != "wall" and self._layout in ("360", "180")
        if unwraps and not _core.unwrap_is_complete(self._input, radius):
            warnings.warn(
                f"the outer part of the panorama is cut off: a radius of {radius} pixels is too "
                f"much for an input of {width}x{height}; scale the input up first",
                stacklevel=3,
            )
        return x, y, radius

    def _check_pano_offset(self, degrees: int) -> None:
        check_range("pano_offset", degrees, -360, 360, "degrees")
        if degrees and (self._layout != "180" or self._mounting == "wall"):
            raise ValueError("pano_offset: turns layout '180' of ceiling and floor only")

    def _check_view(self, number: int) -> None:
        count = _core.view_count(self._view)
        if count == 0:
            raise ValueError(f"view: layout {self._layout!r} has no view to steer")
        check_range("view", number, 1, count, f"of layout {self._layout!r}")

    def _check_direction(self, prefix: str, name: str, value: float) -> None:
        if name == "zoom":
            check_range(prefix + name, value, 0, 100, "percent")
            return
        limits = _core.direction_limits(self._mount)
        low, high = limits[:2] if name == "pan" else limits[2:]
        check_range(
            prefix + name, value, low, high, f"degrees, the range of mount {self._mounting!r}"
        )

    def _checked_aims(self, aims: Iterable[Aim]) -> list[View]:
        views = []
        for number, aim in enumerate(aims, start=1):
            if not isinstance(aim, Sequence) or not 2 <= len(aim) <= 4:
                raise ValueError(
                    f"aims: expected (pan, tilt) or (pan, tilt, zoom) for view {number}, "
                    f"got {aim!r}"
                )
            view = View(*aim)
            for name, value in zip(("pan", "tilt", "zoom"), (view.pan, view.tilt, view.zoom)):
                self._check_direction(f"aims, view {number}, ", name, value)
            views.append(view)
        count = _core.view_count(self._view)
        if len(views) > count:
            raise ValueError(
                f"aims: layout {self._layout!r} steers {count} views, got {len(views)} aims"
            )
        return views


def _two(pair: tuple[int, int], argument: str) -> tuple[int, int]:
    if len(pair) != 2:
        raise ValueError(f"{argument}: expected (width, height), got {pair!r}")
    return operator.index(pair[0]), operator.index(pair[1])


def _input_size(size: tuple[int, int]) -> tuple[int, int]:
    width, height = _two(size, "input")
    check_range("input", width, _core.SMALLEST_INPUT[0], _core.LARGEST_INPUT[0], "pixels of width")
    check_range(
        "input", height, _core.SMALLEST_INPUT[1], _core.LARGEST_INPUT[1], "pixels of height"
    )
    if width % 2 or height % 2:
        raise ValueError(f"input: expected an even width and height, got {width}x{height}")
    return width, height
