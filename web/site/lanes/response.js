// SPDX-License-Identifier: Apache-2.0
// The motor's estimated response, over the waveform.

import { current, show } from '../model/state.js';
import { motorOf, patternPiece, response } from '../library/pieces.js';
import { stroke } from '../page/canvas.js';
import { element, make, onSetting, setValue } from '../page/elements.js';

/** @import {Span} from '../model/spans.js' */
/** @import {State} from '../model/state.js' */
/** @import {Piece, Response} from '../library/pieces.js' */
/** @import {Places, Plot} from '../page/canvas.js' */

/** As many as the canvas is wide, or where single swings cannot be seen one for each. @param {Plot} plot */
function columnsOf({ left, right, span }) {
  const { design, response: wished } = current();
  const swings = ((span.to - span.from) * (wished.hz || motorOf(design.profile).resonance)) / 1000;
  const wide = Math.round(right - left);
  return Math.max(1, swings * 6 < wide ? wide : Math.min(Math.round(swings), Math.round(wide / 2)));
}

/**
 * The estimate needs a waveform's every sample. So it comes a moment after the waveform, and until then the one before
 * it stands.
 * @typedef {{piece: Piece, resonator: State['response'], span: Span, columns: number, response: Response}} Estimated
 */

/** @type {Estimated | null} */
let estimate = null;
let estimating = false;

/** @param {Piece} piece @param {Plot} plot */
export function responseOf(piece, plot) {
  const { response: resonator } = current();
  const { span } = plot;
  const columns = columnsOf(plot);
  const fresh = estimate?.piece === piece && estimate.resonator === resonator && estimate.columns === columns &&
    estimate.span.from === span.from && estimate.span.to === span.to;
  if (!fresh && !estimating) {
    estimating = true;
    setTimeout(() => {
      estimating = false;
      const began = performance.now();
      if (piece === patternPiece(current().design)) {
        const made = response(piece, resonator, span, columns);
        estimate = made && { piece, resonator, span, columns, response: made };
        performance.measure('response', { start: began });
      }
      show({});
    });
  }
  return estimate;
}

/** Its peak reaches the full height. @param {Plot} plot @param {Estimated} made */
export function drawResponse(plot, { span, response: { peak, columns } }) {
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
