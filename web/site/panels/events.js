// SPDX-License-Identifier: Apache-2.0
// The events as a list, each with its warnings and faults, and the exact values of the selected one.

import { change } from '../model/commands.js';
import { endOf, restretched } from '../model/edits.js';
import { current, show } from '../model/state.js';
import { motorOf, patternPiece } from '../library/wasm.js';
import { element, make, putValue, takeNumbers } from '../page/elements.js';
import { wordItems } from '../page/words.js';

/** @import {PatternEvent, Words} from '../model/state.js' */
/** @import {Facts} from '../library/wasm.js' */

const fields = element('fields', HTMLDivElement);
const list = element('events', HTMLOListElement);

/** Of the command, by an event's number, 0: of none in particular. @param {Facts} facts @returns {Map<number, Words[]>} */
function wordsOf(facts) {
  /** @type {Map<number, Words[]>} */
  const words = new Map();
  const put = (/** @type {number} */ event, /** @type {Words} */ one) =>
    words.set(event, [...(words.get(event) ?? []), one]);
  // They stand at their event; where that would be in a file is told only of files.
  facts.faults.forEach((fault, i) => {
    const line = fault.replace(/^.*?\.json:(\d+:\d+: )?/, '');
    put(facts.fault_events[i] ?? 0, { line, kind: 'fault' });
  });
  for (const { event, line } of facts.warnings) put(event, { line, kind: 'warning' });
  return words;
}

/** @param {PatternEvent} event */
const kindOf = (event) => (event.type === 'transient' ? 'Tap' : 'Curve');

/** @param {PatternEvent} event */
function summaryOf(event) {
  return event.type === 'transient' ? `${event.start} ms · level ${event.level}, ${event.intensity} %`
    : `${event.start} – ${endOf(event)} ms · up to ${Math.max(...event.points.map(([, intensity]) => intensity))} %`;
}

export function showEvents() {
  const { design, event: chosen, point, cursor } = current();
  const words = wordsOf(patternPiece(design).facts);
  while (list.children.length > design.events.length) list.lastElementChild?.remove();
  design.events.forEach((event, i) => {
    const key = JSON.stringify([summaryOf(event), words.get(i + 1), i === chosen]);
    const old = /** @type {HTMLElement | undefined} */ (list.children[i]);
    if (old?.dataset.key === key) return;
    const hadFocus = old?.contains(document.activeElement);
    const item = itemOf(event, i, i === chosen, words.get(i + 1));
    item.dataset.key = key;
    if (old) old.replaceWith(item);
    else list.append(item);
    if (hadFocus) item.querySelector('button')?.focus();
    if (i === chosen) scrollTo(item);
  });
  element('general', HTMLUListElement).replaceChildren(...wordItems(words.get(0)));
  showFields();
  const event = design.events[chosen];
  const at = event?.type === 'continuous' && point >= 0 ? event.points[point] : null;
  const place = event === undefined ? `cursor at ${cursor} ms`
    : `${kindOf(event)} ${chosen + 1}, ${summaryOf(event)}` +
      (at ? `, point ${point + 1}: ${at[0]} ms, ${at[1]} %, offset ${at[2]}` : '');
  const faults = [...words.values()].flat().filter(({ kind }) => kind === 'fault').map(({ line }) => line);
  element('status', HTMLElement).textContent = [place, ...faults.slice(0, 3)].join('; ');
}

/** Within the list, never the page. @param {HTMLElement} item */
function scrollTo(item) {
  const top = item.offsetTop - list.offsetTop;
  const least = top + item.offsetHeight - list.clientHeight;
  list.scrollTop = Math.min(top, Math.max(least, list.scrollTop));
}

/** @param {PatternEvent} event @param {number} i @param {boolean} chosen @param {Words[]} [words] */
function itemOf(event, i, chosen, words) {
  const button = make('button', { type: 'button', className: 'event', onclick: () => show({ event: i, point: -1 }) },
    make('b', {}, `${i + 1} ${kindOf(event)}`), ' ', summaryOf(event));
  button.setAttribute('aria-pressed', String(chosen));
  return make('li', {}, button, ...(words ? [make('ul', { className: 'words' }, ...wordItems(words))] : []));
}

/** In an event, by a field's name, like points.2.0 for the third point's time. @param {any} event @param {string} name */
const valueIn = (event, name) => name.split('.').reduce((value, key) => value?.[key], event);

/**
 * What is impossible is allowed, and becomes a fault. The last point takes the event's end with it.
 * @param {any} event @param {string} name @param {number} value @returns {PatternEvent}
 */
function withValue(event, name, value) {
  const [field, point, column] = name.split('.');
  if (field === 'duration') return restretched(event, value);
  if (field !== 'points') return { ...event, [field]: value };
  const points = event.points.with(point, event.points[point].with(column, value));
  return { ...event, points, duration: point === '3' ? points[3][0] - points[0][0] : event.duration };
}

for (const input of fields.querySelectorAll('input')) {
  takeNumbers(input, (value) => change((event) => withValue(event, input.name, value), input.name));
  input.onfocus = () => show({ point: Number(input.name.split('.')[1] ?? -1) });
}

function showFields() {
  const { design, event: chosen, point } = current();
  const event = design.events[chosen];
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
