// SPDX-License-Identifier: Apache-2.0
// The library and its design room, compiled to WebAssembly. Nothing that they know is known anywhere else in the page.

import { asRead } from '../model/file.js';
import { bytesAt, resultBytes, resultText, wasm, withText } from './exports.js';

/** @import {Address} from '../../exports.js' */
/** @import {About, Converted, Estimate, EventFacts, Facts, Feeling, Motor} from '../../protocol.js' */
/** @import {PatternEvent} from '../model/events.js' */
/** @import {Span} from '../model/spans.js' */
/** @import {Design, Profile, State} from '../model/state.js' */

/**
 * @typedef {{facts: Facts, number: number}} Piece a waveform, or what is wrong with it; held until it is released
 * @typedef {Estimate & {columns: Range[]}} Response
 * @typedef {Feeling & {columns: Float64Array}} Felt levels
 * @typedef {{quality: number, hz: number}} Resonator 0: the motor's own
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

/** A pattern from a file's text, as it plays with the settings of a design. @param {string} json @param {string} name
 * @param {Design} design */
export function readPattern(json, name, { profile: { motor, chip, boost }, loops, interval }) {
  return pieceOf(withText(json, (text, length) => withText(name, (called, nameLength) =>
    wasm.studio_pattern(text, length, called, nameLength, motor, chip, Number(boost), loops, interval))));
}

/** What an entry of a file is laid out to, or what of that can be read. @typedef {EventFacts[]} LaidOut */

/** By the entries' indices. @param {Facts} facts */
export function laidOutBy({ events }) {
  /** @type {LaidOut[]} */
  const entries = [];
  for (const event of events) (entries[event.number - 1] ??= []).push(event);
  return entries;
}

/** @type {{design: Design, piece: Piece & {entries: LaidOut[]}} | null} */
let last = null;

/** @param {Design} design */
export function patternPiece(design) {
  if (last?.design === design) return last.piece;
  release(last?.piece);
  last = null; // also where this one is refused
  const piece = readPattern(asRead(design), `${design.name}.json`, design);
  last = { design, piece: { ...piece, entries: laidOutBy(piece.facts) } };
  return last.piece;
}

/** Of an event by its index; where it cannot be read, what is known without. @param {Design} design @param {number} i
 * @returns {LaidOut} */
export function laidOut(design, i) {
  const event = /** @type {PatternEvent} */ (design.events[i]);
  const own = event.type === 'kept' ? [] : [{ ...event, number: i + 1, inside: '' }];
  return patternPiece(design).entries[i] ?? own;
}

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

/** @param {Address} address @param {number} count */
const doublesAt = (address, count) => new Float64Array(bytesAt(address, address === 0 ? 0 : 8 * count).buffer);

/** @param {Piece} piece @param {Resonator} resonator @param {Span} span @param {number} count of columns */
export function response({ number }, { quality, hz }, span, count) {
  const columns = ranges(doublesAt(wasm.studio_response(number, quality, hz, span.from, span.to, count), 2 * count));
  const text = resultText();
  return text === '' ? null : /** @type {Response} */ ({ ...JSON.parse(text), columns });
}

/** @param {Piece} piece @param {Resonator} resonator @param {Span} span @param {number} count of columns */
export function felt({ number }, { quality, hz }, span, count) {
  const columns = doublesAt(wasm.studio_felt(number, quality, hz, span.from, span.to, count), count);
  const text = resultText();
  return text === '' ? null : /** @type {Felt} */ ({ ...JSON.parse(text), columns });
}

/** How strongly an event is felt wherever it plays, in words; empty where it is not heard. @param {Design} design
 * @param {number} i */
export function feltWords(design, i) {
  let [strongest, words] = [-1, ''];
  for (const { felt_db = -1, felt_words = '' } of laidOut(design, i)) {
    if (felt_db > strongest) [strongest, words] = [felt_db, `felt about ${felt_words}`];
  }
  return words;
}

/** The bytes of a file. @param {Piece} piece @param {string} name @param {State['response']} resonator */
export function form({ number }, name, { shown, quality, hz }) {
  const made = withText(name, (text, length) =>
    wasm.studio_form(number, text, length, shown ? quality : -1, hz, 0, 0));
  return made < 0 ? null : resultBytes();
}

/** As the command hands it on in one of the formats that are written. @param {Piece} piece @param {string} format */
export function convert({ number }, format) {
  const made = withText(format, (text, length) => wasm.studio_convert(number, text, length));
  return made < 0 ? null : /** @type {Converted} */ (JSON.parse(resultText()));
}
