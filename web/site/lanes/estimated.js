// SPDX-License-Identifier: Apache-2.0
// Estimates for what is shown. They need a waveform's every sample, and so come a moment after it.

import { current, show } from '../model/state.js';
import { patternPiece } from '../library/pieces.js';

/** @import {Span} from '../model/spans.js' */
/** @import {Piece, Resonator} from '../library/pieces.js' */

/** @typedef {{piece: Piece, resonator: Resonator, span: Span, columns: number}} Asked */
/** @template T @typedef {Asked & {made: T}} Estimated */

/** @param {Asked} one @param {Asked} other */
const isSame = (one, other) => one.piece === other.piece && one.resonator === other.resonator &&
  one.columns === other.columns && one.span.from === other.span.from && one.span.to === other.span.to;

/** @template T */
export class Estimator {
  #name;
  #make;
  /** What was estimated, or refused. @type {Asked | null} */
  #asked = null;
  /** @type {Estimated<T> | null} */
  #last = null;
  #isWaiting = false;

  /** @param {string} name that its duration has in the browser's performance tools
   * @param {(asked: Asked) => T | null} make */
  constructor(name, make) {
    this.#name = name;
    this.#make = make;
  }

  /** Until it comes, the one before it. @param {Asked} asked */
  of(asked) {
    if (!this.#isWaiting && (this.#asked === null || !isSame(this.#asked, asked))) {
      this.#isWaiting = true;
      setTimeout(() => this.#estimate(asked));
    }
    return this.#last;
  }

  /** @param {Asked} asked */
  #estimate(asked) {
    this.#isWaiting = false;
    const began = performance.now();
    if (asked.piece === patternPiece(current().design)) {
      const made = this.#make(asked);
      this.#asked = asked;
      this.#last = made && { ...asked, made };
      performance.measure(this.#name, { start: began });
    }
    show({});
  }
}
