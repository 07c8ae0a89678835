// SPDX-License-Identifier: Apache-2.0
// The events as a list, each with its warnings and faults, and in words what is selected.

import { kindOf, pointsOf } from '../model/events.js';
import { chosenEvent, current, show } from '../model/state.js';
import { feltWords, patternPiece } from '../library/pieces.js';
import { element, make } from '../page/elements.js';
import { wordItems } from '../page/words.js';

/** @import {Facts} from '../../protocol.js' */
/** @import {PatternEvent} from '../model/events.js' */
/** @import {Words} from '../model/state.js' */

/** @typedef {Map<number, Words[]>} WordsByNumber by an event's number, 0: of none in particular */

const list = element('events', HTMLOListElement);

/** Of the command. @param {Facts} facts @returns {WordsByNumber} */
function wordsOf(facts) {
  /** @type {WordsByNumber} */
  const words = new Map();
  const put = (/** @type {number} */ event, /** @type {Words} */ one) =>
    words.set(event, [...(words.get(event) ?? []), one]);
  // They stand at their event; where that would be in a file is told only of files.
  facts.faults.forEach((fault, i) => {
    const line = fault.replace(/^.*?\.json:( |\d+:\d+: )?/, '');
    put(facts.fault_events[i] ?? 0, { line, kind: 'fault' });
  });
  for (const { event, line } of facts.warnings) put(event, { line, kind: 'warning' });
  for (const line of facts.notes) put(0, { line, kind: 'note' });
  return words;
}

/** @param {PatternEvent} event @param {number} i */
const summaryOf = (event, i) =>
  [kindOf(event).summary(event), feltWords(current().design, i)].filter((words) => words !== '').join(', ');

/** @param {PatternEvent} event @param {number} i */
const titleOf = (event, i) => `${i + 1} ${kindOf(event).word(event)}`;

export function showEvents() {
  const { design } = current();
  const words = wordsOf(patternPiece(design).facts);
  while (list.children.length > design.events.length) list.lastElementChild?.remove();
  design.events.forEach((event, i) => showEvent(event, i, words.get(i + 1)));
  element('general', HTMLUListElement).replaceChildren(...wordItems(words.get(0)));
  element('status', HTMLElement).textContent = statusOf(words);
}

/** Where it is not shown already. @param {PatternEvent} event @param {number} i @param {Words[]} [words] */
function showEvent(event, i, words) {
  const isChosen = i === current().event;
  const key = JSON.stringify([titleOf(event, i), summaryOf(event, i), words, isChosen]);
  const old = /** @type {HTMLElement | undefined} */ (list.children[i]);
  if (old?.dataset.key === key) return;
  const hadFocus = old?.contains(document.activeElement);
  const item = itemOf(event, i, isChosen, words);
  item.dataset.key = key;
  if (old) old.replaceWith(item);
  else list.append(item);
  if (hadFocus) item.querySelector('button')?.focus();
  if (isChosen) scrollTo(item);
}

/** What is selected, and what is wrong. @param {WordsByNumber} words */
function statusOf(words) {
  const { event: chosen, point, cursor } = current();
  const event = chosenEvent();
  const at = event && pointsOf(event)[point];
  const place = event === undefined ? `cursor at ${cursor} ms`
    : `${titleOf(event, chosen)}, ${summaryOf(event, chosen)}` +
      (at ? `, point ${point + 1}: ${at[0]} ms, ${at[1]} %, offset ${at[2]}` : '');
  const faults = [...words.values()].flat().filter(({ kind }) => kind === 'fault').map(({ line }) => line);
  return [place, ...faults.slice(0, 3)].join('; ');
}

/** Within the list, never the page. @param {HTMLElement} item */
function scrollTo(item) {
  const top = item.offsetTop - list.offsetTop;
  const least = top + item.offsetHeight - list.clientHeight;
  list.scrollTop = Math.min(top, Math.max(least, list.scrollTop));
}

/** @param {PatternEvent} event @param {number} i @param {boolean} isChosen @param {Words[]} [words] */
function itemOf(event, i, isChosen, words) {
  const button = make('button', { type: 'button', className: 'event', onclick: () => show({ event: i, point: -1 }) },
    make('b', {}, titleOf(event, i)), ' ', summaryOf(event, i));
  button.setAttribute('aria-pressed', String(isChosen));
  return make('li', {}, button, ...(words ? [make('ul', { className: 'words' }, ...wordItems(words))] : []));
}
