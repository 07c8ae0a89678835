// SPDX-License-Identifier: Apache-2.0
// The texts of studio.h, as JSON. A test holds them to this.
import type { Curve } from './site/model/curve.js';
import type { Tap } from './site/model/tap.js';

export interface About {
  version: string;
  longest_ms: number;
  /** The form of a pattern file in words. */
  help: string;
  chips: Chip[];
  motors: Motor[];
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
  title: string;
  /** In samples, or bytes of the event stream. */
  length: number;
  rate: number;
  length_ms: number;
  pass_ms: number;
  stream: boolean;
  /** In the order in which they start; none for a tap. */
  events: EventFacts[];
  warnings: { event: number; ms: number; line: string }[];
  /** Passes, or the named segments of a tap where they are known. */
  sections: { from: number; to: number; label: string }[];
}

/** What stands in the file, and without faults its fate. Times are those of the first pass, in ms from its start. */
export type EventFacts = TapFacts | CurveFacts;

interface Fate {
  /** Its place in the file, from 1; of the group that it stands in, where it does. */
  number: number;
  /** Where it stands in that: ".2", ".2, pass 4"; empty in no group. */
  inside: string;
  end_ms?: number;
  heard?: [from: number, to: number][];
}

export interface TapFacts extends Tap, Fate {
  /** The intensity that the motor gets. */
  driven?: number;
  hz?: undefined;
  sweeps?: undefined;
}

export interface CurveFacts extends Curve, Fate {
  /** At each point. */
  hz?: number[];
  sweeps?: Sweep[];
  driven?: undefined;
}

export interface Sweep {
  from_ms: number;
  to_ms: number;
  from_hz: number;
  to_hz: number;
  /** What it ends at, while its points say to_hz. */
  reached_hz: number;
}

export interface Estimate {
  peak: number;
  /** Values with their units. */
  numbers: [name: string, value: string][];
}
