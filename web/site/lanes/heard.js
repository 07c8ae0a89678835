// SPDX-License-Identifier: Apache-2.0
// Where an event is heard, and not covered by others.

import { box, within } from '../page/canvas.js';

/** @import {Plot} from '../page/canvas.js' */

/** Draws there only. @param {Plot} plot @param {[from: number, to: number][]} heard @param {() => void} body */
export function withinHeard(plot, heard, body) {
  for (const [from, to] of heard) {
    const x = plot.x(from);
    within(plot, box(x, plot.top - 6, plot.x(to) - x, plot.bottom - plot.top + 12), body);
  }
}
