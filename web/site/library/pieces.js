// SPDX-License-Identifier: Apache-2.0
// The library and its design room, compiled to WebAssembly. Nothing that they know is known anywhere else in the page.

import { bytesAt, resultBytes, resultText, wasm, withText } from './exports.js';

/** @import {About, Estimate, EventFacts, Facts, Motor} from '../../protocol.js' */
/** @import {PatternEvent} from '../model/events.js' */
/** @import {Span} from '../model/spans.js' */
/** @import {Design, Profile, State} from '../model/state.js' */

/**
 * @typedef {{facts: Facts, number: number}} Piece a waveform, or what is wrong with it; held until it is released
 * @typedef {Estimate & {columns: Range[]}} Response
 * @typedef {[low: number, high: number]} Range
 */

wasm.studio_about();
export const about = /** @type {About} */ (JSON.parse(resultText()));

/** @param {Profile} profile */
export const motorOf = ({ motor }) => /** @type {Motor} */ (about.motors.find((row) => row.motor === motor));

/** @param {number} number that studio.h's makers return @returns {Piece} */
function pieceOf(number) {
  if (number < 0) throw new Error('no such profile, no such number of passes, or too many pieces');
  return { facts: JSON.parse(resultText()), number };
}

/** Without it, nothing more is read of it. @param {Piece | null | undefined} piece */
export const release = (piece) => piece && wasm.studio_release(piece.number);

/**
 * A pattern from a file's text.
 * @param {string} json @param {string} name @param {Profile} profile @param {number} loops @param {number} interval
 */
export function readPattern(json, name, { motor, chip, boost }, loops = 1, interval = 0) {
  return pieceOf(withText(json, (text, length) => withText(name, (called, nameLength) =>
    wasm.studio_pattern(text, length, called, nameLength, motor, chip, Number(boost), loops, interval))));
}

/** @type {{design: Design, piece: Piece} | null} */
let last = null;

/** What is known of each event stands at its index in the design. @param {Design} design */
export function patternPiece(design) {
  if (last?.design === design) return last.piece;
  release(last?.piece);
  last = null; // also where this one is refused
  const { name, profile, loops, interval, events: written } = design;
  const piece = readPattern(JSON.stringify({ events: written }), `${name}.json`, profile, loops, interval);
  /** @type {EventFacts[]} */
  const events = [];
  for (const event of piece.facts.events) events[event.number - 1] = event;
  piece.facts.events = events;
  last = { design, piece };
  return piece;
}

/**
 * Undefined where the event cannot be read.
 * @template {PatternEvent} E
 * @param {Facts} facts @param {E} event @param {number} i its index
 */
export const factsOf = (facts, event, i) =>
  /** @type {Extract<EventFacts, {type: E['type']}> | undefined} */ (facts.events[i]);

/** Whether it has samples. @param {Piece} piece */
export const isPlayable = ({ facts }) => facts.faults.length === 0 && !facts.stream && facts.length > 0;

/** Hertz at the offsets -50..50. @param {Profile} profile */
export const hertzOf = (profile) => motorOf(profile).hz[profile.boost ? 1 : 0];

/** @param {Profile} profile @param {State['tap']} tap */
export const tapPiece = ({ motor, chip }, { level, intensity, inPattern }) =>
  pieceOf(wasm.studio_tap(level, intensity, Number(inPattern), motor, chip));

/** Sample codes as amplitudes. @param {Piece} piece @param {number} first @param {number} count */
export function samples({ number, facts }, first, count) {
  const address = wasm.studio_read(number, first, count);
  const length = address === 0 ? 0 : Math.min(count, facts.length - first);
  return new Int8Array(bytesAt(address, length).buffer);
}

/** Out of low and high in turn. @param {Int8Array | Float64Array} flat @returns {Range[]} */
const ranges = (flat) => Array.from({ length: flat.length / 2 }, (_, i) => [flat[2 * i] ?? 0, flat[2 * i + 1] ?? 0]);

/** @param {Piece} piece @param {number} first @param {number} count @param {number} columns */
export function extremes({ number }, first, count, columns) {
  const address = wasm.studio_extremes(number, first, count, columns);
  return ranges(new Int8Array(bytesAt(address, address === 0 ? 0 : 2 * columns).buffer));
}

/** @param {Piece} piece @param {State['response']} resonator @param {Span} span @param {number} count of columns */
export function response({ number }, { quality, hz }, span, count) {
  const address = wasm.studio_response(number, quality, hz, span.from, span.to, count);
  const columns = ranges(new Float64Array(bytesAt(address, address === 0 ? 0 : 16 * count).buffer));
  const text = resultText();
  return text === '' ? null : /** @type {Response} */ ({ ...JSON.parse(text), columns });
}

/** The bytes of a file. @param {Piece} piece @param {string} name @param {State['response']} resonator */
export function form({ number }, name, { shown, quality, hz }) {
  const made = withText(name, (text, length) =>
    wasm.studio_form(number, text, length, shown ? quality : 0, hz, 0, 0));
  return made < 0 ? null : resultBytes();
}
