// SPDX-License-Identifier: Apache-2.0
// What is designed, as an immutable value with undo and redo, and beside it what only concerns the page.

import { pointsOf } from './events.js';
import { History } from './history.js';

/** @import {Header} from './file.js' */
/** @import {PatternEvent} from './events.js' */
/** @import {Span} from './spans.js' */

/**
 * @typedef {{motor: number, chip: number, boost: boolean}} Profile
 * @typedef {{line: string, kind: 'fault' | 'warning' | 'note' | 'done'}} Words
 */

/**
 * `header` is what the file says beside its events, whatever plays.
 * @typedef {{name: string, profile: Profile, loops: number, interval: number, header: Header,
 *   events: readonly PatternEvent[]}} Design
 */

/**
 * `event` and `point` are indices, -1: none. `view` null: everything. `messages` are about the last file or link.
 * @typedef {{design: Design, event: number, point: number, cursor: number, view: Span | null,
 *   tap: {level: number, intensity: number, inPattern: boolean},
 *   response: {shown: boolean, quality: number, hz: number}, messages: readonly Words[]}} State
 */

/** @type {Design} */
export const emptyDesign = {
  name: 'pattern',
  profile: { motor: 1040, chip: 0, boost: true },
  loops: 1,
  interval: 0,
  header: {},
  events: [],
};

/** @type {State} */
let state = {
  design: emptyDesign,
  event: -1,
  point: -1,
  cursor: 0,
  view: null,
  tap: { level: 50, intensity: 80, inPattern: false },
  response: { shown: true, quality: 0, hz: 0 },
  messages: [],
};

const mostSteps = 200;
/** @typedef {Pick<State, 'design' | 'event'>} Step */
/** @type {History<Step>} */
let history = new History(mostSteps);
/** @type {(() => void)[]} */
const watchers = [];
/** @type {(() => void)[]} */
const enders = [];

export const current = () => state;
export const canUndo = () => history.canUndo();
export const canRedo = () => history.canRedo();

/** @param {() => void} watcher */
export const onChange = (watcher) => watchers.push(watcher);

/** Whenever a step may have ended, so that the state is one that was meant. @param {() => void} ender */
export const onStepEnd = (ender) => enders.push(ender);

/** The selected one. */
export const chosenEvent = () => state.design.events[state.event];

/** Changes that are no edits of the design. @type {(changes: Partial<Omit<State, 'design'>>) => void} */
export const show = put;

/**
 * Edits of one kind in a row, as of a drag, are one step until that ends; one of no kind is a step by itself. What is
 * selected stays so, wherever it moves.
 * @param {Partial<Design>} changes
 * @param {string} [kind]
 * @param {Partial<State>} [beside] what changes with it, and is not undone
 */
export function edit(changes, kind = '', beside = {}) {
  const all = { ...state.design, ...changes };
  // As they are numbered in files; flat ones have the order in which their events play.
  const events = all.header.flat ? all.events : all.events.toSorted((a, b) => a.start - b.start);
  const design = { ...all, events };
  const chosen = all.events[beside.event ?? state.event];
  const event = chosen === undefined ? -1 : design.events.indexOf(chosen);
  if (JSON.stringify(design) === JSON.stringify(state.design)) return put({ ...beside, event });
  if (kind === '') history.end();
  history.change(kind, state);
  put({ design, messages: [], ...beside, event });
  if (kind === '') endStep();
}

/** What is there now is the beginning. */
export function forgetPast() {
  history = new History(mostSteps);
}

/** The next edit is a step of its own. */
export function endStep() {
  history.end();
  for (const ender of enders) ender();
}

/** What was edited since the last step ended was not meant. */
export function cancelStep() {
  restore(history.cancel());
}

export const undo = () => restore(history.undo(state));
export const redo = () => restore(history.redo(state));

/** @param {Step | undefined} step */
function restore(step) {
  if (step === undefined) return;
  put({ design: step.design, event: step.event });
  endStep();
}

/** @param {Partial<State>} changes */
function put(changes) {
  const next = { ...state, ...changes };
  const event = next.design.events[next.event];
  if (event === undefined) next.event = -1;
  if (event === undefined || pointsOf(event)[next.point] === undefined) next.point = -1;
  state = Object.freeze(next);
  for (const watcher of watchers) watcher();
}
