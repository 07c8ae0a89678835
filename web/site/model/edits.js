// SPDX-License-Identifier: Apache-2.0
// What can be done to events, as functions from the old to the new one.

/** @import {CurvePoint, PatternEvent} from './state.js' */

/** @param {number} value @param {number} low @param {number} high */
export const clamp = (value, low, high) => Math.min(high, Math.max(low, Math.round(value)));

/** @type {(start: number, level?: number, intensity?: number) => PatternEvent} */
export const newTap = (start, level = 50, intensity = 80) =>
  ({ type: 'transient', start: clamp(start, 0, Infinity), intensity: clamp(intensity, 0, 100), level });

/** @type {(start: number, intensity?: number) => PatternEvent} */
export const newCurve = (start, intensity = 80) => {
  const high = clamp(intensity, 0, 100);
  return {
    type: 'continuous',
    start: clamp(start, 0, Infinity),
    duration: 200,
    points: [[0, 0, 0], [50, high, 0], [130, high, 0], [200, 0, 0]],
  };
};

/** @type {(event: PatternEvent, start: number) => PatternEvent} */
export const startedAt = (event, start) => ({ ...event, start: clamp(start, 0, Infinity) });

/**
 * Drags may go anywhere; a point stays between its neighbours, the first one at its time, and the last one takes the
 * end of the event with it.
 * @param {PatternEvent} event @param {number} index @param {CurvePoint} to @returns {PatternEvent}
 */
export function withPoint(event, index, [time, intensity, offset]) {
  if (event.type === 'transient') return event;
  const points = event.points;
  const low = index === 0 ? points[0][0] : points[index - 1][0] + (index === 3 ? 1 : 0);
  const high = index === 0 ? low : index === 3 ? Infinity : points[index + 1][0];
  /** @type {CurvePoint} */
  const point = [clamp(time, low, high), clamp(intensity, 0, 100), clamp(offset, -50, 50)];
  return {
    ...event,
    duration: index === 3 ? point[0] - points[0][0] : event.duration,
    points: points.with(index, point),
  };
}

const shortestCurve = 1; // ms

/** All points keep their share of the time. @param {PatternEvent} event @param {number} to @returns {PatternEvent} */
export function stretched(event, to) {
  if (event.type === 'transient') return event;
  const duration = clamp(to, shortestCurve, Infinity);
  const [first] = event.points[0];
  const span = event.points[3][0] - first || 1;
  /** @type {(point: CurvePoint) => CurvePoint} */
  const moved = ([time, ...rest]) => [first + Math.round(((time - first) * duration) / span), ...rest];
  return { ...event, duration, points: event.points.map(moved) };
}

/** @type {{shape: PatternEvent, made: PatternEvent} | null} */
let stretching = null;

/** Once more: from the shape before the first time, so that no share is lost. @type {typeof stretched} */
export function restretched(event, to) {
  const shape = stretching?.made === event ? stretching.shape : event;
  const made = stretched(shape, to);
  if (JSON.stringify(made) === JSON.stringify(event)) return event;
  stretching = { shape, made };
  return made;
}

/** @type {(event: PatternEvent, by: number) => PatternEvent} */
export const strengthened = (event, by) =>
  event.type === 'transient'
    ? { ...event, intensity: clamp(event.intensity + by, 0, 100) }
    : { ...event, points: event.points.map(([t, i, o]) => [t, clamp(i + by, 0, 100), o]) };

/** Nominal for a tap, whose length the motor decides. @param {PatternEvent} event */
export const endOf = (event) => event.start + (event.type === 'transient' ? 15 : event.duration);
