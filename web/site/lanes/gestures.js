// SPDX-License-Identifier: Apache-2.0
// Mouse and touch in the lanes.

import { add } from '../model/commands.js';
import { newCurve } from '../model/curve.js';
import { cancelStep, chosenEvent, current, edit, endStep, show } from '../model/state.js';
import { newTap } from '../model/tap.js';
import { lanes } from './lanes.js';
import { pan, shownSpan } from './view.js';
import { waveformLane } from './waveform.js';
import { watchZoom } from './zooming.js';

/** @import {PatternEvent} from '../model/events.js' */
/** @import {Span} from '../model/spans.js' */
/** @import {Plot} from '../page/canvas.js' */
/** @import {Target} from './lane.js' */
/** @import {Lane} from './lanes.js' */

/**
 * From where the pointer went down; `held` is what it holds, null: the ground.
 * @typedef {{target: Target, before: PatternEvent, now: PatternEvent, view: Span | null}} Held
 * @typedef {{lane: Lane, plot: Plot, x: number, y: number, held: Held | null, moved: boolean}} Drag
 */

/** @type {Drag | null} */
let drag = null;
let drags = 0;

export const isDragging = () => drag?.held != null;

/** @param {Lane} lane @param {{clientX: number, clientY: number}} event */
function placeIn(lane, { clientX, clientY }) {
  const { left, top } = lane.canvas.getBoundingClientRect();
  return { x: clientX - left, y: clientY - top };
}

/** @param {Lane} lane @param {PointerEvent} event */
function begin(lane, event) {
  if (drag !== null || lane.plot === null || event.button !== 0) return;
  const { x, y } = placeIn(lane, event);
  const target = lane.targetAt(x, y, event.pointerType === 'mouse' ? 9 : 20);
  const { design, view } = current();
  const before = target && design.events[target.event];
  const held = target && before ? { target, before, now: before, view } : null;
  drag = { lane, plot: lane.plot, x, y, held, moved: false };
  endStep();
  lane.canvas.setPointerCapture(event.pointerId);
  if (target !== null) show({ event: target.event, point: target.point, view: shownSpan() });
  ++drags;
}

/** @param {PointerEvent} event */
function follow(event) {
  if (drag === null) return;
  const { x, y } = placeIn(drag.lane, event);
  if (!drag.moved && Math.hypot(x - drag.x, y - drag.y) < 3) return;
  drag.moved = true;
  if (drag.held !== null) return moveEvent(drag, drag.held, x, y);
  pan((drag.x - x) / (drag.plot.right - drag.plot.left));
  drag.x = x;
}

/** @param {Drag} drag @param {Held} held @param {number} x @param {number} y */
function moveEvent({ lane, plot, x: fromX, y: fromY }, held, x, y) {
  // It may have been deleted or undone meanwhile.
  if (JSON.stringify(chosenEvent()) !== JSON.stringify(held.now)) return end(false);
  const ms = plot.msAt(x) - plot.msAt(fromX);
  held.now = lane.dragged(held.before, held.target, ms, plot.valueAt(y) - plot.valueAt(fromY));
  const { design, event } = current();
  edit({ events: design.events.with(event, held.now) }, `drag ${drags}`);
}

/** For keys as well. @param {boolean} isKept what was dragged */
export function end(isKept) {
  if (drag === null) return;
  const { held, moved, plot, x } = drag;
  drag = null;
  if (held !== null) {
    if (isKept) endStep();
    else cancelStep();
    show({ view: held.view });
  } else if (isKept && !moved) show({ event: -1, cursor: Math.max(0, Math.round(plot.msAt(x))) });
}

/** @param {Lane} lane @param {MouseEvent} event */
function place(lane, event) {
  const { x, y } = placeIn(lane, event);
  const strength = lane.strengthAt(y);
  if (lane.plot === null || strength === null || lane.targetAt(x, y, 9) !== null) return;
  const start = Math.max(0, lane.plot.msAt(x));
  add(event.shiftKey ? newCurve(start, strength) : newTap(start, current().tap.level, strength));
}

/**
 * A finger on something drags it, one on the free ground may scroll the page.
 * @param {Lane} lane @param {TouchEvent} event
 */
function touch(lane, event) {
  const [one, other] = event.touches;
  if (one === undefined) return;
  const { x, y } = placeIn(lane, one);
  if (other !== undefined) end(false);
  if (other !== undefined || lane.targetAt(x, y, 20) !== null) event.preventDefault();
}

for (const lane of lanes) {
  const { canvas } = lane;
  watchZoom(canvas, (clientX) => lane.plot?.msAt(placeIn(lane, { clientX, clientY: 0 }).x));
  canvas.addEventListener('pointerdown', (event) => begin(lane, event));
  canvas.addEventListener('pointermove', (event) => {
    follow(event);
    waveformLane.readAt(event.clientX);
    const { x, y } = placeIn(lane, event);
    if (drag === null) canvas.dataset.over = lane.targetAt(x, y, 9)?.part ?? '';
  });
  canvas.addEventListener('pointerup', () => end(true));
  canvas.addEventListener('pointercancel', () => end(false));
  canvas.addEventListener('pointerleave', () => waveformLane.readAt(null));
  canvas.addEventListener('dblclick', (event) => place(lane, event));
  canvas.addEventListener('touchstart', (event) => touch(lane, event), { passive: false });
}
