"""Where a view looks."""

from typing import NamedTuple, Optional, Union


class View(NamedTuple):
    """Where a view looks; :meth:`Camera.aim` takes it as it is.

    pan: degrees; on ceiling and floor 0 to 360, clockwise in the raw picture
    tilt: degrees from the lens axis; negative on the floor, and on the wall upwards
    zoom: percent of the way from the widest to the closest view
    offset: how far the viewed area lies towards the circle's rim, input pixels; steps move it
        otherwise than aims do. None: what belongs to the tilt and the zoom
    """

    pan: float
    tilt: float
    zoom: float = 0.0
    offset: Optional[int] = None


# What aims a view: View, or the first of its fields.
Aim = Union[View, tuple[float, float], tuple[float, float, float]]
