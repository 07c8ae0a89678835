// SPDX-License-Identifier: Apache-2.0
// The texts of studio.h, as JSON. A test holds them to this.
import type { CurvePoint } from './site/model/points.js';
import type { Tap } from './site/model/tap.js';
import type { Vibration } from './site/model/vibration.js';

export interface About {
  version: string;
  longest_ms: number;
  /** The form of a pattern file in words. */
  help: string;
  chips: Chip[];
  motors: Motor[];
  formats: Format[];
  /** How sound is usually listened to. */
  sound: { floor_db: number; gain_db: number; taps: boolean; curves: boolean };
  /** Levels above threshold: below the first an effect is of no use, the second counts as 100 %. */
  felt: { hardly_db: number; fully_db: number };
}

/** Of files that patterns come in, or go out in. */
export interface Format {
  name: string;
  /** With its dot. */
  ending: string;
  help: string;
  read: boolean;
  written: boolean;
}

export interface Chip {
  chip: number;
  /** Samples a second. */
  rate: number;
  /** Whether it plays events by itself. */
  stream: boolean;
}

export interface Motor {
  motor: number;
  taps: boolean;
  boost: boolean;
  shares: boolean;
  resonance: number;
  /** Without boost and with it, at each of the offsets -50..50. */
  hz: [plain: number[], boosted: number[]];
}

/** With faults, everything else is empty or 0, but for the events that can be read. */
export interface Facts {
  /** As the command says them: heartbeat.json:3:12: event 2, ... */
  faults: string[];
  /** Of each fault the event's number; 0: none in particular. */
  fault_events: number[];
  /** What the text says of what can be asked for, with its times in ms. */
  said: { motor?: number; chip?: number; boost?: boolean; loops?: number; interval?: number };
  /** When each of its events starts, in ms; 0 where that cannot be read. */
  starts: number[];
  /** What of the text was not taken as it stands. */
  notes: string[];
  /** Of a file from elsewhere: what of it could not be taken. */
  losses: string[];
  /** Whether it has comments, which are not kept. */
  comments: boolean;
  title: string;
  /** In samples, or bytes of the event stream. */
  length: number;
  rate: number;
  length_ms: number;
  pass_ms: number;
  stream: boolean;
  /** Laid out, with all repetitions of groups, in the order in which they start; none for a tap. */
  events: EventFacts[];
  warnings: { event: number; ms: number; line: string }[];
  /** Passes, or the named segments of a tap where they are known. */
  sections: { from: number; to: number; label: string }[];
}

/** An event as it would stand in a file, and without faults its fate. Times are in ms from the first pass's start. */
export type EventFacts = TapFacts | LineFacts;
export type LineFacts = VibrationFacts | CurveFacts | RecordFacts;

interface Fate {
  /** Its place in the file, from 1; of the group that it stands in, where it does. */
  number: number;
  /** Where it stands in that: ".2", ".2, pass 4"; empty in no group. */
  inside: string;
  end_ms?: number;
  heard?: [from: number, to: number][];
  /** Where it is heard: how strongly it is felt, estimated at the motor's own and 1 g rated, in dB above threshold. */
  felt_db?: number;
  /** "12.3 dB SL, 62 %" */
  felt_words?: string;
}

interface Vibrating extends Fate {
  /** At each point; none for records. */
  hz?: number[];
  sweeps?: Sweep[];
  strength?: undefined;
}

export type TapFacts = Tap & Fate & {
  /** Its intensity is to be felt. */
  felt?: boolean;
  /** The intensity that the motor gets. */
  strength?: number;
  hz?: undefined;
  sweeps?: undefined;
};

export interface VibrationFacts extends Vibration, Vibrating {}

export interface CurveFacts extends Vibrating {
  type: 'curve';
  start: number;
  /** The intensities of its points are to be felt. */
  felt?: boolean;
  points: readonly (CurvePoint | { time: number; intensity: number; hz: number })[];
}

export interface RecordFacts extends Vibrating {
  type: 'record';
  start: number;
  duration: number;
  points: readonly CurvePoint[];
}

export interface Sweep {
  from_ms: number;
  to_ms: number;
  from_hz: number;
  to_hz: number;
  /** What it ends at, while its points say to_hz. */
  reached_hz: number;
  /** Of records, what plays at equal distances from its beginning to its end, in percent of full scale. */
  strengths?: number[];
}

export interface Estimate {
  peak: number;
  /** Values with their units. */
  numbers: [name: string, value: string][];
}

export interface Feeling {
  /** In dB above threshold. */
  strongest: number;
  percent: number;
  /** How long anything is felt. */
  felt_ms: number;
  /** The resonator: "170 Hz, Q 2.7, 1 g rated". */
  with: string;
  /** Values with their units. */
  numbers: [name: string, value: string][];
}

export interface Heard {
  faults: string[];
  /** What of the sound could not be taken. */
  losses: string[];
  /** The pattern; with faults it is empty. */
  json: string;
}

export interface Converted {
  /** Of the file. */
  content: string;
  /** What the format cannot say. */
  losses: string[];
}
