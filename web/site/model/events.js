// SPDX-License-Identifier: Apache-2.0
// Events: each is of one kind, and what a kind is about is asked of that.

import { curve } from './curve.js';
import { clamp } from './numbers.js';
import { tap } from './tap.js';

/** @import {Curve, CurvePoint} from './curve.js' */
/** @import {Span} from './spans.js' */
/** @import {Tap} from './tap.js' */

/**
 * @typedef {Tap | Curve} PatternEvent
 * @typedef {PatternEvent['type']} Type
 */

/**
 * What is known of a kind: its word; the canonical form of a value of its type, null where that is no event, right or
 * wrong; a summary; its points, if it has such; its span, or that of a point, nominal for a tap; where a next one may
 * start. And what can be done to an event, each a function from the old to the new one: another value in a field,
 * another place for a point, more strength, what a drag up does to all of it, another length.
 * @template E
 * @typedef {{
 *   word: string,
 *   read: (value: any) => E | null,
 *   summary: (event: E) => string,
 *   points: (event: E) => readonly CurvePoint[],
 *   span: (event: E, point: number) => Span,
 *   next: (event: E) => number,
 *   withValue: (event: E, name: string, value: number) => E,
 *   withPoint: (event: E, index: number, to: CurvePoint) => E,
 *   strengthened: (event: E, by: number) => E,
 *   lifted: (event: E, by: number) => E,
 *   stretched: (event: E, to: number) => E,
 * }} Kind
 */

/**
 * A function for each kind, of events and their indices.
 * @template R
 * @typedef {{[T in Type]: (event: Extract<PatternEvent, {type: T}>, i: number) => R}} ByKind
 */

/** @template R @param {ByKind<R>} by @param {PatternEvent} event @param {number} i @returns {R} */
export const applied = (by, event, i) =>
  /** @type {(event: PatternEvent, i: number) => R} */ (by[event.type])(event, i);

/** By their types in files. @type {{[T in Type]: Kind<Extract<PatternEvent, {type: T}>>}} */
const kinds = { transient: tap, continuous: curve };

/** @param {PatternEvent} event */
export const kindOf = (event) => /** @type {Kind<PatternEvent>} */ (kinds[event.type]);

/** @param {any} value which may be anything @returns {PatternEvent | null} */
export const eventOf = (value) =>
  value !== null && typeof value === 'object' && Object.hasOwn(kinds, value.type) ? kindOf(value).read(value) : null;

/** @param {PatternEvent} event */
export const pointsOf = (event) => kindOf(event).points(event);

/** @param {PatternEvent} event */
export const endOf = (event) => kindOf(event).span(event, -1).to;

/** @type {(event: PatternEvent, start: number) => PatternEvent} */
export const startedAt = (event, start) => ({ ...event, start: clamp(start, 0, Infinity) });

/**
 * When a point is; their times count from that of the first one.
 * @type {(event: PatternEvent, point: CurvePoint) => number}
 */
export const timeOf = (event, point) => event.start + point[0] - (pointsOf(event)[0] ?? point)[0];
