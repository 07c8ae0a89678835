// SPDX-License-Identifier: Apache-2.0
// Entries of a file that are kept as they are written: groups, records, and events with times in words or points in
// hertz. They are moved where their start is a whole number.

import { clamp, isInteger } from './numbers.js';

/** @import {Kind} from './events.js' */

/**
 * With the start and the length that the library finds, in ms.
 * @typedef {{type: string, start?: unknown, note?: string, [name: string]: unknown}} Written
 * @typedef {{type: 'kept', start: number, length: number, written: Written}} Kept
 */

/** @type {(written: any, start: number, length: number) => Kept} */
export const keptAs = (written, start, length) => ({ type: 'kept', start, length, written });

/** @param {unknown} list @param {string} word */
const counted = (list, word) => {
  const count = Array.isArray(list) ? list.length : 0;
  return `${count} ${word}${count === 1 ? '' : 's'}`;
};

/** @type {Record<string, (written: Written) => string>} */
const words = {
  group: ({ events, repeat = 1 }) =>
    `Group of ${counted(events, 'event')}${repeat === 1 ? '' : `, ${repeat} times`}`,
  curve: ({ points }) => `Curve, ${counted(points, 'point')}`,
  continuous: () => 'Vibration',
  record: () => 'Record',
  transient: () => 'Tap',
};

/** @param {Kept} event */
const isMovable = ({ written }) => isInteger(written.start);

/** @type {Kind<Kept>['startedAt']} */
const startedAt = (event, start) => ({ ...event, start, written: { ...event.written, start } });

/** @type {Kind<Kept>} */
export const kept = {
  word: ({ written }) => words[written.type]?.(written) ?? written.type,
  read: ({ start, length, written }) => {
    const isWritten = written !== null && typeof written === 'object' && Object.hasOwn(words, written.type);
    if (!isWritten || !Number.isFinite(start) || !Number.isFinite(length)) return null;
    return keptAs(written, isInteger(written.start) ? written.start : start, length);
  },
  summary: ({ start, length, written }) =>
    isInteger(written.start) ? `${start} – ${Math.round(start + length)} ms` : `at ${written.start}`,
  points: () => [],
  span: ({ start, length }) => ({ from: start, to: start + length }),
  next: ({ start, length }) => clamp(Math.ceil(start + length), 0, Infinity),
  startedAt,
  value: (event, name) => (name === 'start' && isMovable(event) ? event.start : undefined),
  withValue: (event, name, value) => (name === 'start' && isMovable(event) ? startedAt(event, value) : event),
  withPoint: (event) => event,
  strengthened: (event) => event,
  lifted: (event) => event,
  stretched: (event) => event,
};

/** @param {Kept} event */
export const isFixed = (event) => !isMovable(event);
