// SPDX-License-Identifier: Apache-2.0
// The buttons of commands, and the keys that work everywhere.

import { addCurve, addTap, duplicate, remove } from '../model/commands.js';
import { canRedo, canUndo, current, endStep, redo, undo } from '../model/state.js';
import { element } from '../page/elements.js';

const buttons = { 'add-tap': addTap, 'add-curve': addCurve, duplicate, delete: remove, undo, redo };

for (const [id, command] of Object.entries(buttons)) element(id, HTMLButtonElement).onclick = command;
// A field is one step, from when it is entered until it is left or its value is confirmed.
for (const type of ['focusin', 'change']) document.addEventListener(type, endStep);
document.addEventListener('keydown', (event) => {
  if (!(event.ctrlKey || event.metaKey) || event.altKey) return;
  const key = event.key.toLowerCase();
  const isText = event.target instanceof HTMLInputElement && event.target.type === 'text';
  if (isText || (key !== 'z' && key !== 'y')) return;
  event.preventDefault();
  if (key === 'y' || event.shiftKey) redo();
  else undo();
});

export function showButtons() {
  element('undo', HTMLButtonElement).disabled = !canUndo();
  element('redo', HTMLButtonElement).disabled = !canRedo();
  for (const id of ['duplicate', 'delete']) element(id, HTMLButtonElement).disabled = current().event < 0;
}
