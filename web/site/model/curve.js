// SPDX-License-Identifier: Apache-2.0
// Curves: vibrations through two points or more, which play as drawn.

import { clamp, isInteger } from './numbers.js';
import { noted } from './note.js';
import { arePoints, newPoints, pointed, spanOf } from './points.js';

/** @import {CurvePoint} from './points.js' */

/** @typedef {{type: 'curve', start: number, points: readonly CurvePoint[], note?: string}} Curve */

/** @type {(start: number, intensity?: number) => Curve} */
export const newCurve = (start, intensity = 80) => ({
  type: 'curve',
  start: clamp(start, 0, Infinity),
  points: newPoints.map(([time, high, offset]) => [time, high === 0 ? 0 : clamp(intensity, 0, 100), offset]),
});

export const curve = pointed({
  word: (/** @type {Curve} */ { points }) => `Curve, ${points.length} points`,
  read: noted(({ type, start, points }) => (isInteger(start) && arePoints(points) ? { type, start, points } : null)),
  duration: spanOf,
  withPoints: (event, points) => ({ ...event, points }),
});
