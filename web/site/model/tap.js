// SPDX-License-Identifier: Apache-2.0
// Taps, whose lengths the motor decides.

import { clamp, isInteger } from './numbers.js';
import { noted } from './note.js';

/** @import {Kind} from './events.js' */

/**
 * Of an intensity, of which the motor takes its share, or driven as strongly as it says.
 * @typedef {{type: 'transient', start: number, intensity?: number, driven?: number, level: number, note?: string}} Tap
 */

const nominalMs = 15;
const apartMs = 50;

/** @type {(start: number, level?: number, intensity?: number) => Tap} */
export const newTap = (start, level = 50, intensity = 80) =>
  ({ type: 'transient', start: clamp(start, 0, Infinity), intensity: clamp(intensity, 0, 100), level });

/** The field in which its strength stands. @param {Tap} event */
const strength = (event) => (event.driven === undefined ? 'intensity' : 'driven');

/** What is asked for, in percent. @param {Tap} event */
export const strengthOf = (event) => event[strength(event)] ?? 0;

/** @type {(event: Tap, by: number) => Tap} */
const strengthened = (event, by) => ({ ...event, [strength(event)]: clamp(strengthOf(event) + by, 0, 100) });

/** @type {Kind<Tap>} */
export const tap = {
  word: () => 'Tap',
  read: noted(({ type, start, intensity, driven, level }) =>
    [start, driven ?? intensity, level].every(isInteger) && (driven === undefined || intensity === undefined)
      ? { type, start, ...(driven === undefined ? { intensity } : { driven }), level } : null),
  summary: (event) =>
    `${event.start} ms · level ${event.level}, ${event.driven === undefined ? '' : 'driven '}${strengthOf(event)} %`,
  points: () => [],
  span: ({ start }) => ({ from: start, to: start + nominalMs }),
  next: ({ start }) => start + apartMs,
  startedAt: (event, start) => ({ ...event, start }),
  value: (event, name) => ({ start: event.start, level: event.level, [strength(event)]: strengthOf(event) })[name],
  withValue: (event, name, value) => ({ ...event, [name]: value }),
  withPoint: (event) => event,
  strengthened,
  lifted: strengthened,
  stretched: (event) => event,
};
