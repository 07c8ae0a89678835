// SPDX-License-Identifier: Apache-2.0
// Events: each is of one kind, and what a kind is about is asked of that.

import { curve } from './curve.js';
import { isFixed, kept, keptAs } from './kept.js';
import { clamp } from './numbers.js';
import { tap } from './tap.js';
import { vibration } from './vibration.js';

/** @import {Curve} from './curve.js' */
/** @import {Kept} from './kept.js' */
/** @import {CurvePoint} from './points.js' */
/** @import {Span} from './spans.js' */
/** @import {Tap} from './tap.js' */
/** @import {Vibration} from './vibration.js' */

/** @typedef {Tap | Vibration | Curve | Kept} PatternEvent */

/**
 * What is known of a kind: what it is called; the canonical form of a value of its type, null where that is no event,
 * right or wrong; a summary; its points, if it has such; its span, or that of a point, nominal for a tap; where a next
 * one may start; the value of a field, undefined where it has no such. And what can be done to an event, each a
 * function from the old to the new one: another start, another value in a field, another place for a point, more
 * strength, what a drag up does to all of it, another length.
 * @template E
 * @typedef {{
 *   word: (event: E) => string,
 *   read: (value: any) => E | null,
 *   summary: (event: E) => string,
 *   points: (event: E) => readonly CurvePoint[],
 *   span: (event: E, point: number) => Span,
 *   next: (event: E) => number,
 *   value: (event: E, name: string) => number | undefined,
 *   startedAt: (event: E, start: number) => E,
 *   withValue: (event: E, name: string, value: number) => E,
 *   withPoint: (event: E, index: number, to: CurvePoint) => E,
 *   strengthened: (event: E, by: number) => E,
 *   lifted: (event: E, by: number) => E,
 *   stretched: (event: E, to: number) => E,
 * }} Kind
 */

/** By their types in files, but for what is kept. @type {{[T in PatternEvent['type']]: Kind<any>}} */
const kinds = { transient: tap, continuous: vibration, curve, kept };

/** @param {PatternEvent} event */
export const kindOf = (event) => /** @type {Kind<PatternEvent>} */ (kinds[event.type]);

/** @param {any} value which may be anything @returns {PatternEvent | null} */
export const eventOf = (value) =>
  value !== null && typeof value === 'object' && Object.hasOwn(kinds, value.type) ? kindOf(value).read(value) : null;

/**
 * Of an entry in a file, with the start and the length that the library finds.
 * @type {(written: any, start: number, length: number) => PatternEvent}
 */
export const readEvent = (written, start, length) => eventOf(written) ?? keptAs(written, start, length);

/** As it stands in a file. @param {PatternEvent} event */
export const writtenOf = (event) => (event.type === 'kept' ? event.written : event);

/** @param {PatternEvent} event */
export const pointsOf = (event) => kindOf(event).points(event);

/** @param {PatternEvent} event */
export const endOf = (event) => kindOf(event).span(event, -1).to;

/** Where it can be moved. @type {(event: PatternEvent, start: number) => PatternEvent} */
export const movedTo = (event, start) =>
  event.type === 'kept' && isFixed(event) ? event : kindOf(event).startedAt(event, clamp(start, 0, Infinity));
