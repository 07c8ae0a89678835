// SPDX-License-Identifier: Apache-2.0
// Plots on canvases: a place for every pair of values, what is drawn there, and the colours of the style sheet.

import { roundStep } from '../model/spans.js';

/** @import {Span} from '../model/spans.js' */

/**
 * @typedef {{draw: CanvasRenderingContext2D, left: number, right: number, top: number, bottom: number,
 *   span: Span, x: (ms: number) => number, y: (value: number) => number, msAt: (x: number) => number,
 *   valueAt: (y: number) => number}} Plot
 * @typedef {[x: number, y: number]} Place on the canvas
 * @typedef {Place[]} Places
 */

const style = getComputedStyle(document.documentElement); // as it is at any time

/** @type {Record<string, string>} */
let known = {};
matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => (known = {}));

/** @param {string} name */
export const colour = (name) => (known[name] ??= style.getPropertyValue(`--${name}`));

/**
 * The canvas, empty, at the screen's own resolution.
 * @param {HTMLCanvasElement} canvas @param {Span} span @param {[number, number]} values from bottom to top
 * @param {{top?: number, bottom?: number}} [room] @returns {Plot}
 */
export function plotOn(canvas, span, [low, high], room = {}) {
  const { clientWidth: width, clientHeight: height } = canvas;
  const scale = window.devicePixelRatio || 1;
  canvas.width = Math.round(width * scale);
  canvas.height = Math.round(height * scale);
  const draw = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
  draw.setTransform(scale, 0, 0, scale, 0, 0);
  draw.font = '11px system-ui, "DejaVu Sans", sans-serif';
  draw.lineJoin = 'round';
  const [left, right] = [40, width - 10];
  const [top, bottom] = [room.top ?? 8, height - (room.bottom ?? 8)];
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

/** @param {Plot} plot @param {string} name of a colour @param {Places} places @param {number} wide @param {number[]} dash */
export function stroke({ draw }, name, places, wide = 1, dash = []) {
  draw.beginPath();
  for (const place of places) draw.lineTo(...place);
  draw.strokeStyle = colour(name);
  draw.lineWidth = wide;
  draw.setLineDash(dash);
  draw.stroke();
}

/** @param {Plot} plot @param {string} name of a colour @param {Places} places @param {number} alpha */
export function fill({ draw }, name, places, alpha = 1) {
  const before = draw.globalAlpha;
  draw.beginPath();
  for (const place of places) draw.lineTo(...place);
  draw.fillStyle = colour(name);
  draw.globalAlpha = before * alpha;
  draw.fill();
  draw.globalAlpha = before;
}

/** @param {number} x @param {number} y @param {number} width @param {number} height @returns {Places} */
export const box = (x, y, width, height) => [[x, y], [x + width, y], [x + width, y + height], [x, y + height]];

/**
 * @param {Plot} plot @param {string} words @param {number} x @param {number} y
 * @param {CanvasTextAlign} align @param {CanvasTextBaseline} baseline @param {string} name of a colour
 */
export function write({ draw }, words, x, y, align = 'center', baseline = 'bottom', name = 'muted') {
  draw.fillStyle = colour(name);
  draw.textAlign = align;
  draw.textBaseline = baseline;
  draw.fillText(words, x, y);
}

/** @param {Plot} plot @param {number[]} values with a line and a label each @param {boolean} [times] label the times */
export function drawGrid(plot, values, times = false) {
  const { left, right, top, bottom, span } = plot;
  for (const value of values) {
    const y = crisp(plot.y(value));
    stroke(plot, 'grid', [[left, y], [right, y]]);
    write(plot, String(value), left - 6, plot.y(value), 'right', 'middle');
  }
  const step = roundStep(span.to - span.from, (right - left) / 64);
  const unit = span.to - span.from >= 10000 ? 1000 : 1;
  const digits = Math.max(0, -Math.floor(Math.log10(step / unit) + 1e-9));
  for (let i = Math.ceil(span.from / step); i * step <= span.to; ++i) {
    const x = crisp(plot.x(i * step));
    stroke(plot, 'grid', [[x, top], [x, bottom]]);
    if (times && x < right - 34) write(plot, ((i * step) / unit).toFixed(digits), x, bottom + 6, 'center', 'top');
  }
  if (times) write(plot, unit === 1 ? 'ms' : 's', right, bottom + 6, 'right', 'top');
}

const crisp = (/** @type {number} */ at) => Math.round(at) + 0.5;

/** Draws in a part of the canvas only. @param {Plot} plot @param {Places} places @param {() => void} body */
export function within({ draw }, places, body) {
  draw.save();
  draw.beginPath();
  for (const place of places) draw.lineTo(...place);
  draw.clip();
  body();
  draw.restore();
}

/** Only in the plot's box, and what stands at its beginning in full. @param {Plot} plot @param {() => void} body */
export function clipped(plot, body) {
  const { left, right, top, bottom, span } = plot;
  const room = span.from > 0 ? 0 : 6;
  within(plot, box(left - room, top - 14, right - left + room, bottom - top + 20), body);
}
