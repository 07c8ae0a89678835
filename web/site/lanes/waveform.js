// SPDX-License-Identifier: Apache-2.0
// A waveform over time, of which only what is shown is read, and the motor's estimated response over it.

import { current, show } from '../model/state.js';
import { extremes, isPlayable, motorOf, patternPiece, response, samples } from '../library/wasm.js';
import { box, clipped, colour, drawGrid, fill, plotOn, stroke, write } from '../page/canvas.js';
import { element, make, onNumber, setValue } from '../page/elements.js';
import { waveformLane } from './lanes.js';
import { shownSpan } from './view.js';

/** @import {Places, Plot} from '../page/canvas.js' */
/** @import {Span, State} from '../model/state.js' */
/** @import {Piece, Response} from '../library/wasm.js' */

const reading = element('reading', HTMLOutputElement);
const hair = element('hair', HTMLDivElement);

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
  const columns = Math.max(1, Math.round(room));
  const pairs = extremes(piece, first, count, columns);
  plot.draw.fillStyle = colour('dense');
  for (let i = 0; i < pairs.length / 2; ++i) {
    const [low, high] = [pairs[2 * i], pairs[2 * i + 1]];
    if (low > high) continue;
    // Up to the column before, so that a steep line stays one.
    const [lowBefore, highBefore] = i === 0 ? [low, high] : [pairs[2 * i - 2], pairs[2 * i - 1]];
    const top = plot.y(Math.max(high, Math.min(lowBefore, 127)));
    plot.draw.fillRect(Math.round(left) + i, top - 0.6, 1, plot.y(Math.min(low, highBefore)) - top + 1.2);
  }
}

/** As many as the canvas is wide, or where single swings cannot be seen one for each. @param {Plot} plot */
function responseColumns({ left, right, span }) {
  const { design, response: wished } = current();
  const swings = ((span.to - span.from) * (wished.hz || motorOf(design.profile).resonance)) / 1000;
  const wide = Math.round(right - left);
  return Math.max(1, swings * 6 < wide ? wide : Math.min(Math.round(swings), Math.round(wide / 2)));
}

/**
 * The estimate needs a waveform's every sample. So it comes a moment after the waveform, and until then the one before
 * it stands.
 * @typedef {{piece: Piece, resonator: State['response'], span: Span, columns: number, response: Response}} Estimate
 */

/** @type {Estimate | null} */
let estimate = null;
let estimating = false;

/** @param {Piece} piece @param {Span} span @param {number} columns */
function responseOf(piece, span, columns) {
  const { response: resonator } = current();
  const fresh = estimate?.piece === piece && estimate.resonator === resonator && estimate.columns === columns &&
    estimate.span.from === span.from && estimate.span.to === span.to;
  if (!fresh && !estimating) {
    estimating = true;
    setTimeout(() => {
      estimating = false;
      const began = performance.now();
      if (piece === patternPiece(current().design)) {
        const made = response(piece, resonator, span, columns);
        estimate = made && { piece, resonator, span, columns, response: made };
        performance.measure('response', { start: began });
      }
      show({});
    });
  }
  return estimate;
}

/** Its peak reaches the full height. @param {Plot} plot @param {Estimate} made */
function drawResponse(plot, { span, response: { peak, columns } }) {
  const count = columns.length / 2;
  for (const side of [0, 1]) {
    /** @type {Places} */
    const places = [];
    for (let i = 0; i < count; ++i) {
      const ms = span.from + ((i + 0.5) / count) * (span.to - span.from);
      const share = columns[2 * i + side] / peak;
      if (columns[2 * i] <= columns[2 * i + 1]) places.push([plot.x(ms), plot.y(120 * share)]);
    }
    stroke(plot, 'response', places, 1.2, [5, 3]);
  }
}

/** @param {Plot} plot @param {Piece} piece */
export function drawSections(plot, piece) {
  const { draw, top, bottom } = plot;
  piece.facts.sections.forEach(({ from, to, label }, i) => {
    const [left, right] = [Math.max(plot.left, plot.x(from)), Math.min(plot.right, plot.x(to))];
    if (right <= left) return;
    if (i % 2 === 0) fill(plot, 'band', box(left, top, right - left, bottom - top));
    // Where there is no room for all of it, its first word.
    const words = [label, label.split(',')[0]].find((word) => draw.measureText(word).width <= right - left - 4);
    write(plot, words ?? '', (left + right) / 2, top - 3);
  });
}

export function showWaveform() {
  const { design, response: resonator } = current();
  const piece = patternPiece(design);
  const { facts } = piece;
  const span = shownSpan();
  const room = { top: facts.sections.length > 0 ? 18 : 8, bottom: 22 };
  const plot = plotOn(waveformLane.canvas, span, [-128, 128], room);
  waveformLane.plot = plot;
  const playable = isPlayable(piece);
  if (playable) drawSections(plot, piece);
  drawGrid(plot, [-128, -64, 0, 64, 128], true);
  const made = playable && resonator.shown ? responseOf(piece, span, responseColumns(plot)) : null;
  clipped(plot, () => {
    if (playable) drawSamples(plot, piece);
    if (made !== null && made.response.peak > 0) drawResponse(plot, made);
  });
  const [faulty, { stream }] = [facts.faults.length > 0, facts];
  const why = faulty ? 'Nothing to play: see the faults.'
    : stream ? 'The chip receives events and makes no samples here.' : 'Nothing yet: add a tap or a curve.';
  if (!playable) write(plot, why, (plot.left + plot.right) / 2, plot.y(20), 'center', 'middle');
  showReading();
  showNumbers(made?.response ?? null);
  element('waveform-words', HTMLElement).textContent = faulty ? ''
    : stream ? `${facts.length} bytes of events` : `${facts.length} samples · ${facts.length_ms.toFixed(1)} ms`;
}

/** @param {Response | null} made */
function showNumbers(made) {
  const { shown, quality, hz } = current().response;
  element('response', HTMLInputElement).checked = shown;
  setValue('quality', quality);
  setValue('resonance', hz);
  element('response-numbers', HTMLElement).replaceChildren(...(made?.numbers ?? []).map(([name, value]) =>
    make('div', {}, make('dt', {}, name), make('dd', {}, value))));
}

/** Where a time is, beside the canvases' left edge. @param {number} ms */
export const xOnWaveform = (ms) => (waveformLane.plot?.x(ms) ?? 0) + waveformLane.canvas.offsetLeft;

/** Where the pointer is, null: elsewhere, so that the keys' cursor is read. @type {number | null} */
let pointerX = null;

/** The sample under the pointer, also from the lanes above. @param {PointerEvent} event */
export function readAt({ clientX }) {
  pointerX = clientX;
  showReading();
}

function showReading() {
  const { plot, canvas } = waveformLane;
  if (plot === null) return;
  const ms = pointerX === null ? current().cursor : plot.msAt(pointerX - canvas.getBoundingClientRect().left);
  hair.hidden = pointerX === null || ms < Math.max(0, plot.span.from) || ms > plot.span.to;
  if (pointerX !== null && hair.hidden) return;
  hair.style.left = `${xOnWaveform(ms)}px`;
  const piece = patternPiece(current().design);
  const at = Math.round((ms * piece.facts.rate) / 1000);
  const within = isPlayable(piece) && at < piece.facts.length;
  reading.textContent = `${ms.toFixed(2)} ms` +
    (within ? ` · sample ${at} · amplitude ${samples(piece, at, 1)[0]}` : '');
}

export function forgetReading() {
  pointerX = null;
  showReading();
}

/** @param {Partial<State['response']>} changes */
const set = (changes) => show({ response: { ...current().response, ...changes } });

element('response', HTMLInputElement).onchange = () => set({ shown: !current().response.shown });
onNumber('quality', (quality) => set({ quality }));
onNumber('resonance', (hz) => set({ hz }));
