// SPDX-License-Identifier: Apache-2.0
// What is seen on the canvases, heard, and reached with wheel and fingers.
import assert from 'node:assert/strict';
import { after, afterEach, before, test } from 'node:test';
import * as studio from './browser.mjs';

const { choose, coloured, exported, lrasynth, openEvents, openPage, openText, plotOf, shownSpan } = studio;

before(studio.startBrowser);
afterEach(studio.closePages);
after(studio.stopBrowser);

const tap = { type: 'transient', start: 20, intensity: 80, level: 60 };
const wave = { type: 'continuous', start: 100, duration: 200,
  points: [[0, 20, -50], [50, 100, -50], [150, 100, 0], [200, 20, 0]] };
const cover = { type: 'continuous', start: 180, duration: 40,
  points: [[0, 10, 0], [10, 10, 0], [30, 10, 0], [40, 10, 0]] };

/** Of the command. */
const tapCodes = (...words) =>
  new Int8Array(lrasynth('tap', '--motor=1040', '--intensity=80', ...words, '--format=bin', '-').stdout);

/** What tells whether all of some times and values of a canvas have a colour, or none of them. */
const watcher = (page, id, values, room) => async (name, pairs, isThere = true, tolerance = undefined) => {
  const place = await plotOf(page, id, await shownSpan(page), values, room);
  const found = await coloured(page, id, name, pairs.map((pair) => place(...pair)), tolerance);
  assert.deepEqual(found, pairs.map(() => isThere), `${name} at ${JSON.stringify(pairs)}`);
};

test('the lane for intensity draws taps, curves where they are heard, passes, and what is chosen', async () => {
  const page = await openPage();
  await openEvents(page, tap, wave, cover);
  await choose(page, 0);
  const driven = Number((await page.textContent('#driven')).match(/\d+/)[0]);
  assert.ok(driven > 20 && driven < 76);
  await page.focus('#intensity-lane');
  await studio.press(page, 'Escape', 'Home');
  const sees = watcher(page, 'intensity-lane', [0, 100], [30, 8]);
  const area = [[150, 50], [110, 15], [290, 15], [200, 5]];
  await sees('curve', [[125, 60], [200, 100], [275, 60]], true, 60);
  await sees('vibration', area);
  await sees('vibration', [[105, 80], [295, 80], [200, 50], [320, 10]], false);
  await sees('tap', [[24, driven - 3], [24, 4], [24, 80], [20.4, 78]]);
  await sees('tap', [[26, (driven + 80) / 2], [26, 99], [60, 10]], false);
  await sees('grid', [[330, 0], [330, 50], [330, 100], [50, 20]]);
  await sees('grid', [[330, 25], [330, 75]], false);
  const label = Array.from({ length: 9 }, (_, i) => [22 + i, 87]);
  const place = await plotOf(page, 'intensity-lane', await shownSpan(page), [0, 100], [30, 8]);
  assert.ok((await coloured(page, 'intensity-lane', 'muted', label.map((at) => place(...at)), 60)).includes(true));
  await sees('chosen', [[100, 20], [150, 100], [250, 100], [300, 20], [300, 70]], false);
  const marks = [100, 150, 180, 220].map((ms) => [place(ms, 0)[0], 3]);
  assert.deepEqual(await coloured(page, 'intensity-lane', 'warning', marks), [false, true, true, true]);
  await choose(page, 1);
  await page.keyboard.press('Tab');
  await sees('chosen', [[100, 24], [150, 95], [250, 95], [300, 24], [300, 70]]);
  await sees('panel', [[150, 100], [250, 100]]);
  await page.focus('[aria-label="Point 2, intensity in %"]');
  await sees('panel', [[150, 100]], false);
  await page.fill('#loops', '2');
  await page.fill('#interval', '100');
  await choose(page, 2);
  await sees('vibration', [...area, ...area.map(([ms, value]) => [ms + 400, value])]);
  await sees('vibration', [[350, 5], [600, 50], [505, 80]], false);
  await page.fill('#loops', '500');
  await sees('vibration', [[20000, 50], [190000, 95]]);
  await choose(page, 0);
  await page.fill('[name=start]', '-5');
  assert.deepEqual(await coloured(page, 'intensity-lane', 'fault', [[40, 3], [300, 3]]), [true, false]);
});

test('the lane for frequency draws what points say, what is reached, and taps', async () => {
  const page = await openPage();
  await openEvents(page, tap, wave, cover);
  const [about, facts] = await page.evaluate(async () => {
    const [{ about, patternPiece }, { current }] =
      [await import('./library/pieces.js'), await import('./model/state.js')];
    return [about, patternPiece(current().design).facts];
  });
  const hertz = about.motors.find(({ motor }) => motor === 1040).hz[1];
  const { sweeps } = facts.events[1];
  const reached = facts.events.flatMap(({ sweeps = [] }) => sweeps.map(({ reached_hz }) => reached_hz));
  const high = Math.ceil(Math.max(...hertz, ...reached) / 50) * 50;
  const sees = watcher(page, 'frequency-lane', [0, high], [8, 8]);
  const middle = ({ from_ms, to_ms, from_hz, reached_hz }, share) =>
    [from_ms + share * (to_ms - from_ms), Math.abs(from_hz + share * (reached_hz - from_hz))];
  await sees('curve', [middle(sweeps[0], 0.5), middle(sweeps[1], 0.2), middle(sweeps[1], 0.7), middle(sweeps[2], 0.9)],
    true, 70);
  await sees('curve', [[200, high * 0.98], [60, hertz[50]], [340, hertz[50]]], false, 70);
  // Dotted: some of what lies on the line between its second and third point.
  const [slow, fast] = [hertz[0], hertz[50]];
  const place = await plotOf(page, 'frequency-lane', await shownSpan(page), [0, high], [8, 8]);
  const dots = (by) => coloured(page, 'frequency-lane', 'aim', Array.from({ length: 40 }, (_, i) => 150 + i / 2)
    .map((ms) => place(ms, slow + ((ms - 150) / 100) * (fast - slow) + by)), 60);
  const on = (await dots(0)).filter(Boolean).length;
  assert.ok(on > 10 && on < 40, `${on} of 40`);
  assert.deepEqual((await dots(high / 8)).filter(Boolean).length, 0);
  await sees('tap', [[22, 10], [22, high * 0.9]]);
  await sees('tap', [[60, 10]], false);
  await sees('curve', [[280, hertz[50]]], true, 70); // points, too
});

test('the lanes draw groups wherever they play, curves as they are to be, and of records what plays', async () => {
  const page = await openPage();
  const line = { type: 'curve', start: 100, points: [[0, 20, 0], [40, 90, 20], [100, 40, 0]] };
  await openEvents(page, { type: 'group', start: 0, repeat: 2, every: 400, gain: 50, events: [tap, line] });
  await choose(page, 0);
  const names = ['intensity-lane', 'frequency-lane'];
  const facts = () => page.evaluate(async () => {
    const [{ patternPiece }, { current }] = [await import('./library/pieces.js'), await import('./model/state.js')];
    return patternPiece(current().design).facts;
  });
  const strong = watcher(page, names[0], [0, 100], [30, 8]);
  for (const start of [0, 400]) {
    await strong('chosen', [[start + 24, 4], [start + 24, 39], [start + 100, 10], [start + 140, 45]]);
    await strong('vibration', [[start + 120, 15], [start + 140, 38]]);
    await strong('vibration', [[start + 140, 49], [start + 120, 40]], false);
  }
  const [hz] = (await facts()).events.map((event) => event.hz).filter(Boolean);
  const high = await page.evaluate(async () => (await import('./lanes/frequency.js')).frequencyLane.plot.valueAt(8));
  const pitch = watcher(page, names[1], [0, Math.round(high)], [8, 8]);
  await pitch('chosen', [0, 40, 100].flatMap((ms, i) => [[100 + ms, hz[i]], [500 + ms, hz[i]]]));
  // The same as records, of which one is chosen.
  await openText(page, await exported(page, 'flat'));
  await choose(page, 1);
  const { events } = await facts();
  const records = events.filter(({ type }) => type === 'record');
  assert.ok(records.length >= 4);
  for (const { number, sweeps: [{ from_ms, to_ms, from_hz, reached_hz, strengths }] } of records) {
    const at = [from_ms + (to_ms - from_ms) / 2, strengths[4]];
    await strong(number === 2 ? 'chosen' : 'curve', [at], true, 60);
    await strong('vibration', [[at[0], at[1] / 2]]);
    await pitch(number === 2 ? 'chosen' : 'curve', [[at[0], (from_hz + reached_hz) / 2]], true, 70);
  }
});

test('the waveform is drawn as it is, near and far, with its response, and so is a tap', async () => {
  const page = await openPage();
  await openEvents(page, tap, wave, cover);
  const samples = new Int8Array(await exported(page, 'bin'));
  const far = watcher(page, 'waveform', [-128, 128], [8, 22]);
  await page.setChecked('#response', false);
  const swings = [104, 150, 175, 230, 290].map((ms) => {
    const part = samples.subarray(ms * 24 - 200, ms * 24 + 200);
    const at = part.indexOf(Math.max(...part));
    return [ms + (at - 200) / 24, part[at]];
  });
  await far('dense', swings.map(([ms, value]) => [ms, value - 3]));
  await far('dense', swings.map(([ms, value]) => [ms, value + 30]), false);
  await far('dense', [[60, 20], [200, 60], [330, 0]], false);
  await far('response', [[150, 120], [150, 119], [160, 121]], false, 60);
  await page.setChecked('#response', true);
  const place = await plotOf(page, 'waveform', await shownSpan(page), [-128, 128], [8, 22]);
  const reaches = async (value) => {
    const { to } = await shownSpan(page);
    const above = (await page.inputValue('#loops')) === '1' ? 8 : 18; // passes have labels
    const at = await plotOf(page, 'waveform', { from: 0, to }, [-128, 128], [above, 22]);
    const row = Array.from({ length: 1050 }, (_, i) => at((i * to) / 1050, value));
    return (await coloured(page, 'waveform', 'response', row, 60)).filter(Boolean).length > 2;
  };
  assert.deepEqual(await Promise.all([124, 80, -80, -124].map(reaches)), [false, true, true, false]);
  assert.ok((await reaches(119)) || (await reaches(-119))); // its peak
  await page.fill('#loops', '40'); // so far that no swing is seen
  assert.deepEqual(await Promise.all([124, 60, -60, -124].map(reaches)), [false, true, true, false]);
  const passes = watcher(page, 'waveform', [-128, 128], [18, 22]);
  await passes('band', [[150, 122], [750, 122]], true, 4);
  await passes('band', [[450, 122]], false, 4);
  await page.fill('#loops', '1');
  await page.setChecked('#response', false);
  const { x, y } = await page.locator('#waveform').boundingBox();
  await page.mouse.move(x + place(150, 0)[0], y + 60);
  await page.keyboard.down('Control');
  await page.mouse.wheel(0, -1300);
  await page.keyboard.up('Control');
  const span = await shownSpan(page);
  const inside = Array.from({ length: 9 }, (_, i) => Math.ceil(span.from * 24) + 4 * (i + 1));
  assert.ok(span.to - span.from < 12 && inside[8] / 24 < span.to);
  await far('curve', inside.map((at) => [at / 24, samples[at]]), true, 40);
  await far('vibration', inside.filter((at) => Math.abs(samples[at]) > 30).map((at) => [at / 24, samples[at] / 2]));
  await far('vibration', inside.map((at) => [at / 24, -samples[at] / 2 - 20 * Math.sign(samples[at])]), false);

  await page.focus('#level');
  await studio.press(page, ...Array(20).fill('ArrowRight')); // each is another piece
  await page.fill('#level-number', '60');
  const codes = tapCodes('--level=60');
  const tapAt = await plotOf(page, 'tap-wave', { from: 0, to: codes.length / 24 }, [-128, 128], [20, 22]);
  const [first, low] = [codes.indexOf(Math.max(...codes)), codes.indexOf(Math.min(...codes))];
  const tops = [first, low].map((at) => tapAt(at / 24, codes[at]));
  assert.deepEqual(await coloured(page, 'tap-wave', 'curve', tops, 60), [true, true]);
  assert.deepEqual(await coloured(page, 'tap-wave', 'curve', [tapAt(first / 24, -codes[first])], 60), [false]);
  // All levels: the column of this one, rows of time, in two colours for the signs.
  const longest = Math.max(...Array.from({ length: 101 }, (_, level) => tapCodes(`--level=${level}`).length));
  const column = await page.evaluate(() => {
    const draw = new OffscreenCanvas(1, 110).getContext('2d', { willReadFrequently: true });
    draw.drawImage(document.getElementById('levels'), -60, 0);
    return [...draw.getImageData(0, 0, 1, 110).data];
  });
  for (let row = 0; row < 110; ++row) {
    const value = codes[Math.floor((row * longest) / 110)] ?? 0;
    const [red, , blue, alpha] = column.slice(4 * row, 4 * row + 4);
    assert.ok(Math.abs(alpha - Math.abs(value) * 2) <= 3, `${row}: ${alpha} for ${value}`);
    if (Math.abs(value) > 20) assert.equal(blue > red, value > 0, `${row}`);
  }
});

test('the lane for what is felt shows the levels of the command', async () => {
  const page = await openPage();
  await openEvents(page, tap, { ...wave, start: 250 });
  const felt = (...options) => lrasynth('pattern', 'events.json', '--motor=1040', ...options).stdout.toString();
  const levels = felt('--format=felt.csv', '-').trim().split('\n').slice(1).map((row) => Number(row.split(',')[1]));
  const sees = watcher(page, 'felt-lane', [0, 26], [8, 8]);
  const even = levels.flatMap((level, i) => { // not steep there
    const near = levels.slice(Math.max(0, i - 2), i + 3);
    return near.length === 5 && Math.max(...near) - Math.min(...near) < 4 ? [[5 * i, level, Math.max(...near)]] : [];
  });
  const strong = even.filter(([, level]) => level > 6);
  const silent = even.filter(([, , most]) => most === 0);
  assert.ok(strong.length > 20 && silent.length > 5);
  await sees('felt', strong.flatMap(([ms, level]) => [[ms, level - 1.5], [ms, 2]]));
  await sees('felt', [...strong.map(([ms, level]) => [ms, level + 3]), ...silent.map(([ms]) => [ms, 2])], false);
  const words = () => page.textContent('#felt-words');
  const told = (what) => felt().match(new RegExp(`estimated (${what} +.*)`))[1].replace(/ {2,}/, ' ');
  for (const what of ['strongest felt', 'felt length']) assert.ok((await words()).includes(told(what)), await words());
  const [, first] = felt().match(/felt, estimated: (.*)/);
  assert.ok((await page.textContent('#events > :first-child')).includes(first));
  await choose(page, 0);
  assert.equal(await page.textContent('#event-felt'), `felt about ${first}`);
  await page.fill('#quality', '4');
  assert.match(await words(), /Q 4, 1 g rated/);
  await page.setChecked('#response', false); // the motor's own, as in files
  assert.ok((await words()).includes(told('strongest felt')));
  await page.selectOption('#chip', '11');
  await sees('felt', strong.map(([ms, level]) => [ms, level / 2]), false);
  assert.match(await words(), /not estimated/);
});

test('what plays are the samples, and it repeats where that is asked for', async () => {
  const page = await openPage();
  await page.evaluate(() => {
    window.played = [];
    const { connect } = AudioNode.prototype;
    const { start } = AudioBufferSourceNode.prototype;
    const outputs = new Map();
    AudioNode.prototype.connect = function (to) {
      outputs.set(this, to);
      return connect.call(this, to);
    };
    AudioBufferSourceNode.prototype.start = function (...times) {
      const { buffer, loop, context } = this;
      const isHeard = outputs.get(this) === context.destination && times.length === 0;
      window.played.push({ values: [...buffer.getChannelData(0)], loop, rate: buffer.sampleRate, isHeard });
      return start.apply(this, times);
    };
  });
  const hear = async (button, count) => {
    await page.click(button);
    await page.waitForFunction((count) => window.played.length === count, count);
    const { values, ...how } = await page.evaluate(() => window.played.at(-1));
    return [values.map((value) => value * 128), how];
  };
  await openEvents(page, tap, wave, cover);
  const once = { loop: false, rate: 24000, isHeard: true };
  assert.deepEqual(await hear('#play', 1), [[...new Int8Array(await exported(page, 'bin'))], once]);
  await page.setChecked('#repeat', true);
  await page.selectOption('#chip', '1');
  const looped = { ...once, rate: 12000, loop: true };
  assert.deepEqual(await hear('#play', 2), [[...new Int8Array(await exported(page, 'bin'))], looped]);
  const began = await page.locator('#playhead').evaluate(({ style }) => style.left);
  await page.waitForFunction((began) => document.getElementById('playhead').style.left !== began, began);
  await page.click('#stop');
  assert.ok(await page.isHidden('#playhead'));
  await page.setChecked('#repeat', false);
  await hear('#play', 3);
  await page.waitForFunction(() => document.getElementById('stop').disabled); // at its end
  await page.setChecked('#repeat', true);
  await hear('#play', 4);
  await page.click('#add-tap'); // what is heard is what is shown
  assert.ok(await page.isDisabled('#stop'));
  await page.fill('#level-number', '37');
  await page.setChecked('#in-pattern', true);
  const codes = tapCodes('--chip=1', '--level=37', '--in-pattern');
  assert.deepEqual(await hear('#tap-listen', 5), [[...codes], { ...looped, loop: false }]);
});

test('wheel and two fingers zoom where they are, and move along', async () => {
  const page = await openPage({ hasTouch: true });
  await openEvents(page, tap, wave, cover);
  const near = (is, wanted, what) => assert.ok(Math.abs(is - wanted) < 0.02 * Math.abs(wanted) + 0.5, `${what}: ${is}`);
  const whole = await shownSpan(page);
  for (const id of ['intensity-lane', 'frequency-lane', 'waveform', 'felt-lane']) {
    await page.click('#zoom-all');
    const { x, y, width } = await page.locator(`#${id}`).boundingBox();
    const at = 0.25;
    const ms = (span) => span.from + at * (span.to - span.from);
    const pointer = x + 40 + at * (width - 50);
    const turn = async (key, by) => {
      await page.mouse.move(pointer, y + 20);
      await page.keyboard.down(key);
      await page.mouse.wheel(0, by);
      await page.keyboard.up(key);
      return shownSpan(page);
    };
    const closer = await turn('Control', -200);
    near(closer.to - closer.from, (whole.to - whole.from) * Math.exp(-0.6), `${id} zoomed`);
    near(ms(closer), ms(whole), `${id} stays`);
    const along = await turn('Shift', 100);
    near(along.from - closer.from, ((closer.to - closer.from) * 100) / width, `${id} moved`);
    const back = await turn('Control', 100);
    near(back.to - back.from, (whole.to - whole.from) * Math.exp(-0.3), `${id} back`);
    await page.click('#zoom-all');
    const fingers = (apart) => [-apart, apart].map((by, id) => ({ x: pointer + by / 2, y: y + 40, id }));
    const moves = [100, 200, 300].map((apart) => ['touchMove', ...fingers(apart)]);
    await studio.touch(page, [['touchStart', ...fingers(60)], ...moves, ['touchEnd']]);
    const pinched = await shownSpan(page);
    near(pinched.to - pinched.from, (whole.to - whole.from) / 3, `${id} pinched`);
    near(ms(pinched), ms(whole), `${id} pinched stays`);
  }
});
