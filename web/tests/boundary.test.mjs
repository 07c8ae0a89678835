// SPDX-License-Identifier: Apache-2.0
// Byte for byte, studio.wasm and lrasynth.wasm give what the native command gives, which LRASYNTH may name.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { readFileSync, readdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { declarations, declared } from '../types.mjs';
import { lrasynth, root, scratch, site } from './browser.mjs';

const load = async (name) => (await WebAssembly.instantiate(readFileSync(join(site, name)))).instance.exports;
const wasm = await load('studio.wasm'); // without imports
wasm._initialize();

const bytes = (at, length) => Buffer.from(wasm.memory.buffer.slice(at, at + length));
const result = () => bytes(wasm.studio_text(), wasm.studio_text_length());
const facts = () => JSON.parse(result());

function withTexts(texts, call) {
  const raws = texts.map((text) => Buffer.from(text));
  const places = raws.map((raw) => wasm.studio_alloc(raw.length));
  places.forEach((at, i) => raws[i].copy(Buffer.from(wasm.memory.buffer), at));
  const value = call(...places.flatMap((at, i) => [at, raws[i].length]));
  places.forEach((at) => wasm.studio_free(at));
  return value;
}
let piece = 0; // the last one that was made
const took = (number) => {
  wasm.studio_release(piece);
  return (piece = number);
};
const pattern = (json, name, ...profile) =>
  took(withTexts([json, name], (...at) => wasm.studio_pattern(...at, ...profile)));
const tap = (...words) => took(wasm.studio_tap(...words));
function form(name, quality = -1, hz = 0, from = 0, to = 0) {
  const length = withTexts([name], (...at) => wasm.studio_form(piece, ...at, quality, hz, from, to));
  return length < 0 ? null : result();
}

const read = (directory) => readdirSync(directory).map((name) => [name, readFileSync(join(directory, name), 'utf8')]);
const files = Object.fromEntries([
  ...read(scratch),
  ['taps "\u00e9".json', '{"events":[{"type":"transient","start":3,"intensity":100,"level":90},' +
    '{"type":"transient","start":8,"intensity":99,"level":30}]}'],
  ['song.json', `{"tempo":90,"motor":9595,"loops":3,"interval":"1/2b","boost":false,"limit":"200s","note":"n","events":[
    {"type":"group","start":"1b","repeat":2,"every":"1/3b","gain":50,"events":[
      {"type":"curve","start":0,"points":[[0,10,-9],[40,90,9],[150,0,0]]},
      {"type":"group","start":3362,"events":[{"type":"curve","start":"67ms","points":[[0,5,5],[9,9,9]]}]}]},
    {"type":"curve","start":300,"points":[{"time":0,"intensity":20,"hz":234},[70,100,0],[140,0,0]]}]}`],
  ['wrong.json', '{"events":[{"type":"transient","start":1.5,"level":101,"x\\n":0},\n{"type":"tap \\"\u00e9"},3]}'],
  ['broken.json', `{"events":[${'{},'.repeat(30)}]}`],
  ['cut.json', '{"events":[{"a'],
]);
for (const [name, text] of Object.entries(files)) writeFileSync(join(scratch, name), text);
lrasynth('pattern', 'song.json', '--save', 'flat.json', '--flat');
files['flat.json'] = readFileSync(join(scratch, 'flat.json'), 'utf8');

const forms = [
  ['bin', [], ['--format', 'bin', '-']],
  ['csv', [], ['--format', 'csv', '-']],
  ['wav', [], ['--format', 'wav', '-']],
  ['svg', [], ['--format', 'svg', '-']],
  ['svg', [0], ['--format', 'svg', '--response', '-']],
  ['felt.csv', [4, 130], ['--format', 'felt.csv', '--response=4', '--response-hz=130', '-']],
  ['svg', [35, 150, 20, 90], ['--format', 'svg', '--response=35', '--response-hz=150', '--from=20', '--to=90', '-']],
  ['json', [], ['--save', '-']],
  ['flat', [], ['--save', '-', '--flat']],
  ['c', [], ['--print-request']],
  ['summary', [], []],
];
const without = (line) => line.replace(/event [\d.]+(, pass [\d.]+)? at [\d.]+ ms: /, '');

// Of the last piece.
function compare(...words) {
  const { faults, warnings, notes } = facts();
  const lines = [...warnings.map(({ line }) => `warning: ${line}`), ...faults];
  const all = lrasynth(...words).lines;
  const said = all.filter((line) => !line.startsWith('note: '));
  const noted = all.flatMap((line) => line.match(/^note: .*?\.json: (.*)/)?.slice(1) ?? []);
  assert.deepEqual(noted, faults.length > 0 ? [] : notes);
  // The command tells what several events have in common once, of the first of them.
  const once = lines.filter((line, i) => i === lines.findIndex((other) => without(other) === without(line)));
  const firsts = said.map((line) => line.replace(/in \d+ events, first |; the others likewise| \(\d+ places\)/g, ''));
  const isShort = said.some((line) => line.includes('; the others likewise'));
  assert.deepEqual(isShort ? firsts.filter((line) => !once.includes(line)) : firsts, isShort ? [] : once, `${words}`);
  for (const [name, view, options] of forms) {
    if (view.length > 1 && words.includes('felt.json')) continue; // what is felt is driven for the motor's own
    const made = form(name, ...view) ?? Buffer.alloc(0);
    assert.ok(lrasynth(...words, ...options).stdout.equals(made), `${words}: ${name}`);
  }
}

for (const motor of [832, 1040, 9595, 81540]) {
  for (const chip of [0, 1, 11]) {
    const device = [`--motor=${motor}`, `--chip=${chip}`];
    test(`patterns of motor ${motor} on chip ${chip}`, () => {
      for (const [name, text] of Object.entries(files)) {
        for (const boost of motor === 832 ? ['on', 'off'] : ['on']) {
          const made = pattern(text, name, motor, chip, Number(boost === 'on'), 2, 75);
          assert.equal(made > 0, facts().faults.length === 0);
          compare('pattern', name, '--loop=2', '--interval=75', `--boost=${boost}`, ...device);
        }
      }
    });
  }
}

test('taps', () => {
  for (const [motor, chip, share] of [[832, 1, 0], [1040, 0, 0], [1040, 1, 1], [9595, 11, 0]]) {
    for (const level of [0, 37, 100]) {
      tap(level, 97, share, motor, chip);
      const words = [`--motor=${motor}`, `--chip=${chip}`, `--level=${level}`, '--intensity=97'];
      for (const [name, view, options] of forms.filter(([kind]) => !['json', 'flat', 'c'].includes(kind))) {
        const { stdout } = lrasynth('tap', ...words, ...(share ? ['--in-pattern'] : []), ...options);
        assert.ok(stdout.equals(form(name, ...view)), `${words}: ${name}`);
      }
    }
  }
  assert.equal(tap(50, 80, 0, 81540, 0), 0);
  assert.match(facts().faults[0], /motor 81540 has no taps/);
});

const convert = (format) => withTexts([format], (...at) => wasm.studio_convert(piece, ...at));

test('what patterns are converted to', () => {
  for (const [name, ...profile] of [['song.json', 9595, 1, 1, 3, 333], ['overlap.json', 832, 0, 0, 1, 0],
    ['rain.json', 1040, 0, 1, 1, 0], ['flat.json', 9595, 0, 1, 3, 333]]) {
    const [motor, chip, boost] = profile;
    pattern(files[name], name, ...profile);
    for (const format of ['json', 'ahap', 'haptic', 'xml', 'vibrate']) {
      const { stdout, lines } = lrasynth('convert', name, `--motor=${motor}`, `--chip=${chip}`,
        `--boost=${boost ? 'on' : 'off'}`, `--format=${format}`, '-');
      convert(format);
      const { content, losses } = facts();
      assert.ok(stdout.length > 0 && stdout.equals(Buffer.from(content)), `${name}: ${format}`);
      assert.deepEqual(losses, lines.flatMap((line) => line.match(/^note: -: (.*)/)?.slice(1) ?? []));
    }
  }
  for (const format of ['hjif', 'bin', '']) assert.deepEqual([convert(format), result().length], [-1, 0]);
  for (const make of [() => tap(50, 80, 0, 1040, 0), () => pattern(files['rain.json'], 'x', 1040, 11, 1, 1, 0)]) {
    assert.ok(make() > 0);
    assert.equal(convert('ahap'), -1);
  }
});

function heard(samples, ...profile) {
  const at = wasm.studio_alloc(4 * samples.length);
  new Float32Array(wasm.memory.buffer, at, samples.length).set(samples);
  const isWanted = wasm.studio_hear(at, samples.length);
  wasm.studio_free(at);
  return [isWanted, withTexts(['a.wav'], (...name) => wasm.studio_heard(...name, ...profile))];
}

test('sound is listened to within bounds, and once', () => {
  const knock = Array.from({ length: 8000 }, (_, i) => (i < 2000 ? 0 : Math.exp(20 - i / 100) * Math.sin(i / 6)));
  for (const [motor, chip, taps] of [[1040, 0, 1], [832, 11, 1], [81540, 0, 0]]) {
    assert.equal(wasm.studio_listen(8000, -40, 0, 1, 1), 0);
    assert.deepEqual(heard(knock, motor, chip, 1), [1, 1]);
    assert.equal(JSON.parse(facts().json).events.filter(({ type }) => type === 'transient').length, taps);
  }
  assert.deepEqual([heard(knock, 1040, 0, 1), result().length], [[-1, -1], 0]);
  for (const [floor, gain, taps] of [[NaN, 0, 1], [-81, 0, 1], [-5, 0, 1], [-40, 61, 1], [-40, NaN, 1], [-40, 0, 0]]) {
    assert.equal(wasm.studio_listen(8000, floor, gain, taps, 0), -1);
  }
  assert.equal(wasm.studio_listen(NaN, -40, 0, 1, 0), 0);
  assert.deepEqual([wasm.studio_hear(0, 65537), heard(knock, 7, 0, 1), heard(knock, 832, 0, 1)], [-1, [0, -1], [0, 0]]);
  assert.match(facts().faults[0], /^a\.wav: has nan samples/);
});

test('the types are those of studio.h, and the texts those of the types', () => {
  const web = join(root, 'web');
  assert.equal(readFileSync(join(web, 'exports.d.ts'), 'utf8'), declarations, 'npm run types prints it anew');
  const own = Object.entries(wasm).filter(([name]) => name.startsWith('studio_'));
  assert.deepEqual(own.map(([name, { length }]) => [name, length]).sort(),
    declared.map(({ name, arguments: all }) => [name, all.length]).sort());
  const texts = [];
  const take = (type) => texts.push(`(${result()}) satisfies ${type};`);
  wasm.studio_about();
  take('About');
  for (const text of Object.values(files)) {
    pattern(text, 'some', 1040, 0, 1, 2, 50);
    take('Facts');
  }
  tap(50, 80, 1, 1040, 0);
  take('Facts');
  wasm.studio_response(piece, 20, 0, 0, 9, 1);
  take('Estimate');
  wasm.studio_felt(piece, 0, 0, 0, 9, 1);
  take('Feeling');
  pattern(files['rain.json'], 'some', 1040, 0, 1, 1, 0);
  convert('vibrate');
  take('Converted');
  wasm.studio_listen(8000, -40, 0, 1, 1);
  heard([1], 1040, 0, 1);
  take('Heard');
  const imported = `import type { About, Converted, Estimate, Facts, Feeling, Heard } from ${JSON.stringify(join(web, 'protocol.js'))};\n`;
  writeFileSync(join(scratch, 'texts.ts'), imported + texts.join('\n'));
  const config = { extends: join(web, 'tsconfig.json'), include: ['texts.ts'] };
  writeFileSync(join(scratch, 'tsconfig.json'), JSON.stringify(config));
  const { stdout } = spawnSync(process.execPath, [join(web, 'node_modules/typescript/bin/tsc'), '-p', scratch]);
  assert.equal(stdout.toString(), '');
});

test('windows are cuts of the whole', () => {
  pattern(files['sunrise.json'], 'sunrise', 1040, 0, 1, 2, 100);
  const { length } = facts();
  const codes = form('bin');
  for (const [first, count] of [[0, 1], [16000, 800], [length - 5, 99], [0, length]]) {
    const cut = codes.subarray(first, first + count);
    assert.ok(bytes(wasm.studio_read(piece, first, count), cut.length).equals(cut));
  }
  for (const [first, count, columns] of [[0, length, 7], [100, 50, 50], [100, 10, 40], [length - 3, 10, 5]]) {
    const pairs = new Int8Array(bytes(wasm.studio_extremes(piece, first, count, columns), 2 * columns));
    for (let i = 0; i < columns; ++i) {
      const from = Math.floor(first + (count * i) / columns);
      const to = Math.max(from + 1, Math.floor(first + (count * (i + 1)) / columns));
      const part = new Int8Array(codes.subarray(from, to));
      const wanted = [part.reduce((a, b) => Math.min(a, b), 127), part.reduce((a, b) => Math.max(a, b), -128)];
      assert.deepEqual([...pairs.subarray(2 * i, 2 * i + 2)], wanted);
    }
  }
});

test('what is felt is what the command says, in any columns', () => {
  for (const [name, quality, hz] of [['rain.json', 0, 0], ['song.json', 20, 150]]) {
    pattern(files[name], name, 1040, 0, 1, 2, 100);
    const said = facts().events.flatMap(({ felt_words: words }) => words ?? []);
    const told = [...form('summary').toString().matchAll(/, felt, estimated: (.*)/g)].map(([, words]) => words);
    assert.ok(said.length > 0);
    assert.deepEqual(said, told);
    const summary = form('summary', quality, hz).toString();
    const options = ['--motor=1040', '--chip=0', '--boost=on', '--loop=2', '--interval=100'];
    const resonator = quality === 0 ? [] : [`--response=${quality}`, `--response-hz=${hz}`];
    const rows = lrasynth('pattern', name, ...options, ...resonator, '--format=felt.csv', '-').stdout.toString();
    const levels = rows.trim().split('\n').slice(1).map((row) => Number(row.split(',')[1]));
    const last = 5 * (levels.length - 1);
    const at = (ms) => {
      const i = Math.min(Math.floor(ms / 5), levels.length - 2);
      return levels[i] + (ms / 5 - i) * (levels[i + 1] - levels[i]);
    };
    for (const [from, to, count] of [[-2.5, last + 2.5, levels.length], [40, 90, 130], [-300, last + 300, 9]]) {
      const address = wasm.studio_felt(piece, quality, hz, from, to, count);
      const columns = new Float64Array(wasm.memory.buffer.slice(address, address + 8 * count));
      columns.forEach((column, i) => {
        const edge = (i) => from + ((to - from) * i) / count;
        const [left, right] = [Math.max(0, edge(i)), Math.min(last, edge(i + 1))];
        const inside = levels.filter((_, j) => left <= 5 * j && 5 * j <= right);
        const wanted = left > right ? 0 : Math.max(at(left), at(right), ...inside);
        assert.ok(Math.abs(column - wanted) < 0.01, `${name}, ${i} of ${count}: ${column}, not ${wanted}`);
      });
    }
    const { strongest, percent, numbers } = facts();
    assert.ok(Math.abs(strongest - Math.max(...levels)) < 0.01 && Math.abs(percent - 5 * strongest) < 1e-6);
    for (const [what, value] of numbers) assert.match(summary, new RegExp(`estimated ${what} +${value}\\n`));
  }
});

test('nonsense is refused', () => {
  const text = files['chirp.json'];
  for (const profile of [[7, 0, 1, 1, 0], [832, 2, 1, 1, 0], [832, 0, 1, 0, 0], [832, 0, 1, 65536, 0], [832, 0, 1, 2, -1]]) {
    assert.deepEqual([pattern(text, 'x', ...profile), result().length], [-1, 0], `${profile}`);
  }
  for (const [level, intensity] of [[-1, 50], [101, 50], [50, -1], [50, 101]]) {
    assert.equal(tap(level, intensity, 0, 1040, 0), -1);
  }
  assert.equal(pattern(text, 'x', 1040, 0, 1, 65535, 600000), 0);
  assert.match(facts().faults[0], /the waveform may last 600000 ms at most, with all passes and gaps$/);
  const many = JSON.stringify({ events: Array(20000).fill({ type: 'transient', start: 0, intensity: 1, level: 1 }) });
  // 2 bytes and 6 for each event, at most 64 MiB.
  assert.deepEqual([559, 560].map((loops) => pattern(many, 'x', 1040, 11, 1, loops, 0) > 0), [true, false]);
  assert.ok(pattern(text, 'x', 1040, 0, 1, 1, 0) > 0);
  for (const wild of [NaN, Infinity, -Infinity, 1e300]) {
    assert.equal(wasm.studio_read(piece, wild, 10), 0);
    assert.equal(wasm.studio_extremes(piece, 0, wild, 10), 0);
    assert.equal(wasm.studio_extremes(piece, 0, 10, wild), 0);
    for (const view of [[wild, 0, 0, 9], [20, wild, 0, 9], [20, 0, wild, 9], [20, 0, 0, wild]]) {
      assert.deepEqual([wasm.studio_response(piece, ...view, 10), wasm.studio_felt(piece, ...view, 10)], [0, 0]);
      assert.equal(form('svg', ...view), null);
    }
  }
  for (const name of ['', 'png', 'svg\0']) assert.equal(form(name), null);
});

test('pieces stay until they are released, so many at once, and other numbers are nobody\'s', () => {
  took(0);
  const level = (number) => wasm.studio_tap(number, 80, 0, 1040, 0);
  const held = Array.from({ length: 16 }, (_, i) => level(6 * i));
  const lengths = held.map((number) => (piece = number, form('bin').length));
  assert.ok(new Set(held).size === 16 && new Set(lengths).size > 3);
  assert.deepEqual([level(1), result().length], [-1, 0]);
  assert.equal(withTexts([files['chirp.json']], (...at) => wasm.studio_pattern(...at, 0, 0, 1040, 0, 1, 1, 0)), -1);
  wasm.studio_release(held[3]);
  const made = level(1);
  assert.ok(made > 0 && !held.includes(made));
  for (const nobody of [held[3], 0, -1, made + 1, 2 ** 31 - 1, -(2 ** 31), NaN, 1e99]) {
    piece = nobody;
    assert.equal(form('bin'), null);
    assert.deepEqual([wasm.studio_read(nobody, 0, 1), wasm.studio_extremes(nobody, 0, 1, 1)], [0, 0]);
    for (const estimate of ['studio_response', 'studio_felt']) {
      assert.deepEqual([wasm[estimate](nobody, 20, 0, 0, 9, 1), result().length], [0, 0]);
    }
    wasm.studio_release(nobody);
  }
  held.splice(3, 1, made);
  held.forEach((number) => wasm.studio_release(number));
  piece = 0;
});

test('lrasynth.wasm imports nothing, and the example renders with it', () => {
  const library = join(site, 'lrasynth.wasm');
  assert.deepEqual(WebAssembly.Module.imports(new WebAssembly.Module(readFileSync(library))), []);
  writeFileSync(join(scratch, 'looped.json'),
    '{"events":[{"type":"continuous","start":0,"duration":400,"points":[[0,0,0],[100,90,20],[300,60,0],[400,0,0]]}]}');
  const run = spawnSync(process.execPath, [join(root, 'examples/node/render.mjs'), library, 'samples'], { cwd: scratch });
  assert.equal(run.stderr.toString(), '');
  const { stdout } = lrasynth('pattern', 'looped.json', '--loop=10', '--interval=200', '--format=bin', '-');
  assert.ok(stdout.length === 139200 && stdout.equals(readFileSync(join(scratch, 'samples'))));
});
