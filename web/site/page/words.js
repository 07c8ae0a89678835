// SPDX-License-Identifier: Apache-2.0
// Faults and warnings in lists.

import { make } from './elements.js';

/** @import {Words} from '../model/state.js' */

/** @param {readonly Words[]} words */
export const wordItems = (words = []) => words.map(({ line, kind }) => make('li', { className: kind }, line));
