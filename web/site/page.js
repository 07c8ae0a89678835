// SPDX-License-Identifier: Apache-2.0
// Elements of the page.

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

/**
 * Into a field, where what is typed stays as long as it means the same.
 * @param {HTMLInputElement} input @param {string | number} value
 */
export function putValue(input, value) {
  if (input.dataset.shown !== String(value)) input.value = input.dataset.shown = String(value);
}

/**
 * Whole numbers out of a field, as far as it allows them.
 * @param {HTMLInputElement} input @param {(value: number) => void} take
 */
export function takeNumbers(input, take) {
  let before = '';
  const isAllowed = () => Number.isInteger(input.valueAsNumber) && input.checkValidity();
  input.oninput = () => {
    if (!isAllowed()) return;
    input.dataset.shown = String(input.valueAsNumber);
    take(input.valueAsNumber);
  };
  input.addEventListener('focus', () => (before = input.value));
  // What is not allowed in the end was never meant, nor its beginning.
  input.onchange = () => {
    if (isAllowed()) return;
    input.value = before;
    input.dispatchEvent(new Event('input'));
  };
}

/** @param {string} id @param {string | number} value */
export const setValue = (id, value) => putValue(element(id, HTMLInputElement), value);

/** @param {string} id @param {(value: number) => void} take */
export const onNumber = (id, take) => takeNumbers(element(id, HTMLInputElement), take);
