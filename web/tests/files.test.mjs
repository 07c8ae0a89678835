// SPDX-License-Identifier: Apache-2.0
// Files from elsewhere, coming in and going out, beside what the command makes of them.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, afterEach, before, test } from 'node:test';
import * as studio from './browser.mjs';

const { exported, lrasynth, openPage, savedEvents, scratch } = studio;

before(studio.startBrowser);
afterEach(studio.closePages);
after(studio.stopBrowser);

/** A WAV file of two knocks, which begin at once and die away, on two channels that are not the same. */
function knocks(rate, seconds = 1) {
  const samples = new Int16Array(2 * rate * seconds);
  for (let i = 0; i < rate; ++i) {
    const since = ((i / rate) % 0.4) - 0.2;
    const value = since < 0 ? 0 : 26000 * Math.exp(-60 * since) * Math.sin(1400 * since);
    samples.set([value, value / 2], 2 * i);
  }
  const { byteLength } = samples;
  const head = ['RIFF', 36 + byteLength, 'WAVE', 'fmt ', 16, 0x20001, rate, 4 * rate, 0x100004, 'data', byteLength]
    .map((word) => (typeof word === 'string' ? Buffer.from(word).readUInt32LE() : word));
  return Buffer.concat([new Uint32Array(head), samples].map(({ buffer }) => Buffer.from(buffer)));
}

const messages = (page) => page.locator('#messages li').allTextContents();
const noted = (lines) => lines.flatMap((line) => line.match(/^note: (.*)/)?.slice(1) ?? []);

async function open(page, name, content) {
  writeFileSync(join(scratch, name), content);
  await studio.openFile(page, join(scratch, name));
  return lrasynth('pattern', name, `--motor=${await page.inputValue('#motor')}`, '--chip=0', '--save', '-');
}

test('files from elsewhere open as what they mean, and what is lost is told', async () => {
  const amplitude = '[{"time":0,"amplitude":0,"emphasis":{"amplitude":0.7,"frequency":0}},{"time":0.2,"amplitude":1}]';
  const keyframe = (ms, strength) => `{"relative_position":${ms},"amplitude_modulation":${strength}}`;
  const keyframes = `[${keyframe(0, 1)},${keyframe(90, 0.2)}]`;
  const effects = `[{"effect_type":"Basis","position":9,"phase":1,"keyframes":${keyframes}}]`;
  const bands = `[{"band_type":"VectorialWave","effects":${effects}},{"band_type":"WaveletWave","effects":${effects}}]`;
  const page = await openPage();
  for (const [name, text, count, notes] of [
    ['clip.ahap', '{"Version":1,"Pattern":[{"Event":{"Time":0.1,"EventType":"HapticTransient","EventParameters":[]}},' +
      '{"Event":{"Time":0,"EventType":"AudioContinuous","EventParameters":[]}}]}', 1, 1],
    ['clip.haptic', `{"version":{"major":1},"signals":{"continuous":{"envelopes":{"amplitude":${amplitude}}}}}`, 2, 0],
    ['clip.hjif', `{"perceptions":[{"perception_modality":"Vibrotactile","channels":[{"bands":${bands}}]}]}`, 1, 2],
    ['clip.xml', '<?xml version="1.0"?>\n<vibration-effect><predefined-effect name="click"/></vibration-effect>', 1, 0],
    ['none.json', '{"chip": 5, "events": [] /* yet */}', 0, 2],
  ]) {
    const { stdout, lines } = await open(page, name, text);
    assert.equal(await page.inputValue('#name'), name.split('.')[0]);
    assert.deepEqual(await savedEvents(page), JSON.parse(stdout).events);
    const told = noted(lines).map((line) => line.replace('are not saved', 'are not kept'));
    assert.deepEqual((await messages(page)).sort(), told.sort());
    assert.deepEqual([(await savedEvents(page)).length, told.length], [count, notes], name);
  }
  const old = await exported(page, 'json');
  const wrong = '<vibration-effect>\n <predefined-effect name="boom"/></vibration-effect>';
  const { lines } = await open(page, 'wrong.xml', wrong);
  assert.match(lines[0], /^wrong.xml:2:26: /);
  assert.deepEqual(await messages(page), lines);
  assert.ok((await exported(page, 'json')).equals(old));
});

test('sound opens as the taps of its onsets, for the motor that is chosen', async () => {
  const page = await openPage();
  await page.selectOption('#motor', '832');
  for (const rate of [22050, 44100]) {
    const { stdout, lines } = await open(page, `knocks.${rate}.wav`, knocks(rate));
    assert.deepEqual(await savedEvents(page), JSON.parse(stdout).events);
    const taps = (await savedEvents(page)).filter(({ type }) => type === 'transient');
    assert.deepEqual(taps.map(({ start }) => Math.round(start / 20)), [10, 30]);
    assert.deepEqual(await messages(page), noted(lines));
    assert.deepEqual([await page.inputValue('#motor'), await page.inputValue('#name')], ['832', `knocks.${rate}`]);
  }
  const old = await exported(page, 'json');
  for (const [content, fault] of [[knocks(3000, 601), 'lasts longer than 600000 ms'], ['not\0heard', 'is neither']]) {
    await open(page, 'wrong.wav', content);
    assert.match((await messages(page)).join(), new RegExp(`^wrong\\.wav: ${fault}`));
  }
  assert.ok((await exported(page, 'json')).equals(old));
});

test('what is exported for others is what the command converts to, and what is lost is told', async () => {
  const page = await openPage();
  await studio.openDemo(page, 'overlap');
  await page.selectOption('#motor', '832');
  writeFileSync(join(scratch, 'mine.json'), await exported(page, 'json'));
  await page.selectOption('#format', 'ahap');
  const [download] = await Promise.all([page.waitForEvent('download'), page.click('#convert')]);
  const { stdout, lines } = lrasynth('convert', 'mine.json', '--format', 'ahap', '-');
  assert.ok(stdout.length > 0 && readFileSync(await download.path()).equals(stdout));
  assert.equal(download.suggestedFilename(), 'overlap.ahap');
  // What is said of the pattern itself stands beside its events.
  const lost = noted(lines).filter((line) => !line.startsWith('mine.json: '));
  assert.deepEqual(await messages(page), lost.map((line) => line.replace('-', 'overlap.ahap')));
  const beside = await page.locator('#general .note').allTextContents();
  for (const line of noted(lines)) assert.ok(lost.includes(line) || beside.includes(line.replace('mine.json: ', '')));
  for (const [id, value] of [['#chip', '11'], ['#chip', '0'], ['#motor', '81540']]) { // which has no taps
    await page.selectOption(id, value);
    assert.equal(await page.isDisabled('#convert'), value !== '0');
  }
});
