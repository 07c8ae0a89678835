// SPDX-License-Identifier: Apache-2.0
export * from './constants.js';

/** A motor, one of MOTOR_... (1040 where left out), and what drives it: 0 or one of CHIP_..., and whether boost is on,
 * which it is where left out. */
export interface Profile {
  motor?: number;
  chip?: number;
  boost?: boolean;
}

/** A tap inside a pattern. */
export interface Transient {
  startMs: number;
  intensity: number;
  level: number;
}

/** Time in ms, intensity in percent, and a frequency offset, 0 where left out. */
export type Point = readonly [ms: number, intensity: number, offset?: number];

/** A vibration through four points. */
export interface Continuous {
  startMs: number;
  durationMs: number;
  points: readonly [Point, Point, Point, Point];
}

/** Events in any order, or the request's integers themselves. */
export type Events = Iterable<Transient | Continuous> | Int32Array;

/** How a pattern plays: how often, with how much silence between, and when a vibration may start at the latest. */
export interface PatternOptions extends Profile {
  loops?: number;
  intervalMs?: number;
  limitMs?: number;
}

/** The library refuses: its text, its number (ERROR_...), and from check() the index of the integer at fault. */
export declare class LrasynthError extends Error {
  readonly code: number;
  readonly index?: number;
}

/** A tap's samples: level 0..100 is its character, intensity its strength in percent. A sample is a byte, an amplitude
 * in two's complement: new Int8Array(samples.buffer). */
export declare function tap(level: number, intensity?: number, profile?: Profile): Uint8Array;

/** A pattern's samples, or the bytes of an event stream. */
export declare function pattern(events: Events, options?: PatternOptions): Uint8Array;

/** Throws a LrasynthError where a pattern would not play as written. */
export declare function check(events: Events, options?: PatternOptions): void;

/** The request that events make, RECORD_LENGTH integers for each of them. */
export declare function records(events: Events): Int32Array;

/** A waveform that is rendered where it is read: any window in any order. */
export declare class Reader {
  private constructor();
  static tap(level: number, intensity?: number, profile?: Profile): Reader;
  static pattern(events: Events, options?: PatternOptions): Reader;
  /** In samples, or bytes of an event stream. */
  readonly length: number;
  /** Fills an array with the samples from `first` on. Returns how many there were, less than it holds only at the
   * waveform's end. */
  readInto(array: Uint8Array | Int8Array, first?: number): number;
  /** The samples from `first` on: `count` of them, or as many as there are. */
  read(first?: number, count?: number): Uint8Array;
  /** All of it in its order, so many samples at a time. */
  blocks(size: number): Generator<Uint8Array, void, undefined>;
}

/** LRASYNTH_VERSION of the library inside. */
export declare const version: number;
