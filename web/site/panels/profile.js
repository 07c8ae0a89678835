// SPDX-License-Identifier: Apache-2.0
// Motor, chip and boost, and how often the pattern plays.

import { current, edit } from '../model/state.js';
import { about, motorOf, patternPiece } from '../library/pieces.js';
import { element, onNumber, setValue } from '../page/elements.js';

/** @import {Profile} from '../model/state.js' */

const motor = element('motor', HTMLSelectElement);
const chip = element('chip', HTMLSelectElement);
const boost = element('boost', HTMLInputElement);

/** @param {Partial<Profile>} changes */
const set = (changes) => edit({ profile: { ...current().design.profile, ...changes } });

motor.append(...about.motors.map((row) => new Option(`${row.motor} · ${row.resonance} Hz`, String(row.motor))));
chip.append(...about.chips.map((row) =>
  new Option(`${row.chip} · ${row.stream ? 'event stream' : `${row.rate} a second`}`, String(row.chip))));
motor.onchange = () => set({ motor: Number(motor.value) });
chip.onchange = () => set({ chip: Number(chip.value) });
boost.onchange = () => set({ boost: boost.checked });
element('interval', HTMLInputElement).max = String(about.longest_ms);
for (const id of ['loops', 'interval']) onNumber(id, (value) => edit({ [id]: value }, id));

export function showProfile() {
  const { profile, loops, interval } = current().design;
  motor.value = String(profile.motor);
  chip.value = String(profile.chip);
  boost.disabled = !motorOf(profile).boost;
  boost.checked = profile.boost && !boost.disabled;
  setValue('loops', loops);
  setValue('interval', interval);
  element('interval', HTMLInputElement).disabled = patternPiece(current().design).facts.stream; // it has no gaps
}
