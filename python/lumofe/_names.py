"""Names and ranges of arguments."""

from collections.abc import Mapping
from typing import TypeVar

Member = TypeVar("Member")


def member(argument: str, name: str, members: Mapping[str, Member]) -> Member:
    """The member of that name. Raises ValueError, which lists the names."""
    try:
        return members[name]
    except (KeyError, TypeError):
        raise ValueError(
            f"{argument}: {name!r} is unknown; choose one of {', '.join(members)}"
        ) from None


def check_range(argument: str, value: float, low: float, high: float, unit: str) -> None:
    """Raises ValueError for a value outside of low to high, both included, and for NaN."""
    if not low <= value <= high:
        raise ValueError(f"{argument}: {value:g} is outside {low:g} to {high:g} {unit}")
