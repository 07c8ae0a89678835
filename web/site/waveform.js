// SPDX-License-Identifier: Apache-2.0
// A waveform over time, of which only what is shown is read, and the motor's estimated response over it.

import { clipped, colour, drawGrid, element, line, plotOn } from './canvas.js';
import { current, show } from './state.js';
import { pan, shownSpan, watchZoom } from './view.js';
import { extremes, motorOf, patternPiece, response, samples } from './wasm.js';

/** @import {Plot} from './canvas.js' */
/** @import {Piece, Response} from './wasm.js' */

const canvas = element('waveform', HTMLCanvasElement);
const reading = element('reading', HTMLOutputElement);
const hair = element('hair', HTMLDivElement);
/** @type {Plot | null} */
let plot = null;

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
  const { draw } = plot;
  /** @type {[number, number][]} */
  const points = Array.from(values, (value, i) => [x(i), plot.y(value)]);
  draw.fillStyle = colour('vibration');
  draw.globalAlpha = 0.6;
  draw.beginPath();
  draw.moveTo(points[0][0], plot.y(0));
  for (const point of points) draw.lineTo(...point);
  draw.lineTo(points[points.length - 1][0], plot.y(0));
  draw.fill();
  draw.globalAlpha = 1;
  draw.strokeStyle = draw.fillStyle = colour('curve');
  draw.lineWidth = 1.5;
  line(plot, points);
  if (wide > 5) for (const [px, py] of points) draw.fillRect(px - 2, py - 2, 4, 4);
}

/** @param {Plot} plot @param {Piece} piece @param {number} first @param {number} count @param {number} left @param {number} room */
function drawDense(plot, piece, first, count, left, room) {
  const columns = Math.max(1, Math.round(room));
  const pairs = extremes(piece, first, count, columns);
  const { draw } = plot;
  draw.fillStyle = colour('dense');
  for (let i = 0; i < pairs.length / 2; ++i) {
    const [low, high] = [pairs[2 * i], pairs[2 * i + 1]];
    if (low > high) continue;
    // Up to the column before, so that a steep line stays one.
    const [lowBefore, highBefore] = i === 0 ? [low, high] : [pairs[2 * i - 2], pairs[2 * i - 1]];
    const top = plot.y(Math.max(high, Math.min(lowBefore, 127)));
    const bottom = plot.y(Math.min(low, highBefore));
    draw.fillRect(Math.round(left) + i, top - 0.6, 1, bottom - top + 1.2);
  }
}

/** As many as the canvas is wide, or where single swings cannot be seen one for each. @param {Plot} plot */
function responseColumns({ left, right, span }) {
  const { design, response: wished } = current();
  const swings = ((span.to - span.from) * (wished.hz || motorOf(design.profile).resonance)) / 1000;
  const wide = Math.round(right - left);
  return Math.max(1, swings * 6 < wide ? wide : Math.min(Math.round(swings), Math.round(wide / 2)));
}

/** Its peak reaches the full height. @param {Plot} plot @param {Response} made */
function drawResponse(plot, { numbers, columns }) {
  const { draw } = plot;
  const count = columns.length / 2;
  const x = (/** @type {number} */ i) => plot.left + ((i + 0.5) / count) * (plot.right - plot.left);
  draw.strokeStyle = colour('response');
  draw.lineWidth = 1.2;
  draw.setLineDash([5, 3]);
  for (const side of [0, 1]) {
    /** @type {[number, number][]} */
    const points = [];
    for (let i = 0; i < count; ++i) {
      if (columns[2 * i] <= columns[2 * i + 1]) points.push([x(i), plot.y((columns[2 * i + side] / numbers.peak) * 120)]);
    }
    line(plot, points);
  }
  draw.setLineDash([]);
}

/** @param {Plot} plot @param {Piece} piece */
export function drawSections(plot, piece) {
  const { draw, top, bottom } = plot;
  piece.facts.sections.forEach(({ from, to, label }, i) => {
    const [left, right] = [Math.max(plot.left, plot.x(from)), Math.min(plot.right, plot.x(to))];
    if (right <= left) return;
    draw.fillStyle = colour('band');
    if (i % 2 === 0) draw.fillRect(left, top, right - left, bottom - top);
    if (draw.measureText(label).width > right - left - 4) return;
    draw.fillStyle = colour('muted');
    draw.textAlign = 'center';
    draw.textBaseline = 'bottom';
    draw.fillText(label, (left + right) / 2, top - 3);
  });
}

export function showWaveform() {
  const { design, response: resonator } = current();
  const piece = patternPiece(design);
  const { facts } = piece;
  const span = shownSpan();
  plot = plotOn(canvas, span, [-128, 128], { top: facts.sections.length > 0 ? 18 : 8, bottom: 22 });
  const drawn = plot;
  const playable = facts.faults.length === 0 && !facts.stream && facts.length > 0;
  drawSections(drawn, playable ? piece : { ...piece, facts: { ...facts, sections: [] } });
  drawGrid(drawn, [-128, -64, 0, 64, 128], true);
  const made = playable && resonator.shown ? response(piece, resonator, span, responseColumns(drawn)) : null;
  if (playable) {
    clipped(drawn, () => {
      drawSamples(drawn, piece);
      if (made !== null && made.numbers.peak > 0) drawResponse(drawn, made);
    });
  } else {
    drawWords(drawn, facts.faults.length > 0 ? 'Nothing to play: see the faults.'
      : facts.stream ? 'The chip receives events and makes no samples here.' : 'Nothing yet: add a tap or a curve.');
  }
  showNumbers(made);
  element('waveform-words', HTMLElement).textContent = facts.faults.length > 0 ? ''
    : facts.stream ? `${facts.length} bytes of events`
      : `${facts.length} samples · ${facts.length_ms.toFixed(1)} ms`;
}

/** @param {Plot} plot @param {string} words */
function drawWords({ draw, left, right, top, bottom }, words) {
  draw.fillStyle = colour('muted');
  draw.textAlign = 'center';
  draw.textBaseline = 'middle';
  draw.font = '13px system-ui, "DejaVu Sans", sans-serif';
  draw.fillText(words, (left + right) / 2, (top + bottom) / 2 - 14, right - left);
}

/** @param {Response | null} made */
function showNumbers(made) {
  const { response: wished } = current();
  const fields = { response: wished.shown, quality: wished.quality, resonance: wished.hz };
  element('response', HTMLInputElement).checked = fields.response;
  for (const id of /** @type {const} */ (['quality', 'resonance'])) {
    const input = element(id, HTMLInputElement);
    if (document.activeElement !== input) input.value = String(fields[id]);
  }
  const numbers = made?.numbers;
  /** @type {[string, string][]} */
  const rows = numbers === undefined ? [] : [
    ['rise to 90 %', `${numbers.rise_ms.toFixed(1)} ms`],
    ['ring-down to 10 %', `${numbers.ring_down_ms.toFixed(1)} ms`],
    ['peak', `${(numbers.peak * 100).toFixed(1)} %`],
    ['effective', `${(numbers.effective * 100).toFixed(1)} %`],
    ['at', `${numbers.hz.toFixed(0)} Hz`],
  ];
  element('response-numbers', HTMLElement).replaceChildren(...rows.map(([name, value]) => {
    const row = document.createElement('div');
    row.append(Object.assign(document.createElement('dt'), { textContent: name }),
      Object.assign(document.createElement('dd'), { textContent: value }));
    return row;
  }));
}

/** Where a time is, beside the canvases' left edge. @param {number} ms */
export const xOnWaveform = (ms) => (plot === null ? 0 : plot.x(ms) + canvas.offsetLeft);

/** The sample under the pointer, also from the lanes above. @param {PointerEvent} event */
export function readAt(event) {
  if (plot === null) return;
  const box = canvas.getBoundingClientRect();
  const ms = plot.msAt(event.clientX - box.left);
  const { from, to } = shownSpan();
  hair.hidden = ms < Math.max(0, from) || ms > to;
  if (hair.hidden) return;
  hair.style.left = `${xOnWaveform(ms)}px`;
  const piece = patternPiece(current().design);
  const { facts } = piece;
  const at = Math.floor((ms * facts.rate) / 1000);
  const within = facts.faults.length === 0 && !facts.stream && at < facts.length;
  reading.textContent = within ? `${ms.toFixed(2)} ms · sample ${at} · amplitude ${samples(piece, at, 1)[0]}`
    : `${ms.toFixed(2)} ms`;
}

export function forgetReading() {
  hair.hidden = true;
  reading.textContent = '';
}

/** Dragging moves along, a click sets the cursor. */
function watchPan() {
  let from = 0;
  let moved = 0;
  canvas.addEventListener('pointerdown', (event) => {
    [from, moved] = [event.clientX, 0];
    canvas.setPointerCapture(event.pointerId);
  });
  canvas.addEventListener('pointermove', (event) => {
    readAt(event);
    if (!canvas.hasPointerCapture(event.pointerId) || plot === null) return;
    moved += Math.abs(event.clientX - from);
    pan((from - event.clientX) / (plot.right - plot.left));
    from = event.clientX;
  });
  canvas.addEventListener('pointerup', (event) => {
    if (moved < 4 && plot !== null) {
      show({ cursor: Math.max(0, Math.round(plot.msAt(event.clientX - canvas.getBoundingClientRect().left))) });
    }
  });
  canvas.addEventListener('pointerleave', forgetReading);
}

export function startWaveform() {
  watchPan();
  watchZoom(canvas);
  canvas.addEventListener('keydown', ({ key }) => {
    if (key === 'ArrowLeft') pan(-0.1);
    if (key === 'ArrowRight') pan(0.1);
  });
  element('response', HTMLInputElement).onchange = (event) => {
    show({ response: { ...current().response, shown: /** @type {HTMLInputElement} */ (event.target).checked } });
  };
  for (const [id, field] of /** @type {const} */ ([['quality', 'quality'], ['resonance', 'hz']])) {
    const input = element(id, HTMLInputElement);
    input.oninput = () => {
      if (input.value !== '' && input.checkValidity()) show({ response: { ...current().response, [field]: input.valueAsNumber } });
    };
  }
}
