// SPDX-License-Identifier: Apache-2.0
// Which stretch of time the lanes and the waveform show.

import { endOf } from '../model/edits.js';
import { current, show } from '../model/state.js';
import { about, patternPiece } from '../library/wasm.js';
import { roundStep } from '../page/canvas.js';
import { element } from '../page/elements.js';

/** @import {Design, Span} from '../model/state.js' */

const shortestMs = 0.5;

/** Where nothing is chosen: everything, and some room behind it. @param {Design} design @returns {Span} */
function wholeSpan(design) {
  const { facts } = patternPiece(design);
  const ends = design.events.map(endOf).filter(Number.isFinite);
  const end = Math.max(facts.faults.length === 0 && !facts.stream ? facts.length_ms : 0, ...ends, 200);
  const step = roundStep(end, 12);
  return { from: 0, to: Math.min(longest(), Math.ceil((end * 1.08) / step) * step) };
}

const longest = () => about.longest_ms * 2;

/** @returns {Span} */
export const shownSpan = () => current().view ?? wholeSpan(current().design);

/** @param {Span} span */
function lookAt({ from, to }) {
  const length = Math.min(longest(), Math.max(shortestMs, to - from));
  const start = Math.min(Math.max(0, from), Math.max(0, longest() - length));
  show({ view: { from: start, to: start + length } });
}

/** What keys are about: the selected event or point, or the cursor. @returns {Span} */
function chosenSpan() {
  const { design, event: chosen, point, cursor } = current();
  const event = design.events[chosen];
  if (event === undefined) return { from: cursor, to: cursor };
  if (event.type === 'transient' || point < 0) return { from: event.start, to: endOf(event) };
  const at = event.start + event.points[point][0] - event.points[0][0];
  return { from: at, to: at };
}

/** Where nothing of it is seen, as near as it takes. */
export function bringIntoView() {
  const { view } = current();
  if (view === null) return;
  const { from, to } = view;
  const chosen = chosenSpan();
  if (chosen.from <= to && chosen.to >= from) return;
  const by = (chosen.from + chosen.to - from - to) / 2;
  lookAt({ from: from + by, to: to + by });
}

/** @param {number} factor below 1: closer @param {number} [stays] ms that stay where they are */
export function zoom(factor, stays) {
  const { from, to } = shownSpan();
  const chosen = chosenSpan();
  const at = Math.min(to, Math.max(from, stays ?? (chosen.from + chosen.to) / 2));
  lookAt({ from: at - (at - from) * factor, to: at + (to - at) * factor });
}

/** @param {number} share of what is shown */
export function pan(share) {
  const { from, to } = shownSpan();
  lookAt({ from: from + (to - from) * share, to: to + (to - from) * share });
}

function lookAtEvent() {
  const event = current().design.events[current().event];
  if (event === undefined) return;
  const margin = (endOf(event) - event.start) * 0.1 + 2;
  lookAt({ from: event.start - margin, to: endOf(event) + margin });
}

/**
 * Wheel, two fingers and keys on a canvas over the shared time.
 * @param {HTMLCanvasElement} canvas @param {(clientX: number) => number | undefined} msAt
 */
export function watchZoom(canvas, msAt) {
  canvas.addEventListener('wheel', (event) => {
    if (event.ctrlKey || event.metaKey) zoom(Math.exp(event.deltaY * 0.003), msAt(event.clientX));
    else if (event.shiftKey || event.deltaX !== 0) pan((event.deltaX || event.deltaY) / canvas.clientWidth);
    else return;
    event.preventDefault();
  }, { passive: false });
  watchPinch(canvas, msAt);
  canvas.addEventListener('keydown', ({ key, ctrlKey, metaKey }) => {
    if (ctrlKey || metaKey) return;
    if (key === '+') zoom(0.5);
    if (key === '-') zoom(2);
    if (key === '<') pan(-0.1);
    if (key === '>') pan(0.1);
    if (key === 'a' || key === 'A') show({ view: null });
  });
}

/** @type {typeof watchZoom} */
function watchPinch(canvas, msAt) {
  let apart = 0;
  canvas.addEventListener('touchmove', (event) => {
    const [one, other] = event.touches;
    if (other === undefined) return;
    const now = Math.max(20, Math.abs(one.clientX - other.clientX));
    if (apart > 0) zoom(apart / now, msAt((one.clientX + other.clientX) / 2));
    apart = now;
    event.preventDefault();
  }, { passive: false });
  canvas.addEventListener('touchend', () => (apart = 0));
}

element('zoom-in', HTMLButtonElement).onclick = () => zoom(0.5);
element('zoom-out', HTMLButtonElement).onclick = () => zoom(2);
element('zoom-event', HTMLButtonElement).onclick = lookAtEvent;
element('zoom-all', HTMLButtonElement).onclick = () => show({ view: null });

export function showView() {
  element('zoom-event', HTMLButtonElement).disabled = current().event < 0;
}
