// SPDX-License-Identifier: Apache-2.0
// The timeline: what the events' points say in a lane for intensity and one for frequency, and what becomes of it.

import { endOf } from '../model/edits.js';
import { current } from '../model/state.js';
import { hertzOf, patternPiece } from '../library/wasm.js';
import { box, clipped, drawGrid, fill, plotOn, roundStep, stroke, within, write } from '../page/canvas.js';
import { element } from '../page/elements.js';
import { shownSpan } from './view.js';

/** @import {Place, Places, Plot} from '../page/canvas.js' */
/** @import {Curve, Tap} from '../model/state.js' */
/** @import {EventFacts, Facts, Sweep} from '../library/wasm.js' */

/**
 * A lane shows one field of a point; `field` is its index in it, 0: none.
 * @typedef {{canvas: HTMLCanvasElement, field: 0 | 1 | 2, plot: Plot | null,
 *   shown: (value: number) => number, value: (shown: number) => number}} Lane
 */

const hertz = () => hertzOf(current().design.profile);

/** @param {number} hz */
function nearestOffset(hz) {
  const far = hertz().map((other) => Math.abs(other - hz));
  return far.indexOf(Math.min(...far)) - 50;
}

const same = (/** @type {number} */ value) => value;
const hertzOfOffset = (/** @type {number} */ offset) => hertz()[Math.min(100, Math.max(0, offset + 50))];

/** @type {(id: string, field: Lane['field'], shown?: Lane['shown'], value?: Lane['value']) => Lane} */
const lane = (id, field, shown = same, value = same) =>
  ({ canvas: element(id, HTMLCanvasElement), field, plot: null, shown, value });

export const intensityLane = lane('intensity-lane', 1);
export const frequencyLane = lane('frequency-lane', 2, hertzOfOffset, nearestOffset);
export const waveformLane = lane('waveform', 0);

/**
 * Of a point, on the lane's canvas.
 * @param {Lane} lane @param {Plot} plot @param {Curve} event @param {number} point @returns {Place}
 */
export function placeOf(lane, plot, event, point) {
  const at = event.points[point];
  return [plot.x(event.start + at[0] - event.points[0][0]), plot.y(lane.shown(at[lane.field]))];
}

/** Where a curve is stretched, away from its last point. @param {Plot} plot @param {Curve} event @returns {Place} */
export const gripOf = (plot, event) => [plot.x(endOf(event)), plot.y(event.points[3][1] > 45 ? 15 : 70)];

/** Where the motor lets a tap end. @param {Tap} event @param {EventFacts | undefined} facts */
export const tapEnd = (event, facts) => facts?.end_ms ?? endOf(event);

/** The frequencies that the lane must have room for; they stay during a drag. */
let top = 0;

/** @param {boolean} held */
export function showLanes(held) {
  const { facts } = patternPiece(current().design);
  if (!held) {
    const reached = facts.events.flatMap(({ sweeps = [] }) => sweeps.map((sweep) => Math.abs(sweep.reached_hz)));
    top = Math.ceil(Math.max(...hertz(), ...reached) / 50) * 50;
  }
  const step = roundStep(top, 4);
  const lines = Array.from({ length: Math.floor(top / step) + 1 }, (_, i) => i * step);
  showLane(intensityLane, facts, [0, 50, 100], 100);
  showLane(frequencyLane, facts, lines, top);
}

/** @param {Lane} lane @param {Facts} facts @param {number[]} lines @param {number} high */
function showLane(lane, facts, lines, high) {
  const plot = plotOn(lane.canvas, shownSpan(), [0, high], { top: lane.field === 1 ? 30 : 8 });
  lane.plot = plot;
  drawGrid(plot, lines);
  const { design, event: chosen } = current();
  labelled = -Infinity;
  const drawPass = (/** @type {Plot} */ plot) => {
    design.events.forEach((event, i) => {
      if (event.type === 'continuous') drawCurve(plot, lane, event, facts.events[i] ?? {});
    });
    design.events.forEach((event, i) => {
      if (event.type === 'transient') drawTap(plot, lane, event, facts.events[i], i === chosen);
    });
  };
  clipped(plot, () => {
    drawPass(plot);
    drawPasses(plot, facts, drawPass);
    design.events.forEach((event, i) => event.type === 'continuous' && drawPoints(plot, lane, event, i === chosen));
    drawCursor(plot);
  });
  drawMarks(plot, lane, facts);
}

/** @param {Plot} plot @param {Lane} lane @param {Curve} event @param {Partial<EventFacts>} facts */
function drawCurve(plot, lane, event, { heard, sweeps = [] }) {
  /** @type {Places} */
  const points = event.points.map((_, i) => placeOf(lane, plot, event, i));
  const whereHeard = (/** @type {() => void} */ body) => {
    for (const [from, to] of heard ?? (lane.field === 1 ? [[event.start, endOf(event)]] : [])) {
      const x = plot.x(from);
      within(plot, box(x, plot.top - 6, plot.x(to) - x, plot.bottom - plot.top + 12), body);
    }
  };
  if (lane.field === 1) {
    whereHeard(() => fill(plot, 'vibration', [[points[0][0], plot.bottom], ...points, [points[3][0], plot.bottom]]));
    stroke(plot, 'curve', points, 1.2);
    return;
  }
  stroke(plot, 'aim', points, 1.2, [2, 3]);
  whereHeard(() => {
    for (const sweep of sweeps) stroke(plot, 'curve', placesOf(plot, sweep), 1.8);
  });
}

/** Folded where it passes 0 Hz. @param {Plot} plot @param {Sweep} sweep @returns {Places} */
function placesOf(plot, { from_ms, to_ms, from_hz, reached_hz }) {
  const zero_ms = from_ms + ((to_ms - from_ms) * from_hz) / (from_hz - reached_hz);
  /** @type {Places} */
  const zero = from_hz * reached_hz < 0 ? [[plot.x(zero_ms), plot.y(0)]] : [];
  return [[plot.x(from_ms), plot.y(Math.abs(from_hz))], ...zero, [plot.x(to_ms), plot.y(Math.abs(reached_hz))]];
}

/** Where the last tap has its level: labels keep apart. */
let labelled = -Infinity;

/** @param {Plot} plot @param {Lane} lane @param {Tap} event @param {EventFacts | undefined} facts @param {boolean} chosen */
function drawTap(plot, lane, event, facts, chosen) {
  const left = plot.x(event.start);
  const wide = Math.max(4, plot.x(tapEnd(event, facts)) - left);
  const name = chosen ? 'chosen' : 'tap';
  if (lane.field === 2) return fill(plot, name, box(left, plot.top, wide, plot.bottom - plot.top), 0.16);
  const [high, driven] = [plot.y(event.intensity), plot.y(facts?.driven ?? 0)];
  const outline = box(left + 0.5, high, wide - 1, plot.bottom - high);
  stroke(plot, name, [...outline, outline[0]]);
  fill(plot, name, box(left, driven, wide, plot.bottom - driven));
  const middle = Math.min(plot.right - 12, Math.max(plot.left + 14, left + wide / 2));
  const isOutside = left > plot.right || left + wide < plot.left;
  if (isOutside || (Math.abs(middle - labelled) < 30 && !chosen)) return;
  labelled = middle;
  write(plot, `L${event.level}`, middle, high - 2, 'center', 'bottom', chosen ? 'chosen' : 'muted');
}

/** @param {Plot} plot @param {Lane} lane @param {Curve} event @param {boolean} chosen */
function drawPoints(plot, lane, event, chosen) {
  event.points.forEach((_, i) => {
    drawDot(plot, placeOf(lane, plot, event, i), chosen ? 'chosen' : 'curve', chosen ? 6 : 2.5);
    if (chosen && i !== current().point) drawDot(plot, placeOf(lane, plot, event, i), 'panel', 4);
  });
  if (!chosen || lane.field !== 1) return;
  const [x, y] = gripOf(plot, event);
  stroke(plot, 'grip', [[x, plot.top], [x, plot.bottom]]);
  stroke(plot, 'chosen', [[x, y - 6], [x, y + 6]], 6);
}

/** @param {Plot} plot @param {Place} place @param {string} name of a colour @param {number} radius */
const drawDot = (plot, [x, y], name, radius) =>
  fill(plot, name, Array.from({ length: 16 }, (_, i) =>
    [x + radius * Math.cos((i * Math.PI) / 8), y + radius * Math.sin((i * Math.PI) / 8)]));

/** The later passes are copies of the first; where they are many, a band. @param {Plot} plot @param {Facts} facts
 * @param {(plot: Plot) => void} drawPass */
function drawPasses(plot, { pass_ms, length_ms, faults, stream }, drawPass) {
  const { loops, interval } = current().design;
  const { draw, x, span, top, bottom } = plot;
  if (faults.length > 0 || stream || loops === 1) return;
  const stride = pass_ms + interval;
  draw.globalAlpha = 0.45;
  if (x(stride) - x(0) < 12) {
    fill(plot, 'vibration', box(x(pass_ms), top, x(length_ms) - x(pass_ms), bottom - top));
  } else {
    const last = Math.min(loops - 1, Math.floor(span.to / stride));
    for (let pass = Math.max(1, Math.floor(span.from / stride)); pass <= last; ++pass) {
      drawPass({ ...plot, x: (ms) => x(ms + pass * stride) });
    }
  }
  draw.globalAlpha = 1;
}

/** @param {Plot} plot */
function drawCursor(plot) {
  const x = Math.round(plot.x(current().cursor)) + 0.5;
  stroke(plot, 'muted', [[x, plot.top - 6], [x, plot.bottom]], 1, [4, 3]);
}

/**
 * Warnings at their time, faults at their event, or at the edge beyond which that lies.
 * @param {Plot} plot @param {Lane} lane @param {Facts} facts
 */
function drawMarks(plot, lane, facts) {
  if (lane.field !== 1) return;
  const { events } = current().design;
  for (const { ms } of facts.warnings) drawMark(plot, plot.x(ms), 'warning');
  for (const number of facts.fault_events) {
    if (number > 0) drawMark(plot, Math.min(plot.right, Math.max(plot.left, plot.x(events[number - 1].start))), 'fault');
  }
}

/** @param {Plot} plot @param {number} x @param {string} kind */
function drawMark(plot, x, kind) {
  if (x < plot.left - 1 || x > plot.right + 1) return;
  fill(plot, kind, [[x, 1], [x + 7, 13], [x - 7, 13]]);
  fill(plot, 'panel', box(x - 0.8, 5, 1.6, 4));
  fill(plot, 'panel', box(x - 0.8, 10.2, 1.6, 1.6));
}
