# SPDX-License-Identifier: Apache-2.0
"""The ctypes declarations of the Python package against the export list and the header's declarations."""

import pathlib
import re
import sys
import unittest
from ctypes import POINTER, c_char, c_char_p, c_float, c_int32, c_int64, c_uint8

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "bindings" / "python" / "lrasynth"))  # by itself, without a library to load
import raw  # noqa: E402

HEADER = (ROOT / "include" / "lrasynth.cdef.h").read_text()  # another test holds it to lrasynth.h
TYPES = {
    "void": None,
    "int32_t": c_int32,
    "int64_t": c_int64,
    "float": c_float,
    "uint8_t": c_uint8,
    "char": c_char,
    "lrasynth_profile": raw.Profile,
    "lrasynth_pattern": raw.Pattern,
    "lrasynth_segment": raw.Segment,
    "lrasynth_point": raw.Point,
}


def declared_type(text):
    """Of a result, or of a parameter with its name."""
    base = TYPES[re.search(rf"\b({'|'.join(TYPES)})\b", text)[0]]
    if not re.search(r"[*\[]", text):
        return base
    return c_char_p if base is c_char else POINTER(base)


class Bindings(unittest.TestCase):
    def test_cover_exactly_the_exported_names(self):
        exported = re.findall(r"^    (\w+);$", (ROOT / "src" / "lrasynth.map").read_text(), re.MULTILINE)
        self.assertCountEqual([*raw.FUNCTIONS, *raw.DATA], exported)

    def test_have_the_types_of_the_header(self):
        functions = re.findall(r"^((?:const )?\w+ \*?)(\w+)\(([^)]*)\);", HEADER, re.MULTILINE)
        declared = {
            name: (declared_type(result), tuple(map(declared_type, arguments.split(","))) if arguments != "void" else ())
            for result, name, arguments in functions
        }
        self.assertEqual(raw.FUNCTIONS, declared)
        data = re.findall(r"^extern (?:const )?(\w+) (\w+)(?:\[(\d+)\])?;", HEADER, re.MULTILINE)
        self.assertEqual(raw.DATA, {n: TYPES[t] * int(size) if size else TYPES[t] for t, n, size in data})


if __name__ == "__main__":
    unittest.main()
