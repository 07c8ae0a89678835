// SPDX-License-Identifier: Apache-2.0
// What events with points have in common: curves, and vibrations of four points.

import { clamp, isInteger } from './numbers.js';

/** @import {Kind} from './events.js' */

/**
 * @typedef {[time: number, intensity: number, offset: number]} CurvePoint
 * @typedef {{start: number, points: readonly CurvePoint[], note?: string}} Pointed
 */

const shortestMs = 1;

/** @type {readonly CurvePoint[]} */
export const newPoints = [[0, 0, 0], [50, 80, 0], [130, 80, 0], [200, 0, 0]];

/** @param {any} points */
export const arePoints = (points) => Array.isArray(points) && points.length > 1 &&
  points.every((point) => Array.isArray(point) && point.length === 3 && point.every(isInteger));

/** From the first point to the last. @param {Pointed} event */
export const spanOf = ({ points }) => (points.at(-1)?.[0] ?? 0) - (points[0]?.[0] ?? 0);

/** What was stretched last, and its shape before the first time. @type {{shape: Pointed, made: Pointed} | null} */
let stretching = null;

/**
 * A kind out of what differs: what it is called, how it is read, how long it says that it is, and the event with other
 * points, of which the last one may have moved, and another length.
 * @template {Pointed} E
 * @param {{
 *   word: (event: E) => string,
 *   read: (value: any) => E | null,
 *   duration: (event: E) => number,
 *   withPoints: (event: E, points: readonly CurvePoint[], duration: number) => E,
 * }} own
 * @returns {Kind<E>}
 */
export function pointed({ word, read, duration, withPoints }) {
  /**
   * The last point takes the end of the event with it.
   * @param {E} event @param {number} index @param {CurvePoint} to
   */
  function put(event, index, to) {
    const points = event.points.with(index, to);
    return withPoints(event, points, index === points.length - 1 ? spanOf({ ...event, points }) : duration(event));
  }

  /**
   * Drags may go anywhere; a point stays between its neighbours, and the first one at its time.
   * @type {Kind<E>['withPoint']}
   */
  function withPoint(event, index, [time, intensity, offset]) {
    const times = event.points.map(([time]) => time);
    const low = times[index - 1] ?? times[0] ?? 0;
    const high = index === 0 ? low : times[index + 1] ?? Infinity;
    const least = index === times.length - 1 ? low + shortestMs : low;
    return put(event, index, [clamp(time, least, high), clamp(intensity, 0, 100), clamp(offset, -50, 50)]);
  }

  /** @type {Kind<E>['value']} */
  function value(event, name) {
    const [field, index, column] = name.split('.');
    if (field === 'points') return event.points[Number(index)]?.[Number(column)];
    return field === 'start' ? event.start : field === 'duration' ? duration(event) : undefined;
  }

  /**
   * What is impossible is allowed, and becomes a fault. A point's value is named as points.2.0, the third one's time.
   * @type {Kind<E>['withValue']}
   */
  function withValue(event, name, value) {
    const [field, index, column] = name.split('.');
    if (field === 'duration') return stretched(event, value);
    const point = event.points[Number(index)];
    if (field !== 'points' || point === undefined) return { ...event, [name]: value };
    return put(event, Number(index), /** @type {CurvePoint} */ (point.with(Number(column), value)));
  }

  /** All points keep their share of the time; once more, too. @type {Kind<E>['stretched']} */
  function stretched(event, to) {
    const shape = /** @type {E} */ (stretching?.made === event ? stretching.shape : event);
    const length = clamp(to, shortestMs, Infinity);
    const first = shape.points[0]?.[0] ?? 0;
    const span = spanOf(shape) || 1;
    const points = shape.points.map(([time, intensity, offset]) =>
      /** @type {CurvePoint} */ ([first + Math.round(((time - first) * length) / span), intensity, offset]));
    const made = withPoints(shape, points, length);
    if (JSON.stringify(made) === JSON.stringify(event)) return event;
    stretching = { shape, made };
    return made;
  }

  return {
    word,
    read,
    summary: (event) => `${event.start} – ${event.start + duration(event)} ms · up to ${
      event.points.reduce((most, [, intensity]) => Math.max(most, intensity), 0)} %`,
    points: ({ points }) => points,
    span: (event, index) => {
      const point = event.points[index];
      const at = point && event.start + point[0] - (event.points[0]?.[0] ?? 0);
      return { from: at ?? event.start, to: at ?? event.start + duration(event) };
    },
    next: (event) => event.start + duration(event),
    startedAt: (event, start) => ({ ...event, start }),
    value,
    withValue,
    withPoint,
    strengthened: (event, by) => withPoints(event, event.points.map(([time, intensity, offset]) =>
      [time, clamp(intensity + by, 0, 100), offset]), duration(event)),
    lifted: (event) => event,
    stretched,
  };
}
