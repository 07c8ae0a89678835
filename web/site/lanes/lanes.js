// SPDX-License-Identifier: Apache-2.0
// The lanes from top to bottom.

import { feltLane } from './felt.js';
import { frequencyLane } from './frequency.js';
import { intensityLane } from './intensity.js';
import { waveformLane } from './waveform.js';

/** @typedef {typeof lanes[number]} Lane */

export const lanes = /** @type {const} */ ([intensityLane, frequencyLane, waveformLane, feltLane]);

/** @param {boolean} isHeld something is dragged, so that axes stay where they are */
export function showLanes(isHeld) {
  for (const lane of lanes) lane.draw(isHeld);
}
