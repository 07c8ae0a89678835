// SPDX-License-Identifier: Apache-2.0
// Prints what waveforms.c prints, by the npm package.
import assert from 'node:assert/strict';
import { writeSync } from 'node:fs';
import * as lrasynth from 'lrasynth';

const { CHIP_EVENT_STREAM, CHIP_HALF_RATE, check, pattern, Reader, records, tap } = lrasynth;
const events = [
  { startMs: 0, durationMs: 400, points: [[0, 0], [100, 90, 20], [300, 60, -15], [400, 0]] },
  { startMs: 450, intensity: 80, level: 50 },
];
const write = (bytes) => {
  for (let at = 0; at < bytes.length; ) at += writeSync(1, bytes, at);
};

function serve(call) {
  try {
    write(call() ?? Buffer.alloc(0));
  } catch (error) {
    if (!(error instanceof lrasynth.LrasynthError)) throw error;
    write(Buffer.from(`${error.code} ${error.message}\n${error.index === undefined ? '' : `${error.index}\n`}`));
  }
}

// The same in pieces, into an array and as new ones in turn, of the request's integers.
function windows(options) {
  const reader = Reader.pattern(records(events), options);
  const block = new Int8Array(777);
  const parts = [];
  for (let first = 0; first < reader.length; first += block.length) {
    parts.push(first % 2 ? Buffer.from(block.slice(0, reader.readInto(block, first))) : reader.read(first, block.length));
  }
  const whole = Buffer.concat(parts);
  assert(whole.equals(Buffer.concat([...reader.blocks(1000)])) && whole.equals(pattern(events, options)));
  return whole;
}

for (const motor of [lrasynth.MOTOR_832, lrasynth.MOTOR_1040, lrasynth.MOTOR_9595, lrasynth.MOTOR_81540]) {
  for (const chip of [0, CHIP_HALF_RATE, CHIP_EVENT_STREAM]) {
    for (const boost of [false, true]) {
      for (let level = -1; level <= 101; level += 3) serve(() => tap(level, 83, { motor, chip, boost }));
      for (const intervalMs of [250, -1000]) {
        const options = { motor, chip, boost, loops: 30, intervalMs };
        serve(() => check(events, options));
        serve(() => windows(options));
      }
    }
  }
}
assert.deepEqual(tap(50, 83), tap(50, 83, { motor: lrasynth.MOTOR_1040, chip: 0, boost: true }));
for (const wrong of [() => records([{ points: [] }]), () => tap(2 ** 32 + 50), () => pattern(events, { loops: 1.5 })]) {
  assert.throws(wrong, RangeError);
}
assert.equal(lrasynth.version, lrasynth.VERSION);
