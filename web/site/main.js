// SPDX-License-Identifier: Apache-2.0
// Starts everything, and shows every change in the next frame.

import { showCommands, startCommands } from './commands.js';
import { showEvents } from './events.js';
import { keep, restore, showFiles, startFiles } from './files.js';
import { isDragging, startGestures } from './gestures.js';
import { showLanes } from './lanes.js';
import { showListen, startListen } from './listen.js';
import { element } from './page.js';
import { showProfile, startProfile } from './profile.js';
import { onChange } from './state.js';
import { showTap, startTap } from './tap.js';
import { showView, startView } from './view.js';
import { start } from './wasm.js';
import { showWaveform, startWaveform } from './waveform.js';

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
  showProfile();
  showCommands();
  showView();
  showLanes(isDragging());
  showWaveform();
  showEvents();
  showListen();
  showFiles();
  showTap(anew);
  anew = false;
  performance.measure('draw', { start: began });
  keep();
}

async function begin() {
  await start(await (await fetch('studio.wasm')).arrayBuffer());
  startProfile();
  startCommands();
  startView();
  startWaveform();
  startGestures();
  startListen();
  startTap();
  startFiles();
  await restore();
  onChange(() => ask(false));
  window.addEventListener('resize', () => ask(true));
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => ask(true));
  ask(true);
}

begin().catch((error) => {
  element('notice', HTMLElement).hidden = false;
  element('messages', HTMLElement).textContent = `The studio cannot start: ${error.message}`;
});
