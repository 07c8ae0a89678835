// SPDX-License-Identifier: Apache-2.0
// The lane for the waveform, and what of it is under the pointer.

import { current } from '../model/state.js';
import { isPlayable, patternPiece, samples } from '../library/pieces.js';
import { clipped, drawGrid, plotOn, write } from '../page/canvas.js';
import { element } from '../page/elements.js';
import { intensityLane } from './intensity.js';
import { drawResponse, responseOf, showResponse } from './response.js';
import { drawSamples, drawSections } from './samples.js';
import { shownSpan } from './view.js';

/** @import {Facts} from '../../protocol.js' */
/** @import {Piece} from '../library/pieces.js' */
/** @import {Plot} from '../page/canvas.js' */
/** @import {EventLane, Target} from './lane.js' */

const reading = element('reading', HTMLOutputElement);
const hair = element('hair', HTMLDivElement);

class WaveformLane {
  canvas = element('waveform', HTMLCanvasElement);
  /** As it was drawn last. @type {Plot | null} */
  plot = null;

  draw() {
    const { design, response } = current();
    const piece = patternPiece(design);
    const { facts } = piece;
    const room = { top: facts.sections.length > 0 ? 18 : 8, bottom: 22 };
    const plot = plotOn(this.canvas, shownSpan(), [-128, 128], room);
    this.plot = plot;
    const playable = isPlayable(piece);
    if (playable) drawSections(plot, piece);
    drawGrid(plot, [-128, -64, 0, 64, 128], true);
    const estimate = playable && response.shown ? responseOf(piece, plot) : null;
    clipped(plot, () => {
      if (playable) drawSamples(plot, piece);
      if (estimate !== null) drawResponse(plot, estimate);
    });
    if (!playable) write(plot, whyNot(facts), (plot.left + plot.right) / 2, plot.y(20), 'center', 'middle');
    this.#read();
    showResponse(estimate?.made ?? null);
    element('waveform-words', HTMLElement).textContent = sizeOf(facts);
  }

  /** No event is touched here, nor placed; keys do as in the lane for intensity. @returns {Target | null} */
  targetAt() {
    return null;
  }
  strengthAt() {
    return null;
  }
  /** @type {EventLane['moved']} */
  moved = (...how) => intensityLane.moved(...how);
  /** @type {EventLane['dragged']} */
  dragged = (event) => event;

  /** Where the pointer is, null: elsewhere, so that the keys' cursor is read. @type {number | null} */
  #pointerX = null;

  /** Beside the canvases' left edge. @param {number} ms */
  left(ms) {
    return (this.plot?.x(ms) ?? 0) + this.canvas.offsetLeft;
  }

  /** The sample under the pointer, also from the lanes above. @param {number | null} clientX */
  readAt(clientX) {
    this.#pointerX = clientX;
    this.#read();
  }

  #read() {
    const { plot, canvas } = this;
    if (plot === null) return;
    const x = this.#pointerX;
    const ms = x === null ? current().cursor : plot.msAt(x - canvas.getBoundingClientRect().left);
    hair.hidden = x === null || ms < Math.max(0, plot.span.from) || ms > plot.span.to;
    if (x !== null && hair.hidden) return;
    hair.style.left = `${this.left(ms)}px`;
    reading.textContent = `${ms.toFixed(2)} ms${sampleAt(patternPiece(current().design), ms)}`;
  }
}

export const waveformLane = new WaveformLane();

/** @param {Piece} piece @param {number} ms */
function sampleAt(piece, ms) {
  const at = Math.round((ms * piece.facts.rate) / 1000);
  const isInside = isPlayable(piece) && at < piece.facts.length;
  return isInside ? ` · sample ${at} · amplitude ${samples(piece, at, 1)[0]}` : '';
}

/** @param {Facts} facts */
const whyNot = ({ faults, stream }) =>
  faults.length > 0 ? 'Nothing to play: see the faults.'
    : stream ? 'The chip receives events and makes no samples here.' : 'Nothing yet: add a tap or a curve.';

/** @param {Facts} facts */
const sizeOf = ({ faults, stream, length, length_ms }) =>
  faults.length > 0 ? '' : stream ? `${length} bytes of events` : `${length} samples · ${length_ms.toFixed(1)} ms`;
