// SPDX-License-Identifier: Apache-2.0
// Stretches of time, as they are looked at.

/** @typedef {{from: number, to: number}} Span in milliseconds */

const shortestMs = 0.5;

/**
 * Within 0 to `longest`, and of a length that can be shown.
 * @param {Span} span @param {number} longest @returns {Span}
 */
export function held({ from, to }, longest) {
  const length = Math.min(longest, Math.max(shortestMs, to - from));
  const start = Math.min(Math.max(0, from), Math.max(0, longest - length));
  return { from: start, to: start + length };
}

/** @param {Span} span @param {number} factor below 1: closer @param {number} stays ms that stay where they are */
export function zoomed({ from, to }, factor, stays) {
  const at = Math.min(to, Math.max(from, stays));
  return { from: at - (at - from) * factor, to: at + (to - at) * factor };
}

/** @param {Span} span @param {number} ms @returns {Span} */
export const shifted = ({ from, to }, ms) => ({ from: from + ms, to: to + ms });

/** Moved so that what is wanted is in its middle, if nothing of it is seen. @param {Span} span @param {Span} wanted */
export function including(span, wanted) {
  if (wanted.from <= span.to && wanted.to >= span.from) return span;
  return shifted(span, (wanted.from + wanted.to - span.from - span.to) / 2);
}

/** A round number of which about `count` make up the range. @param {number} range @param {number} count */
export function roundStep(range, count) {
  const rough = range / Math.max(1, count);
  const power = 10 ** Math.floor(Math.log10(rough));
  return ([1, 2, 5, 10].find((step) => step * power >= rough * 0.999) ?? 10) * power;
}
