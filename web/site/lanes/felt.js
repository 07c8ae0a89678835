// SPDX-License-Identifier: Apache-2.0
// The lane for what a finger feels, as far as that can be estimated.

import { current } from '../model/state.js';
import { about, felt, isPlayable, patternPiece } from '../library/pieces.js';
import { clipped, drawGrid, fill, plotOn, stroke, write } from '../page/canvas.js';
import { element } from '../page/elements.js';
import { Estimator } from './estimated.js';
import { shownSpan } from './view.js';
import { waveformLane } from './waveform.js';

/** @import {Facts} from '../../protocol.js' */
/** @import {Felt} from '../library/pieces.js' */
/** @import {Places, Plot} from '../page/canvas.js' */
/** @import {Estimated} from './estimated.js' */

const { hardly_db: hardly, fully_db: fully } = about.felt;
const usualTop = 1.3 * fully; // of the axis, which is higher only where a level is
const ofMotor = { quality: 0, hz: 0 };
const estimates = new Estimator('felt', ({ piece, resonator, span, columns }) => felt(piece, resonator, span, columns));

class FeltLane {
  canvas = element('felt-lane', HTMLCanvasElement);
  /** As it was drawn last. @type {Plot | null} */
  plot = null;

  draw() {
    const { design, response } = current();
    const piece = patternPiece(design);
    let plot = this.#plotUpTo(usualTop);
    const columns = Math.max(1, Math.round(plot.right - plot.left));
    const resonator = response.shown ? response : ofMotor; // as in files
    const estimate = isPlayable(piece) ? estimates.of({ piece, resonator, span: plot.span, columns }) : null;
    const strongest = estimate?.made.strongest ?? 0;
    if (strongest > usualTop) plot = this.#plotUpTo(Math.ceil(strongest));
    this.plot = plot;
    drawGrid(plot, [0, hardly, fully]);
    if (estimate !== null) clipped(plot, () => drawLevels(plot, estimate));
    drawMarks(plot);
    element('felt-words', HTMLElement).textContent = wordsOf(piece.facts, estimate?.made ?? null);
  }

  /** @param {number} top */
  #plotUpTo(top) {
    return plotOn(this.canvas, shownSpan(), [0, top]);
  }

  // Events are touched, placed and moved as in the waveform.
  targetAt = waveformLane.targetAt;
  strengthAt = waveformLane.strengthAt;
  moved = waveformLane.moved;
  dragged = waveformLane.dragged;
}

export const feltLane = new FeltLane();

/** @param {Plot} plot @param {Estimated<Felt>} estimate */
function drawLevels(plot, { span, made: { columns } }) {
  const perColumn = (span.to - span.from) / columns.length;
  /** @type {Places} */
  const places = Array.from(columns, (level, i) => [plot.x(span.from + (i + 0.5) * perColumn), plot.y(level)]);
  const [first, last] = [places[0], places.at(-1)];
  if (first === undefined || last === undefined) return;
  fill(plot, 'felt', [[first[0], plot.bottom], ...places, [last[0], plot.bottom]], 0.3);
  stroke(plot, 'felt', places, 1.5);
}

/** @param {Plot} plot */
function drawMarks(plot) {
  const { left, right, y } = plot;
  for (const level of [hardly, fully]) stroke(plot, 'aim', [[left, y(level)], [right, y(level)]], 1, [2, 3]);
  write(plot, 'hardly felt', right - 4, y(hardly) + 3, 'right', 'top');
  write(plot, '100 %', right - 4, y(fully) - 2, 'right');
}

/** @param {Facts} facts @param {Felt | null} made */
const wordsOf = ({ stream }, made) =>
  stream ? 'not estimated of event streams' : made === null ? 'dB above threshold, estimated'
    : [`dB above threshold, estimated at ${made.with}`, ...made.numbers.map((number) => number.join(' '))].join(' · ');
