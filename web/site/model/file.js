// SPDX-License-Identifier: Apache-2.0
// What is designed as a file: its events, and what it says beside them.

import { writtenOf } from './events.js';
import { emptyDesign } from './state.js';

/** @import {Design} from './state.js' */

/** @typedef {{readonly [name: string]: unknown}} Header all fields of a file but its events, as they are written */
/** @typedef {{motor?: number, chip?: number, boost?: boolean, loops?: number, interval?: number}} Said by a header */

/** @param {Design} design @returns {Required<Said>} */
const settingsOf = ({ profile, loops, interval }) => ({ ...profile, loops, interval });

/** With the header as it was read, so that what is chosen can be told from it. @param {Design} design */
export const asRead = ({ header, events }) => JSON.stringify({ ...header, events: events.map(writtenOf) });

/**
 * With what is chosen now, where the header has that or it is not what is usual. What means the same stays as written.
 * @param {Design} design @param {Said} said what the header says, in plain values
 */
export function asSaved(design, said) {
  const { name, header } = design;
  const usual = settingsOf(emptyDesign);
  const chosen = Object.entries(settingsOf(design)).filter(([field, value]) =>
    /** @type {any} */ (said)[field] !== value && (field in header || /** @type {any} */ (usual)[field] !== value));
  const named = 'name' in header ? { name } : {};
  return asRead({ ...design, header: { ...header, ...named, ...Object.fromEntries(chosen) } });
}

/**
 * A design on what its file says, and else on what is usual.
 * @param {Said} said @param {Header} header @param {string} file's name
 * @returns {Design}
 */
export function designOf({ motor, chip, boost, loops, interval }, header, file) {
  const usual = emptyDesign;
  return {
    name: typeof header.name === 'string' ? header.name : file,
    profile: {
      motor: motor ?? usual.profile.motor, chip: chip ?? usual.profile.chip, boost: boost ?? usual.profile.boost,
    },
    loops: loops ?? usual.loops,
    interval: interval ?? usual.interval,
    header,
    events: [],
  };
}
