// SPDX-License-Identifier: Apache-2.0
// Curves: continuous vibrations through four points.

import { clamp, isInteger } from './numbers.js';

/** @import {Kind} from './events.js' */

/**
 * @typedef {[time: number, intensity: number, offset: number]} CurvePoint
 * @typedef {readonly [CurvePoint, CurvePoint, CurvePoint, CurvePoint]} CurvePoints
 * @typedef {{type: 'continuous', start: number, duration: number, points: CurvePoints}} Curve
 */

const last = 3;
const shortestMs = 1;

/** @type {(start: number, intensity?: number) => Curve} */
export const newCurve = (start, intensity = 80) => {
  const high = clamp(intensity, 0, 100);
  return {
    type: 'continuous',
    start: clamp(start, 0, Infinity),
    duration: 200,
    points: [[0, 0, 0], [50, high, 0], [130, high, 0], [200, 0, 0]],
  };
};

/** @param {CurvePoints} points @param {number} index @param {CurvePoint} point */
const replaced = (points, index, point) => /** @type {any} @returns {CurvePoints} */ (points).with(index, point);

/** @param {CurvePoints} points @param {(point: CurvePoint) => CurvePoint} change @returns {CurvePoints} */
const changed = ([a, b, c, d], change) => [change(a), change(b), change(c), change(d)];

/**
 * The last point takes the end of the event with it.
 * @param {Curve} event @param {number} index @param {CurvePoint} to
 */
function put(event, index, to) {
  const points = replaced(event.points, index, to);
  return { ...event, points, duration: index === last ? to[0] - event.points[0][0] : event.duration };
}

/**
 * Drags may go anywhere; a point stays between its neighbours, and the first one at its time.
 * @type {Kind<Curve>['withPoint']}
 */
function withPoint(event, index, [time, intensity, offset]) {
  const times = event.points.map(([time]) => time);
  const low = times[index - 1] ?? times[0] ?? 0;
  const high = index === 0 ? low : times[index + 1] ?? Infinity;
  const least = index === last ? low + shortestMs : low;
  return put(event, index, [clamp(time, least, high), clamp(intensity, 0, 100), clamp(offset, -50, 50)]);
}

/**
 * What is impossible is allowed, and becomes a fault. A point's value is named as points.2.0, the third one's time.
 * @type {Kind<Curve>['withValue']}
 */
function withValue(event, name, value) {
  const [field, index, column] = name.split('.');
  if (field === 'duration') return stretched(event, value);
  const point = event.points[Number(index)];
  if (field !== 'points' || point === undefined) return { ...event, [name]: value };
  return put(event, Number(index), /** @type {CurvePoint} */ (point.with(Number(column), value)));
}

/** What was stretched last, and its shape before the first time. @type {{shape: Curve, made: Curve} | null} */
let stretching = null;

/** All points keep their share of the time; once more, too. @type {Kind<Curve>['stretched']} */
function stretched(event, to) {
  const shape = stretching?.made === event ? stretching.shape : event;
  const duration = clamp(to, shortestMs, Infinity);
  const first = shape.points[0][0];
  const span = shape.points[last][0] - first || 1;
  const points = changed(shape.points, ([time, ...rest]) =>
    [first + Math.round(((time - first) * duration) / span), ...rest]);
  const made = { ...shape, duration, points };
  if (JSON.stringify(made) === JSON.stringify(event)) return event;
  stretching = { shape, made };
  return made;
}

/** @param {any} points */
const arePoints = (points) => Array.isArray(points) && points.length === last + 1 &&
  points.every((point) => Array.isArray(point) && point.length === 3 && point.every(isInteger));

/** @type {Kind<Curve>} */
export const curve = {
  word: 'Curve',
  read: ({ type, start, duration, points, ...others }) =>
    [start, duration].every(isInteger) && arePoints(points) && Object.keys(others).length === 0
      ? { type, start, duration, points } : null,
  summary: ({ start, duration, points }) =>
    `${start} – ${start + duration} ms · up to ${Math.max(...points.map(([, intensity]) => intensity))} %`,
  points: ({ points }) => points,
  span: (event, index) => {
    const point = event.points[index];
    const at = point && event.start + point[0] - event.points[0][0];
    return { from: at ?? event.start, to: at ?? event.start + event.duration };
  },
  next: ({ start, duration }) => start + duration,
  withValue,
  withPoint,
  strengthened: (event, by) =>
    ({ ...event, points: changed(event.points, ([t, i, o]) => [t, clamp(i + by, 0, 100), o]) }),
  lifted: (event) => event,
  stretched,
};
