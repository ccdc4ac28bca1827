"""Ratios of the library's speed to a peer's, and the floors that they are held to.

A ratio is throughput over throughput: 2.0 means that the library takes half the time. It is the median, over the rounds,
of the two times taken next to each other in one round.
"""
from dataclasses import dataclass
from statistics import median
from typing import Optional

LIBRARY = "veldnls"
COPY = "memcpy"
# Forms in which a page-to-page conversion is long enough to be compared with a plain copy.
LONG_FORMS = ("looped", "random")
# Floors of multi-byte encodings by form: for a long text, and for fields. One of 256 bytes has the lower of both.
SHORT_FORMS = ("field-16", "field-64")
LONG_FLOORS = {"multi": 1.0, "multi-multi": 2.0}
SHORT_FLOOR = 1.5
# Of the other kinds. Twice the text, which stands beside its two halves, takes at most 2.1 times as long as one; a
# crowded pool takes at most 3 times as long as another.
FLOORS = {"page": 1.0, "unicode": 1.0, "bytes": 1.0, "damage": 1.0, "doubling": 2 / 2.1, "pool-growth": 1 / 3}
# Of numbers by what is called.
NUMBER_FLOORS = {
    "formatDouble fixed": 1.0,
    "formatDouble grouped": 0.8,
    "formatDouble general": 0.5,
    "formatDouble field": 0.5,
    "formatInt64": 0.8,
    "parseDouble": 0.5,
    "parseInt64": 0.8,
}


@dataclass(frozen=True)
class Ratio:
    kind: str
    op: str
    text: str
    form: str
    peer: str
    ratio: float
    floor: Optional[float]  # None: told, and not judged

    @property
    def below(self):
        return self.floor is not None and self.ratio < self.floor

    def row(self):
        return {"op": self.op, "text": self.text, "form": self.form, "peer": self.peer, "ratio": round(self.ratio, 3)}


@dataclass(frozen=True)
class Speed:
    """What the library reaches by itself: bytes of input in a nanosecond (GB/s), None where nothing is converted, and
    nanoseconds a call."""

    kind: str
    op: str
    text: str
    form: str
    gigabytes: Optional[float]
    call: float


def number_floor(op):
    """The floor of the longest name that the call begins with."""
    return NUMBER_FLOORS[max((name for name in NUMBER_FLOORS if op.startswith(name)), key=len)]


def floor_of(kind, op, form, peer, has_vbmi):
    if kind == "numbers":
        return number_floor(op)
    if peer == COPY:
        return 0.5 if has_vbmi and form in LONG_FORMS else None
    if kind in LONG_FLOORS:
        if form in SHORT_FORMS:
            return SHORT_FLOOR
        return LONG_FLOORS[kind] if form in LONG_FORMS else min(LONG_FLOORS[kind], SHORT_FLOOR)
    return FLOORS.get(kind)


def ratios_of(group, has_vbmi):
    """A ratio against the best peer, and one against a plain copy where that was timed too."""
    times = {candidate["name"]: candidate["ns"] for candidate in group["candidates"]}
    own = times.pop(LIBRARY)
    converters = [peer for peer in times if peer != COPY]
    judged = [min(converters, key=lambda peer: median(times[peer]))] if converters else []
    judged += [peer for peer in times if peer == COPY]
    for peer in judged:
        ratio = median(theirs / ours for theirs, ours in zip(times[peer], own))
        floor = floor_of(group["kind"], group["op"], group["form"], peer, has_vbmi)
        yield Ratio(group["kind"], group["op"], group["text"], group["form"], peer, ratio, floor)


def all_reach_their_floors(ratios):
    """False also where nothing is judged, so that a filter without a match doesn't pass."""
    judged = [ratio for ratio in ratios if ratio.floor is not None]
    return bool(judged) and not any(ratio.below for ratio in judged)


def speed_of(group):
    own = next(median(c["ns"]) for c in group["candidates"] if c["name"] == LIBRARY)
    gigabytes = group["bytes"] / own if group["bytes"] else None
    return Speed(group["kind"], group["op"], group["text"], group["form"], gigabytes, own / group["calls"])
