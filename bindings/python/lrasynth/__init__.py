# SPDX-License-Identifier: Apache-2.0
"""Drive waveforms for linear resonant actuators, with the bytes of the lrasynth library.

    import lrasynth

    motor = lrasynth.Profile(motor=lrasynth.MOTOR_1040)
    click = lrasynth.tap(50, 80, motor)
    ring = [lrasynth.Continuous(0, 400, [(0, 0), (100, 90, 20), (300, 60), (400, 0)]), lrasynth.Transient(450, 80, 50)]
    lrasynth.check(ring, motor)
    whole = lrasynth.pattern(ring, motor, loops=3, interval_ms=200)
    for block in lrasynth.Reader.pattern(ring, motor, loops=1000).blocks(1024):
        ...  # to the driver

A sample is a byte, an amplitude in two's complement: memoryview(click).cast("b"), or numpy.frombuffer(click, "int8").
lrasynth.raw has every function of the library as it is in C.
"""

from __future__ import annotations

import ctypes
from array import array
from typing import Any, Iterable, Iterator, NamedTuple, Sequence, Union, cast

from . import raw
from .constants import *  # noqa: F403
from .constants import ERROR_NEGATIVE_WINDOW, NO_LIMIT, RECORD_LENGTH, VERSION_MAJOR, VERSION_MINOR, VERSION_PATCH

__version__ = f"{VERSION_MAJOR}.{VERSION_MINOR}.{VERSION_PATCH}"

_library = raw.load()


class Error(ValueError):
    """The library refuses: its text, its number as `code` (ERROR_...), and for check() the `index` of the integer at
    fault."""

    def __init__(self, code: int, index: int | None = None):
        super().__init__(_library.lrasynth_error_text(code).decode())
        self.code = code
        self.index = index


def _served(number: int) -> int:
    if number < 0:
        raise Error(number)
    return number


def _whole(*numbers: int) -> array[int]:
    """The same, and an exception for what 32 bits cannot hold: ctypes would take what is left of it in them."""
    return array("i", numbers)


class Profile(NamedTuple):
    """A motor and what drives it: one of MOTOR_..., 0 or one of CHIP_..., and whether boost is on (motor 832)."""

    motor: int = 1040
    chip: int = 0
    boost: bool = True

    @property
    def sample_rate(self) -> int:
        return int(self._raw().sample_rate)

    def _raw(self) -> raw.Profile:
        return cast(raw.Profile, _library.lrasynth_profile_of(*_whole(self.chip, self.motor, self.boost)))


class Transient(NamedTuple):
    """A tap inside a pattern."""

    start_ms: int
    intensity: int
    level: int


class Continuous(NamedTuple):
    """A vibration through four points: of each its time in ms, its intensity in percent, and a frequency offset, which
    is 0 where it is left out."""

    start_ms: int
    duration_ms: int
    points: Sequence[Sequence[int]]


#: Transient and Continuous in any order; or the request's integers themselves, in a buffer of 32-bit integers such as
#: array("i") and numpy's int32.
Events = Union[Iterable[Union[Transient, Continuous]], memoryview, Any]


def records(events: Events) -> ctypes.Array[ctypes.c_int32]:
    """The request that events make, RECORD_LENGTH integers for each of them."""
    try:
        view = memoryview(cast(Any, events))
    except TypeError:
        return _records_of(list(cast(Any, events)))
    if view.itemsize != 4 or view.format not in ("i", "l", "<i", "<l"):
        raise TypeError(f"a request is made of 32-bit integers, not of format {view.format!r}")
    return (ctypes.c_int32 * (view.nbytes // 4)).from_buffer_copy(view.tobytes())


def _records_of(events: list[Transient | Continuous]) -> ctypes.Array[ctypes.c_int32]:
    made = (ctypes.c_int32 * (len(events) * RECORD_LENGTH))()
    for i, event in enumerate(events):
        record = (ctypes.c_int32 * RECORD_LENGTH).from_buffer(made, i * RECORD_LENGTH * 4)
        if isinstance(event, Transient):
            _library.lrasynth_put_transient(record, *_whole(*event))
        elif isinstance(event, Continuous):
            if len(event.points) != 4:
                raise ValueError("a continuous vibration has four points")
            points = (raw.Point * 4)(*(raw.Point(*_whole(*point)) for point in event.points))
            _library.lrasynth_put_continuous(record, *_whole(event.start_ms, event.duration_ms), points)
        else:
            raise TypeError(f"neither Transient nor Continuous: {event!r}")
    return made


def _request(events: Events, loops: int, interval_ms: int, limit_ms: int) -> raw.Pattern:
    integers = records(events)
    start = ctypes.cast(integers, ctypes.POINTER(ctypes.c_int32))  # which keeps the integers
    return raw.Pattern(start, *_whole(len(integers), loops, interval_ms, limit_ms))


class Reader:
    """A waveform that is rendered where it is read: any window in any order, into bytes or a buffer of the caller's.
    Made by Reader.tap() and Reader.pattern(). len() of it is its length in samples, or bytes of an event stream."""

    def __init__(self, read: Any, *arguments: Any, length: int):
        self._read = read
        self._arguments = arguments
        self._length = _served(length)

    @classmethod
    def tap(cls, level: int, intensity: int = 100, profile: Profile = Profile()) -> Reader:
        motor = profile._raw()
        level, intensity = _whole(level, intensity)
        length = _library.lrasynth_tap_length(motor, level)
        return cls(_library.lrasynth_tap_read, motor, level, intensity, length=length)

    @classmethod
    def pattern(cls, events: Events, profile: Profile = Profile(), *, loops: int = 1, interval_ms: int = 0,
                limit_ms: int = NO_LIMIT) -> Reader:
        motor = profile._raw()
        request = _request(events, loops, interval_ms, limit_ms)
        length = _library.lrasynth_pattern_length(motor, request)
        return cls(_library.lrasynth_pattern_read, motor, request, length=length)

    def __len__(self) -> int:
        return self._length

    def readinto(self, buffer: Any, first: int = 0) -> int:
        """Fills a writable buffer (bytearray, array, numpy's) with the samples from first on. Returns how many there
        were, less than it holds only at the waveform's end."""
        view = memoryview(buffer).cast("B")
        block = (ctypes.c_uint8 * len(view)).from_buffer(view)
        return _served(self._read(*self._arguments, first, block, len(view)))

    def read(self, first: int = 0, count: int | None = None) -> bytes:
        """The samples from first on: count of them, or as many as there are."""
        left = max(0, self._length - first)
        if count is None:
            count = left
        if count < 0:
            raise Error(ERROR_NEGATIVE_WINDOW)
        block = bytearray(min(count, left))
        return bytes(memoryview(block)[: self.readinto(block, first)])

    def blocks(self, size: int) -> Iterator[bytes]:
        """All of it in its order, so many samples at a time."""
        if size < 1:
            raise ValueError("a block has at least one sample")
        return (self.read(first, size) for first in range(0, self._length, size))


def tap(level: int, intensity: int = 100, profile: Profile = Profile()) -> bytes:
    """A tap: level 0..100 is its character, intensity its strength in percent."""
    return Reader.tap(level, intensity, profile).read()


def pattern(events: Events, profile: Profile = Profile(), *, loops: int = 1, interval_ms: int = 0,
            limit_ms: int = NO_LIMIT) -> bytes:
    """A pattern, played so many times with silence between. No vibration may start later than limit_ms, if there is
    such a limit."""
    return Reader.pattern(events, profile, loops=loops, interval_ms=interval_ms, limit_ms=limit_ms).read()


def check(events: Events, profile: Profile = Profile(), *, loops: int = 1, interval_ms: int = 0,
          limit_ms: int = NO_LIMIT) -> None:
    """Raises Error where a pattern would not play as written, with the index of the integer at fault."""
    index = ctypes.c_int32()
    fault = _library.lrasynth_pattern_check(profile._raw(), _request(events, loops, interval_ms, limit_ms), index)
    if fault < 0:
        raise Error(fault, index.value)
