// SPDX-License-Identifier: Apache-2.0
// Wheel, two fingers and keys on a canvas over the shared time.

import { pan, showAll, zoom } from './view.js';

/** @typedef {(clientX: number) => number | undefined} MsAt */

/** @param {HTMLCanvasElement} canvas @param {MsAt} msAt */
export function watchZoom(canvas, msAt) {
  watchWheel(canvas, msAt);
  watchPinch(canvas, msAt);
  canvas.addEventListener('keydown', ({ key, ctrlKey, metaKey }) => {
    if (!ctrlKey && !metaKey) keys[key]?.();
  });
}

/** @type {Record<string, () => void>} */
const keys = {
  '+': () => zoom(0.5), '-': () => zoom(2), '<': () => pan(-0.1), '>': () => pan(0.1), a: showAll, A: showAll,
};

/** @type {typeof watchZoom} */
function watchWheel(canvas, msAt) {
  canvas.addEventListener('wheel', (event) => {
    if (event.ctrlKey || event.metaKey) zoom(Math.exp(event.deltaY * 0.003), msAt(event.clientX));
    else if (event.shiftKey || event.deltaX !== 0) pan((event.deltaX || event.deltaY) / canvas.clientWidth);
    else return;
    event.preventDefault();
  }, { passive: false });
}

/** @type {typeof watchZoom} */
function watchPinch(canvas, msAt) {
  let apart = 0;
  canvas.addEventListener('touchmove', (event) => {
    const [one, other] = event.touches;
    if (one === undefined || other === undefined) return;
    const now = Math.max(20, Math.abs(one.clientX - other.clientX));
    if (apart > 0) zoom(apart / now, msAt((one.clientX + other.clientX) / 2));
    apart = now;
    event.preventDefault();
  }, { passive: false });
  canvas.addEventListener('touchend', () => (apart = 0));
}
