// SPDX-License-Identifier: Apache-2.0
// Files from elsewhere, coming in and going out, beside what the command makes of them.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, afterEach, before, test } from 'node:test';
import * as studio from './browser.mjs';

const { exported, lrasynth, openDemo, openFile, openPage, openText, savedEvents, scratch } = studio;

before(studio.startBrowser);
afterEach(studio.closePages);
after(studio.stopBrowser);

/** Two knocks on two channels that are not the same, of which each begins at once and dies away. */
function knocks(rate, seconds = 1) {
  const frames = Buffer.alloc(4 * rate * seconds);
  for (let i = 0; i < rate / 2; ++i) {
    const value = 26000 * Math.exp((-60 * i) / rate) * Math.sin((2 * Math.PI * 220 * i) / rate);
    for (const [second, left, right] of [[0.2, 1, 0.5], [0.6, 0.4, 0.7]]) {
      const at = 4 * (Math.round(second * rate) + i);
      if (at + 4 > frames.length) continue;
      for (const [byte, share] of [[0, left], [2, right]]) {
        frames.writeInt16LE(frames.readInt16LE(at + byte) + Math.round(value * share), at + byte);
      }
    }
  }
  const { length } = frames;
  const number = (value, bytes = 4) => Buffer.from(new Uint32Array([value]).buffer).subarray(0, bytes);
  const format = [number(16), number(1, 2), number(2, 2), number(rate), number(4 * rate), number(4, 2), number(16, 2)];
  return Buffer.concat([Buffer.from('RIFF'), number(36 + length), Buffer.from('WAVEfmt '), ...format,
    Buffer.from('data'), number(length), frames]);
}

const messages = (page) => page.locator('#messages li').allTextContents();
const noted = (lines) => lines.flatMap((line) => line.match(/^note: (.*)/)?.slice(1) ?? []);

/** By its name, of which nothing is on the screen before. */
async function drop(page, name, bytes) {
  await page.evaluate(async ([name, text]) => {
    const dataTransfer = new DataTransfer();
    dataTransfer.items.add(new File([Uint8Array.from(text, (character) => character.charCodeAt(0))], name));
    document.dispatchEvent(new DragEvent('drop', { dataTransfer }));
  }, [name, bytes.toString('latin1')]);
  await page.locator('#messages', { hasText: `${name}: ` }).waitFor();
}

test('files from elsewhere open as what they mean, and what is lost is told', async () => {
  const ahap = { Version: 1, Pattern: [
    { Event: { Time: 0.1, EventType: 'HapticTransient', EventParameters: [] } },
    { Event: { Time: 0.4, EventType: 'AudioContinuous', EventDuration: 1, EventParameters: [] } }] };
  const amplitude = [{ time: 0, amplitude: 0.2 },
    { time: 0.2, amplitude: 0.3, emphasis: { amplitude: 0.7, frequency: 0.1 } }];
  const keyframes = [{ relative_position: 0, amplitude_modulation: 0.5, frequency_modulation: 120 },
    { relative_position: 90, amplitude_modulation: 1, frequency_modulation: 200 }];
  const band = (band_type) => ({ band_type, effects: [{ effect_type: 'Basis', position: 9, phase: 1, keyframes }] });
  const bands = [band('VectorialWave'), band('WaveletWave')];
  const files = {
    'clip.ahap': JSON.stringify(ahap),
    'clip.haptic': JSON.stringify({ version: { major: 1 }, signals: { continuous: { envelopes: { amplitude } } } }),
    'clip.hjif': JSON.stringify({ perceptions: [{ perception_modality: 'Vibrotactile', channels: [{ bands }] }] }),
    'clip.xml': '<?xml version="1.0"?>\n<vibration-effect><predefined-effect name="click"/></vibration-effect>',
    'none.json': '{"chip": 5, "events": [] /* yet */}',
  };
  const page = await openPage();
  const told = [];
  for (const [name, text] of Object.entries(files)) {
    writeFileSync(join(scratch, name), text);
    await openFile(page, join(scratch, name));
    const { stdout, lines } = lrasynth('pattern', name, '--chip=0', '--save', '-');
    assert.equal(await page.inputValue('#name'), name.split('.')[0]);
    assert.deepEqual(await savedEvents(page), JSON.parse(stdout).events);
    assert.equal((await savedEvents(page)).length > 0, name !== 'none.json');
    const wanted = noted(lines).map((line) => line.replace('are not saved', 'are not kept'));
    assert.deepEqual((await messages(page)).sort(), wanted.sort());
    told.push(wanted.length);
  }
  assert.deepEqual(told, [1, 0, 2, 0, 2]);
  const old = await exported(page, 'json');
  for (const [name, text] of [['wrong.xml', '<vibration-effect>\n <predefined-effect name="boom"/></vibration-effect>'],
    ['wrong.ahap', '{"Version":1,"Pattern":[\n{"Event":{"Time":"now","EventType":"HapticTransient","EventParameters":[]}}]}']]) {
    writeFileSync(join(scratch, name), text);
    await openFile(page, join(scratch, name));
    const { lines } = lrasynth('pattern', name);
    assert.match(lines[0], /^wrong\.\w+:2:\d+: /);
    assert.deepEqual(await messages(page), lines);
    assert.ok((await exported(page, 'json')).equals(old));
  }
});

test('sound opens as the taps of its onsets, for the motor that is chosen', async () => {
  const page = await openPage();
  await page.selectOption('#motor', '832');
  for (const rate of [22050, 44100]) {
    const name = `knocks.${rate}.wav`;
    writeFileSync(join(scratch, name), knocks(rate));
    await openFile(page, join(scratch, name));
    const { stdout, lines } = lrasynth('pattern', name, '--motor=832', '--save', '-');
    const events = await savedEvents(page);
    assert.deepEqual(events, JSON.parse(stdout).events);
    const taps = events.filter(({ type }) => type === 'transient');
    assert.deepEqual(taps.map(({ start }) => Math.round(start / 20)), [10, 30]);
    assert.deepEqual(await messages(page), noted(lines));
    assert.deepEqual([await page.inputValue('#motor'), await page.inputValue('#name')], ['832', `knocks.${rate}`]);
  }
  const old = await exported(page, 'json');
  await drop(page, 'long.wav', knocks(3000, 601));
  assert.deepEqual(await messages(page), ['long.wav: lasts longer than 600000 ms']);
  await drop(page, 'noise.mp3', Buffer.from('no sound\0at all'));
  assert.match((await messages(page))[0], /neither text nor sound/);
  assert.ok((await exported(page, 'json')).equals(old));
});

test('what is made for others is what the command converts to, and what is lost is told', async () => {
  const page = await openPage();
  await openDemo(page, 'overlap');
  await page.selectOption('#motor', '832');
  writeFileSync(join(scratch, 'mine.json'), await exported(page, 'json'));
  const formats = await page.locator('#format option').evaluateAll((all) => all.map(({ value }) => value));
  const names = [];
  for (const format of formats) {
    await page.selectOption('#format', format);
    const [download] = await Promise.all([page.waitForEvent('download'), page.click('#convert')]);
    const { stdout, lines } = lrasynth('convert', 'mine.json', '--format', format, '-');
    assert.ok(stdout.length > 0 && readFileSync(await download.path()).equals(stdout), format);
    const file = download.suggestedFilename();
    assert.deepEqual(await messages(page), noted(lines).map((line) => line.replace(/^-/, file)));
    names.push(file);
  }
  assert.deepEqual(names, ['.driven.json', '.ahap', '.haptic', '.xml', '.vibrate.json'].map((end) => `overlap${end}`));
  await page.selectOption('#chip', '11');
  assert.ok(await page.isDisabled('#convert'));
  await page.selectOption('#chip', '0');
  assert.ok(await page.isEnabled('#convert'));
  await openText(page, '{"events":[{"type":"transient","start":0,"intensity":80,"level":50}]}');
  await page.selectOption('#motor', '81540'); // which has no taps
  assert.ok(await page.isDisabled('#convert'));
});
