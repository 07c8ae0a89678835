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

/** Into a field, unless somebody writes there just now. @param {string} id @param {string | number} value */
export function setValue(id, value) {
  const input = element(id, HTMLInputElement);
  if (document.activeElement !== input || input.type === 'range') input.value = String(value);
}

/** Numbers out of a field, as far as it allows them. @param {string} id @param {(value: number) => void} take */
export function onNumber(id, take) {
  const input = element(id, HTMLInputElement);
  input.oninput = () => {
    const value = input.valueAsNumber;
    if (Number.isInteger(value) && value >= Number(input.min) && value <= Number(input.max)) take(value);
  };
}
