// SPDX-License-Identifier: Apache-2.0
// One tap: its waveform, and all levels side by side.

import { box, clipped, colour, drawGrid, plotOn, stroke, write } from './canvas.js';
import { add } from './commands.js';
import { newTap } from './edits.js';
import { wordItems } from './events.js';
import { play } from './listen.js';
import { element, make, onNumber, setValue } from './page.js';
import { current, show } from './state.js';
import { drawSamples, drawSections } from './waveform.js';
import { motorOf, samples, tapPiece } from './wasm.js';

/** @import {Profile, State} from './state.js' */
/** @import {Piece} from './wasm.js' */

const strip = element('strip', HTMLCanvasElement);
const levels = 101;

/** What was drawn last, and its piece. @type {{key: string, piece: Piece | null}} */
let last = { key: '', piece: null };

/** Chips without samples take the tap as it is at chip 0. @param {Profile} profile */
const sounding = (profile) => (profile.chip === 11 ? { ...profile, chip: 0 } : profile);

/** @param {boolean} anew even if nothing of it has changed */
export function showTap(anew) {
  const { design, tap } = current();
  const profile = sounding(design.profile);
  const key = JSON.stringify([profile, tap]);
  if (key === last.key && !anew) return;
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

/** A column of pixels for each level, time runs down. @type {HTMLCanvasElement | null} */
let image = null;
let imageKey = '';

/** Its taps come a moment after the rest of the page. @param {Profile} profile @param {boolean} anew */
function showStrip(profile, anew) {
  const { tap } = current();
  const key = JSON.stringify([profile, tap.intensity, tap.inPattern]);
  drawStrip();
  if (key === imageKey && !anew) return;
  imageKey = key;
  setTimeout(() => {
    image = motorOf(profile).taps ? stripImage(profile, tap) : null;
    drawStrip();
  });
}

function drawStrip() {
  const { tap } = current();
  const plot = plotOn(strip, { from: 0, to: levels }, [0, 1], { top: 2, bottom: 18 });
  const { draw, left, right, top, bottom } = plot;
  draw.imageSmoothingEnabled = false;
  if (image !== null) {
    draw.drawImage(image, left, top, right - left, bottom - top);
    const mark = box(plot.x(tap.level) - 1, top, plot.x(1) - left + 2, bottom - top);
    stroke(plot, 'chosen', [...mark, mark[0]], 2);
  } else {
    write(plot, 'No taps.', (left + right) / 2, (top + bottom) / 2, 'center', 'middle');
  }
  for (const level of [0, 25, 50, 75, 100]) {
    write(plot, String(level), plot.x(level + 0.5), bottom + 4, level === 0 ? 'left' : level === 100 ? 'right' : 'center', 'top');
  }
}

/** @param {Profile} profile @param {State['tap']} tap */
function stripImage(profile, tap) {
  const taps = Array.from({ length: levels }, (_, level) => {
    const piece = tapPiece(profile, { ...tap, level });
    return samples(piece, 0, piece.facts.length);
  });
  const rows = 120;
  const longest = Math.max(...taps.map(({ length }) => length));
  const names = [colour('low'), colour('curve')];
  const canvas = make('canvas', { width: levels, height: rows });
  const draw = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d'));
  taps.forEach((tap, level) => {
    for (let row = 0; row < rows; ++row) {
      const value = tap[Math.floor((row * longest) / rows)] ?? 0;
      draw.globalAlpha = Math.abs(value) / 128;
      draw.fillStyle = names[Number(value > 0)];
      draw.fillRect(level, row, 1, 1);
    }
  });
  return canvas;
}

/** @param {Partial<State['tap']>} changes */
const set = (changes) => show({ tap: { ...current().tap, ...changes } });

for (const id of ['level', 'intensity']) {
  for (const field of [id, `${id}-number`]) onNumber(field, (value) => set({ [id]: value }));
}
element('in-pattern', HTMLInputElement).onchange = () => set({ inPattern: !current().tap.inPattern });
element('tap-listen', HTMLButtonElement).onclick = () => last.piece && play(last.piece, false);
element('tap-add', HTMLButtonElement).onclick = () => {
  const { cursor, tap } = current();
  add(newTap(cursor, tap.level, tap.intensity));
};
const choose = (/** @type {PointerEvent} */ event) => {
  if (event.buttons === 0) return;
  const box = strip.getBoundingClientRect();
  const share = (event.clientX - box.left - 40) / (box.width - 50);
  set({ level: Math.min(100, Math.max(0, Math.floor(share * levels))) });
};
strip.addEventListener('pointerdown', choose);
strip.addEventListener('pointermove', choose);
