// SPDX-License-Identifier: Apache-2.0
// What files call continuous: vibrations of one record, through four points.

import { isInteger } from './numbers.js';
import { noted } from './note.js';
import { arePoints, pointed } from './points.js';

/** @import {CurvePoint} from './points.js' */

/**
 * @typedef {{type: 'continuous', start: number, duration: number, points: readonly CurvePoint[], note?: string}} Vibration
 */

export const vibration = pointed({
  word: (/** @type {Vibration} */ _) => 'Vibration',
  read: noted(({ type, start, duration, points }) =>
    [start, duration].every(isInteger) && arePoints(points) && points.length === 4 ? { type, start, duration, points }
      : null),
  duration: ({ duration }) => duration,
  withPoints: (event, points, duration) => ({ ...event, duration, points }),
});
