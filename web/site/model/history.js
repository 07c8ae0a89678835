// SPDX-License-Identifier: Apache-2.0
// Undo and redo of immutable values, in steps. Of those the last ones are remembered.

/** @template T */
export class History {
  /** @type {T[]} */
  #past = [];
  /** @type {T[]} */
  #future = [];
  /** The step that has not ended. @type {{kind: string, before: T} | null} */
  #open = null;
  #most;

  /** @param {number} most steps that are remembered */
  constructor(most) {
    this.#most = most;
  }

  canUndo = () => this.#open !== null || this.#past.length > 0;
  canRedo = () => this.#open === null && this.#future.length > 0;

  /** The value is about to change. Changes of one kind in a row are one step. @param {string} kind @param {T} before */
  change(kind, before) {
    if (this.#open?.kind === kind) return;
    this.end();
    this.#open = { kind, before };
  }

  /** The next change is a step of its own. Only now redo is lost, so that a step can be taken back without a trace. */
  end() {
    if (this.#open === null) return;
    this.#past.push(this.#open.before);
    if (this.#past.length > this.#most) this.#past.shift();
    this.#future = [];
    this.#open = null;
  }

  /** The step that has not ended was not meant. Gives what there was before it, undefined: there is none. */
  cancel() {
    const before = this.#open?.before;
    this.#open = null;
    return before;
  }

  /** Gives what there was before the last step, if there is any. @param {T} now */
  undo(now) {
    this.end();
    return exchanged(this.#past, this.#future, now);
  }

  /** @param {T} now */
  redo(now) {
    this.end();
    return exchanged(this.#future, this.#past, now);
  }
}

/** @template T @param {T[]} from @param {T[]} to @param {T} now */
function exchanged(from, to, now) {
  const value = from.pop();
  if (value !== undefined) to.push(now);
  return value;
}
