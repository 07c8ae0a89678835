// SPDX-License-Identifier: Apache-2.0
// The library and its design room, compiled to WebAssembly. Nothing that they know is known anywhere else in the page.

/** @import {Design, Profile, Span, State} from '../model/state.js' */

/**
 * @typedef {{from_ms: number, to_ms: number, from_hz: number, to_hz: number, reached_hz: number}} Sweep
 * @typedef {{number: number, end_ms?: number, driven?: number, hz?: number[], sweeps?: Sweep[],
 *   heard?: [number, number][]}} EventFacts
 * @typedef {{faults: string[], fault_events: number[], title: string, length: number, rate: number, length_ms: number,
 *   pass_ms: number, stream: boolean, events: EventFacts[], warnings: {event: number, ms: number, line: string}[],
 *   sections: {from: number, to: number, label: string}[]}} Facts
 * @typedef {{peak: number, numbers: [name: string, value: string][], columns: Float64Array}} Response
 * @typedef {{motor: number, taps: boolean, boost: boolean, shares: boolean, resonance: number,
 *   hz: [plain: number[], boosted: number[]]}} Motor
 * @typedef {{version: string, longest_ms: number, help: string, motors: Motor[]}} About
 * @typedef {{facts: Facts, load: () => void}} Piece a waveform, or what is wrong with it
 * @typedef {Record<string, (...numbers: number[]) => number> & {memory: WebAssembly.Memory}} Exports
 */

const bytes = await (await fetch('studio.wasm')).arrayBuffer();
const wasm = /** @type {Exports} */ ((await WebAssembly.instantiate(bytes)).instance.exports);
wasm._initialize();
/** The one that the module holds at the moment. @type {Piece | null} */
let loaded = null;

/** @param {number} address @param {number} length */
const bytesAt = (address, length) => new Uint8Array(wasm.memory.buffer, address, length).slice();
const resultBytes = () => bytesAt(wasm.studio_text(), wasm.studio_text_length());
const resultText = () => new TextDecoder().decode(resultBytes());

/** @template T @param {string[]} texts @param {(...places: number[]) => T} call @returns {T} */
function withTexts(texts, call) {
  const parts = texts.map((text) => new TextEncoder().encode(text));
  const places = parts.map((part) => wasm.studio_alloc(part.length + 1));
  if (places.includes(0)) throw new Error('out of memory');
  parts.forEach((part, i) => new Uint8Array(wasm.memory.buffer).set(part, places[i]));
  try {
    return call(...places.flatMap((place, i) => [place, parts[i].length]));
  } finally {
    places.forEach((place) => wasm.studio_free(place));
  }
}

wasm.studio_about();
export const about = /** @type {About} */ (JSON.parse(resultText()));

/** @param {Profile} profile */
export const motorOf = ({ motor }) => /** @type {Motor} */ (about.motors.find((row) => row.motor === motor));

/** @param {() => void} load @returns {Piece} */
function pieceOf(load) {
  loaded = null; // also where this one is refused
  load();
  const text = resultText();
  if (text === '') throw new Error('no such profile, or no such number of passes');
  const piece = { facts: /** @type {Facts} */ (JSON.parse(text)), load };
  loaded = piece;
  return piece;
}

/** @param {Piece} piece */
function use(piece) {
  if (piece !== loaded) piece.load();
  loaded = piece;
}

/**
 * A pattern from a file's text.
 * @param {string} json @param {string} name @param {Profile} profile @param {number} loops @param {number} interval
 */
export function readPattern(json, name, profile, loops = 1, interval = 0) {
  const { motor, chip, boost } = profile;
  return pieceOf(() =>
    withTexts([json, name], (...texts) => wasm.studio_pattern(...texts, motor, chip, Number(boost), loops, interval)));
}

/** @type {{design: Design, piece: Piece} | null} */
let last = null;

/** What is known of each event stands at its index in the design. @param {Design} design */
export function patternPiece(design) {
  if (last?.design !== design) {
    const { name, profile, loops, interval, events: written } = design;
    const piece = readPattern(JSON.stringify({ events: written }), `${name}.json`, profile, loops, interval);
    /** @type {EventFacts[]} */
    const events = [];
    for (const event of piece.facts.events) events[event.number - 1] = event;
    piece.facts.events = events;
    last = { design, piece };
  }
  return last.piece;
}

/** Whether it has samples. @param {Piece} piece */
export const isPlayable = ({ facts }) => facts.faults.length === 0 && !facts.stream && facts.length > 0;

/** Hertz at the offsets -50..50. @param {Profile} profile */
export const hertzOf = (profile) => motorOf(profile).hz[Number(profile.boost)];

/** @param {Profile} profile @param {State['tap']} tap */
export const tapPiece = ({ motor, chip }, { level, intensity, inPattern }) =>
  pieceOf(() => wasm.studio_tap(level, intensity, Number(inPattern), motor, chip));

/** Sample codes as amplitudes. @param {Piece} piece @param {number} first @param {number} count */
export function samples(piece, first, count) {
  use(piece);
  const address = wasm.studio_read(first, count);
  const length = address === 0 ? 0 : Math.min(count, piece.facts.length - first);
  return new Int8Array(bytesAt(address, length).buffer);
}

/** Low and high in turn. @param {Piece} piece @param {number} first @param {number} count @param {number} columns */
export function extremes(piece, first, count, columns) {
  use(piece);
  const address = wasm.studio_extremes(first, count, columns);
  return new Int8Array(bytesAt(address, address === 0 ? 0 : 2 * columns).buffer);
}

/** @param {Piece} piece @param {State['response']} resonator @param {Span} span @param {number} count of columns */
export function response(piece, { quality, hz }, span, count) {
  use(piece);
  const address = wasm.studio_response(quality, hz, span.from, span.to, count);
  const columns = new Float64Array(bytesAt(address, address === 0 ? 0 : 16 * count).buffer);
  const text = resultText();
  return text === '' ? null : /** @type {Response} */ ({ ...JSON.parse(text), columns });
}

/** The bytes of a file. @param {Piece} piece @param {string} name @param {State['response']} resonator */
export function form(piece, name, { shown, quality, hz }) {
  use(piece);
  const made = withTexts([name], (...text) => wasm.studio_form(...text, shown ? quality : 0, hz, 0, 0));
  return made < 0 ? null : resultBytes();
}
