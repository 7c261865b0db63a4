"""Dewarps the frames of fisheye cameras.

A :class:`Camera` turns frames in numpy arrays into straight views that are steered like a
pan/tilt/zoom camera. Names and units are those of the lumofe tool: pan and tilt in degrees, zoom in
percent, the circle and sizes in pixels, width before height, x from the left, y from the top.

    import lumofe

    with lumofe.Camera(input=(2048, 2048), layout="quad", size=(1920, 1080)) as camera:
        camera.aim([(0, 70, 0), (90, 70, 0), (180, 70, 0), (270, 70, 0)])
        for frame in frames:                # (3072, 2048), uint8, NV12
            show(camera.dewarp(frame))      # (1620, 1920)
"""

from ._camera import Camera
from ._core import VERSION as __version__
from ._pictures import from_rgb, to_rgb
from ._view import View

__all__ = ["Camera", "View", "__version__", "from_rgb", "to_rgb"]
