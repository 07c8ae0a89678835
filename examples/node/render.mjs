// SPDX-License-Identifier: Apache-2.0
// Renders a pattern that loops with the library as WebAssembly: node render.mjs lrasynth.wasm OUTPUT
// Addresses and 32-bit integers are numbers, 64-bit integers are BigInts; who returns a structure is told the place for
// it first.
import { readFile, writeFile } from 'node:fs/promises';

const [file, output] = process.argv.slice(2);
const { instance } = await WebAssembly.instantiate(await readFile(file));
const { memory, __heap_base, lrasynth_profile_of, lrasynth_pattern_read } = instance.exports;

// The library has no heap: all memory from __heap_base on is its host's.
let free = __heap_base.value;
function place(bytes) {
  const at = Math.ceil(free / 8) * 8;
  free = at + bytes;
  const missing = Math.ceil((free - memory.buffer.byteLength) / 65536);
  if (missing > 0) memory.grow(missing);
  return at;
}
function integers(numbers) {
  const at = place(4 * numbers.length);
  new Int32Array(memory.buffer, at, numbers.length).set(numbers);
  return at;
}

// A continuous vibration as lrasynth_put_continuous writes it: its type, start, two of no meaning, duration, and four
// points of time, intensity and frequency offset.
const record = [4096, 0, 0, 0, 400, /**/ 0, 0, 0, /**/ 100, 90, 20, /**/ 300, 60, 0, /**/ 400, 0, 0];
// Ten times, with gaps of 200 ms and no limit.
const pattern = integers([integers(record), record.length, 10, 200, -1]);
const profile = place(16);
lrasynth_profile_of(profile, 0, 1040, 1);

const block = place(1024);
const samples = [];
for (let at = 0n, n; (n = lrasynth_pattern_read(profile, pattern, at, block, 1024n)) !== 0n; at += n) {
  if (n < 0n) throw new Error(`refused: ${n}`);
  samples.push(Buffer.from(memory.buffer.slice(block, block + Number(n))));
}
await writeFile(output, Buffer.concat(samples));
