// SPDX-License-Identifier: Apache-2.0
// Whole numbers.

/** @param {number} value @param {number} low @param {number} high */
export const clamp = (value, low, high) => Math.min(high, Math.max(low, Math.round(value)));

/** As the library can be told. @param {any} value */
export const isInteger = (value) => (value | 0) === value;
