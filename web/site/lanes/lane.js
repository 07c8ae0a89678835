// SPDX-License-Identifier: Apache-2.0
// A lane of events over time: draws them, finds what is under the pointer, and moves that.

import { endOf, kindOf, movedTo, pointsOf } from '../model/events.js';
import { current } from '../model/state.js';
import { laidOut, patternPiece } from '../library/pieces.js';
import { box, clipped, drawGrid, fill, plotOn, stroke } from '../page/canvas.js';
import { element } from '../page/elements.js';
import { shownSpan } from './view.js';

/** @import {EventFacts, Facts, LineFacts, TapFacts} from '../../protocol.js' */
/** @import {PatternEvent} from '../model/events.js' */
/** @import {CurvePoint} from '../model/points.js' */
/** @import {Place, Places, Plot} from '../page/canvas.js' */

/**
 * @typedef {{part: 'point' | 'end' | 'whole', point: number}} Part of an event
 * @typedef {Part & {event: number}} Target what is under the pointer
 * @typedef {{others: number, chosen: number}} Labels where the last ones stand: labels keep apart
 * @typedef {{places: Places, isLine: boolean}} Shape what of an event can be touched
 */

/**
 * What differs between lanes: the field of a point that they show, as its index, and how, alone and of an event; room
 * above the plot; the highest value, which stays during a drag; lines; how what events are laid out to looks and where
 * it can be touched; what lies over them; how strong a new event is; whether an event's strength can be moved here.
 * @typedef {{
 *   field: 1 | 2,
 *   plotted: (value: number) => number,
 *   plottedOf: (facts: LineFacts, point: number) => number,
 *   value: (plotted: number) => number,
 *   room: number,
 *   high: (isHeld: boolean, facts: Facts) => number,
 *   lines: (high: number) => number[],
 *   drawLine: (plot: Plot, facts: LineFacts, points: Places, isChosen: boolean) => void,
 *   drawTap: (plot: Plot, facts: TapFacts, isChosen: boolean, labels: Labels) => void,
 *   shapeOfLine: (plot: Plot, facts: LineFacts, points: Places) => Shape,
 *   topOfTap: (plot: Plot, facts: TapFacts) => number,
 *   gripOf: (plot: Plot, event: PatternEvent) => Place | null,
 *   drawMarks: (plot: Plot, facts: Facts) => void,
 *   strengthAt: (value: number) => number,
 *   hasStrength: boolean,
 * }} Face
 */

/** Where a tap is drawn and touched: up to where the motor lets it end, and never too narrow to be seen.
 * @param {Plot} plot @param {TapFacts} facts */
export function tapSides(plot, facts) {
  const left = plot.x(facts.start);
  return { left, wide: Math.max(4, plot.x(facts.end_ms ?? endOf(facts)) - left) };
}

/** In the order in which they are written. @param {LineFacts} facts */
const timesOf = ({ points }) => points.map((point) => ('time' in point ? point.time : point[0]));

/** When it ends as it is written. @param {LineFacts} facts */
export function writtenEnd(facts) {
  const times = timesOf(facts);
  const span = 'duration' in facts ? facts.duration : (times.at(-1) ?? 0) - (times[0] ?? 0);
  return facts.start + span;
}

export class EventLane {
  /** As it was drawn last. @type {Plot | null} */
  plot = null;
  #face;

  /** @param {string} id @param {Face} face */
  constructor(id, face) {
    this.canvas = element(id, HTMLCanvasElement);
    this.#face = face;
  }

  /** @param {boolean} isHeld something is dragged */
  draw(isHeld) {
    const { facts } = patternPiece(current().design);
    const face = this.#face;
    const high = face.high(isHeld, facts);
    const plot = plotOn(this.canvas, shownSpan(), [0, high], { top: face.room });
    this.plot = plot;
    drawGrid(plot, face.lines(high));
    const labels = { others: -Infinity, chosen: -Infinity };
    const drawPass = (/** @type {Plot} */ plot) => this.#drawEvents(plot, labels);
    clipped(plot, () => {
      drawPass(plot);
      drawPasses(plot, facts, drawPass);
      this.#drawPoints(plot);
      drawCursor(plot);
    });
    face.drawMarks(plot, facts);
  }

  /** Taps over all others. @param {Plot} plot @param {Labels} labels */
  #drawEvents(plot, labels) {
    const { design, event: chosen } = current();
    const all = design.events.flatMap((_, i) => laidOut(design, i).map((facts) => ({ facts, isChosen: i === chosen })));
    for (const { facts, isChosen } of all) {
      if (facts.type !== 'transient') this.#face.drawLine(plot, facts, this.#placesOf(plot, facts), isChosen);
    }
    for (const { facts, isChosen } of all) {
      if (facts.type === 'transient') this.#face.drawTap(plot, facts, isChosen, labels);
    }
  }

  /** Of what is kept as it is no point can be moved. @param {Plot} plot */
  #drawPoints(plot) {
    const { design, event: chosen, point } = current();
    design.events.forEach((event, i) => {
      const isChosen = i === chosen;
      const isFree = pointsOf(event).length > 0;
      const places = isFree ? this.handles(event, plot).points
        : laidOut(design, i).flatMap((facts) => (facts.type === 'transient' ? [] : this.#placesOf(plot, facts)));
      places.forEach((place, j) => {
        drawDot(plot, place, isChosen ? 'chosen' : 'curve', !isChosen ? 2.5 : isFree ? 6 : 3);
        if (isChosen && isFree && j !== point) drawDot(plot, place, 'panel', 4);
      });
      const grip = isChosen ? this.#face.gripOf(plot, event) : null;
      if (grip !== null) drawGrip(plot, grip);
    });
  }

  /** The line that it is to follow; of a record there is none. @param {Plot} plot @param {LineFacts} facts @returns {Places} */
  #placesOf(plot, facts) {
    if (facts.type === 'record') return [];
    const times = timesOf(facts);
    return times.map((time, i) =>
      [plot.x(facts.start + time - (times[0] ?? 0)), plot.y(this.#face.plottedOf(facts, i))]);
  }

  /**
   * Where the points of an event, and the grip that stretches it, are on the canvas.
   * @param {PatternEvent} event @param {Plot | null} plot
   */
  handles(event, plot = this.plot) {
    /** @type {{points: Places, grip: Place | null}} */
    const none = { points: [], grip: null };
    if (plot === null || event.type === 'kept') return none;
    const facts = { ...event, number: 0, inside: '' };
    const points = facts.type === 'transient' ? [] : this.#placesOf(plot, facts);
    return { points, grip: this.#face.gripOf(plot, event) };
  }

  /** @param {number} x @param {number} y @param {number} reach @returns {Target | null} */
  targetAt(x, y, reach) {
    const { events } = current().design;
    const chosen = current().event;
    const order = [...events.entries()].reverse();
    order.sort(([i], [j]) => Number(j === chosen) - Number(i === chosen));
    const near = (/** @type {Place | null} */ place) =>
      place !== null && Math.hypot(place[0] - x, place[1] - y) <= reach;
    for (const [i, event] of order) {
      const { points, grip } = this.handles(event);
      // Of points in one place the later one, which alone may be free to move.
      const point = points.findLastIndex(near);
      if (point >= 0) return { event: i, part: 'point', point };
      if (i === chosen && near(grip)) return { event: i, part: 'end', point: -1 };
    }
    const touched = order.flatMap(([i]) => laidOut(current().design, i)
      .filter((facts) => this.#isTouched(facts, x, y, reach)).map(({ type }) => ({ i, type })));
    // A tap may lie over a curve.
    const found = touched.find(({ type }) => type === 'transient') ?? touched[0];
    return found === undefined ? null : { event: found.i, part: 'whole', point: -1 };
  }

  /** @param {EventFacts} facts @param {number} x @param {number} y @param {number} reach */
  #isTouched(facts, x, y, reach) {
    if (this.plot === null) return false;
    const { draw } = this.plot;
    const { places, isLine } = this.#shapeOf(this.plot, facts);
    const { a: scale } = draw.getTransform();
    draw.beginPath();
    for (const place of places) draw.lineTo(...place);
    draw.lineWidth = isLine ? 2 * reach : reach;
    return draw.isPointInStroke(x * scale, y * scale) || (!isLine && draw.isPointInPath(x * scale, y * scale));
  }

  /** @param {Plot} plot @param {EventFacts} facts @returns {Shape} */
  #shapeOf(plot, facts) {
    if (facts.type !== 'transient') return this.#face.shapeOfLine(plot, facts, this.#placesOf(plot, facts));
    const { left, wide } = tapSides(plot, facts);
    const top = this.#face.topOfTap(plot, facts);
    return { places: box(left, top, wide, plot.bottom - top), isLine: false };
  }

  /**
   * By keys, in the units of a point's fields.
   * @param {PatternEvent} event @param {Part} part @param {number} ms @param {number} by
   */
  moved(event, { part, point }, ms, by) {
    const { field, hasStrength } = this.#face;
    const kind = kindOf(event);
    if (part === 'end') return kind.stretched(event, endOf(event) - event.start + ms);
    const old = pointsOf(event)[point];
    if (part === 'whole' || old === undefined) {
      return movedTo(hasStrength ? kind.strengthened(event, by) : event, event.start + ms);
    }
    return kind.withPoint(event, point, changed(old, ms, field, by));
  }

  /**
   * By the pointer, in the units of the plot.
   * @param {PatternEvent} event @param {Part} part @param {number} ms @param {number} by
   */
  dragged(event, { part, point }, ms, by) {
    const { field, plotted, value, hasStrength } = this.#face;
    const old = part === 'point' ? pointsOf(event)[point] : undefined;
    if (old !== undefined) return this.moved(event, { part, point }, ms, value(plotted(old[field]) + by) - old[field]);
    if (part === 'end') return this.moved(event, { part, point }, ms, 0);
    return movedTo(hasStrength ? kindOf(event).lifted(event, by) : event, event.start + ms);
  }

  /** Of a new event there. @param {number} y */
  strengthAt(y) {
    return this.plot === null ? null : this.#face.strengthAt(this.plot.valueAt(y));
  }
}

/** @param {CurvePoint} point @param {number} ms @param {1 | 2} field @param {number} by @returns {CurvePoint} */
function changed(point, ms, field, by) {
  /** @type {CurvePoint} */
  const to = [...point];
  to[0] += ms;
  to[field] += by;
  return to;
}

/** @param {Plot} plot @param {Place} place @param {string} name of a colour @param {number} radius */
const drawDot = (plot, [x, y], name, radius) =>
  fill(plot, name, Array.from({ length: 16 }, (_, i) =>
    [x + radius * Math.cos((i * Math.PI) / 8), y + radius * Math.sin((i * Math.PI) / 8)]));

/** @param {Plot} plot @param {Place} place */
function drawGrip(plot, [x, y]) {
  stroke(plot, 'grid', [[x, plot.top], [x, plot.bottom]]);
  stroke(plot, 'chosen', [[x, y - 6], [x, y + 6]], 6);
}

/** The later passes are copies of the first; where they are many, a band. @param {Plot} plot @param {Facts} facts
 * @param {(plot: Plot) => void} drawPass */
function drawPasses(plot, { pass_ms, length_ms, faults, stream }, drawPass) {
  const { loops, interval } = current().design;
  const { draw, x, span, top, bottom } = plot;
  if (faults.length > 0 || stream || loops === 1) return;
  const stride = pass_ms + interval;
  draw.globalAlpha = 0.45;
  if (x(stride) - x(0) < 12) {
    fill(plot, 'vibration', box(x(pass_ms), top, x(length_ms) - x(pass_ms), bottom - top));
  } else {
    const last = Math.min(loops - 1, Math.floor(span.to / stride));
    for (let pass = Math.max(1, Math.floor(span.from / stride)); pass <= last; ++pass) {
      drawPass({ ...plot, x: (ms) => x(ms + pass * stride) });
    }
  }
  draw.globalAlpha = 1;
}

/** @param {Plot} plot */
function drawCursor(plot) {
  const x = Math.round(plot.x(current().cursor)) + 0.5;
  stroke(plot, 'muted', [[x, plot.top - 6], [x, plot.bottom]], 1, [4, 3]);
}
