// SPDX-License-Identifier: Apache-2.0
// The lane for intensities, where every event can be moved in all its ways, with the marks of warnings and faults.

import { endOf, pointsOf } from '../model/events.js';
import { current } from '../model/state.js';
import { box, fill, stroke, write } from '../page/canvas.js';
import { withinHeard } from './heard.js';
import { EventLane, tapSides } from './lane.js';

/** @import {Facts, TapFacts} from '../../protocol.js' */
/** @import {Curve} from '../model/curve.js' */
/** @import {Tap} from '../model/tap.js' */
/** @import {Places, Plot} from '../page/canvas.js' */
/** @import {Face, Labels} from './lane.js' */

const same = (/** @type {number} */ value) => value;

/** @param {Plot} plot @param {Curve} event @param {Places} points @returns {Places} */
const areaOf = ({ x, bottom }, event, points) => [[x(event.start), bottom], ...points, [x(endOf(event)), bottom]];

/** The driven strength, in the outline of what is asked for. @type {Face['drawTap']} */
function drawTap(plot, event, facts, isChosen, labels) {
  const { left, wide } = tapSides(plot, event, facts);
  const name = isChosen ? 'chosen' : 'tap';
  const [high, driven] = [plot.y(event.intensity), plot.y(facts?.driven ?? 0)];
  const outline = box(left + 0.5, high, wide - 1, plot.bottom - high);
  stroke(plot, name, [...outline, ...outline.slice(0, 1)]);
  fill(plot, name, box(left, driven, wide, plot.bottom - driven));
  const middle = Math.min(plot.right - 12, Math.max(plot.left + 14, left + wide / 2));
  const isOutside = left > plot.right || left + wide < plot.left;
  if (isOutside || (Math.abs(middle - labels.last) < 30 && !isChosen)) return;
  labels.last = middle;
  write(plot, `L${event.level}`, middle, high - 2, 'center', 'bottom', isChosen ? 'chosen' : 'muted');
}

/** Warnings at their time, faults at their event, or at the edge beyond which that lies. @type {Face['drawMarks']} */
function drawMarks(plot, facts) {
  const { events } = current().design;
  for (const { ms } of facts.warnings) drawMark(plot, plot.x(ms), 'warning');
  for (const number of facts.fault_events) {
    const event = events[number - 1];
    if (event) drawMark(plot, Math.min(plot.right, Math.max(plot.left, plot.x(event.start))), 'fault');
  }
}

/** @param {Plot} plot @param {number} x @param {string} kind */
function drawMark(plot, x, kind) {
  if (x < plot.left - 1 || x > plot.right + 1) return;
  fill(plot, kind, [[x, 1], [x + 7, 13], [x - 7, 13]]);
  fill(plot, 'panel', box(x - 0.8, 5, 1.6, 4));
  fill(plot, 'panel', box(x - 0.8, 10.2, 1.6, 1.6));
}

export const intensityLane = new EventLane('intensity-lane', {
  field: 1,
  plotted: same,
  value: same,
  room: 30,
  high: () => 100,
  lines: () => [0, 50, 100],
  drawCurve: (plot, event, points, facts) => {
    const heard = facts?.heard ?? [[event.start, endOf(event)]];
    withinHeard(plot, heard, () => fill(plot, 'vibration', areaOf(plot, event, points)));
    stroke(plot, 'curve', points, 1.2);
  },
  drawTap,
  shapeOfCurve: (plot, event, points) => ({ places: areaOf(plot, event, points), isLine: false }),
  topOfTap: (plot, event) => plot.y(event.intensity) - 14,
  gripOf: (plot, event) => {
    const last = pointsOf(event).at(-1); // away from it
    return last === undefined ? null : [plot.x(endOf(event)), plot.y(last[1] > 45 ? 15 : 70)];
  },
  drawMarks,
  strengthAt: same,
  hasStrength: true,
});
