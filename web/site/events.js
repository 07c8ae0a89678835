// SPDX-License-Identifier: Apache-2.0
// The events as a list, each with its warnings and faults, and the exact values of the selected one.

import { change } from './commands.js';
import { endOf, restretched, shortestCurve } from './edits.js';
import { element, make, putValue, takeNumbers } from './page.js';
import { current, show } from './state.js';
import { motorOf, patternPiece } from './wasm.js';

/** @import {PatternEvent, Words} from './state.js' */
/** @import {Facts} from './wasm.js' */

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

/** @param {readonly Words[]} words */
export const wordItems = (words = []) => words.map(({ line, kind }) => make('li', { className: kind }, line));

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
  element('status', HTMLElement).textContent = event === undefined ? `cursor at ${cursor} ms`
    : `${kindOf(event)} ${chosen + 1}, ${summaryOf(event)}` +
      (at ? `, point ${point + 1}: ${at[0]} ms, ${at[1]} %, offset ${at[2]}` : '');
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

/**
 * A number of the selected event. What is impossible is allowed, and becomes a fault.
 * @param {string} label @param {(event: any) => number} get @param {(event: any, value: number) => PatternEvent} set
 */
function numberField(label, get, set) {
  const input = make('input', { type: 'number', step: 1 });
  input.setAttribute('aria-label', label);
  takeNumbers(input, (value) => change((event) => set(event, value), label));
  inputs.push({ input, get });
  return input;
}

/** @type {{input: HTMLInputElement, get: (event: any) => number}[]} */
let inputs = [];
let shape = '';

function showFields() {
  const { design, event: chosen, point } = current();
  const event = design.events[chosen];
  const wanted = `${chosen} ${event?.type}`;
  if (wanted !== shape) {
    shape = wanted;
    inputs = [];
    const make = event === undefined ? noFields : event.type === 'transient' ? tapFields : curveFields;
    fields.replaceChildren(...make());
  }
  if (event === undefined) return;
  for (const { input, get } of inputs) putValue(input, get(event));
  const facts = patternPiece(design).facts.events.find(({ number }) => number === chosen + 1);
  fields.querySelectorAll('output').forEach((output, i) => {
    output.textContent = event.type === 'continuous' ? String(facts?.hz?.[i] ?? '–')
      : motorOf(design.profile).shares && facts?.driven !== undefined ? `driven at ${facts.driven} %` : '';
  });
  fields.querySelectorAll('tbody tr').forEach((row, i) => row.classList.toggle('chosen', i === point));
}

/** @param {string} label @param {string} name */
const labelled = (label, name) =>
  make('label', {}, label, ' ', numberField(label, (event) => event[name], (event, value) => ({ ...event, [name]: value })));

function durationField() {
  const input = numberField('Duration, ms', (event) => event.duration, restretched);
  input.min = String(shortestCurve);
  return make('label', {}, 'Duration, ms', ' ', input);
}

const noFields = () => [make('p', { className: 'hint' }, 'Select one in the lanes or in the list, or add one.')];

const tapFields = () => [
  make('div', { className: 'row' }, labelled('Start, ms', 'start'), labelled('Level', 'level'),
    labelled('Intensity, %', 'intensity'), make('output')),
];

function curveFields() {
  const head = ['', 'ms', '%', 'offset', 'Hz'].map((name) => make('th', { scope: 'col' }, name || 'Point'));
  const names = ['time in ms', 'intensity in %', 'frequency offset'];
  const rows = [0, 1, 2, 3].map((point) => make('tr', {}, make('th', { scope: 'row' }, String(point + 1)),
    ...names.map((name, field) => make('td', {}, pointInput(point, field, name))),
    make('td', {}, make('output'))));
  return [
    make('div', { className: 'row' }, labelled('Start, ms', 'start'), durationField()),
    make('table', {}, make('caption', { className: 'hidden' }, 'Points of the curve'),
      make('thead', {}, make('tr', {}, ...head)), make('tbody', {}, ...rows)),
  ];
}

/** The last point takes the event's end with it. @param {number} point @param {number} field @param {string} name */
function pointInput(point, field, name) {
  const input = numberField(`Point ${point + 1}, ${name}`, (event) => event.points[point][field], (event, value) => {
    const points = event.points.with(point, event.points[point].with(field, value));
    return { ...event, points, duration: point === 3 ? points[3][0] - points[0][0] : event.duration };
  });
  input.onfocus = () => show({ point });
  return input;
}
