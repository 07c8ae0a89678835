// SPDX-License-Identifier: Apache-2.0
// The exact values of the selected event.

import { change } from '../model/commands.js';
import { kindOf, pointsOf, writtenOf } from '../model/events.js';
import { chosenEvent, current, show } from '../model/state.js';
import { feltWords, laidOut, motorOf } from '../library/pieces.js';
import { element, make, putValue, takeNumbers } from '../page/elements.js';

const fields = element('fields', HTMLDivElement);

const rows = /** @type {HTMLTableSectionElement} */ (fields.querySelector('tbody'));
const mostRows = 100;

/** @param {HTMLInputElement} input whose name is that of a field, like points.2.0 for the third point's time */
function watch(input) {
  const { name } = input;
  takeNumbers(input, (value) => change((event) => kindOf(event).withValue(event, name, value), name));
  input.onfocus = () => show({ point: Number(name.split('.')[1] ?? -1) });
  return input;
}

/** @param {number} i */
function rowOf(i) {
  const cells = ['time in ms', 'intensity in %', 'frequency offset'].map((what, column) => make('td', {}, watch(make(
    'input', { type: 'number', name: `points.${i}.${column}`, step: '1', ariaLabel: `Point ${i + 1}, ${what}` }))));
  return make('tr', {}, make('th', { scope: 'row' }, String(i + 1)), ...cells, make('td', {}, make('output')));
}

/** As many as there are points, up to so many. @param {number} count */
function showRows(count) {
  const wanted = Math.min(count, mostRows);
  while (rows.children.length > wanted) rows.lastElementChild?.remove();
  for (let i = rows.children.length; i < wanted; ++i) rows.append(rowOf(i));
  element('more-points', HTMLElement).textContent = count > wanted ? `and ${count - wanted} more points` : '';
}

/** Breaks between points. @param {unknown} value */
const wordsOf = (value) =>
  typeof value === 'string' ? value : JSON.stringify(value).replaceAll(/,(?=[[{])/g, ', ');

/** A line for each event, those of groups below them. @param {any} written @param {string} indent @returns {string[]} */
const linesOf = ({ events = [], ...others }, indent = '') => [
  indent + Object.entries(others).map(([name, value]) => `${name} ${wordsOf(value)}`).join(' · '),
  ...events.flatMap((/** @type {any} */ event) => linesOf(event, `${indent}   `)),
];

fields.querySelectorAll('input').forEach(watch);

export function showFields() {
  const { design, event: chosen, point } = current();
  const event = chosenEvent();
  fields.hidden = event === undefined;
  element('no-event', HTMLElement).hidden = !fields.hidden;
  if (event === undefined) return;
  const points = pointsOf(event);
  showRows(points.length);
  element('points', HTMLTableElement).hidden = points.length === 0;
  for (const input of fields.querySelectorAll('input')) {
    const value = kindOf(event).value(event, input.name);
    const label = input.closest('label');
    if (label !== null) label.hidden = value === undefined;
    putValue(input, value ?? '');
  }
  const { note, ...written } = writtenOf(event);
  element('note', HTMLElement).textContent = note ?? '';
  element('written', HTMLElement).textContent = event.type === 'kept' ? linesOf(written).join('\n') : '';
  const [facts] = laidOut(design, chosen);
  const isShared = event.type === 'transient' && motorOf(design.profile).shares && facts?.strength !== undefined;
  element('driven', HTMLElement).textContent = isShared ? `driven at ${facts.strength} %` : '';
  element('event-felt', HTMLElement).textContent = feltWords(design, chosen);
  [...rows.children].forEach((row, i) => {
    row.classList.toggle('chosen', i === point);
    row.querySelector('output')?.replaceChildren(String(facts?.hz?.[i] ?? '–'));
  });
}
