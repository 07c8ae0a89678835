# SPDX-License-Identifier: Apache-2.0
"""Prints what waveforms.c prints, by the Python package."""

import array
import sys

import lrasynth

EVENTS = [lrasynth.Continuous(0, 400, [(0, 0), (100, 90, 20), (300, 60, -15), (400, 0)]), lrasynth.Transient(450, 80, 50)]
write = sys.stdout.buffer.write


def serve(call, *arguments, **options):
    try:
        write(call(*arguments, **options) or b"")
    except lrasynth.Error as error:
        write(f"{error.code} {error}\n".encode() + (f"{error.index}\n".encode() if error.index is not None else b""))


def windows(events, profile, **options):
    """The same in pieces, into a buffer and as bytes in turn, of a request in a buffer."""
    reader = lrasynth.Reader.pattern(array.array("i", lrasynth.records(events)), profile, **options)
    block, parts = bytearray(777), []
    for first in range(0, len(reader), len(block)):
        parts.append(bytes(block[: reader.readinto(block, first)]) if first % 2 else reader.read(first, len(block)))
    assert b"".join(parts) == b"".join(reader.blocks(1000)) == lrasynth.pattern(events, profile, **options)
    return b"".join(parts)


for motor in (lrasynth.MOTOR_832, lrasynth.MOTOR_1040, lrasynth.MOTOR_9595, lrasynth.MOTOR_81540):
    for chip in (0, lrasynth.CHIP_HALF_RATE, lrasynth.CHIP_EVENT_STREAM):
        for boost in (False, True):
            profile = lrasynth.Profile(motor, chip, boost)
            for level in range(-1, 102, 3):
                serve(lrasynth.tap, level, 83, profile)
            for interval_ms in (250, -1000):
                serve(lrasynth.check, EVENTS, profile, loops=30, interval_ms=interval_ms)
                serve(windows, EVENTS, profile, loops=30, interval_ms=interval_ms)
assert lrasynth.tap(50, 83) == lrasynth.tap(50, 83, lrasynth.Profile())
for wrong in (lambda: lrasynth.records([17]), lambda: lrasynth.records(b"17 bytes and more"),
              lambda: lrasynth.Reader.tap(50).readinto(b"read only"), lambda: lrasynth.tap(2**32 + 50),
              lambda: lrasynth.tap(1.5), lambda: lrasynth.pattern(EVENTS, loops=2**31)):
    try:
        wrong()
        sys.exit("what is no request, buffer or number of 32 bits is taken for one")
    except (TypeError, OverflowError):
        pass
