// SPDX-License-Identifier: Apache-2.0
// One tap: its waveform, and all levels side by side.

import { add } from '../model/commands.js';
import { clamp } from '../model/numbers.js';
import { current, show } from '../model/state.js';
import { newTap } from '../model/tap.js';
import { about, motorOf, release, samples, tapPiece } from '../library/pieces.js';
import { clipped, colour, drawGrid, plotOn } from '../page/canvas.js';
import { element, onSetting, setValue } from '../page/elements.js';
import { wordItems } from '../page/words.js';
import { drawSamples, drawSections } from '../lanes/samples.js';
import { play } from './listen.js';

/** @import {Profile, State} from '../model/state.js' */
/** @import {Piece} from '../library/pieces.js' */

const strip = element('levels', HTMLCanvasElement);

/** What was drawn last, and its piece. @type {{key: string, piece: Piece | null}} */
let last = { key: '', piece: null };

/** Chips without samples take the tap as it is at chip 0. @param {Profile} profile */
const sounding = (profile) =>
  about.chips.some(({ chip, stream }) => stream && chip === profile.chip) ? { ...profile, chip: 0 } : profile;

/** @param {boolean} anew even if nothing of it has changed */
export function showTap(anew) {
  const { design, tap } = current();
  const profile = sounding(design.profile);
  const key = JSON.stringify([profile, tap]);
  if (key === last.key && !anew) return;
  release(last.piece);
  last = { key, piece: motorOf(profile).taps ? tapPiece(profile, tap) : null };
  for (const id of /** @type {const} */ (['level', 'intensity'])) {
    setValue(id, tap[id]);
    setValue(`${id}-number`, tap[id]);
  }
  const inPattern = element('in-pattern', HTMLInputElement);
  inPattern.checked = tap.inPattern;
  inPattern.disabled = !motorOf(profile).shares;
  for (const field of document.querySelectorAll('#tap :is(button, .sliders input)')) {
    /** @type {HTMLButtonElement | HTMLInputElement} */ (field).disabled = last.piece === null;
  }
  showWave();
  showStrip(profile, anew);
}

function showWave() {
  const { piece } = last;
  const facts = piece?.facts;
  const plot = plotOn(element('tap-wave', HTMLCanvasElement), { from: 0, to: facts?.length_ms || 20 }, [-128, 128],
    { top: 20, bottom: 22 });
  if (piece !== null) drawSections(plot, piece);
  drawGrid(plot, [-128, -64, 0, 64, 128], true);
  if (piece !== null) clipped(plot, () => drawSamples(plot, piece));
  element('tap-words', HTMLElement).textContent =
    facts === undefined ? 'This motor has no taps.' : `${facts.length} samples · ${facts.length_ms.toFixed(1)} ms`;
  element('tap-warnings', HTMLUListElement).replaceChildren(
    ...wordItems(facts?.warnings.map(({ line }) => ({ line, kind: 'warning' }))));
}

let stripKey = '';

/** Its taps come a moment after the rest of the page. @param {Profile} profile @param {boolean} anew */
function showStrip(profile, anew) {
  const { tap } = current();
  const mark = element('chosen-level', HTMLDivElement);
  mark.hidden = last.piece === null;
  mark.style.left = `${(tap.level / strip.width) * 100}%`;
  const key = JSON.stringify([profile, tap.intensity, tap.inPattern]);
  if (key === stripKey && !anew) return;
  stripKey = key;
  setTimeout(() => drawStrip(profile, tap));
}

/** A column of pixels for each level, time runs down. @param {Profile} profile @param {State['tap']} tap */
function drawStrip(profile, tap) {
  const { width, height } = strip;
  const taps = Array.from({ length: motorOf(profile).taps ? width : 0 }, (_, level) => {
    const piece = tapPiece(profile, { ...tap, level });
    const values = samples(piece, 0, piece.facts.length);
    release(piece);
    return values;
  });
  const longest = Math.max(...taps.map(({ length }) => length));
  const [low, high] = [colour('low'), colour('curve')];
  const draw = /** @type {CanvasRenderingContext2D} */ (strip.getContext('2d'));
  draw.clearRect(0, 0, width, height);
  taps.forEach((tap, level) => {
    for (let row = 0; row < height; ++row) {
      const value = tap[Math.floor((row * longest) / height)] ?? 0;
      draw.globalAlpha = Math.abs(value) / 128;
      draw.fillStyle = value > 0 ? high : low;
      draw.fillRect(level, row, 1, 1);
    }
  });
}

/** @param {Partial<State['tap']>} changes */
const set = (changes) => show({ tap: { ...current().tap, ...changes } });

for (const id of ['level', 'intensity']) {
  for (const field of [id, `${id}-number`]) onSetting(field, (value) => set({ [id]: value }));
}
element('in-pattern', HTMLInputElement).onchange = () => set({ inPattern: !current().tap.inPattern });
element('tap-listen', HTMLButtonElement).onclick = () => last.piece && play(last.piece, false);
element('tap-add', HTMLButtonElement).onclick = () => {
  const { cursor, tap } = current();
  add(newTap(cursor, tap.level, tap.intensity));
};
const choose = (/** @type {PointerEvent} */ { buttons, offsetX }) => {
  if (buttons !== 0) set({ level: clamp(Math.floor((offsetX / strip.clientWidth) * strip.width), 0, 100) });
};
strip.addEventListener('pointerdown', choose);
strip.addEventListener('pointermove', choose);
