// SPDX-License-Identifier: Apache-2.0
// Which stretch of time the lanes and the waveform show.

import { endOf, kindOf } from '../model/events.js';
import { held, including, roundStep, shifted, zoomed } from '../model/spans.js';
import { chosenEvent, current, show } from '../model/state.js';
import { about, patternPiece } from '../library/pieces.js';
import { element } from '../page/elements.js';

/** @import {Span} from '../model/spans.js' */
/** @import {Design} from '../model/state.js' */

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
const lookAt = (span) => show({ view: held(span, longest()) });

/** What keys are about: the selected event or point, or the cursor. @returns {Span} */
function chosenSpan() {
  const { point, cursor } = current();
  const event = chosenEvent();
  return event === undefined ? { from: cursor, to: cursor } : kindOf(event).span(event, point);
}

/** Where nothing of it is seen, as near as it takes. */
export function bringIntoView() {
  const { view } = current();
  if (view !== null) lookAt(including(view, chosenSpan()));
}

/** @param {number} factor below 1: closer @param {number} [stays] ms that stay where they are */
export function zoom(factor, stays) {
  const { from, to } = chosenSpan();
  lookAt(zoomed(shownSpan(), factor, stays ?? (from + to) / 2));
}

/** @param {number} share of what is shown */
export function pan(share) {
  const span = shownSpan();
  lookAt(shifted(span, (span.to - span.from) * share));
}

export const showAll = () => show({ view: null });

function lookAtEvent() {
  const event = chosenEvent();
  if (event === undefined) return;
  const { from, to } = kindOf(event).span(event, -1);
  const margin = (to - from) * 0.1 + 2;
  lookAt({ from: from - margin, to: to + margin });
}

element('zoom-in', HTMLButtonElement).onclick = () => zoom(0.5);
element('zoom-out', HTMLButtonElement).onclick = () => zoom(2);
element('zoom-event', HTMLButtonElement).onclick = lookAtEvent;
element('zoom-all', HTMLButtonElement).onclick = showAll;

export function showView() {
  element('zoom-event', HTMLButtonElement).disabled = current().event < 0;
}
