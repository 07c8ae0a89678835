// SPDX-License-Identifier: Apache-2.0
// Elements of the page.

import { isInteger } from '../model/numbers.js';
import { cancelStep, show } from '../model/state.js';

/** @template {HTMLElement} T @param {string} id @param {{new (): T}} kind @returns {T} */
export function element(id, kind) {
  const found = document.getElementById(id);
  if (!(found instanceof kind)) throw new Error(`no ${id} in the page`);
  return found;
}

/** @template {keyof HTMLElementTagNameMap} K @param {K} tag @param {object} values @param {(Node | string)[]} children */
export function make(tag, values = {}, ...children) {
  const made = Object.assign(document.createElement(tag), values);
  made.append(...children);
  return made;
}

/** @param {HTMLInputElement} input */
const isAllowed = (input) => input.checkValidity() && (input.type === 'text' || isInteger(input.valueAsNumber));

/**
 * Into a field, where what is typed stays as long as it means the same, or nothing yet.
 * @param {HTMLInputElement} input @param {string | number} value
 */
export function putValue(input, value) {
  if (input === document.activeElement && !isAllowed(input)) return;
  if (input.value !== value && input.valueAsNumber !== value) input.value = String(value);
}

/**
 * Whole numbers out of a field. When it comes to what it does not allow, the beginning of that was never meant, and
 * what is left there gives way to what it was.
 * @param {HTMLInputElement} input @param {(value: number) => void} take @param {() => void} takeBack
 */
export function takeNumbers(input, take, takeBack = cancelStep) {
  input.oninput = () => (isAllowed(input) ? take(input.valueAsNumber) : takeBack());
  input.onblur = () => isAllowed(input) || show({});
}

/** @param {string} id @param {string | number} value */
export const setValue = (id, value) => putValue(element(id, HTMLInputElement), value);

/** @param {string} id @param {(value: number) => void} take */
export const onNumber = (id, take) => takeNumbers(element(id, HTMLInputElement), take);

/** Of what is no part of the design, and so of no step. @param {string} id @param {(value: number) => void} take */
export function onSetting(id, take) {
  const input = element(id, HTMLInputElement);
  let settled = NaN;
  const settle = () => (settled = isAllowed(input) ? input.valueAsNumber : settled);
  for (const type of ['focus', 'change']) input.addEventListener(type, settle);
  takeNumbers(input, take, () => take(settled));
}
