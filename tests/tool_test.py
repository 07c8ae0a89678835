# SPDX-License-Identifier: Apache-2.0
"""The lrasynth command as its users call it. Takes the command's path from the environment variable LRASYNTH."""

import csv
import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest
import wave

COMMAND = os.path.abspath(os.environ.get("LRASYNTH", "build/test/tools/lrasynth"))
ROOT = pathlib.Path(__file__).resolve().parent.parent


def transient(start, level=50, intensity=80):
    return {"type": "transient", "start": start, "intensity": intensity, "level": level}


def continuous(start, duration, offset=0):
    points = [[time, 80, offset] for time in (0, duration // 3, duration // 2, duration)]
    return {"type": "continuous", "start": start, "duration": duration, "points": points}


class ToolTest(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def run_tool(self, *arguments, pattern=None):
        text = pattern if isinstance(pattern, str) else json.dumps({"events": pattern})
        return subprocess.run([COMMAND, *map(str, arguments)], input=text.encode(), capture_output=True,
                              cwd=self.directory, timeout=60)

    def output_of(self, *arguments, pattern=None):
        result = self.run_tool(*arguments, pattern=pattern)
        self.assertEqual((result.returncode, result.stderr), (0, b""), arguments)
        return result.stdout

    def samples(self, *arguments, pattern):
        return self.output_of("pattern", "-", *arguments, "--format", "bin", "-", pattern=pattern)

    def request_of(self, *arguments, pattern):
        printed = self.output_of("pattern", "-", *arguments, "--print-request", pattern=pattern).decode()
        body = printed[printed.index("{"):]
        return [[int(number) for number in re.findall(r"-?\d+", line)] for line in body.splitlines()[1:-1]]

    def test_wrong_calls_name_the_option_and_leave_no_file(self):
        calls = [
            ("tap --level 101 x.wav", 2, "--level.*0 to 100"),
            ("tap --intensity -1 x.wav", 2, "--intensity.*0 to 100"),
            ("tap --motor 7 x.wav", 2, "--motor.*832,1040,9595,81540"),
            ("tap --motor 81540 x.wav", 1, "81540 has no short signals"),
            ("tap", 2, "OUTPUT"),
            ("tap x.wav x.mp3", 2, "OUTPUT.*x.mp3.*wav, .svg, .csv or .bin"),
            ("tap x.wav -", 2, "--format.*wav, svg, csv or bin"),
            ("tap --format csv x.wav", 2, "--format.*OUTPUT -"),
            ("tap x.wav nosuch/x.svg", 1, "nosuch/x.svg"),
            ("tap --faster x.wav", 2, "--faster"),
            ("tone --frequency 7000 --half-periods 2 --amplitude 9 --chip 1 x.wav", 2, "--frequency.*1 to 6000"),
            ("sheet --levels 0,101 x.svg", 2, "--levels.*0 to 100"),
            ("pattern - x.wav --loop 65535 --interval 600000", 2, "--loop, --interval.*600000"),
            ("pattern - x.csv --chip 11 --loop 1000", 2, "--chip.*65535"),
            ("pattern - x.svg --chip 11", 2, "OUTPUT.*x.svg.*.bin or .csv"),
            ("pattern - x.wav --limit 50", 2, "event 2: start.*50"),
            ("pattern - x.wav --motor 81540", 2, "event 1: type.*81540"),
            ("pattern -", 2, "OUTPUT"),
            ("pattern nosuch.json x.wav", 1, "nosuch.json"),
            ("wobble", 2, "tap, pattern, tone or sheet"),
        ]
        for call, status, message in calls:
            with self.subTest(call):
                result = self.run_tool(*call.split(), pattern=[transient(0), continuous(100, 90)])
                self.assertEqual(result.returncode, status)
                self.assertRegex(result.stderr.decode(), rf"\Alrasynth: [^\n]*{message}[^\n]*\n\Z")
                self.assertEqual(list(self.directory.iterdir()), [])

    def test_the_forms_agree(self):
        for chip, rate, arguments in ((0, 24000, "--motor 832"), (1, 12000, "--level 90"), (0, 24000, "--level 90")):
            self.output_of("tap", *arguments.split(), "--chip", chip, "x.wav", "x.csv", "x.bin")
            codes = (self.directory / "x.bin").read_bytes()
            rows = list(csv.DictReader((self.directory / "x.csv").read_text().splitlines()))
            amplitudes = [int(row["amplitude"]) for row in rows]
            self.assertEqual(bytes(int(row["code"]) for row in rows), codes)
            self.assertEqual([amplitude % 256 for amplitude in amplitudes], list(codes))
            self.assertAlmostEqual(float(rows[-1]["time_ms"]), (len(codes) - 1) * 1000 / rate, places=3)
            with wave.open(str(self.directory / "x.wav")) as file:
                self.assertEqual(file.getparams()[:4], (1, 2, rate, len(codes)))
                frames = memoryview(file.readframes(len(codes))).cast("h")
                self.assertEqual([frame // 256 for frame in frames], amplitudes)

    def test_the_committed_pictures_are_what_is_drawn(self):
        subprocess.run([ROOT / "scripts" / "make-pictures", COMMAND, self.directory], check=True)
        drawn, committed = ({path.name: path.read_text() for path in directory.iterdir()}
                            for directory in (self.directory, ROOT / "docs" / "pictures"))
        self.assertEqual(drawn, committed)

    def test_audible_wav_keeps_the_tone(self):
        self.output_of("tone", "--frequency", 100, "--half-periods", 20, "--amplitude", 100, "--audible", "x.wav")
        with wave.open(str(self.directory / "x.wav")) as file:
            self.assertEqual(file.getparams()[:4], (1, 2, 48000, 4800))
            frames = memoryview(file.readframes(4800)).cast("h")
        for i in range(480, 4320):  # away from the ends
            self.assertAlmostEqual(frames[i] - frames[i - 240], 2 * frames[i], delta=1500)

    def test_a_bad_pattern_is_told_every_fault_at_once(self):
        events = [
            dict(transient(-1, level=101, intensity=1.5), colour=3),
            {"type": "wobble"},
            7,
            continuous(4096, 4097),
            {"type": "transient", "start": 0, "level": 0},
            dict(continuous(0, 90), points=[[0, 0, 0], [60, 0, 0], [30, 101, -51], [2**64 - 1, 0]]),
            dict(continuous(0, 90), points=[[0, 0, 0], [60, 0, 0], [30, 0, 0], [80, 0, 0]]),
            dict(continuous(0, 0), points=[]),
        ]
        result = self.run_tool("pattern", "-", "x.wav", pattern=json.dumps({"events": events, "name": "x"}))
        self.assertEqual(result.returncode, 2)
        places = re.findall(r"(?m)^lrasynth: -: (.*): ", result.stderr.decode())
        self.assertEqual(places, [
            "name", "event 1: start", "event 1: intensity", "event 1: level", "event 1: colour", "event 2: type",
            "event 3", "event 4: start", "event 4: duration", "event 4: point 4, time", "event 5: intensity",
            "event 6: point 3, intensity", "event 6: point 3, offset", "event 6: point 4", "event 7: points",
            "event 7: points", "event 8: duration", "event 8: points"])
        self.assertRegex(result.stderr, rb"4: start.*take 4095\n.*4: duration.*take 4098")
        self.assertEqual(list(self.directory.iterdir()), [])

    def test_events_are_put_in_playing_order(self):
        bed, accent, tap = continuous(0, 600), continuous(100, 50, 40), transient(300)
        last_of = lambda *events: self.request_of(pattern=events)[-1]
        self.assertEqual(last_of(tap, bed)[:2], [4096, 0])  # transients play over it anyway
        self.assertEqual(last_of(accent, bed), [4096, 600] + [0] * 15)  # it must not hide the accent
        self.assertEqual([row[1] for row in self.request_of("--chip", 11, pattern=[tap, accent, bed])], [0, 100, 300])
        alone = self.samples(pattern=[continuous(0, 50, 40)])
        for loops, interval in ((1, 0), (3, 20)):
            played = self.samples("--loop", loops, "--interval", interval, pattern=[accent, bed])
            self.assertEqual(len(played), 24 * (600 * loops + interval * (loops - 1)))
            for loop in range(loops):
                start = 24 * (100 + loop * (600 + interval))
                self.assertEqual(played[start:start + len(alone)], alone)

    def test_canonical_form_is_stable_and_plays_the_same(self):
        events = [transient(90, 70), continuous(30, 200, -20), transient(0, 30)]
        saved = self.output_of("pattern", "-", "--save", "-", pattern=events)
        self.assertEqual(self.output_of("pattern", "-", "--save", "-", pattern=saved.decode()), saved)
        self.assertEqual([event["start"] for event in json.loads(saved)["events"]], [0, 30, 90])
        self.assertEqual(self.samples(pattern=saved.decode()), self.samples(pattern=events))

    def test_the_printed_request_says_what_the_file_says(self):
        events = [continuous(30, 200, -20), transient(190, 70), transient(250, 35, 60)]
        bed, *taps = self.request_of(pattern=events)
        self.assertEqual(bed, [4096, 30, 0, 0, 200, *sum(events[0]["points"], [])])
        self.assertEqual(taps, [[4097, 190, 80, 70] + [0] * 13, [4097, 250, 60, 35] + [0] * 13])

    def test_event_stream_csv(self):
        events = [transient(40, intensity=33), continuous(0, 600), transient(300)]
        printed = self.output_of("pattern", "-", "--chip", 11, "--loop", 2, "--format", "csv", "-", pattern=events)
        expected = [f"{i},{group}" for i, group in enumerate(["0,80,600", "40,33,5", "260,80,5"] * 2, 1)]
        self.assertEqual(printed.decode().split(), ["event,delta_ms,strength,duration_ms", *expected, "total,,,1820"])


if __name__ == "__main__":
    unittest.main()
