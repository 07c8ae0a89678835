// SPDX-License-Identifier: Apache-2.0
// Shows every change in the next frame.

import { showCommands } from './commands.js';
import { showEvents } from './events.js';
import { keep, restore, showFiles } from './files.js';
import { isDragging } from './gestures.js';
import { showLanes } from './lanes.js';
import { showListen } from './listen.js';
import { showProfile } from './profile.js';
import { onChange } from './state.js';
import { showTap } from './tap.js';
import { showView } from './view.js';
import { showWaveform } from './waveform.js';

let waiting = false;
let anew = true;

/** @param {boolean} everything also what has not changed, as the window's size or colours have */
function ask(everything) {
  anew ||= everything;
  if (waiting) return;
  waiting = true;
  requestAnimationFrame(drawAll);
}

/** Its duration can be read in the browser's performance tools. */
function drawAll() {
  const began = performance.now();
  waiting = false;
  showLanes(isDragging());
  for (const show of [showWaveform, showEvents, showProfile, showCommands, showView, showListen, showFiles]) show();
  showTap(anew);
  anew = false;
  performance.measure('draw', { start: began });
  keep();
}

await restore();
onChange(() => ask(false));
window.addEventListener('resize', () => ask(true));
matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => ask(true));
ask(true);
