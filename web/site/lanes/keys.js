// SPDX-License-Identifier: Apache-2.0
// Keys in the lanes.

import { addCurve, addTap, change, duplicate, remove, selectNext } from '../model/commands.js';
import { endOf } from '../model/events.js';
import { current, endStep, show } from '../model/state.js';
import { end } from './gestures.js';
import { lanes } from './lanes.js';
import { bringIntoView } from './view.js';

/** @import {Lane} from './lanes.js' */

/** @type {Record<string, [ms: number, value: number]>} */
const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] };

/** @type {Record<string, () => void>} */
const keys = {
  t: addTap, c: addCurve, d: duplicate, Delete: remove, Backspace: remove,
  PageDown: () => selectNext(1), PageUp: () => selectNext(-1),
  Home: () => show({ event: -1, cursor: 0 }),
  End: () => show({ event: -1, cursor: Math.max(0, ...current().design.events.map(endOf)) }),
  Escape: () => {
    end(false);
    show({ event: -1 });
  },
  ...Object.fromEntries(Array.from({ length: 10 }, (_, i) => [i, () => show({ point: i - 1 })])),
};

/** @param {Lane} lane @param {KeyboardEvent} event */
function press(lane, event) {
  if (event.ctrlKey || event.metaKey) return;
  const command = event.altKey ? undefined : keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
  const by = event.shiftKey ? 10 : 1;
  const arrow = arrows[event.key];
  if (arrow !== undefined) {
    if (!event.repeat) endStep(); // a key that is held is undone in one
    nudge(lane, arrow[0] * by, arrow[1] * by, event.altKey);
  } else if (command !== undefined) command();
  else return;
  event.preventDefault();
  bringIntoView();
}

/** @param {Lane} lane @param {number} ms @param {number} value @param {boolean} isStretched */
function nudge(lane, ms, value, isStretched) {
  const { event, point, cursor } = current();
  const part = isStretched ? 'end' : point >= 0 ? 'point' : 'whole';
  if (event < 0) show({ cursor: Math.max(0, cursor + ms) });
  else change((old) => lane.moved(old, { part, point }, ms, value), `${part} ${point}`);
}

for (const lane of lanes) {
  lane.canvas.addEventListener('keydown', (event) => press(lane, event));
  lane.canvas.addEventListener('keyup', (event) => event.key in arrows && endStep());
}
