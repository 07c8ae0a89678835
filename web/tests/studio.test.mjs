// SPDX-License-Identifier: Apache-2.0
import assert from 'node:assert/strict';
import { readdirSync, readFileSync, statSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { after, afterEach, before, test } from 'node:test';
import { gzipSync } from 'node:zlib';
import * as studio from './browser.mjs';

const { choose, chosen, exported, lrasynth, openDemo, openEvents, openFile, openPage } = studio;
const { pointOnScreen, savedEvents, scratch, touch } = studio;
const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');

before(studio.startBrowser);
afterEach(studio.closePages);
after(studio.stopBrowser);

async function setProfile(page, motor, chip, boost) {
  await page.selectOption('#motor', motor);
  await page.selectOption('#chip', chip);
  if (motor === '832') await page.setChecked('#boost', boost === 'on');
}

async function drag(page, from, by, midway = () => {}) {
  await page.mouse.move(from.x, from.y);
  await page.mouse.down();
  await page.mouse.move(from.x + by.x / 2, from.y + by.y);
  await page.mouse.move(from.x + by.x, from.y + by.y);
  await midway();
  await page.mouse.up();
}

test('a download is what the command writes, and its words stand at the events', async () => {
  const page = await openPage();
  await openDemo(page, 'overlap');
  lrasynth('pattern', 'overlap.json', '--save', 'saved.json'); // events are numbered as there
  for (const [motor, chip, boost] of [['832', '1', 'off'], ['81540', '0', 'on'], ['1040', '11', 'on']]) {
    await setProfile(page, motor, chip, boost);
    const boosted = motor === '832' ? ['--boost', boost] : [];
    const { status, stdout, lines } = lrasynth('pattern', 'saved.json', '--motor', motor, '--chip', chip, ...boosted, '--format=bin', '-');
    const said = await page.locator('#events .words > li').allTextContents();
    const disabled = await page.locator('[data-form]:disabled').allTextContents();
    if (status !== 0) {
      assert.deepEqual(said, lines.map((line) => line.replace(/^[^ ]* /, '')));
      assert.equal(disabled.length, 7);
      continue;
    }
    assert.equal(said.length > 0, lines.some((line) => line.startsWith('warning: ')), lines.join());
    assert.deepEqual(disabled, chip === '11' ? ['WAV', 'SVG'] : []);
    const [download] = await Promise.all([page.waitForEvent('download'), page.click('[data-form=bin]')]);
    assert.equal(download.suggestedFilename(), 'overlap.bin');
    assert.ok(readFileSync(await download.path()).equals(stdout), `${motor} ${chip}`);
  }
});

test('what a file says is kept, whatever the page can edit, and told where it is overridden', async () => {
  const file = join(scratch, 'song.json');
  const song = { flat: false, note: 'for \u00e9', tempo: 120, version: 1, interval: '1/2b', limit: '2s', loops: 3,
    boost: false, chip: 1, motor: 832, name: 'Song', events: [
      { type: 'group', start: '1b', repeat: 2, every: '1/2b', gain: 60, events: [
        { type: 'transient', start: '1/8b', driven: 50, level: 90, note: 'ping' },
        { type: 'group', start: 30, events: [{ type: 'curve', start: 10, points: [[0, 0, 0], [90, 80, 10]] }] }] },
      { type: 'curve', start: 1600, points: [[0, 20, -20], [40, 90, 0], [60, 50, 10], [90, 60, 0], [150, 0, 0]] },
      { type: 'curve', start: 1900, points: [{ time: '0ms', intensity: 20, hz: 134 }, [70, 100, 0]] },
      { type: 'continuous', start: '1s', duration: 100, points: [[0, 9, 9], [10, 9, 9], [20, 9, 9], [100, 9, 9]] },
      { type: 'transient', start: 3, driven: 40, level: 90, note: 'first' }] };
  writeFileSync(file, `// by hand\n${JSON.stringify(song)}`);
  const saved = (...words) => lrasynth('pattern', 'song.json', ...words, '--save', '-').stdout.toString();
  const page = await openPage();
  await openFile(page, file);
  assert.match(await page.textContent('#messages'), /comments are not kept/);
  const set = { motor: '832', chip: '1', loops: '3', interval: '250', name: 'Song' };
  for (const [id, value] of Object.entries(set)) assert.equal(await page.inputValue(`#${id}`), value, id);
  const whole = [saved(), saved('--flat'), lrasynth('pattern', 'song.json', '--format=bin', '-').stdout.toString('latin1')];
  assert.equal(await page.textContent('#file-note'), song.note);
  const text = async (page, kind) => (await exported(page, kind)).toString(kind === 'bin' ? 'latin1' : 'utf8');
  const check = async (page) => {
    for (const [i, kind] of ['json', 'flat', 'bin'].entries()) assert.equal(await text(page, kind), whole[i], kind);
  };
  await check(page);
  const title = (item) => item.locator('b').allTextContents();
  assert.deepEqual(await title(page.locator('#events')),
    ['1 Tap', '2 Group of 2 events, 2 times', '3 Vibration', '4 Curve, 5 points', '5 Curve, 2 points']);
  // What is said of an event, wherever it lies in a group, stands at its entry.
  lrasynth('pattern', 'song.json', '--save', 'sorted.json'); // events are numbered as there
  const { lines } = lrasynth('pattern', 'sorted.json');
  const inside = lines.filter((line) => / 2\./.test(line)).map((line) => line.replace(/^warning: /, ''));
  const told = await page.locator('#events > :nth-child(2) .words > li').allTextContents();
  assert.ok(inside.length > 0 && inside.every((line) => told.includes(line)), `${lines}`);

  await openPage({ link: await page.evaluate(async () => {
    const [{ fragmentOf }, { current }] = [await import('./panels/files.js'), await import('./model/state.js')];
    return fragmentOf(current().design);
  }) }).then(check);
  await page.reload();
  await check(page);
  // Any part of a group is it all.
  const lane = await page.locator('#intensity-lane').boundingBox();
  const place = await studio.plotOf(page, 'intensity-lane', await studio.shownSpan(page), [0, 100], [30, 8]);
  for (const [ms, value, one] of [[567, 10, /^2 /], [818, 10, /^2 /], [630, 20, /^2 /], [1005, 2, /^3 /]]) {
    const [x, y] = place(ms, value);
    await page.mouse.click(lane.x + x, lane.y + y);
    assert.match(await chosen(page), one, `${ms}`);
  }
  // What has a whole number as start is moved, and nothing else.
  for (const [i, keys, start] of [[1, 'ArrowRight', '1b'], [3, 'ArrowRight', 1601], [4, 'ArrowRight', 1901]]) {
    await choose(page, i);
    await page.focus('#intensity-lane');
    await studio.press(page, ...keys.split(' '));
    assert.equal((await savedEvents(page))[i].start, start);
  }
  await choose(page, 3);
  await page.click('#zoom-event');
  await drag(page, await pointOnScreen(page, 'frequency-lane', 3, 2), { x: 0, y: -20 });
  await page.fill('[aria-label="Point 5, intensity in %"]', '33');
  const [, , , { points }] = await savedEvents(page);
  assert.ok(points[2][2] > 10 && points[4][1] === 33 && points.length === 5);
  while (!(await page.isDisabled('#undo'))) await page.click('#undo');
  await check(page);

  await page.selectOption('#motor', '1040');
  await page.fill('#interval', '70');
  assert.deepEqual(await page.locator('#general li').allTextContents(),
    lrasynth('pattern', 'song.json', '--motor=1040', '--interval=70').lines
      .filter((line) => line.includes(' overrides ')).map((line) => line.replace(/^.*json: /, '')));
  assert.equal(await text(page, 'json'), saved().replace('"motor":832', '"motor":1040').replace('"1/2b"', '70'));
});

test('dragging a point changes that point alone, and undo brings the old bytes back', async () => {
  const page = await openPage();
  await openDemo(page, 'sunrise');
  for (const [lane, field, dy] of [['intensity-lane', 1, -20], ['frequency-lane', 2, -12]]) {
    const [before, bytes] = [await savedEvents(page), await exported(page, 'bin')];
    await drag(page, await pointOnScreen(page, lane, 0, 1), { x: 30, y: dy });
    const after = await savedEvents(page);
    const [moved, old] = [after[0].points[1], before[0].points[1]];
    assert.ok(moved[0] > old[0] && moved[field] > old[field], `${old} to ${moved}`);
    assert.equal(moved[3 - field], old[3 - field]);
    const undone = structuredClone(after);
    undone[0].points[1] = old;
    assert.deepEqual(undone, before);
    assert.ok(!(await exported(page, 'bin')).equals(bytes));
    await page.click('#undo');
    assert.ok((await exported(page, 'bin')).equals(bytes));
    await page.keyboard.press('Control+Shift+Z');
    assert.deepEqual(await savedEvents(page), after);
    await page.click('#undo');
  }
  // A drag that is taken back leaves no trace; one that ends is stored then.
  const kept = () => page.evaluate(() => localStorage.getItem('lrasynth studio'));
  const [before, old] = [await savedEvents(page), await kept()];
  const point = await pointOnScreen(page, 'intensity-lane', 0, 1);
  for (const [key, isBack] of [['Escape', true], ['Shift', false]]) {
    await drag(page, point, { x: 30, y: -20 }, async () => {
      assert.equal(await kept(), old);
      await page.keyboard.press(key);
    });
    assert.deepEqual([await page.isDisabled('#redo'), (await kept()) === old], [!isBack, isBack]);
  }
  assert.notDeepEqual(await savedEvents(page), before);
});

test('a finger stretches a curve, which keeps its shape', async () => {
  const page = await openPage({ hasTouch: true });
  await openDemo(page, 'fade');
  await choose(page, 0);
  const { x, y } = await pointOnScreen(page, 'intensity-lane', 0, 'grip');
  await touch(page, [['touchStart', { x, y }], ['touchMove', { x: x + 60, y }], ['touchMove', { x: x + 120, y }],
    ['touchEnd']]);
  const [{ start, duration, points }] = await savedEvents(page);
  assert.ok(start === 0 && duration > 240, `${duration}`);
  const [quarter, half] = [Math.round(duration / 4), Math.round(duration / 2)];
  assert.deepEqual(points, [[0, 0, -40], [quarter, 100, -40], [half, 100, -40], [duration, 0, -40]]);
});

test('a wrong file shows the lines of the command and leaves the work alone', async () => {
  const page = await openPage();
  const old = await exported(page, 'json');
  const file = join(scratch, 'wrong.json');
  const events = '{"events": [\n {"type": "transient", "start": -1, "level": 101}, {"type": "pulse"}]}';
  for (const text of [events, '{"events": [}', 'no JSON']) {
    writeFileSync(file, text);
    await openFile(page, file);
    const { status, lines: wanted } = lrasynth('pattern', 'wrong.json');
    assert.equal(status, 2);
    assert.deepEqual(await page.locator('#messages li').allTextContents(), wanted);
    assert.ok((await exported(page, 'json')).equals(old));
  }
});

test('a link opens to the same pattern, and the last work is there after a reload', async () => {
  const page = await openPage();
  await openDemo(page, 'fade');
  await setProfile(page, '832', '1', 'off');
  await page.fill('#loops', '3');
  await page.fill('#interval', '70');
  const bytes = await exported(page, 'bin');
  const linkTo = (changes) => page.evaluate(async (changes) => {
    const [{ fragmentOf }, { current }] = [await import('./panels/files.js'), await import('./model/state.js')];
    return fragmentOf({ ...current().design, ...changes });
  }, changes);
  const link = await linkTo({ header: undefined }); // older links have none
  const other = await openPage({ link });
  assert.ok((await exported(other, 'bin')).equals(bytes));
  await other.reload();
  assert.equal(await other.evaluate(() => localStorage.length), 0); // what was only looked at replaces no work
  await other.click('#add-tap');
  assert.equal(await other.evaluate(() => location.hash), '');
  await other.click('#undo');
  await page.fill('#quality', '35');
  await page.keyboard.press('Tab');
  const tab = await openPage({ context: page.context() });
  assert.ok((await exported(tab, 'bin')).equals(bytes));
  await tab.click('#new');
  await page.reload(); // each tab has its own
  assert.ok((await exported(page, 'bin')).equals(bytes));
  assert.equal(await page.inputValue('#quality'), '35');
  assert.ok(await page.isDisabled('#undo'));
  await other.click('#undo');
  assert.equal(await other.inputValue('#name'), 'heartbeat');
  const noTap = { type: 'transient', start: 0, intensity: 80 };
  for (const wrong of [{ events: [], loops: 0 }, { events: [noTap] }, null]) {
    const broken = await openPage({ link: wrong === null ? '#p=AAAA' : await linkTo(wrong) });
    assert.match(await broken.textContent('#messages'), /no pattern/);
    assert.equal(await broken.inputValue('#name'), 'heartbeat');
  }
  await page.evaluate((link) => (location.hash = link), await linkTo({ loops: 0 }));
  await page.getByText('This link carries no pattern.').waitFor();
  assert.ok((await exported(page, 'bin')).equals(bytes)); // the work goes on
  const faulty = await openPage({ link: await linkTo({ events: [{ ...noTap, level: 150 }] }) });
  await faulty.click('#add-tap');
  await faulty.reload();
  assert.equal(await faulty.locator('.event').count(), 2);
  assert.match(await faulty.textContent('#events .fault'), /level.*150/);
  await faulty.evaluate(() => {
    const folder = { name: 'folder', text: () => Promise.reject(new Error('no file')) };
    document.dispatchEvent(Object.assign(new Event('drop'), { dataTransfer: { files: [folder] } }));
  });
  await faulty.getByText('folder: cannot be read').waitFor();
});

test('keys alone build a pattern', async () => {
  const page = await openPage();
  const { keyboard } = page;
  const tabTo = async (id) => {
    const focused = () => page.evaluate(() => document.activeElement.id);
    for (let i = 0; i < 80 && (await focused()) !== id; ++i) await keyboard.press('Tab');
    assert.equal(await focused(), id);
  };
  await tabTo('new');
  await keyboard.press('Enter');
  await tabTo('intensity-lane');
  const press = (keys) => studio.press(page, ...keys.split(' '));
  await press('t Shift+ArrowUp ArrowRight c 3 ArrowDown ArrowDown Shift+ArrowRight');
  await tabTo('frequency-lane');
  // Shrunk to next to nothing, a curve still knows its shape.
  await press(`2 Shift+ArrowUp 0${' Alt+Shift+ArrowLeft'.repeat(22)}${' Alt+Shift+ArrowRight'.repeat(20)} PageUp d`);
  assert.deepEqual(await savedEvents(page), [
    { type: 'transient', start: 1, intensity: 90, level: 50 },
    { type: 'curve', start: 50, points: [[0, 0, 0], [50, 80, 10], [141, 78, 0], [201, 0, 0]] },
    { type: 'transient', start: 51, intensity: 90, level: 50 },
  ]);
  await keyboard.press('Control+z');
  await keyboard.press('Control+z');
  assert.equal((await savedEvents(page)).length, 2);
  assert.equal((await savedEvents(page))[1].points[3][0], 191);
  // What keys select is brought into view.
  for (const [keys, ms] of [['Escape End + + +', 241], ['Home', 0], ['PageDown +', 8], ['PageDown', 146]]) {
    await press(keys);
    const { from, to } = await studio.shownSpan(page);
    assert.ok(from <= ms && ms <= to && to - from < 60, `${keys}: ${from} to ${to}`);
  }
  const spans = [];
  for (const keys of ['>', '<', '-', 'a']) spans.push(await press(keys).then(() => studio.shownSpan(page)));
  const [along, back, wider, whole] = spans;
  assert.ok(back.from < along.from && wider.to > back.to && whole.from === 0 && whole.to > wider.to);
});

test('what is typed stands, and what is deleted in the middle of a drag stays so', async () => {
  const page = await openPage();
  await openDemo(page, 'heartbeat');
  const before = await savedEvents(page);
  const { x, y } = await pointOnScreen(page, 'intensity-lane', 1, 1);
  await page.mouse.move(x, y);
  await page.mouse.down();
  await page.mouse.move(x + 20, y);
  await page.keyboard.press('Delete');
  await page.mouse.move(x + 40, y);
  await page.mouse.up();
  assert.deepEqual(await savedEvents(page), before.filter((_, i) => i !== 1));
  await page.click('#new');
  await page.reload();
  assert.equal(await page.locator('.event').count(), 0);
  await page.click('#add-curve');
  for (const typed of ['300', '-50']) {
    await page.click('[name=duration]');
    await studio.press(page, 'Control+a', ...typed, 'Tab');
    assert.deepEqual((await savedEvents(page))[0].points.map(([time]) => time), [0, 75, 195, 300]);
  }
  for (const [id, typed, wanted] of [['#loops', '65536', '1'], ['#resonance', '2001', '0']]) {
    await page.click(id);
    await studio.press(page, 'Control+a', ...typed, 'Tab');
    assert.equal(await page.inputValue(id), wanted);
  }
});

test('a field belongs to its event, and is undone as a whole', async () => {
  const page = await openPage();
  const tap = (start, level) => ({ type: 'transient', start, intensity: 80, level });
  const taps = [tap(100, 33), tap(700, 20)];
  await openEvents(page, ...taps);
  const [start, level] = ['[name=start]', '[name=level]'];
  const type = async (field, text) => {
    await page.click(field);
    await page.keyboard.press('Control+a');
    await page.keyboard.type(text);
  };
  const plot = await page.locator('#intensity-lane').boundingBox();
  const x = await page.evaluate(async () => (await import('./lanes/intensity.js')).intensityLane.plot.x(707));
  const low = plot.y + plot.height - 10;
  for (const [field, text] of [[start, '-'], [level, '1.5'], [start, '20e9']]) {
    await choose(page, 0);
    await type(field, text);
    await page.mouse.click(plot.x + x, low);
    assert.match(await chosen(page), /^2 /);
    assert.deepEqual(await savedEvents(page), taps, text);
    assert.equal(await page.inputValue(level), '20');
  }
  const steps = [taps, [tap(700, 20), tap(2500, 33)], [tap(2500, 33), tap(5000, 20)]];
  for (const text of ['2500', '5000']) await choose(page, 0).then(() => type(start, text));
  for (const step of steps.toReversed()) {
    assert.deepEqual(await savedEvents(page), step);
    await page.click('#undo');
  }
  await page.keyboard.press('Control+y');
  // Escape takes back a drag, and nothing before it.
  await page.mouse.click(plot.x + x, low);
  await page.keyboard.press('ArrowRight');
  await drag(page, { x: plot.x + x, y: low }, { x: 0, y: 0 }, () => page.keyboard.press('Escape'));
  assert.deepEqual(await savedEvents(page), [taps[0], tap(701, 20)]);
  // A tap is touched as far as it is drawn on this motor.
  await page.selectOption('#motor', '9595');
  const { stdout } = lrasynth('tap', '--motor=9595', '--level=20', '--intensity=80', '--format=bin', '-');
  const place = await studio.plotOf(page, 'intensity-lane', await studio.shownSpan(page), [0, 100], [30, 8]);
  await page.mouse.click(plot.x + place(701 + stdout.length / 24, 0)[0] - 2, low);
  assert.match(await chosen(page), /^2 /);
});

test('the value under the cursor is the sample, however near', async () => {
  const page = await openPage();
  await openDemo(page, 'sunrise');
  const bytes = new Int8Array(await exported(page, 'bin'));
  const { x, y, width } = await page.locator('#waveform').boundingBox();
  await page.focus('#waveform');
  for (const [closer, by] of [[0, 0], [9, 0], [0, 1], [0, 2], [0, 3], [0, 4]]) {
    for (let i = 0; i < closer; ++i) await page.keyboard.press('+');
    const at = width * 0.4 + by;
    await page.mouse.move(x + at, y + 60);
    const span = await studio.shownSpan(page);
    const ms = span.from + ((at - 40) / (width - 50)) * (span.to - span.from);
    const [, sample, amplitude] = /sample (\d+) · amplitude (-?\d+)/.exec(await page.textContent('#reading'));
    assert.ok(Math.abs(sample - Math.round(ms * 24)) <= (closer + by === 0 ? 30 : 0), `${sample} at ${ms} ms`);
    assert.equal(Number(amplitude), bytes[sample]);
    assert.notEqual(bytes[sample], 0);
  }
});

test('nothing keeps anyone out', async () => {
  for (const options of [{}, { colorScheme: 'dark' }, { viewport: { width: 360, height: 780 }, colorScheme: 'dark' }]) {
    const page = await openPage(options);
    const points = [[0, 0, 0], [50, 80, 0], [100, 0, 0]];
    const inner = [{ type: 'curve', start: 0, points }, { type: 'curve', start: 200, points }];
    await openEvents(page, { type: 'curve', start: 0, points },
      { type: 'group', start: 300, events: [{ type: 'group', start: 0, note: 'twice', events: inner }], note: 'deep' });
    await choose(page, 0);
    await page.fill('[aria-label="Point 2, intensity in %"]', '101');
    for (const summary of await page.locator('summary').all()) await summary.click();
    for (const event of [0, 1]) {
      await choose(page, event);
      const found = await page.evaluate(`${axe}; axe.run().then(({ violations }) =>
        violations.map(({ id, nodes }) => [id, ...nodes.map(({ html }) => html)]))`);
      assert.deepEqual(found, []);
    }
    assert.match(await page.textContent('#events .fault'), /^event 1: point 2, .*101/);
    const wide = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
    assert.ok(wide <= 0, `${wide} pixels too wide`);
  }
});

test('it is small', () => {
  const files = readdirSync(studio.site, { recursive: true }).map((file) => join(studio.site, file))
    .filter((file) => statSync(file).isFile() && !file.endsWith('/lrasynth') && !file.endsWith('/lrasynth.wasm'));
  const raw = files.reduce((sum, file) => sum + statSync(file).size, 0);
  const packed = files.reduce((sum, file) => sum + gzipSync(readFileSync(file)).length, 0);
  assert.ok(raw <= 780e3 && packed <= 310e3, `${raw} bytes, ${packed} packed`);
});

test('the npm package, without a bundler, gives what the command writes', async () => {
  const page = await openPage();
  const bytes = await page.evaluate(async () => [...(await import('/npm/index.js')).tap(50, 80)]);
  assert.deepEqual(Buffer.from(bytes), lrasynth('tap', '--level=50', '--intensity=80', '--format=bin', '-').stdout);
  await page.close();
});
