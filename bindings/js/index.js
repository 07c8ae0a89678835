// SPDX-License-Identifier: Apache-2.0
// Taps and patterns by the library as WebAssembly. The module stands in wasm.js as text, so that it is found in every
// place that this module is: without a bundler, and through each of them without one's settings.
import { CONTINUOUS, ERROR_NEGATIVE_WINDOW, NO_LIMIT, RECORD_LENGTH, TRANSIENT } from './constants.js';
import wasm from './wasm.js';

export * from './constants.js';

const binary = Uint8Array.from(atob(wasm), (letter) => letter.charCodeAt(0));
const library = (await WebAssembly.instantiate(binary)).instance.exports;

// The library has no heap: all memory from __heap_base on is ours, and free again with each call.
const BLOCK = 1 << 16;
const heap = Math.ceil(library.__heap_base.value / 8) * 8;
let free = heap;

function place(bytes) {
  const at = free;
  free += Math.ceil(bytes / 8) * 8;
  const missing = free - library.memory.buffer.byteLength;
  if (missing > 0) library.memory.grow(Math.ceil(missing / 65536));
  return at;
}

// Calls would take what is left of any other number in 32 bits.
function whole(number) {
  if (number !== (number | 0)) throw new RangeError(`not a whole number of 32 bits: ${number}`);
  return number;
}

function putIntegers(integers) {
  integers.forEach(whole);
  const at = place(4 * integers.length);
  new Int32Array(library.memory.buffer, at, integers.length).set(integers);
  return at;
}

function text(at) {
  const bytes = new Uint8Array(library.memory.buffer, at);
  return new TextDecoder().decode(bytes.slice(0, bytes.indexOf(0)));
}

export class LrasynthError extends Error {
  constructor(code, index) {
    super(text(library.lrasynth_error_text(BigInt(code))));
    this.name = 'LrasynthError';
    this.code = code;
    if (index !== undefined) this.index = index;
  }
}

function served(number) {
  if (number < 0) throw new LrasynthError(Number(number));
  return Number(number);
}

function putProfile({ motor = 1040, chip = 0, boost = true }) {
  const profile = place(16);
  library.lrasynth_profile_of(profile, whole(chip), whole(motor), boost ? 1 : 0);
  return profile;
}

function putRequest(integers, { loops = 1, intervalMs = 0, limitMs = NO_LIMIT }) {
  return putIntegers([putIntegers(integers), integers.length, loops, intervalMs, limitMs]);
}

/** The request that events make. */
export function records(events) {
  if (events instanceof Int32Array) return events.slice();
  const list = Array.from(events);
  free = heap;
  const made = place(4 * RECORD_LENGTH * list.length);
  list.forEach((event, i) => {
    const record = made + 4 * RECORD_LENGTH * i;
    if (event.points === undefined) {
      library.lrasynth_put_transient(record, whole(event.startMs), whole(event.intensity), whole(event.level));
      return;
    }
    if (event.points.length !== 4) throw new RangeError('a continuous vibration has four points');
    const points = putIntegers(event.points.flatMap(([ms, intensity, offset = 0]) => [ms, intensity, offset]));
    library.lrasynth_put_continuous(record, whole(event.startMs), whole(event.durationMs), points);
  });
  return new Int32Array(library.memory.buffer, made, RECORD_LENGTH * list.length).slice();
}

/** A waveform that is rendered where it is read. */
export class Reader {
  #put;
  #read;

  // `put` places the arguments of a call anew, `length` and `read` make it with them.
  constructor(put, length, read) {
    free = heap;
    this.#put = put;
    this.#read = read;
    this.length = served(length(put()));
  }

  // What is given may be changed afterwards, which must not change what is read.
  static tap(level, intensity = 100, profile = {}) {
    const own = { ...profile };
    return new Reader(
      () => [putProfile(own)],
      ([motor]) => library.lrasynth_tap_length(motor, whole(level)),
      ([motor], ...window) => library.lrasynth_tap_read(motor, level, whole(intensity), ...window));
  }

  static pattern(events, options = {}) {
    const integers = records(events);
    const own = { ...options };
    return new Reader(
      () => [putProfile(own), putRequest(integers, own)],
      (both) => library.lrasynth_pattern_length(...both),
      (both, ...window) => library.lrasynth_pattern_read(...both, ...window));
  }

  /** Fills an array with the samples from `first` on, and returns how many there were. */
  readInto(array, first = 0) {
    const bytes = new Uint8Array(array.buffer, array.byteOffset, array.byteLength);
    free = heap;
    const put = this.#put();
    const block = place(Math.min(BLOCK, bytes.length));
    let done = 0;
    for (let n = 1; n > 0 && done < bytes.length; done += n) {
      const count = Math.min(BLOCK, bytes.length - done);
      n = served(this.#read(put, BigInt(first + done), block, BigInt(count)));
      bytes.set(new Uint8Array(library.memory.buffer, block, n), done);
    }
    return done;
  }

  /** The samples from `first` on: `count` of them, or as many as there are. */
  read(first = 0, count = Math.max(0, this.length - first)) {
    if (first < 0 || count < 0) throw new LrasynthError(ERROR_NEGATIVE_WINDOW);
    const samples = new Uint8Array(Math.max(0, Math.min(count, this.length - first)));
    this.readInto(samples, first);
    return samples;
  }

  /** All of it in its order, so many samples at a time. */
  *blocks(size) {
    if (!(size >= 1)) throw new RangeError('a block has at least one sample');
    for (let first = 0; first < this.length; first += size) yield this.read(first, size);
  }
}

export const tap = (...words) => Reader.tap(...words).read();

export const pattern = (...words) => Reader.pattern(...words).read();

export function check(events, options = {}) {
  const integers = records(events);
  free = heap;
  const index = place(4);
  const fault = library.lrasynth_pattern_check(putProfile(options), putRequest(integers, options), index);
  if (fault < 0) throw new LrasynthError(fault, new Int32Array(library.memory.buffer, index, 1)[0]);
}

export const version = library.lrasynth_version();
