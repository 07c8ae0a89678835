// SPDX-License-Identifier: Apache-2.0
// The exact values of the selected event.

import { change } from '../model/commands.js';
import { kindOf } from '../model/events.js';
import { chosenEvent, current, show } from '../model/state.js';
import { motorOf, patternPiece } from '../library/pieces.js';
import { element, putValue, takeNumbers } from '../page/elements.js';

const fields = element('fields', HTMLDivElement);

/** In an event, by a field's name, like points.2.0 for the third point's time. @param {any} event @param {string} name */
const valueIn = (event, name) => name.split('.').reduce((value, key) => value?.[key], event);

for (const input of fields.querySelectorAll('input')) {
  const { name } = input;
  takeNumbers(input, (value) => change((event) => kindOf(event).withValue(event, name, value), name));
  input.onfocus = () => show({ point: Number(name.split('.')[1] ?? -1) });
}

export function showFields() {
  const { design, event: chosen, point } = current();
  const event = chosenEvent();
  fields.hidden = event === undefined;
  element('no-event', HTMLElement).hidden = !fields.hidden;
  if (event === undefined) return;
  for (const part of /** @type {NodeListOf<HTMLElement>} */ (fields.querySelectorAll('[data-type]'))) {
    part.hidden = part.dataset.type !== event.type;
  }
  for (const input of fields.querySelectorAll('input')) putValue(input, valueIn(event, input.name) ?? '');
  const facts = patternPiece(design).facts.events[chosen];
  const isShared = motorOf(design.profile).shares && facts?.driven !== undefined;
  element('driven', HTMLElement).textContent = isShared ? `driven at ${facts.driven} %` : '';
  fields.querySelectorAll('tbody tr').forEach((row, i) => {
    row.classList.toggle('chosen', i === point);
    row.querySelector('output')?.replaceChildren(String(facts?.hz?.[i] ?? '–'));
  });
}
