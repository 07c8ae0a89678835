// SPDX-License-Identifier: Apache-2.0
// Plots on canvases: a place for every pair of values, grids, and the colours of the style sheet.

/** @import {Span} from './state.js' */

/**
 * @typedef {{draw: CanvasRenderingContext2D, left: number, right: number, top: number, bottom: number,
 *   span: Span, x: (ms: number) => number, y: (value: number) => number, msAt: (x: number) => number,
 *   valueAt: (y: number) => number}} Plot
 */

export const inset = { left: 40, right: 10 };

/** @type {Record<string, string>} */
let colours = {};

export function readColours() {
  const style = getComputedStyle(document.documentElement);
  const names = ['ink', 'muted', 'panel', 'band', 'grid', 'axis', 'curve', 'dense', 'vibration', 'tap', 'response',
    'aim', 'chosen', 'warning', 'fault', 'low'];
  colours = Object.fromEntries(names.map((name) => [name, style.getPropertyValue(`--${name}`).trim()]));
}

/** @param {string} name */
export const colour = (name) => colours[name];

/**
 * The canvas, empty, at the screen's own resolution.
 * @param {HTMLCanvasElement} canvas @param {Span} span @param {[number, number]} values from bottom to top
 * @param {{top?: number, bottom?: number, left?: number}} [room] @returns {Plot}
 */
export function plotOn(canvas, span, [low, high], room = {}) {
  const width = canvas.clientWidth;
  const height = canvas.clientHeight;
  const scale = window.devicePixelRatio || 1;
  canvas.width = Math.round(width * scale);
  canvas.height = Math.round(height * scale);
  const draw = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
  draw.setTransform(scale, 0, 0, scale, 0, 0);
  draw.font = '11px system-ui, "DejaVu Sans", sans-serif';
  draw.lineJoin = 'round';
  const left = room.left ?? inset.left;
  const right = width - inset.right;
  const top = room.top ?? 8;
  const bottom = height - (room.bottom ?? 8);
  const perMs = Math.max(1, right - left) / (span.to - span.from);
  const perValue = (bottom - top) / (high - low);
  return {
    draw, left, right, top, bottom, span,
    x: (ms) => left + (ms - span.from) * perMs,
    y: (value) => bottom - (value - low) * perValue,
    msAt: (x) => span.from + (x - left) / perMs,
    valueAt: (y) => low + (bottom - y) / perValue,
  };
}

/** A round number of which about `count` make up the range. @param {number} range @param {number} count */
export function roundStep(range, count) {
  const rough = range / Math.max(1, count);
  const power = 10 ** Math.floor(Math.log10(rough));
  return ([1, 2, 5, 10].find((step) => step * power >= rough * 0.999) ?? 10) * power;
}

/** @param {Plot} plot @param {number[]} values with a line and a label each @param {boolean} [times] label the times */
export function drawGrid(plot, values, times = false) {
  const { draw, left, right, top, bottom, span } = plot;
  draw.strokeStyle = colour('grid');
  draw.fillStyle = colour('muted');
  draw.lineWidth = 1;
  draw.textBaseline = 'middle';
  draw.textAlign = 'right';
  for (const value of values) {
    line(plot, [[left, crisp(plot.y(value))], [right, crisp(plot.y(value))]]);
    draw.fillText(String(value), left - 6, plot.y(value));
  }
  const step = roundStep(span.to - span.from, (right - left) / 64);
  const seconds = span.to - span.from >= 10000;
  draw.textAlign = 'center';
  draw.textBaseline = 'top';
  for (let i = Math.ceil(span.from / step); i * step <= span.to; ++i) {
    const x = crisp(plot.x(i * step));
    line(plot, [[x, top], [x, bottom]]);
    if (times && x < right - 34) draw.fillText(timeLabel(i * step, step, seconds), x, bottom + 6);
  }
  draw.textAlign = 'right';
  if (times) draw.fillText(seconds ? 's' : 'ms', right, bottom + 6);
}

/** @param {number} ms @param {number} step @param {boolean} seconds */
function timeLabel(ms, step, seconds) {
  const unit = seconds ? 1000 : 1;
  return (ms / unit).toFixed(Math.max(0, -Math.floor(Math.log10(step / unit) + 1e-9)));
}

const crisp = (/** @type {number} */ at) => Math.round(at) + 0.5;

/** @param {Plot} plot @param {[number, number][]} points on the canvas */
export function line({ draw }, points) {
  draw.beginPath();
  points.forEach(([x, y], i) => (i === 0 ? draw.moveTo(x, y) : draw.lineTo(x, y)));
  draw.stroke();
}

/** Only in the plot's box, and what stands at its beginning in full. @param {Plot} plot @param {() => void} body */
export function clipped({ draw, left, right, top, bottom, span }, body) {
  const room = span.from > 0 ? 0 : 6;
  draw.save();
  draw.beginPath();
  draw.rect(left - room, top - 6, right - left + room, bottom - top + 12);
  draw.clip();
  body();
  draw.restore();
}
