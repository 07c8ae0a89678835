// SPDX-License-Identifier: Apache-2.0
// What is designed, as an immutable value with undo and redo, and beside it what only concerns the page.

/**
 * @typedef {[time: number, intensity: number, offset: number]} CurvePoint
 * @typedef {{type: 'transient', start: number, intensity: number, level: number}} Tap
 * @typedef {{type: 'continuous', start: number, duration: number, points: readonly CurvePoint[]}} Curve
 * @typedef {Tap | Curve} PatternEvent
 * @typedef {{motor: number, chip: number, boost: boolean}} Profile
 * @typedef {{name: string, profile: Profile, loops: number, interval: number, events: readonly PatternEvent[]}} Design
 * @typedef {{from: number, to: number}} Span in milliseconds
 * @typedef {{line: string, kind: 'fault' | 'warning' | 'done'}} Words
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
  response: { shown: true, quality: 20, hz: 0 },
  messages: [],
};
/** @typedef {Pick<State, 'design' | 'event'>} Step */
/** @type {Step[]} */
let past = [];
/** @type {Step[]} */
let future = [];
let lastKind = '';
/** When the last step ended. */
let begun = state;
/** @type {(() => void)[]} */
const listeners = [];

export const current = () => state;
export const canUndo = () => past.length > 0;
export const canRedo = () => future.length > 0;

/** @param {() => void} listener */
export const onChange = (listener) => listeners.push(listener);

/** Changes that are no edits of the design. @type {(changes: Partial<Omit<State, 'design'>>) => void} */
export const show = put;

/**
 * Edits of one kind in a row, as of a drag, are undone in one step. What is selected stays so, wherever it moves.
 * @param {Partial<Design>} changes
 * @param {string} [kind]
 * @param {Partial<State>} [beside] what changes with it, and is not undone
 */
export function edit(changes, kind = '', beside = {}) {
  const all = { ...state.design, ...changes };
  // As they are numbered in files.
  const design = { ...all, events: all.events.toSorted((a, b) => a.start - b.start) };
  const event = design.events.indexOf(all.events[beside.event ?? state.event]);
  if (JSON.stringify(design) === JSON.stringify(state.design)) return put({ ...beside, event });
  if (kind === '' || kind !== lastKind) past.push(state);
  future = [];
  lastKind = kind;
  put({ design, messages: [], ...beside, event });
}

/** What is there now is the beginning. */
export function forgetPast() {
  past = [];
  future = [];
  endStep();
}

/** The next edit is a step of its own. */
export function endStep() {
  lastKind = '';
  begun = state;
}

/** What was done since the last step ended was not meant. */
export function cancelStep() {
  const { design, event } = (lastKind !== '' && past.pop()) || state;
  put({ tap: begun.tap, response: begun.response, design, event });
  endStep();
}

export const undo = () => exchange(past, future);
export const redo = () => exchange(future, past);

/** @param {Step[]} from @param {Step[]} to */
function exchange(from, to) {
  const step = from.pop();
  if (step === undefined) return;
  to.push(state);
  endStep();
  put({ design: step.design, event: step.event });
}

/** @param {Partial<State>} changes */
function put(changes) {
  const next = { ...state, ...changes };
  if (next.event >= next.design.events.length) next.event = -1;
  if (next.event === -1 || next.design.events[next.event].type === 'transient') next.point = -1;
  state = Object.freeze(next);
  for (const listener of listeners) listener();
}
