// SPDX-License-Identifier: Apache-2.0
// The motor's estimated response, over the waveform.

import { current, show } from '../model/state.js';
import { motorOf, response } from '../library/pieces.js';
import { stroke } from '../page/canvas.js';
import { element, make, onSetting, setValue } from '../page/elements.js';
import { Estimator } from './estimated.js';

/** @import {State} from '../model/state.js' */
/** @import {Piece, Response} from '../library/pieces.js' */
/** @import {Places, Plot} from '../page/canvas.js' */
/** @import {Estimated} from './estimated.js' */

/** As many as the canvas is wide, or where single swings cannot be seen one for each. @param {Plot} plot */
function columnsOf({ left, right, span }) {
  const { design, response: wished } = current();
  const swings = ((span.to - span.from) * (wished.hz || motorOf(design.profile).resonance)) / 1000;
  const wide = Math.round(right - left);
  return Math.max(1, swings * 6 < wide ? wide : Math.min(Math.round(swings), Math.round(wide / 2)));
}

const estimates = new Estimator('response',
  ({ piece, resonator, span, columns }) => response(piece, resonator, span, columns));

/** @param {Piece} piece @param {Plot} plot */
export const responseOf = (piece, plot) =>
  estimates.of({ piece, resonator: current().response, span: plot.span, columns: columnsOf(plot) });

/** Its peak reaches the full height. @param {Plot} plot @param {Estimated<Response>} estimate */
export function drawResponse(plot, { span, made: { peak, columns } }) {
  if (!(peak > 0)) return;
  const perColumn = (span.to - span.from) / columns.length;
  for (const side of /** @type {const} */ ([0, 1])) {
    /** @type {Places} */
    const places = [];
    columns.forEach((range, i) => {
      const x = plot.x(span.from + (i + 0.5) * perColumn);
      if (range[0] <= range[1]) places.push([x, plot.y((120 * range[side]) / peak)]);
    });
    stroke(plot, 'response', places, 1.2, [5, 3]);
  }
}

/** @param {Response | null} made */
export function showResponse(made) {
  const { shown, quality, hz } = current().response;
  element('response', HTMLInputElement).checked = shown;
  setValue('quality', quality);
  setValue('resonance', hz);
  element('response-numbers', HTMLElement).replaceChildren(...(made?.numbers ?? []).map(([name, value]) =>
    make('div', {}, make('dt', {}, name), make('dd', {}, value))));
}

/** @param {Partial<State['response']>} changes */
const set = (changes) => show({ response: { ...current().response, ...changes } });

element('response', HTMLInputElement).onchange = () => set({ shown: !current().response.shown });
onSetting('quality', (quality) => set({ quality }));
onSetting('resonance', (hz) => set({ hz }));
