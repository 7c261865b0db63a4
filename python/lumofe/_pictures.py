"""Conversions between frames and pictures."""

import numpy as np
from numpy.typing import NDArray

from . import _core
from ._names import member

_FORMATS = {name: _core.PixelFormat.__members__[name] for name in ("nv12", "yv12")}


def to_rgb(frame: NDArray[np.uint8], format: str = "nv12") -> NDArray[np.uint8]:
    """A 4:2:0 frame as a picture: an array of (height, width, 3), red first.

    frame: (height * 3 / 2, width), the chroma below the luma, height and width even, up to 16384
    format: "nv12" (pairs of U and V) or "yv12" (the V plane before the U plane)

    BT.601 with the full range, as in JPEG files. Raises ValueError for another array or format.
    """
    return _core.to_rgb(frame, member("format", format, _FORMATS))


def from_rgb(picture: NDArray[np.uint8], format: str = "nv12") -> NDArray[np.uint8]:
    """A picture as a 4:2:0 frame: the opposite of :func:`to_rgb`.

    picture: (height, width, 3), red first, height and width even, up to 16384

    The chroma is the mean of 2 x 2 pixels. Raises ValueError for another array or format.
    """
    return _core.from_rgb(picture, member("format", format, _FORMATS))
