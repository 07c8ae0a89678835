// SPDX-License-Identifier: Apache-2.0
// Taps, whose lengths the motor decides.

import { clamp, isInteger } from './numbers.js';

/** @import {Kind} from './events.js' */

/** @typedef {{type: 'transient', start: number, intensity: number, level: number}} Tap */

const nominalMs = 15;
const apartMs = 50;

/** @type {(start: number, level?: number, intensity?: number) => Tap} */
export const newTap = (start, level = 50, intensity = 80) =>
  ({ type: 'transient', start: clamp(start, 0, Infinity), intensity: clamp(intensity, 0, 100), level });

/** @type {(event: Tap, by: number) => Tap} */
const strengthened = (event, by) => ({ ...event, intensity: clamp(event.intensity + by, 0, 100) });

/** @type {Kind<Tap>} */
export const tap = {
  word: 'Tap',
  read: ({ type, start, intensity, level, ...others }) =>
    [start, intensity, level].every(isInteger) && Object.keys(others).length === 0 ? { type, start, intensity, level }
      : null,
  summary: ({ start, level, intensity }) => `${start} ms · level ${level}, ${intensity} %`,
  points: () => [],
  span: ({ start }) => ({ from: start, to: start + nominalMs }),
  next: ({ start }) => start + apartMs,
  withValue: (event, name, value) => ({ ...event, [name]: value }),
  withPoint: (event) => event,
  strengthened,
  lifted: strengthened,
  stretched: (event) => event,
};
