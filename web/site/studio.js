// SPDX-License-Identifier: Apache-2.0
// Shows every change in the next frame.

import { onChange } from './model/state.js';
import { isDragging } from './lanes/gestures.js';
import './lanes/keys.js';
import { showLanes } from './lanes/lanes.js';
import { showView } from './lanes/view.js';
import { showButtons } from './panels/buttons.js';
import { showEvents } from './panels/events.js';
import { showFields } from './panels/fields.js';
import { restore, showFiles } from './panels/files.js';
import { showListen } from './panels/listen.js';
import { showProfile } from './panels/profile.js';
import { showTap } from './panels/tap.js';

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
  for (const show of [showEvents, showFields, showProfile, showButtons, showView, showListen, showFiles]) show();
  showTap(anew);
  anew = false;
  performance.measure('draw', { start: began });
}

await restore();
onChange(() => ask(false));
window.addEventListener('resize', () => ask(true));
matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => ask(true));
ask(true);
