// SPDX-License-Identifier: Apache-2.0
// The timeline: what the events' points say in a lane for intensity and one for frequency, and what becomes of it.

import { clipped, colour, drawGrid, line, plotOn, roundStep } from './canvas.js';
import { endOf } from './edits.js';
import { element } from './page.js';
import { current } from './state.js';
import { shownSpan } from './view.js';
import { hertzOf, patternPiece } from './wasm.js';

/** @import {Plot} from './canvas.js' */
/** @import {Curve, Tap} from './state.js' */
/** @import {EventFacts, Facts} from './wasm.js' */

/**
 * A lane shows one field of a point; `field` is its index in it.
 * @typedef {{canvas: HTMLCanvasElement, field: 1 | 2, plot: Plot | null,
 *   shown: (value: number) => number, value: (shown: number) => number}} Lane
 */

const hertz = () => hertzOf(current().design.profile);

/** @param {number} hz */
function nearestOffset(hz) {
  const table = hertz();
  let best = 0;
  for (let i = 1; i < table.length; ++i) if (Math.abs(table[i] - hz) < Math.abs(table[best] - hz)) best = i;
  return best - 50;
}

/** @type {Lane} */
export const intensityLane = {
  canvas: element('intensity-lane', HTMLCanvasElement), field: 1, plot: null,
  shown: (intensity) => intensity, value: (shown) => shown,
};
/** @type {Lane} */
export const frequencyLane = {
  canvas: element('frequency-lane', HTMLCanvasElement), field: 2, plot: null,
  shown: (offset) => hertz()[Math.min(100, Math.max(0, offset + 50))], value: nearestOffset,
};
export const lanes = [intensityLane, frequencyLane];

/** Of a point, on the lane's canvas. @param {Lane} lane @param {Plot} plot @param {Curve} event @param {number} point */
export function placeOf(lane, plot, event, point) {
  const at = event.points[point];
  return { x: plot.x(event.start + at[0] - event.points[0][0]), y: plot.y(lane.shown(at[lane.field])) };
}

/** Where a curve is stretched, away from its last point. @param {Plot} plot @param {Curve} event */
export const gripOf = (plot, event) => ({ x: plot.x(endOf(event)), y: plot.y(event.points[3][1] > 45 ? 15 : 70) });

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
  const plot = plotOn(lane.canvas, shownSpan(), [0, high], { top: lane.field === 1 ? 20 : 8 });
  lane.plot = plot;
  drawGrid(plot, lines);
  const { design, event: chosen } = current();
  /** @type {EventFacts[]} */
  const known = [];
  for (const event of facts.events) known[event.number - 1] = event;
  labelled = -Infinity;
  const drawPass = (/** @type {Plot} */ plot) => {
    design.events.forEach((event, i) => {
      if (event.type === 'continuous') drawCurve(plot, lane, event, known[i] ?? {});
    });
    design.events.forEach((event, i) => {
      if (event.type === 'transient') drawTap(plot, lane, event, known[i], i === chosen);
    });
  };
  clipped(plot, () => {
    drawPasses(plot, facts, drawPass);
    drawPass(plot);
    design.events.forEach((event, i) => event.type === 'continuous' && drawPoints(plot, lane, event, i === chosen));
    drawCursor(plot);
  });
  drawMarks(plot, lane, facts);
}

/** @param {Plot} plot @param {Lane} lane @param {Curve} event @param {Partial<EventFacts>} facts */
function drawCurve(plot, lane, event, { heard, sweeps = [] }) {
  const { draw } = plot;
  /** @type {[number, number][]} */
  const points = event.points.map((_, i) => {
    const { x, y } = placeOf(lane, plot, event, i);
    return [x, y];
  });
  draw.lineWidth = 1.2;
  if (lane.field === 1) {
    draw.fillStyle = colour('vibration');
    for (const [from, to] of heard ?? [[event.start, endOf(event)]]) {
      within(plot, from, to, () => {
        draw.beginPath();
        draw.moveTo(points[0][0], plot.bottom);
        for (const point of points) draw.lineTo(...point);
        draw.lineTo(points[3][0], plot.bottom);
        draw.fill();
      });
    }
    draw.strokeStyle = colour('curve');
    line(plot, points);
    return;
  }
  draw.strokeStyle = colour('aim');
  draw.setLineDash([2, 3]);
  line(plot, points);
  draw.setLineDash([]);
  draw.strokeStyle = colour('curve');
  draw.lineWidth = 1.8;
  for (const [from, to] of heard ?? []) {
    within(plot, from, to, () => {
      for (const { from_ms, to_ms, from_hz, reached_hz } of sweeps) {
        const zero = from_hz * reached_hz < 0 ? [folded(plot, from_ms, to_ms, from_hz, reached_hz)] : [];
        line(plot, [
          [plot.x(from_ms), plot.y(Math.abs(from_hz))], ...zero, [plot.x(to_ms), plot.y(Math.abs(reached_hz))],
        ]);
      }
    });
  }
}

/** Where a sweep passes 0 Hz. @returns {[number, number]}
 * @param {Plot} plot @param {number} from @param {number} to @param {number} low @param {number} high */
const folded = (plot, from, to, low, high) => [plot.x(from + ((to - from) * low) / (low - high)), plot.y(0)];

/** @param {Plot} plot @param {number} from @param {number} to @param {() => void} body */
function within({ draw, x, top, bottom }, from, to, body) {
  draw.save();
  draw.beginPath();
  draw.rect(x(from), top - 6, x(to) - x(from), bottom - top + 12);
  draw.clip();
  body();
  draw.restore();
}

/** Where the last tap has its level: labels keep apart. */
let labelled = -Infinity;

/** @param {Plot} plot @param {Lane} lane @param {Tap} event @param {EventFacts | undefined} facts @param {boolean} chosen */
function drawTap(plot, lane, event, facts, chosen) {
  const { draw } = plot;
  const left = plot.x(event.start);
  const wide = Math.max(4, plot.x(facts?.end_ms ?? endOf(event)) - left);
  draw.fillStyle = draw.strokeStyle = colour(chosen ? 'chosen' : 'tap');
  if (lane.field === 2) {
    draw.save();
    draw.globalAlpha *= 0.16;
    draw.fillRect(left, plot.top, wide, plot.bottom - plot.top);
    draw.restore();
    return;
  }
  const high = plot.y(event.intensity);
  draw.lineWidth = 1;
  draw.strokeRect(left + 0.5, high, wide - 1, plot.bottom - high);
  const driven = plot.y(facts?.driven ?? 0);
  draw.fillRect(left, driven, wide, plot.bottom - driven);
  draw.textAlign = 'center';
  draw.textBaseline = 'bottom';
  const middle = Math.max(plot.left + 14, left + wide / 2);
  const isOutside = left > plot.right || left + wide < plot.left;
  if (isOutside || (Math.abs(middle - labelled) < 30 && !chosen)) return;
  labelled = middle;
  draw.fillStyle = colour(chosen ? 'chosen' : 'muted');
  draw.fillText(`L${event.level}`, middle, Math.max(plot.top + 6, high - 2));
}

/** @param {Plot} plot @param {Lane} lane @param {Curve} event @param {boolean} chosen */
function drawPoints(plot, lane, event, chosen) {
  const { draw } = plot;
  const { point: chosenPoint } = current();
  event.points.forEach((_, i) => {
    const { x, y } = placeOf(lane, plot, event, i);
    draw.beginPath();
    draw.arc(x, y, chosen ? 5 : 2.5, 0, 7);
    draw.fillStyle = colour(chosen && i !== chosenPoint ? 'panel' : chosen ? 'chosen' : 'curve');
    draw.fill();
    draw.lineWidth = 2;
    draw.strokeStyle = colour('chosen');
    if (chosen) draw.stroke();
  });
  if (!chosen || lane.field !== 1) return;
  const grip = gripOf(plot, event);
  draw.fillStyle = colour('chosen');
  draw.globalAlpha = 0.5;
  draw.fillRect(grip.x - 0.5, plot.top, 1, plot.bottom - plot.top);
  draw.globalAlpha = 1;
  draw.beginPath();
  draw.roundRect(grip.x - 3, grip.y - 8, 6, 16, 3);
  draw.fill();
}

/** The later passes are copies of the first; where they are many, a band. @param {Plot} plot @param {Facts} facts
 * @param {(plot: Plot) => void} drawPass */
function drawPasses(plot, { pass_ms, length_ms, faults, stream }, drawPass) {
  const { loops, interval } = current().design;
  const { draw, x, span, top, bottom } = plot;
  if (faults.length > 0 || stream || loops === 1) return;
  const stride = pass_ms + interval;
  draw.globalAlpha = 0.45;
  if (x(stride) - x(0) < 12) {
    draw.fillStyle = colour('vibration');
    draw.fillRect(x(pass_ms), top, x(length_ms) - x(pass_ms), bottom - top);
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
  const { draw, top, bottom } = plot;
  const x = Math.round(plot.x(current().cursor)) + 0.5;
  draw.strokeStyle = colour('muted');
  draw.lineWidth = 1;
  draw.setLineDash([4, 3]);
  line(plot, [[x, top - 6], [x, bottom]]);
  draw.setLineDash([]);
}

/** Warnings at their time, faults at their event. @param {Plot} plot @param {Lane} lane @param {Facts} facts */
function drawMarks(plot, lane, facts) {
  if (lane.field !== 1) return;
  const { events } = current().design;
  for (const { ms } of facts.warnings) drawMark(plot, ms, 'warning');
  for (const number of facts.fault_events) if (number > 0) drawMark(plot, events[number - 1].start, 'fault');
}

/** @param {Plot} plot @param {number} ms @param {string} kind */
function drawMark({ draw, x, left, right }, ms, kind) {
  const at = x(ms);
  if (at < left - 1 || at > right + 1) return;
  draw.fillStyle = colour(kind);
  draw.beginPath();
  draw.moveTo(at, 1);
  draw.lineTo(at + 7, 13);
  draw.lineTo(at - 7, 13);
  draw.fill();
  draw.fillStyle = colour('panel');
  draw.fillRect(at - 0.8, 5, 1.6, 4);
  draw.fillRect(at - 0.8, 10.2, 1.6, 1.6);
}
