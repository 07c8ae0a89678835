// SPDX-License-Identifier: Apache-2.0
// Mouse, touch and keys in the lanes.

import { add, addCurve, addTap, change, duplicate, remove, selectNext } from '../model/commands.js';
import { endOf, newCurve, newTap, restretched, startedAt, strengthened, withPoint } from '../model/edits.js';
import { cancelStep, current, edit, endStep, show } from '../model/state.js';
import { patternPiece } from '../library/wasm.js';
import { box } from '../page/canvas.js';
import { frequencyLane, gripOf, intensityLane, placeOf, tapEnd, waveformLane } from './lanes.js';
import { bringIntoView, pan, shownSpan, watchZoom } from './view.js';
import { forgetReading, readAt } from './waveform.js';

/** @import {Place, Places, Plot} from '../page/canvas.js' */
/** @import {Lane} from './lanes.js' */
/** @import {CurvePoint, PatternEvent, Span} from '../model/state.js' */

/**
 * @typedef {{event: number, part: 'point' | 'end' | 'whole', point: number}} Target what is under the pointer
 * @typedef {{lane: Lane, plot: Plot, target: Target | null, x: number, y: number, before: PatternEvent | null,
 *   now: PatternEvent | null, view: Span | null, moved: boolean}} Drag
 */

/** @type {Drag | null} */
let drag = null;
let drags = 0;

/** Axes stay where they are while something is dragged. */
export const isDragging = () => drag?.target != null;

/** @param {Lane} lane @param {number} x @param {number} y @param {number} reach @returns {Target | null} */
function targetAt(lane, x, y, reach) {
  const { plot } = lane;
  const { design, event: chosen } = current();
  if (plot === null || lane.field === 0) return null;
  const order = design.events.map((_, i) => i).reverse();
  if (chosen >= 0) order.unshift(chosen);
  const near = (/** @type {Place} */ place) => Math.hypot(place[0] - x, place[1] - y) <= reach;
  for (const i of order) {
    const event = design.events[i];
    if (event.type === 'transient') continue;
    // Of points in one place the later one, which alone may be free to move.
    const point = [3, 2, 1, 0].find((point) => near(placeOf(lane, plot, event, point)));
    if (point !== undefined) return { event: i, part: 'point', point };
    if (i === chosen && lane.field === 1 && near(gripOf(plot, event))) return { event: i, part: 'end', point: -1 };
  }
  const touched = order.filter((i) => touches(lane, plot, i, x, y, reach));
  const event = touched.find((i) => design.events[i].type === 'transient') ?? touched[0];
  return event === undefined ? null : { event, part: 'whole', point: -1 };
}

/** What of an event can be touched. @param {Lane} lane @param {Plot} plot @param {number} i @returns {Places} */
function shapeOf(lane, plot, i) {
  const { design } = current();
  const event = design.events[i];
  const left = plot.x(event.start);
  if (event.type === 'transient') {
    const top = lane.field === 1 ? plot.y(event.intensity) - 14 : plot.top;
    const right = plot.x(tapEnd(event, patternPiece(design).facts.events[i]));
    return box(left, top, Math.max(6, right - left), plot.bottom - top);
  }
  const places = event.points.map((_, point) => placeOf(lane, plot, event, point));
  return lane.field === 1 ? [[left, plot.bottom], ...places, [plot.x(endOf(event)), plot.bottom]] : places;
}

/**
 * @param {Lane} lane @param {Plot} plot @param {number} i of the event
 * @param {number} x @param {number} y @param {number} reach
 */
function touches(lane, plot, i, x, y, reach) {
  const { draw } = plot;
  const isLine = lane.field === 2 && current().design.events[i].type === 'continuous';
  const { a: scale } = draw.getTransform();
  draw.beginPath();
  for (const place of shapeOf(lane, plot, i)) draw.lineTo(...place);
  draw.lineWidth = isLine ? 2 * reach : reach;
  return draw.isPointInStroke(x * scale, y * scale) || (!isLine && draw.isPointInPath(x * scale, y * scale));
}

/** @param {Lane} lane @param {{clientX: number, clientY: number}} event */
function placeIn(lane, { clientX, clientY }) {
  const { left, top } = lane.canvas.getBoundingClientRect();
  return { x: clientX - left, y: clientY - top };
}

/** @param {Lane} lane @param {PointerEvent} event */
function begin(lane, event) {
  if (drag !== null || lane.plot === null || event.button !== 0) return;
  const { x, y } = placeIn(lane, event);
  const target = targetAt(lane, x, y, event.pointerType === 'mouse' ? 9 : 20);
  const { design, view } = current();
  const before = target && design.events[target.event];
  drag = { lane, plot: lane.plot, target, x, y, before, now: before, view, moved: false };
  endStep();
  lane.canvas.setPointerCapture(event.pointerId);
  if (target !== null) show({ event: target.event, point: target.point, view: shownSpan() });
  ++drags;
}

/** @param {PointerEvent} event */
function go(event) {
  if (drag === null) return;
  const { lane, plot, target, before } = drag;
  const { x, y } = placeIn(lane, event);
  if (!drag.moved && Math.hypot(x - drag.x, y - drag.y) < 3) return;
  drag.moved = true;
  if (target === null || before === null) {
    pan((drag.x - x) / (plot.right - plot.left));
    drag.x = x;
    return;
  }
  // It may have been deleted or undone meanwhile.
  const { design, event: chosen } = current();
  if (JSON.stringify(design.events[chosen]) !== JSON.stringify(drag.now)) return end(false);
  const ms = plot.msAt(x) - plot.msAt(drag.x);
  const by = plot.valueAt(y) - plot.valueAt(drag.y);
  const old = before.type === 'continuous' && target.part === 'point' ? before.points[target.point][lane.field] : null;
  const value = old !== null ? lane.value(lane.shown(old) + by) - old : before.type === 'transient' ? by : 0;
  drag.now = moved(lane, before, target, ms, value);
  edit({ events: design.events.with(chosen, drag.now) }, `drag ${drags}`);
}

/**
 * In the units of a point's fields.
 * @param {Lane} lane @param {PatternEvent} event @param {Omit<Target, 'event'>} target
 * @param {number} ms @param {number} value
 */
function moved(lane, event, { part, point }, ms, value) {
  if (part === 'end') return restretched(event, endOf(event) - event.start + ms);
  if (part === 'whole' || event.type === 'transient') {
    return startedAt(lane === frequencyLane ? event : strengthened(event, value), event.start + ms);
  }
  /** @type {CurvePoint} */
  const to = [...event.points[point]];
  to[0] += ms;
  to[lane.field] += value;
  return withPoint(event, point, to);
}

/** @param {boolean} kept what was dragged */
function end(kept) {
  if (drag === null) return;
  const { target, view, moved, plot, x } = drag;
  drag = null;
  if (target !== null && !kept) cancelStep();
  else endStep();
  if (target !== null) show({ view });
  else if (kept && !moved) show({ event: -1, cursor: Math.max(0, Math.round(plot.msAt(x))) });
}

/** @param {Lane} lane @param {MouseEvent} event */
function place(lane, event) {
  const { x, y } = placeIn(lane, event);
  if (lane.plot === null || lane.field === 0 || targetAt(lane, x, y, 9) !== null) return;
  const start = Math.max(0, lane.plot.msAt(x));
  const strength = lane.field === 1 ? lane.plot.valueAt(y) : 80;
  add(event.shiftKey ? newCurve(start, strength) : newTap(start, current().tap.level, strength));
}

/** @param {Lane} lane @param {KeyboardEvent} event */
function press(lane, event) {
  if (event.ctrlKey || event.metaKey) return;
  const command = event.altKey ? undefined : keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
  const by = event.shiftKey ? 10 : 1;
  const [ms, value] = arrows[event.key] ?? [0, 0];
  if (ms !== 0 || value !== 0) {
    if (!event.repeat) endStep(); // a key that is held is undone in one
    nudge(lane, ms * by, value * by, event.altKey);
  } else if (command !== undefined) command();
  else return;
  event.preventDefault();
  bringIntoView();
}

/** @type {Record<string, [number, number]>} */
const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] };

/** @type {Record<string, () => void>} */
const keys = {
  t: addTap, c: addCurve, d: duplicate, Delete: remove, Backspace: remove,
  PageDown: () => selectNext(1), PageUp: () => selectNext(-1),
  Home: () => show({ event: -1, cursor: 0 }),
  End: () => show({ event: -1, cursor: Math.max(0, ...current().design.events.map(endOf)) }),
  Escape: () => {
    end(false);
    show({ event: -1 });
  },
  0: () => show({ point: -1 }),
  1: () => show({ point: 0 }), 2: () => show({ point: 1 }), 3: () => show({ point: 2 }), 4: () => show({ point: 3 }),
};

/** @param {Lane} lane @param {number} ms @param {number} value @param {boolean} stretch */
function nudge(lane, ms, value, stretch) {
  const { event, point, cursor } = current();
  const part = stretch ? 'end' : point >= 0 ? 'point' : 'whole';
  if (event < 0) show({ cursor: Math.max(0, cursor + ms) });
  else change((old) => moved(lane, old, { part, point }, ms, value), `${part} ${point}`);
}

for (const lane of [intensityLane, frequencyLane, waveformLane]) {
  const { canvas } = lane;
  watchZoom(canvas, (clientX) => lane.plot?.msAt(placeIn(lane, { clientX, clientY: 0 }).x));
  canvas.addEventListener('pointerdown', (event) => begin(lane, event));
  canvas.addEventListener('pointermove', (event) => {
    go(event);
    readAt(event);
    const { x, y } = placeIn(lane, event);
    if (drag === null) canvas.dataset.over = targetAt(lane, x, y, 9)?.part ?? '';
  });
  canvas.addEventListener('pointerup', () => end(true));
  canvas.addEventListener('pointercancel', () => end(false));
  canvas.addEventListener('pointerleave', forgetReading);
  canvas.addEventListener('dblclick', (event) => place(lane, event));
  canvas.addEventListener('keydown', (event) => press(lane.field === 0 ? intensityLane : lane, event));
  // A finger on something drags it, one on the free ground may scroll the page.
  canvas.addEventListener('touchstart', (event) => {
    const { x, y } = placeIn(lane, event.touches[0]);
    if (event.touches.length > 1) end(false);
    if (event.touches.length > 1 || targetAt(lane, x, y, 20) !== null) event.preventDefault();
  }, { passive: false });
}
