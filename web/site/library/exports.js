// SPDX-License-Identifier: Apache-2.0
// The compiled module and its memory: texts in, texts and bytes out.

/** @import {Address, Exports} from '../../exports.js' */

const compiled = await (await fetch('studio.wasm')).arrayBuffer();
const { exports } = (await WebAssembly.instantiate(compiled)).instance;
export const wasm = /** @type {Exports} */ (/** @type {unknown} */ (exports));
wasm._initialize();

/** A copy. @param {Address} address @param {number} length */
export const bytesAt = (address, length) => new Uint8Array(wasm.memory.buffer, address, length).slice();

/** Of the last call that has one. */
export const resultBytes = () => bytesAt(wasm.studio_text(), wasm.studio_text_length());
export const resultText = () => new TextDecoder().decode(resultBytes());

/** @template T @param {string} text @param {(address: Address, length: number) => T} call @returns {T} */
export const withText = (text, call) => withMemory(new TextEncoder().encode(text), call);

/** @template T @param {Uint8Array} bytes @param {(address: Address, length: number) => T} call @returns {T} */
export function withMemory(bytes, call) {
  const address = wasm.studio_alloc(bytes.length + 1);
  if (address === 0) throw new Error('out of memory');
  new Uint8Array(wasm.memory.buffer).set(bytes, address);
  try {
    return call(address, bytes.length);
  } finally {
    wasm.studio_free(address);
  }
}
