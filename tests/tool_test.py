# SPDX-License-Identifier: Apache-2.0
"""The lrasynth command as its users call it. Takes the command's path from the environment variable LRASYNTH."""

import csv
import json
import os
import pathlib
import re
import shlex
import signal
import struct
import subprocess
import tempfile
import time
import unittest
import wave
from random import Random

COMMAND = os.path.abspath(os.environ.get("LRASYNTH", "build/test/tools/lrasynth"))
ROOT = pathlib.Path(__file__).resolve().parent.parent


def transient(start, level=50, intensity=80):
    return {"type": "transient", "start": start, "intensity": intensity, "level": level}


def continuous(start, duration, offset=0):
    points = [[time, 80, offset] for time in (0, duration // 3, duration // 2, duration)]
    return {"type": "continuous", "start": start, "duration": duration, "points": points}


# Nested and overlapping, so that what ends last does not start last.
def random_events(random):
    events = []
    for _ in range(random.randrange(1, 6)):
        start, duration = random.randrange(200), random.randrange(4, 200)
        events.append(random.choice((transient(start, random.randrange(101)), continuous(start, duration))))
    return events


WHOLE = "must be a whole number from 0 to 100, not"

# Each with its exit status and what it says; p.json is a pattern, link.json a link to it, standard input is empty.
WRONG_CALLS = rf"""
 | 2 | a command is required: tap, pattern, convert, tone, sheet, compare or completion
wobble | 2 | wobble: is no command; there are tap, pattern, convert, tone, sheet, compare and completion
patern p.json | 2 | patern: is no command; .*; did you mean pattern\?
--motor 832 | 2 | --motor: stands behind its command: tap, pattern, convert, sheet or compare
--hlep | 2 | --hlep: is no option; did you mean --help\?
--motor 832 tap | 2 | --motor: stands behind its command: lrasynth tap --motor
--response tap x.svg | 2 | --response: stands behind its command: lrasynth tap --response
completion tcsh | 2 | SHELL: must be bash, zsh or fish, not tcsh
--fast tap x.wav | 2 | --fast: is no option of this command
tap --intensty=5 x.wav | 2 | --intensty=5: is no option of this command; did you mean --intensity\?
tap --boost off x.wav | 2 | --boost: is no option of this command
tap --level 101 x.wav | 2 | --level: {WHOLE} 101
tap --level 5.5 x.wav | 2 | --level: {WHOLE} 5.5
tap --level -1 x.wav | 2 | --level: {WHOLE} -1
tap --level +1 x.wav | 2 | --level: {WHOLE} \+1
tap --level 0x10 x.wav | 2 | --level: {WHOLE} 0x10
tap --level ' 7' x.wav | 2 | --level: {WHOLE}  7
tap --level '' x.wav | 2 | --level: {WHOLE} an empty word
tap --level {"9" * 60} x.wav | 2 | --level: {WHOLE} 9{{40}}\.\.\.
tap --level ESC x.wav | 2 | --level: {WHOLE} .x1B
tap --level | 2 | --level: takes one value
tap --title --strict=no --level | 2 | --level: takes one value
tap --level 1 --level 2 x.wav | 2 | --level: takes one value
tap --level 1,2 x.wav | 2 | --level: takes one value
tap --intensity 101 x.wav | 2 | --intensity: {WHOLE} 101
tap --motor 7 x.wav | 2 | --motor: must be 832, 1040, 9595 or 81540, not 7
tap --motor 01040 x.wav | 2 | --motor: must be .* not 01040
tap --motor 81540 x.wav | 2 | --motor: motor 81540 has no taps
tap --chip -1 x.wav | 2 | --chip: must be a whole number from 0 to 2147483647, not -1
tap x.mp3 | 2 | OUTPUT: x.mp3 must end in .wav, .svg, .csv, .felt.csv or .bin, or be -
tap x | 2 | OUTPUT: x must end in .*
tap x.wav x.mp3 | 2 | OUTPUT: x.mp3 must end in .*
tap '' | 2 | OUTPUT: .* must end in .*
tap - | 2 | --format: OUTPUT - needs wav, svg, csv, felt.csv or bin
tap --format mp3 - | 2 | --format: must be wav, svg, csv, felt.csv or bin, not mp3
tap --format csv x.wav | 2 | --format: does nothing without OUTPUT -
tap --format csv - - | 2 | -: takes one thing only
tap x.wav ./x.wav | 2 | ./x.wav: is named twice
tap --audible x.csv | 2 | --audible: does nothing without a .wav file
tap --response=0 x.svg | 2 | --response: must be a number from 1 to 1000, or motor, not 0
tap --response 1001 x.svg | 2 | --response: must be a number from 1 to 1000, or motor, not 1001
tap --strict=no x.wav | 2 | --strict: takes no value
tap -- x.mp3 | 2 | OUTPUT: x.mp3 must end in .*
tap --response x.wav | 2 | --response: does nothing without an .svg or .felt.csv file
tap --response 1e2 x.svg | 2 | --response: must be a number from 1 to 1000, or motor, not 1e2
tap --response-hz 100 x.wav x.csv | 2 | --response-hz: does nothing without an .svg or .felt.csv file
tap --rated 0 x.svg | 2 | --rated: must be a number from 0.001 to 1000, not 0
tap --rated nan | 2 | --rated: must be a number from 0.001 to 1000, not nan
pattern p.json --save q.json --rated 2 | 2 | --rated: does nothing without an .svg or .felt.csv file
tap --response --response-hz 2001 x.svg | 2 | --response-hz: must be a whole number from 0 to 2000, not 2001
tap --from 5 x.wav | 2 | --from: does nothing without an .svg file
tap --to 5 | 2 | --to: does nothing without an .svg file
tap --title x | 2 | --title: does nothing without an .svg file
compare --title x | 2 | --title: does nothing without an .svg file
tap --from 17 x.svg | 2 | --from, --to: nothing of 0 to 16.0417 ms lies between them
tap --from 9 --to 9 x.svg | 2 | --from, --to: nothing of 0 to .* ms lies between them
tap --level 60 --intensity 100 --strict x.wav | 2 | --strict: a warning is a fault
tap nosuch/x.wav | 1 | cannot write nosuch/x.wav: No such file or directory
tap x.csv nosuch/x.wav | 1 | cannot write nosuch/x.wav: No such file or directory
tap {"n" * 256}.wav | 1 | cannot write n{{120}}\.\.\.: File name too long
tone x.wav | 2 | --frequency is required
tone --frequency 0 --half-periods 2 --amplitude 9 x.wav | 2 | --frequency: must be a whole number from 1 to 12000, not 0
tone --frequency 7000 --half-periods 2 --amplitude 9 --chip 1 x.wav | 2 | --frequency: must be .* 1 to 6000, not 7000, at 12000 samples a second
tone --frequency 9 --half-periods 0 --amplitude 9 x.wav | 2 | --half-periods: must be .* from 1 to 1000000, not 0
tone --frequency 9 --half-periods 2 --amplitude 128 x.wav | 2 | --amplitude: must be .* from 0 to 127, not 128
tone --frequency 1 --half-periods 1000000 --amplitude 9 x.wav | 2 | --half-periods: the waveform may last 600000 ms at most
tone --frequency 100 --half-periods 2 --amplitude 127 --strict x.wav | 2 | --strict: a warning is a fault
sheet | 2 | PICTURE is required
sheet x.png | 2 | PICTURE: x.png must end in .svg, or be -
sheet x.svg y.svg | 2 | y.svg: is an argument too many
sheet --levels 0,101 x.svg | 2 | --levels: {WHOLE} 101
pattern | 2 | FILE is required
pattern nosuch.json | 1 | cannot read nosuch.json: No such file or directory
pattern . x.wav | 1 | cannot read .: Is a directory
pattern - x.wav | 2 | -:1:1: is not JSON: the text is empty
pattern p.json p.json | 2 | OUTPUT: p.json must end in .*
pattern link.json --save ./p.json | 2 | ./p.json: is named twice
pattern p.json --save x.wav x.wav | 2 | x.wav: is named twice
pattern p.json --save - --print-request | 2 | -: takes one thing only
pattern p.json --print-request --format csv - | 2 | -: takes one thing only
pattern p.json --motor 832 --boost maybe x.wav | 2 | --boost: must be on or off, not maybe
pattern p.json --interval 5 x.wav | 2 | --interval: does nothing without --loop 2 or more
pattern p.json --loop 0 x.wav | 2 | --loop: must be a whole number from 1 to 65535, not 0
pattern p.json --loop 2 --interval 600000 x.wav | 2 | p.json: the waveform .* with all passes and gaps
pattern p.json --limit 50 x.wav | 2 | p.json:1:78: event 2: start: a continuous vibration starts later than the limit: 50 ms
pattern nested.json --limit 50 --loop 2 x.wav | 2 | nested.json:1:13: event 1: ends last, at 90 ms, where passes need .* at least 90, not 50
pattern p.json --motor 81540 x.wav | 2 | p.json:1:13: event 1: type: the motor has no taps: motor 81540
pattern p.json --chip 11 --format wav - | 2 | --format: must be csv or bin with --chip 11
pattern p.json --chip 11 x.svg | 2 | OUTPUT: x.svg must end in .csv or .bin with --chip 11
pattern p.json --chip 11 --loop 1000 --strict x.csv | 2 | --strict: a warning is a fault
convert p.json | 2 | OUTPUT is required
convert p.json x.txt | 2 | OUTPUT: x.txt must end in .json, .ahap, .haptic, .xml or .vibrate.json, or be -
convert p.json x.hjif | 2 | OUTPUT: x.hjif must end in .*
convert p.json - | 2 | --format: OUTPUT - needs json, ahap, haptic, xml or vibrate
convert p.json --format hjif - | 2 | --format: must be json, .* not hjif
convert p.json --format xml x.xml | 2 | --format: does nothing without OUTPUT -
convert p.json ./p.json | 2 | ./p.json: is named twice
convert p.json --chip 11 x.ahap | 2 | --chip: 11 plays events, not a waveform
convert p.json --felt x.ahap | 2 | --felt: does nothing without a .json file
convert p.json --rated 2 x.json | 2 | --rated: does nothing without --felt
convert p.json --floor -30 x.ahap | 2 | --floor: does nothing without sound
convert p.json --from 5 x.ahap | 2 | --from: does nothing without sound
convert x.hmpg x.json | 2 | x.hmpg: is neither UTF-8 text nor sound that is known; of MPEG haptics JSON is read, .*
convert cut.wav x.json | 2 | cut.wav: is sound that cannot be read: .*
convert short.wav --floor -5 x.json | 2 | --floor: must be a whole number from -80 to -6, not -5
convert bad.xml x.json | 2 | bad.xml:1:23: is not XML: .*
pattern none.json x.svg | 2 | there is nothing to draw: it lasts 0 ms
compare p.json --taps x.svg | 2 | --taps: does nothing without sound
compare p.json --level 5 x.svg | 2 | --level: does nothing beside a pattern
compare p.json --in-pattern x.svg | 2 | --in-pattern: does nothing beside a pattern
compare --motor 832,abc | 2 | --motor: must be 832, 1040, 9595 or 81540, not abc
compare --motor 1040,81540 x.svg | 2 | --motor: motor 81540 has no taps
compare --chip 11 x.svg | 2 | --chip: 11 plays events, not a waveform
compare --chip 0,0,0,0,0,0,0 --motor 832,1040 x.svg | 2 | at most 12 waveforms can be compared
compare --motor 832 --boost on,off x.svg | 2 | --boost: does nothing for taps
compare - - | 2 | -: is named twice
tap loop.wav | 1 | cannot write loop.wav: Too many levels of symbolic links
tap x.csv full.wav | 1 | cannot write full.wav: No space left on device
sheet --intensity 100 --levels 60 --strict x.svg | 2 | --strict: a warning is a fault
pattern p.json --print-request --response | 2 | --response: does nothing without an .svg or .felt.csv file
pattern p.json --save '' | 2 | --save: must be a file, or -, not an empty word
pattern p.json --save --strict | 2 | --save: must be a file, or -, not --strict
pattern p.json --save /dev/stdout --print-request | 2 | -: takes one thing only
compare --from 5 | 2 | --from: does nothing without an .svg file
compare --level 60 --intensity 100 --strict x.svg | 2 | --strict: a warning is a fault
"""


class ToolTest(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def run_tool(self, *arguments, pattern=None):
        text = pattern if isinstance(pattern, str) else json.dumps({"events": pattern})
        return subprocess.run([COMMAND, *map(str, arguments)], input=text.encode(), capture_output=True,
                              cwd=self.directory, timeout=60)

    def output_of(self, *arguments, pattern=None):
        result = self.run_tool(*arguments, pattern=pattern)
        errors = re.sub(rb"(?m)^lrasynth: warning: .*\n", b"", result.stderr)
        self.assertEqual((result.returncode, errors), (0, b""), arguments)
        return result.stdout

    def samples(self, *arguments, pattern):
        return self.output_of("pattern", "-", *arguments, "--format", "bin", "-", pattern=pattern)

    def request_of(self, *arguments, pattern):
        printed = self.output_of("pattern", "-", *arguments, "--print-request", pattern=pattern).decode()
        body = printed[printed.index("{"):]
        return [[int(number) for number in re.findall(r"-?\d+", line)] for line in body.splitlines()[1:-1]]

    def test_wrong_calls_say_why_in_one_line_and_leave_no_file(self):
        (self.directory / "p.json").write_text(json.dumps({"events": [transient(0), continuous(100, 90)]}))
        (self.directory / "nested.json").write_text(json.dumps({"events": [continuous(0, 90), continuous(9, 9)]}))
        (self.directory / "none.json").write_text('{"events": []}')
        (self.directory / "bad.xml").write_text("<vibration-effect><a b></vibration-effect>")
        (self.directory / "x.hmpg").write_bytes(bytes(range(64)))
        (self.directory / "cut.wav").write_bytes(b"RIFF\x40\0\0\0WAVEfmt ")
        os.symlink("p.json", self.directory / "link.json")
        os.symlink("loop.wav", self.directory / "loop.wav")
        os.symlink("/dev/full", self.directory / "full.wav")
        before = sorted(self.directory.iterdir())
        for line in WRONG_CALLS.strip("\n").splitlines():
            call, status, message = (part.strip() for part in line.split(" | "))
            with self.subTest(call):
                result = self.run_tool(*shlex.split(call.replace("ESC", "\x1b")), pattern="")
                self.assertEqual(result.returncode, int(status))
                said = [text for text in result.stderr.decode().splitlines() if not text.startswith("lrasynth: warning: ")]
                self.assertRegex("\n".join(said), rf"\Alrasynth: {message}\Z")
                self.assertEqual((result.stdout, sorted(self.directory.iterdir())), (b"", before))

    # A foreign file is told by what it says, and what it loses is told in one line; sound may come through a pipe.
    def test_files_from_elsewhere_are_read_like_patterns(self):
        event = '{"Event":{"EventType":"%s","Time":%g}}'
        ahap = '{"Pattern":[%s]}' % ",".join((event % ("HapticTransient", 0.1), event % ("AudioCustom", 0)))
        expected = self.samples("--motor", 832, pattern=[{"type": "transient", "start": 100, "driven": 100, "level": 50}])
        told = b"lrasynth: note: -: 1 audio event is left out\n"
        for arguments, status, said in ((("--format", "bin", "-"), 0, told),
                                        (("--strict", "x.wav"), 2, told + b"lrasynth: --strict: what is lost is a fault\n")):
            result = self.run_tool("pattern", "-", "--motor", 832, *arguments, pattern=ahap)
            self.assertEqual((result.returncode, result.stderr), (status, said))
            self.assertEqual(result.stdout, b"" if status else expected)
        self.assertEqual(list(self.directory.iterdir()), [])
        (self.directory / "a.json").write_text(ahap)
        self.output_of("pattern", "-", "--audible", "a.wav", pattern=[transient(200, 50)])
        sound = (self.directory / "a.wav").read_bytes()
        piped = subprocess.run([COMMAND, "compare", "-", "a.wav", "--motor", "1040,832"], input=sound, capture_output=True,
                               cwd=self.directory, timeout=60)
        self.assertEqual((piped.returncode, piped.stderr), (0, b""))
        self.assertRegex(piped.stdout, rb"\nlength( +2\d\d\.\d ms){4}\n")
        with wave.open(str(self.directory / "a.wav")) as mono, wave.open(str(self.directory / "b.wav"), "w") as stereo:
            stereo.setparams((2, 2, mono.getframerate(), 0, "NONE", ""))
            left = mono.readframes(mono.getnframes())
            stereo.writeframes(b"".join(2 * left[i:i + 2] for i in range(0, len(left), 2)))
        heard = [self.output_of("convert", name, "--format", "json", "-", pattern="") for name in ("a.wav", "b.wav")]
        self.assertEqual(heard[0], heard[1])
        taps = json.loads(self.output_of("convert", "a.wav", "--from", 150, "--format", "json", "-", pattern=""))["events"]
        self.assertEqual([(tap["type"], round(tap["start"], -1)) for tap in taps], [("transient", 50)])

    def test_convert_hands_patterns_on(self):
        curve = {"type": "curve", "start": "1/2b", "points": [["1s", 10, 0], {"time": "1200.4ms", "intensity": 90, "hz": 170}]}
        group = {"type": "group", "start": 0, "repeat": 2, "every": "1b", "events": [transient(0, 30, 80)]}
        pattern = json.dumps({"tempo": 120, "loops": 2, "events": [curve, group]})
        (self.directory / "p.json").write_text(pattern)
        written = json.loads(self.output_of("convert", "p.json", "--format", "json", "-", pattern=""))
        self.assertEqual(written, {"tempo": 120, "loops": 2, "events": [
            {"type": "group", "start": 0, "repeat": 2, "every": "1b", "events": [
                {"type": "transient", "start": 0, "driven": 20, "level": 30}]},
            {"type": "curve", "start": "1/2b", "points": [[0, 10, 0], {"time": 200, "intensity": 90, "hz": 170}]}]})
        felt = {"felt": True, "events": [transient(0), {**transient(9), "felt": False}, {
            "type": "group", "start": 20, "felt": False, "events": [transient(0)]}]}
        kept = json.loads(self.output_of("convert", "-", "--format", "json", "-", pattern=json.dumps(felt)))["events"]
        self.assertEqual([[key in event for key in ("intensity", "driven")] for event in (*kept[:2], kept[2]["events"][0])],
                         [[True, False], [False, True], [False, True]])
        self.assertIn(b"strength and frequency are lost", self.run_tool("convert", "p.json", "x.VIBRATE.json", pattern="").stderr)
        self.assertEqual(json.loads((self.directory / "x.VIBRATE.json").read_text())[:2], [20, 230])

    def test_faults_of_a_file_are_told_at_once(self):
        result = self.run_tool("pattern", "-", "x.wav", pattern='{"events": [7, {"type": "wobble\x1b"}, 7]}')
        self.assertEqual(result.returncode, 2)
        self.assertRegex(result.stderr, rb"\Alrasynth: -:1:32: is not JSON: .*\n\Z")
        result = self.run_tool("pattern", "-", "x.wav", "--motor", 81540, pattern=[transient(0), 7, transient(3)])
        self.assertEqual(re.findall(rb"(?m)^lrasynth: -:1:\d+: event (\d): (must|type)", result.stderr),
                         [(b"2", b"must"), (b"1", b"type"), (b"3", b"type")])
        self.assertEqual(list(self.directory.iterdir()), [])

    def test_warnings_go_to_standard_error_and_into_the_plot(self):
        sweep = dict(continuous(0, 200), points=[[0, 80, 0], [100, 80, 50], [100, 80, 0], [200, 0, 0]])
        result = self.run_tool("pattern", "-", "x.svg", pattern=[sweep])
        line = ("event 1 at 0 ms: from point 1 to 2 its carrier reaches 450 Hz, not 310 Hz; "
                "to end at 308 Hz set point 2 to offset 18")
        self.assertEqual((result.returncode, result.stderr.decode()), (0, f"lrasynth: warning: {line}\n"))
        self.assertIn(f">! {line}<", (self.directory / "x.svg").read_text())
        result = self.run_tool("pattern", "-", "y.svg", "--strict", pattern=[sweep])
        self.assertEqual((result.returncode, (self.directory / "y.svg").exists()), (2, False))
        result = self.run_tool("sheet", "--levels", "25,29", "--intensity", 100, "--strict", "y.svg")
        self.assertEqual([line[:43] for line in result.stderr.splitlines()],
                         [b"lrasynth: warning: 1: Tap: motor 1040, leve", b"lrasynth: warning: 2: Tap: motor 1040, leve",
                          b"lrasynth: --strict: a warning is a fault"])
        result = self.run_tool("pattern", ROOT / "tools/demo/heartbeat.json", "--strict", "y.svg")
        self.assertEqual((result.returncode, re.findall(rb"(?m)^lrasynth: (\w+): .* feel like (.*?) dB", result.stderr)),
                         (0, [(b"note", b"19.8 and 18.0")]))

    def test_without_output_the_numbers_are_told(self):
        told = self.output_of("pattern", "-", pattern=[transient(5, level=20, intensity=90), continuous(40, 200)]).decode()
        self.assertRegex(told, r"event 1 at 5 ms: tap, level 20, intensity 90 %, driven at 22 %, estimated rise 6.5 ms, ring-.* estimated: 13.5 dB SL, 68 %\n")
        self.assertRegex(told, r"event 2 at 40 ms: vibration of 200 ms, intensity 80 %, points at 170 Hz, felt, estimated: 17.6 dB")
        self.assertRegex(told, r"length +240.0 ms\n(.*\n)*  largest jump 26 at 106 ms\n")
        self.assertNotIn("ring-down to", told)
        table = self.output_of("compare", "--motor", "832,1040,9595", "--chip", "0,1").decode()
        self.assertRegex(table, r"6: Tap: motor 9595, chip 1.*\n.*\nlength( +[\d.]+ ms){6}\n")
        table = self.output_of("compare", "-", "--motor", "832,1040", pattern=[continuous(0, 200)]).decode()
        self.assertRegex(table, r"2: Pattern: -, motor 1040\n.*\nlength( +200.0 ms){2}\n")
        for name in ("old/a/h.json", "new/a/h.json", "new/i.json"):
            (self.directory / name).parent.mkdir(parents=True, exist_ok=True)
            (self.directory / name).write_text(json.dumps({"events": [continuous(0, 9)]}))
        table = self.output_of("compare", "old/a/h.json", "./new/a/h.json", "new/i.json").decode()
        self.assertEqual(re.findall(r"Pattern: (.*), motor", table), ["old/a/h.json", "new/a/h.json", "i.json"])

    def test_an_option_that_this_motor_or_chip_makes_idle_is_a_note(self):
        for call, option, where in (
                ("pattern - --boost off x.bin", "--boost", "on this motor"),
                ("tap --motor 832 --in-pattern x.bin", "--in-pattern", "on this motor"),
                ("sheet --motor 81540 --levels 5 x.svg", "--levels", "on this motor"),
                ("sheet --motor 81540 --intensity 5 x.svg", "--intensity", "on this motor"),
                ("compare --motor 1040,9595 --boost off x.svg", "--boost", "on these motors"),
                ("pattern - --chip 11 --loop 2 --interval 9 x.bin", "--interval", "with --chip 11"),
                ("pattern - --chip 11 --limit 9 x.bin", "--limit", "with --chip 11"),
                ("pattern - --chip 11 --response", "--response", "with --chip 11"),
                ("pattern - --chip 11 --rated 2", "--rated", "with --chip 11")):
            with self.subTest(call):
                result = self.run_tool(*call.split(), pattern=[transient(0), continuous(50, 60)])
                self.assertEqual((result.returncode, result.stderr.decode()),
                                 (0 if "compare" not in call else 2,
                                  f"lrasynth: note: {option}: does nothing {where}\n" +
                                  ("lrasynth: --boost: does nothing for taps\n" if "compare" in call else "")))

    def test_titles_say_how_often(self):
        for options, title in ((["--loop", 3, "--interval", 20], "Pattern: -, motor 1040, 3 times, 20 ms apart"),
                               (["--loop", 3], "Pattern: -, motor 1040, 3 times"), (["--title", "Tick & <tock>"], "Tick &amp; &lt;tock&gt;")):
            drawn = self.output_of("pattern", "-", *options, "--format", "svg", "-", pattern=[continuous(0, 60)]).decode()
            self.assertIn(f"<title>{title}</title>", drawn)
            self.assertEqual(drawn.count(f">{title}<"), 2)

    def test_pictures_show_no_more_than_there_is_room_for(self):
        sweep = lambda i: [[0, 80, 0], [50, 80, 50 - 5 * i], [50, 80, 0], [90, 0, 0]]
        many = [dict(continuous(100 * i, 90), points=sweep(i)) for i in range(4)]
        many += [transient(1000 + 100 * i, level=i + 1, intensity=1) for i in range(4)]
        drawn = self.output_of("pattern", "-", "--format", "svg", "-", pattern=many).decode()
        self.assertEqual(len(re.findall(r">! (?!and )", drawn)), 6)
        self.assertIn(">! and 2 more warnings<", drawn)
        for duration, unit in ((9999, "ms"), (10000, "s")):
            drawn = self.output_of("pattern", "-", "--format", "svg", "-", pattern=[continuous(0, duration)]).decode()
            self.assertIn(f">time in {unit}<", drawn)

    def test_raw_bytes_are_kept_from_terminals(self):
        try:
            master, terminal = os.openpty()
        except OSError as error:
            self.skipTest(f"there are no terminals here: {error}")
        for form, status in (("wav", 2), ("bin", 2), ("csv", 0)):
            result = subprocess.run([COMMAND, "tap", "--motor", "832", "--level", "30", "--format", form, "-"], stdout=terminal,
                                    stderr=subprocess.PIPE, cwd=self.directory, timeout=60)
            self.assertEqual((result.returncode, b"is a terminal" in result.stderr), (status, status == 2))
        os.close(terminal)
        os.close(master)

    def test_shells_complete_what_is_declared(self):
        script = self.output_of("completion", "bash").decode()
        for words, completed in ((["lrasynth", "pa"], {"pattern"}), (["lrasynth", "sheet", "--lev"], {"--levels"}),
                                 (["lrasynth", "tap", "--motor", "8"], {"832", "81540"}), (["lrasynth", "completion", ""], {"bash", "zsh", "fish"}), (["lrasynth", "compare", "--chip", ""], {"0", "1"}),
                                 (["lrasynth", "tone", "--half"], {"--half-periods"}), (["lrasynth", "pattern", "--boost", ""], {"on", "off"})):
            asked = f"{script}\nCOMP_WORDS=({' '.join(shlex.quote(word) for word in words)}); COMP_CWORD={len(words) - 1}; _lrasynth; echo ${{COMPREPLY[@]}}"
            result = subprocess.run(["bash", "-c", asked], capture_output=True, text=True, cwd=self.directory)
            self.assertEqual((set(result.stdout.split()), result.stderr), (completed, ""), words)
        for shell, line in (("zsh", "'--motor[Motor model]: :(832 1040 9595 81540)'"), ("fish", "-l motor -d 'Motor model' -r -f -a '832 1040 9595 81540'")):
            self.assertIn(line, self.output_of("completion", shell).decode())

    def test_no_accepted_call_tells_another_length_than_it_writes(self):
        random = Random(19)
        accepted = 0
        for _ in range(60):
            (self.directory / "r.json").write_text(json.dumps({"events": random_events(random)}))
            call = ["pattern", "r.json", "--motor", random.choice((832, 1040, 9595)), "--chip", random.choice((0, 1, 11)), "x.bin"]
            call += random.choice(([], ["--limit", random.randrange(400)])) + random.choice(([], ["--loop", 3, "--interval", random.randrange(90)]))
            result = self.run_tool(*call, pattern=[])
            if result.returncode == 0:
                accepted += 1
                told = int(re.match(rb"x.bin: (\d+) (?:samples|bytes)", result.stdout)[1])
                self.assertEqual(told, (self.directory / "x.bin").stat().st_size, call)
            self.assertNotRegex(result.stdout + result.stderr, rb"[ (]-\d", call)
        self.assertGreater(accepted, 20)

    def test_a_tap_in_a_pattern_is_the_one_that_a_pattern_plays(self):
        played = self.samples(pattern=[transient(0, level=20, intensity=90)])
        alone = self.output_of("tap", "--level", 20, "--intensity", 90, "--in-pattern", "--format", "bin", "-")
        self.assertEqual(played.rstrip(b"\0"), alone.rstrip(b"\0"))
        self.assertEqual(alone, self.output_of("tap", "--level", 20, "--intensity", 22, "--format", "bin", "-"))

    def test_files_are_replaced_as_their_owner_expects(self):
        tap = self.output_of("tap", "--format", "bin", "-")
        old, link, pipe, long = (self.directory / name for name in ("old.bin", "link.bin", "pipe.bin", "n" * 251 + ".bin"))
        old.write_bytes(b"old")
        old.chmod(0o640)
        link.symlink_to("old.bin")
        (self.directory / "dangling.bin").symlink_to("new.bin")
        os.mkfifo(pipe)
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        self.output_of("tap", "link.bin", "dangling.bin", "pipe.bin", long.name, "x.WAV")
        self.assertEqual((old.read_bytes(), old.stat().st_mode & 0o777, link.is_symlink()), (tap, 0o640, True))
        self.assertEqual(((self.directory / "new.bin").read_bytes(), long.read_bytes()), (tap, tap))
        self.assertEqual(os.read(reader, 1000), tap)
        os.close(reader)
        old.chmod(0o440)
        result = self.run_tool("tap", "--level", 9, "link.bin", "y.bin")
        self.assertEqual((result.returncode, old.read_bytes(), (self.directory / "y.bin").exists()), (1, tap, False))
        self.assertRegex(result.stderr, rb"\Alrasynth: cannot write link.bin: Permission denied\n\Z")

    def test_a_signal_leaves_no_file(self):
        events = [continuous(1000 * i + (i == 4) * 2, 900) for i in range(599)]
        for delay, ending in ((0.05, signal.SIGTERM), (0.15, signal.SIGPROF), (0.3, signal.SIGINT)):
            command = subprocess.Popen([COMMAND, "pattern", "-", "x.csv", "x.wav"], cwd=self.directory,
                                       stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            command.stdin.write(json.dumps({"events": events}).encode())
            command.stdin.close()
            time.sleep(delay)
            command.send_signal(ending)
            command.wait()
            if command.returncode != 0:  # it was faster
                self.assertEqual((command.returncode, list(self.directory.iterdir())), (-ending, []))
            for stream in (command.stdout, command.stderr):
                stream.close()

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
                head = struct.unpack("<4sI8sIHHIIHH4sI", (self.directory / "x.wav").read_bytes()[:44])
                size = 2 * len(codes)
                self.assertEqual(head, (b"RIFF", 36 + size, b"WAVEfmt ", 16, 1, 1, rate, 2 * rate, 2, 16, b"data", size))
                frames = memoryview(file.readframes(len(codes))).cast("h")
                self.assertEqual([frame // 256 for frame in frames], amplitudes)

    def test_what_is_felt_is_told_alike_everywhere(self):
        def levels(*options):
            self.output_of("pattern", "-", "x.wav", "x.felt.csv", "x.svg", *options, pattern=[continuous(5, 100)])
            rows = list(csv.DictReader((self.directory / "x.felt.csv").read_text().splitlines()))
            self.assertEqual([float(row["ms"]) for row in rows], [5 * i for i in range(30)])
            for row in rows:
                self.assertAlmostEqual(float(row["percent"]), 5 * float(row["db_sl"]), delta=0.08)
            return [float(row["db_sl"]) for row in rows]

        plain = levels()
        told = self.output_of("pattern", "-", pattern=[continuous(5, 100)]).decode()
        self.assertEqual(re.findall(r"([\d.]+) dB SL", told), 2 * [f"{max(plain):.1f}"])
        self.assertIn("170 Hz, Q 2.65, 1 g rated: dB above threshold", (self.directory / "x.svg").read_text())
        for level, twice in zip(plain[1:24], levels("--rated", 2.0)[1:24]):  # twice as strong: 6.02 dB more
            self.assertAlmostEqual(twice - level, 6.02, delta=0.02)
        self.assertLess(max(levels("--response-hz", 100)), max(plain) - 2)
        self.assertEqual(levels("--response", "--rated=1"), levels("--response", "motor"))
        self.assertNotEqual(levels("--response", 3.5), plain)

    def test_the_committed_pictures_are_what_is_drawn(self):
        subprocess.run([ROOT / "scripts" / "make-pictures", COMMAND, self.directory], check=True, capture_output=True)
        drawn, committed = ({path.name: path.read_text() for path in directory.glob("*.svg")}
                            for directory in (self.directory, ROOT / "docs" / "pictures"))
        self.assertEqual(sorted(drawn), sorted(committed))
        self.assertEqual([name for name in drawn if drawn[name] != committed[name]], [])

    def test_numbers_are_decimal(self):
        taps = [self.output_of("tap", "--level", level, "--format", "bin", "-") for level in ("010", "10", "8")]
        self.assertEqual(taps[0], taps[1])
        self.assertNotEqual(taps[0], taps[2])

    def test_audible_wav_keeps_the_tone(self):
        told = self.output_of("tone", "--frequency", 100, "--half-periods", 800, "--amplitude", 100, "--audible", "x.wav")
        self.assertEqual(told, b"x.wav: 192000 samples at 48000 a second, 4000.0 ms\n")
        with wave.open(str(self.directory / "x.wav")) as file:
            self.assertEqual(file.getparams()[:4], (1, 2, 48000, 192000))
            frames = memoryview(file.readframes(192000)).cast("h")
        for i in range(480, 191500, 7):  # away from the ends
            self.assertAlmostEqual(frames[i] - frames[i - 240], 2 * frames[i], delta=1500)

    def test_events_are_put_in_playing_order(self):
        bed, accent, tap = continuous(0, 600), continuous(100, 50, 40), transient(300)
        last_of = lambda *events: self.request_of(pattern=events)[-1]
        self.assertEqual(last_of(tap, bed)[:2], [4096, 0])  # transients play over it anyway
        self.assertEqual(last_of(transient(7, 50)), [4096, 24] + [0] * 15)  # nothing of its 16.04 ms is cut
        self.assertEqual(self.samples(pattern=[transient(0)])[:385], self.output_of("tap", "--in-pattern", "--format", "bin", "-"))
        self.assertEqual(last_of(accent, bed), [4096, 600] + [0] * 15)  # it must not hide the accent
        self.assertEqual([row[1] for row in self.request_of("--chip", 11, pattern=[tap, accent, bed])], [0, 100, 300])
        alone = self.samples(pattern=[continuous(0, 50, 40)])
        for loops, interval in ((1, 0), (3, 20)):
            repeat = ("--loop", loops, "--interval", interval) if loops > 1 else ()
            played = self.samples(*repeat, pattern=[accent, bed])
            self.assertEqual(len(played), 24 * (600 * loops + interval * (loops - 1)))
            for loop in range(loops):
                start = 24 * (100 + loop * (600 + interval))
                self.assertEqual(played[start:start + len(alone)], alone)

    def test_canonical_form_is_stable_and_plays_the_same(self):
        events = [transient(90, 70), continuous(30, 200, -20), transient(0, 30)]
        saved = self.output_of("pattern", "-", "--save", "-", pattern=events)
        self.assertNotIn(b"flat", saved)
        self.assertIn(b'"flat":true', self.output_of("pattern", "-", "--save", "-", "--flat", pattern=events))
        self.assertEqual(self.output_of("pattern", "-", "--save", "-", pattern=saved.decode()), saved)
        self.assertEqual([event["start"] for event in json.loads(saved)["events"]], [0, 30, 90])
        self.assertEqual(self.samples(pattern=saved.decode()), self.samples(pattern=events))

    def test_the_printed_request_says_what_the_file_says(self):
        events = [continuous(30, 200, -20), transient(190, 70), transient(250, 35, 60)]
        bed, *taps, closing = self.request_of(pattern=events)
        self.assertEqual(closing[:2], [4096, 267])
        self.assertEqual(bed, [4096, 30, 0, 0, 200, *sum(events[0]["points"], [])])
        self.assertEqual(taps, [[4097, 190, 80, 70] + [0] * 13, [4097, 250, 60, 35] + [0] * 13])

    def test_event_stream_csv(self):
        events = [transient(40, intensity=33), continuous(0, 600), transient(300)]
        printed = self.output_of("pattern", "-", "--chip", 11, "--loop", 2, "--format", "csv", "-", pattern=events)
        expected = [f"{i},{group}" for i, group in enumerate(["0,80,600", "40,33,5", "260,80,5"] * 2, 1)]
        told = self.run_tool("pattern", "-", "--chip", 11, "--loop", 2, "--interval", 9, pattern=events).stdout.decode()
        self.assertTrue(told.startswith("Pattern: -, motor 1040, chip 11, 2 times\n"), told)
        self.assertEqual(printed.decode().split(), ["event,delta_ms,strength,duration_ms", *expected, "total,,,1820"])


if __name__ == "__main__":
    unittest.main()
