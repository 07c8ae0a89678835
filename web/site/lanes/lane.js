// SPDX-License-Identifier: Apache-2.0
// A lane of events over time: draws them, finds what is under the pointer, and moves that.

import { applied, endOf, kindOf, pointsOf, startedAt, timeOf } from '../model/events.js';
import { current } from '../model/state.js';
import { factsOf, patternPiece } from '../library/pieces.js';
import { box, clipped, drawGrid, fill, plotOn, stroke } from '../page/canvas.js';
import { element } from '../page/elements.js';
import { shownSpan } from './view.js';

/** @import {CurveFacts, Facts, TapFacts} from '../../protocol.js' */
/** @import {Curve, CurvePoint} from '../model/curve.js' */
/** @import {ByKind, PatternEvent} from '../model/events.js' */
/** @import {Tap} from '../model/tap.js' */
/** @import {Place, Places, Plot} from '../page/canvas.js' */

/**
 * @typedef {{part: 'point' | 'end' | 'whole', point: number}} Part of an event
 * @typedef {Part & {event: number}} Target what is under the pointer
 * @typedef {{last: number}} Labels where the last one stands: labels keep apart
 * @typedef {{places: Places, isLine: boolean}} Shape what of an event can be touched
 */

/**
 * What differs between lanes: the field of a point that they show, as its index, and how; room above the plot; the
 * highest value, which stays during a drag; lines; how events look and where they can be touched; what lies over them;
 * how strong a new event is; whether an event's strength can be moved here.
 * @typedef {{
 *   field: 1 | 2,
 *   plotted: (value: number) => number,
 *   value: (plotted: number) => number,
 *   room: number,
 *   high: (isHeld: boolean, facts: Facts) => number,
 *   lines: (high: number) => number[],
 *   drawCurve: (plot: Plot, event: Curve, points: Places, facts: CurveFacts | undefined) => void,
 *   drawTap: (plot: Plot, event: Tap, facts: TapFacts | undefined, isChosen: boolean, labels: Labels) => void,
 *   shapeOfCurve: (plot: Plot, event: Curve, points: Places) => Shape,
 *   topOfTap: (plot: Plot, event: Tap) => number,
 *   gripOf: (plot: Plot, event: PatternEvent) => Place | null,
 *   drawMarks: (plot: Plot, facts: Facts) => void,
 *   strengthAt: (value: number) => number,
 *   hasStrength: boolean,
 * }} Face
 */

/**
 * Where a tap is drawn and touched: up to where the motor lets it end, and never too narrow to be seen.
 * @param {Plot} plot @param {Tap} event @param {TapFacts | undefined} facts
 */
export function tapSides(plot, event, facts) {
  const left = plot.x(event.start);
  return { left, wide: Math.max(4, plot.x(facts?.end_ms ?? endOf(event)) - left) };
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
    const labels = { last: -Infinity };
    const drawPass = (/** @type {Plot} */ plot) => this.#drawEvents(plot, facts, labels);
    clipped(plot, () => {
      drawPass(plot);
      drawPasses(plot, facts, drawPass);
      this.#drawPoints(plot);
      drawCursor(plot);
    });
    face.drawMarks(plot, facts);
  }

  /** Taps over curves. @param {Plot} plot @param {Facts} facts @param {Labels} labels */
  #drawEvents(plot, facts, labels) {
    const { design, event: chosen } = current();
    const face = this.#face;
    /** @type {ByKind<void>} */
    const drawn = {
      continuous: (event, i) => face.drawCurve(plot, event, this.#placesOf(plot, event), factsOf(facts, event, i)),
      transient: (event, i) => face.drawTap(plot, event, factsOf(facts, event, i), i === chosen, labels),
    };
    for (const type of Object.keys(drawn)) {
      design.events.forEach((event, i) => event.type === type && applied(drawn, event, i));
    }
  }

  /** @param {Plot} plot */
  #drawPoints(plot) {
    const { design, event: chosen, point } = current();
    design.events.forEach((event, i) => {
      const isChosen = i === chosen;
      pointsOf(event).forEach((at, j) => {
        const place = this.#placeOf(plot, event, at);
        drawDot(plot, place, isChosen ? 'chosen' : 'curve', isChosen ? 6 : 2.5);
        if (isChosen && j !== point) drawDot(plot, place, 'panel', 4);
      });
      const grip = isChosen ? this.#face.gripOf(plot, event) : null;
      if (grip !== null) drawGrip(plot, grip);
    });
  }

  /** @param {Plot} plot @param {PatternEvent} event @param {CurvePoint} point @returns {Place} */
  #placeOf(plot, event, point) {
    return [plot.x(timeOf(event, point)), plot.y(this.#face.plotted(point[this.#face.field]))];
  }

  /** @param {Plot} plot @param {PatternEvent} event @returns {Places} */
  #placesOf(plot, event) {
    return pointsOf(event).map((point) => this.#placeOf(plot, event, point));
  }

  /** Where the points of an event, and the grip that stretches it, are on the canvas. @param {PatternEvent} event */
  handles(event) {
    const { plot } = this;
    return plot === null ? { points: [], grip: null }
      : { points: this.#placesOf(plot, event), grip: this.#face.gripOf(plot, event) };
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
    const touched = order.filter(([i, event]) => this.#isTouched(event, i, x, y, reach));
    // A tap may lie over a curve.
    const [found] = touched.find(([, event]) => pointsOf(event).length === 0) ?? touched[0] ?? [];
    return found === undefined ? null : { event: found, part: 'whole', point: -1 };
  }

  /** @param {PatternEvent} event @param {number} i @param {number} x @param {number} y @param {number} reach */
  #isTouched(event, i, x, y, reach) {
    if (this.plot === null) return false;
    const { draw } = this.plot;
    const { places, isLine } = this.#shapeOf(this.plot, event, i);
    const { a: scale } = draw.getTransform();
    draw.beginPath();
    for (const place of places) draw.lineTo(...place);
    draw.lineWidth = isLine ? 2 * reach : reach;
    return draw.isPointInStroke(x * scale, y * scale) || (!isLine && draw.isPointInPath(x * scale, y * scale));
  }

  /** @param {Plot} plot @param {PatternEvent} event @param {number} i @returns {Shape} */
  #shapeOf(plot, event, i) {
    const { facts } = patternPiece(current().design);
    const face = this.#face;
    return applied({
      continuous: (event) => face.shapeOfCurve(plot, event, this.#placesOf(plot, event)),
      transient: (event, i) => {
        const { left, wide } = tapSides(plot, event, factsOf(facts, event, i));
        const top = face.topOfTap(plot, event);
        return { places: box(left, top, wide, plot.bottom - top), isLine: false };
      },
    }, event, i);
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
      return startedAt(hasStrength ? kind.strengthened(event, by) : event, event.start + ms);
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
    return startedAt(hasStrength ? kindOf(event).lifted(event, by) : event, event.start + ms);
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
