// SPDX-License-Identifier: Apache-2.0
// What buttons and keys do with events.

import { newCurve } from './curve.js';
import { kindOf } from './events.js';
import { chosenEvent, current, edit, show } from './state.js';
import { newTap } from './tap.js';

/** @import {PatternEvent} from './events.js' */

/** Selected, with the cursor behind it. @param {PatternEvent} event */
export function add(event) {
  const { events } = current().design;
  const cursor = kindOf(event).next(event);
  const at = events.findLastIndex(({ start }) => start <= event.start) + 1;
  edit({ events: events.toSpliced(at, 0, event) }, '', { event: at, point: -1, cursor });
}

export const addTap = () => add(newTap(current().cursor));
export const addCurve = () => add(newCurve(current().cursor));

export function duplicate() {
  const event = chosenEvent();
  if (event !== undefined) add(kindOf(event).startedAt(event, kindOf(event).next(event)));
}

export function remove() {
  const { design, event } = current();
  if (event < 0) return;
  const events = design.events.toSpliced(event, 1);
  edit({ events }, '', { event: Math.min(event, events.length - 1), point: -1 });
}

/** @param {1 | -1} by */
export function selectNext(by) {
  const { design, event } = current();
  const next = event < 0 && by < 0 ? design.events.length - 1 : event + by;
  if (next in design.events) show({ event: next, point: -1 });
}

/** Of the selected one. @param {(event: PatternEvent) => PatternEvent} change @param {string} kind */
export function change(change, kind) {
  const old = chosenEvent();
  if (old !== undefined) edit({ events: current().design.events.with(current().event, change(old)) }, kind);
}
