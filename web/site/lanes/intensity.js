// SPDX-License-Identifier: Apache-2.0
// The lane for intensities, where every event can be moved in all its ways, with the marks of warnings and faults.

import { endOf, pointsOf } from '../model/events.js';
import { current } from '../model/state.js';
import { strengthOf } from '../model/tap.js';
import { box, fill, stroke, write } from '../page/canvas.js';
import { withinHeard } from './heard.js';
import { EventLane, tapSides, writtenEnd } from './lane.js';

/** @import {LineFacts, Sweep} from '../../protocol.js' */
/** @import {Places, Plot} from '../page/canvas.js' */
/** @import {Face, Labels} from './lane.js' */

const same = (/** @type {number} */ value) => value;

/** Below its line, or where there is none, below what plays. @param {Plot} plot @param {LineFacts} facts
 * @param {Places} points @returns {Places} */
function areaOf(plot, facts, points) {
  const { x, bottom } = plot;
  const top = points.length > 0 ? points : (facts.sweeps ?? []).flatMap((sweep) => envelopeOf(plot, sweep));
  return [[x(facts.start), bottom], ...top, [x(writtenEnd(facts)), bottom]];
}

/** @param {Plot} plot @param {Sweep} sweep @returns {Places} */
const envelopeOf = ({ x, y }, { from_ms, to_ms, strengths = [] }) => strengths.map((strength, i) =>
  [x(from_ms + ((to_ms - from_ms) * i) / (strengths.length - 1)), y(strength)]);

/** The driven strength, in the outline of what is asked for. @type {Face['drawTap']} */
function drawTap(plot, facts, isChosen, labels) {
  const { left, wide } = tapSides(plot, facts);
  const name = isChosen ? 'chosen' : 'tap';
  const [high, driven] = [plot.y(strengthOf(facts)), plot.y(facts.strength ?? 0)];
  const outline = box(left + 0.5, high, wide - 1, plot.bottom - high);
  stroke(plot, name, [...outline, ...outline.slice(0, 1)]);
  fill(plot, name, box(left, driven, wide, plot.bottom - driven));
  const middle = Math.min(plot.right - 12, Math.max(plot.left + 14, left + wide / 2));
  const isOutside = left > plot.right || left + wide < plot.left;
  const near = (/** @type {number} */ other) => Math.abs(middle - other) < 30;
  if (isOutside || near(labels.chosen) || (near(labels.others) && !isChosen)) return;
  labels[isChosen ? 'chosen' : 'others'] = middle;
  write(plot, `L${facts.level}`, middle, high - 2, 'center', 'bottom', isChosen ? 'chosen' : 'muted');
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
  plottedOf: ({ points }, i) => {
    const point = points[i] ?? [0, 0, 0];
    return 'time' in point ? point.intensity : point[1];
  },
  value: same,
  room: 30,
  high: () => 100,
  lines: () => [0, 50, 100],
  drawLine: (plot, facts, points, isChosen) => {
    const heard = facts.heard ?? [[facts.start, writtenEnd(facts)]];
    const area = areaOf(plot, facts, points);
    withinHeard(plot, heard, () => fill(plot, 'vibration', area));
    if (points.length > 0) stroke(plot, 'curve', points, 1.2);
    else stroke(plot, isChosen ? 'chosen' : 'curve', area, 1.2);
  },
  drawTap,
  shapeOfLine: (plot, facts, points) => ({ places: areaOf(plot, facts, points), isLine: false }),
  topOfTap: (plot, facts) => plot.y(strengthOf(facts)) - 14,
  gripOf: (plot, event) => {
    const last = pointsOf(event).at(-1); // away from it
    return last === undefined ? null : [plot.x(endOf(event)), plot.y(last[1] > 45 ? 15 : 70)];
  },
  drawMarks,
  strengthAt: same,
  hasStrength: true,
});
