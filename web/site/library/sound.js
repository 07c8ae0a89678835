// SPDX-License-Identifier: Apache-2.0
// Sound, as far as the browser decodes it, as patterns.

import { about } from './pieces.js';
import { resultText, wasm, withMemory, withText } from './exports.js';

/** @import {Heard} from '../../protocol.js' */
/** @import {Profile} from '../model/state.js' */

const usualRate = 48000;
const mostAtOnce = 65536; // samples

/**
 * Where the heads of files say how many samples a second they have. Of any other the browser is left to make the usual
 * rate.
 * @type {[head: RegExp, read: (bytes: number[]) => number][]}
 */
const rates = [
  [/^RIFF.{4}WAVE.*?fmt .{8}(.{4})/s, (bytes) => bytes.reduceRight((sum, byte) => 256 * sum + byte)],
  [/^OggS.*?\x01vorbis.{5}(.{4})/s, (bytes) => bytes.reduceRight((sum, byte) => 256 * sum + byte)],
  [/^fLaC.{14}(.{3})/s, (bytes) => bytes.reduce((sum, byte) => 256 * sum + byte) >> 4],
];

/** @param {ArrayBuffer} bytes */
function rateOf(bytes) {
  const head = Array.from(new Uint8Array(bytes.slice(0, 4096)), (byte) => String.fromCharCode(byte)).join('');
  for (const [pattern, read] of rates) {
    const found = pattern.exec(head)?.[1];
    if (found !== undefined) return read(Array.from(found, (character) => character.charCodeAt(0)));
  }
  return usualRate;
}

/** @param {ArrayBuffer} bytes */
function decoderOf(bytes) {
  try {
    return new OfflineAudioContext(1, 1, rateOf(bytes));
  } catch {
    return new OfflineAudioContext(1, 1, usualRate); // not every browser has every rate
  }
}

/** At its own rate where the browser allows. Throws where it cannot decode it. @param {ArrayBuffer} bytes */
export const decoded = (bytes) => decoderOf(bytes).decodeAudioData(bytes);

/** The mean of channels. @param {Float32Array[]} channels @param {number} from @param {number} to */
function mixed(channels, from, to) {
  const sum = new Float32Array(to - from);
  for (const channel of channels) {
    for (let i = from; i < to; ++i) sum[i - from] = /** @type {number} */ (sum[i - from]) + (channel[i] ?? 0);
  }
  return sum.map((value) => value / channels.length);
}

/** What it means for a motor. @param {AudioBuffer} sound @param {string} name @param {Profile} profile */
export function heard(sound, name, { motor, chip, boost }) {
  const { floor_db, gain_db, taps, curves } = about.sound;
  const channels = Array.from({ length: sound.numberOfChannels }, (_, i) => sound.getChannelData(i));
  wasm.studio_listen(sound.sampleRate, floor_db, gain_db, Number(taps), Number(curves));
  for (let from = 0, isWanted = 1; isWanted === 1 && from < sound.length; from += mostAtOnce) {
    const block = mixed(channels, from, Math.min(from + mostAtOnce, sound.length));
    isWanted = withMemory(new Uint8Array(block.buffer), (samples) => wasm.studio_hear(samples, block.length));
  }
  withText(name, (text, length) => wasm.studio_heard(text, length, motor, chip, Number(boost)));
  return /** @type {Heard} */ (JSON.parse(resultText()));
}
