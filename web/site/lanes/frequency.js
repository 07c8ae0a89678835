// SPDX-License-Identifier: Apache-2.0
// The lane for frequencies: dotted what the points say, and over it what becomes of that.

import { clamp } from '../model/numbers.js';
import { roundStep } from '../model/spans.js';
import { current } from '../model/state.js';
import { hertzOf } from '../library/pieces.js';
import { box, fill, stroke } from '../page/canvas.js';
import { withinHeard } from './heard.js';
import { EventLane, tapSides } from './lane.js';

/** @import {Facts, Sweep} from '../../protocol.js' */
/** @import {Places, Plot} from '../page/canvas.js' */

const hertz = () => hertzOf(current().design.profile);
const strongest = 50; // as an offset

/** @param {number} offset */
const hertzOfOffset = (offset) => hertz()[clamp(offset, -strongest, strongest) + strongest] ?? 0;

/** @param {number} hz */
function nearestOffset(hz) {
  const far = hertz().map((other) => Math.abs(other - hz));
  return far.indexOf(Math.min(...far)) - strongest;
}

/** Folded where it passes 0 Hz. @param {Plot} plot @param {Sweep} sweep @returns {Places} */
function placesOf(plot, { from_ms, to_ms, from_hz, reached_hz }) {
  const zero_ms = from_ms + ((to_ms - from_ms) * from_hz) / (from_hz - reached_hz);
  /** @type {Places} */
  const zero = from_hz * reached_hz < 0 ? [[plot.x(zero_ms), plot.y(0)]] : [];
  return [[plot.x(from_ms), plot.y(Math.abs(from_hz))], ...zero, [plot.x(to_ms), plot.y(Math.abs(reached_hz))]];
}

/** The frequencies that the lane must have room for. */
let highest = 0;

/** @param {boolean} isHeld @param {Facts} facts */
function high(isHeld, facts) {
  if (isHeld) return highest;
  const reached = facts.events.flatMap(({ sweeps = [] }) => sweeps.map((sweep) => Math.abs(sweep.reached_hz)));
  return (highest = Math.ceil(Math.max(...hertz(), ...reached) / 50) * 50);
}

export const frequencyLane = new EventLane('frequency-lane', {
  field: 2,
  plotted: hertzOfOffset,
  plottedOf: ({ hz, points }, i) => {
    const point = points[i] ?? [0, 0, 0];
    return hz?.[i] ?? ('hz' in point ? point.hz : hertzOfOffset(point[2]));
  },
  value: nearestOffset,
  room: 8,
  high,
  lines: (high) => {
    const step = roundStep(high, 4);
    return Array.from({ length: Math.floor(high / step) + 1 }, (_, i) => i * step);
  },
  drawLine: (plot, { type, heard = [], sweeps = [] }, points, isChosen) => {
    stroke(plot, 'aim', points, 1.2, [2, 3]);
    const name = isChosen && type === 'record' ? 'chosen' : 'curve'; // of others their points tell
    withinHeard(plot, heard, () => {
      for (const sweep of sweeps) stroke(plot, name, placesOf(plot, sweep), 1.8);
    });
  },
  drawTap: (plot, facts, isChosen) => {
    const { left, wide } = tapSides(plot, facts);
    fill(plot, isChosen ? 'chosen' : 'tap', box(left, plot.top, wide, plot.bottom - plot.top), 0.16);
  },
  shapeOfLine: (plot, { sweeps = [] }, points) =>
    ({ places: points.length > 0 ? points : sweeps.flatMap((sweep) => placesOf(plot, sweep)), isLine: true }),
  topOfTap: (plot) => plot.top,
  gripOf: () => null,
  drawMarks: () => {},
  strengthAt: () => 80,
  hasStrength: false,
});
