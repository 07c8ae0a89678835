// SPDX-License-Identifier: Apache-2.0
// The samples of a piece over time, of which only what is shown is read, and its named sections.

import { extremes, samples } from '../library/pieces.js';
import { box, colour, fill, stroke, write } from '../page/canvas.js';

/** @import {Piece} from '../library/pieces.js' */
/** @import {Places, Plot} from '../page/canvas.js' */

/** @param {Plot} plot @param {Piece} piece */
export function drawSamples(plot, piece) {
  const { facts } = piece;
  const perMs = facts.rate / 1000;
  const first = Math.max(0, Math.floor(plot.span.from * perMs) - 1);
  const count = Math.min(facts.length, Math.ceil(plot.span.to * perMs) + 2) - first;
  if (count <= 0) return;
  const x = (/** @type {number} */ sample) => plot.x(sample / perMs);
  const room = x(first + count) - x(first);
  if (count < room * 2) drawSingle(plot, samples(piece, first, count), (i) => x(first + i), room / count);
  else drawDense(plot, piece, first, count, x(first), room);
}

/** @param {Plot} plot @param {Int8Array} values @param {(i: number) => number} x @param {number} wide one sample */
function drawSingle(plot, values, x, wide) {
  /** @type {Places} */
  const places = Array.from(values, (value, i) => [x(i), plot.y(value)]);
  fill(plot, 'vibration', [[x(0), plot.y(0)], ...places, [x(values.length - 1), plot.y(0)]], 0.6);
  stroke(plot, 'curve', places, 1.5);
  if (wide > 5) for (const [px, py] of places) fill(plot, 'curve', box(px - 2, py - 2, 4, 4));
}

/**
 * @param {Plot} plot @param {Piece} piece @param {number} first @param {number} count
 * @param {number} left @param {number} room in pixels
 */
function drawDense(plot, piece, first, count, left, room) {
  const columns = extremes(piece, first, count, Math.max(1, Math.round(room)));
  plot.draw.fillStyle = colour('dense');
  columns.forEach(([low, high], i) => {
    if (low > high) return;
    // Up to the column before, so that a steep line stays one.
    const [lowBefore, highBefore] = columns[i - 1] ?? [low, high];
    const top = plot.y(Math.max(high, Math.min(lowBefore, 127)));
    plot.draw.fillRect(Math.round(left) + i, top - 0.6, 1, plot.y(Math.min(low, highBefore)) - top + 1.2);
  });
}

/** @param {Plot} plot @param {Piece} piece */
export function drawSections(plot, piece) {
  const { draw, top, bottom } = plot;
  piece.facts.sections.forEach(({ from, to, label }, i) => {
    const [left, right] = [Math.max(plot.left, plot.x(from)), Math.min(plot.right, plot.x(to))];
    if (right <= left) return;
    if (i % 2 === 0) fill(plot, 'band', box(left, top, right - left, bottom - top));
    // Where there is no room for all of it, its first word.
    const words = [label, label.replace(/,.*/, '')].find((word) => draw.measureText(word).width <= right - left - 4);
    write(plot, words ?? '', (left + right) / 2, top - 3);
  });
}
