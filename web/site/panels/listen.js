// SPDX-License-Identifier: Apache-2.0
// Waveforms as sound, at the device's own rate.

import { current, onChange } from '../model/state.js';
import { isPlayable, patternPiece, samples } from '../library/pieces.js';
import { element } from '../page/elements.js';
import { shownSpan } from '../lanes/view.js';
import { waveformLane } from '../lanes/waveform.js';

/** @import {Piece} from '../library/pieces.js' */

/** @type {AudioContext | null} */
let audio = null;
let asked = 0; // how often
/** @type {{source: AudioBufferSourceNode, began: number, piece: Piece, isPattern: boolean} | null} */
let playing = null;
const playhead = element('playhead', HTMLDivElement);

/** @param {Piece} piece @param {boolean} isPattern */
export async function play(piece, isPattern) {
  stop();
  const ask = ++asked;
  const { length, rate } = piece.facts;
  const values = Float32Array.from(samples(piece, 0, length), (value) => value / 128); // the piece may be released soon
  audio ??= new AudioContext();
  await audio.resume();
  if (ask !== asked) return;
  const buffer = audio.createBuffer(1, length, rate);
  buffer.copyToChannel(values, 0);
  const source = audio.createBufferSource();
  source.buffer = buffer;
  source.loop = isPattern && element('repeat', HTMLInputElement).checked;
  source.connect(audio.destination);
  source.onended = () => playing?.source === source && stop();
  source.start();
  playing = { source, began: audio.currentTime, piece, isPattern };
  element('stop', HTMLButtonElement).disabled = false;
  follow();
}

export function stop() {
  ++asked;
  const ended = playing;
  playing = null;
  ended?.source.stop();
  playhead.hidden = true;
  element('stop', HTMLButtonElement).disabled = true;
}

function follow() {
  if (playing === null || audio === null || !playing.isPattern) return;
  const { length_ms } = playing.piece.facts;
  const gone = Math.max(0, audio.currentTime - playing.began) * 1000;
  const ms = playing.source.loop ? gone % length_ms : gone;
  const { from, to } = shownSpan();
  playhead.hidden = ms < from || ms > to;
  playhead.style.left = `${waveformLane.left(ms)}px`;
  requestAnimationFrame(follow);
}

element('play', HTMLButtonElement).onclick = () => play(patternPiece(current().design), true);
element('stop', HTMLButtonElement).onclick = stop;
element('repeat', HTMLInputElement).onchange = (event) => {
  if (playing?.isPattern) playing.source.loop = /** @type {HTMLInputElement} */ (event.target).checked;
};
// What is heard is what is shown.
onChange(() => playing?.isPattern && playing.piece !== patternPiece(current().design) && stop());

export function showListen() {
  element('play', HTMLButtonElement).disabled = !isPlayable(patternPiece(current().design));
}
