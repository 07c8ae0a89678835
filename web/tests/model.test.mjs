// SPDX-License-Identifier: Apache-2.0
// What needs no browser: the rooms of the page, and its model.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { dirname, join, relative } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const load = (file) => import(new URL(`../site/model/${file}.js`, import.meta.url).href);
const [{ History }, { newCurve }, { newTap, tap }, spans, { endOf, eventOf, kindOf, movedTo, readEvent, writtenOf }] =
  await Promise.all(['history', 'curve', 'tap', 'spans', 'events'].map(load));
const state = await load('state');
const commands = await load('commands');

const site = fileURLToPath(new URL('../site', import.meta.url));
const modules = readdirSync(site, { recursive: true }).filter((file) => file.endsWith('.js')).sort();
const textOf = (file) => readFileSync(join(site, file), 'utf8');

test('a module imports only rooms to its left, and none leads back to itself', () => {
  const rooms = ['model', 'library', 'page', 'lanes', 'panels', '.'];
  const imported = Object.fromEntries(modules.map((file) => {
    const paths = [...textOf(file).matchAll(/^import .*'(.*)';|^import\('(.*)'\)/gm)];
    return [file, paths.map(([, now, late]) => now ?? late).map((path) => relative(site, join(site, dirname(file), path)))];
  }));
  const roomOf = (file) => rooms.indexOf(dirname(file));
  const reached = (file, way) => imported[file].forEach((other) => {
    assert.ok(roomOf(other) <= roomOf(file), `${file} imports ${other}`);
    assert.ok(!way.includes(other), `${way} lead to ${other}`);
    reached(other, [...way, other]);
  });
  for (const file of modules) reached(file, [file]);
  assert.ok(modules.every((file) => roomOf(file) >= 0));
  const preloaded = [...textOf('index.html').matchAll(/modulepreload" href="(.*)"/g)].map(([, path]) => path);
  assert.deepEqual([...preloaded, 'main.js'].sort(), modules);
});

test('history goes back and forth, so far, and a step that is taken back leaves no trace', () => {
  const history = new History(3);
  let now = 0;
  const set = (value, kind) => {
    history.change(kind, now);
    now = value;
  };
  const steps = (...which) => which.map((name) => (now = history[name](now) ?? now));
  for (const value of [1, 2, 3, 4, 5]) {
    set(value, 'one');
    history.end();
  }
  assert.deepEqual(steps('undo', 'undo', 'undo', 'undo', 'redo'), [4, 3, 2, 2, 3]);
  assert.ok(history.canUndo() && history.canRedo());
  set(30, 'drag');
  set(31, 'drag');
  assert.ok(!history.canRedo());
  assert.equal(now = history.cancel(), 3);
  assert.equal(history.cancel(), undefined);
  assert.deepEqual(steps('redo', 'redo', 'redo', 'undo'), [4, 5, 5, 4]);
  set(40, 'drag');
  set(41, 'drag');
  set(50, 'field');
  assert.deepEqual(steps('undo', 'undo', 'redo', 'redo', 'redo'), [41, 4, 41, 50, 50]);
});

test('an edit is a step, keeps order and selection, and tells when it has ended', () => {
  const { current, edit, show } = state;
  let ended = 0;
  state.onStepEnd(() => ++ended);
  commands.add(newTap(100.4, 20, 120));
  commands.addCurve();
  assert.deepEqual([current().event, current().cursor, ended], [1, 350, 2]);
  commands.duplicate();
  const starts = () => current().design.events.map(({ start }) => start);
  assert.deepEqual(starts(), [100, 150, 350]);
  show({ event: 0, point: 2 });
  assert.equal(current().point, -1); // a tap has none
  for (const start of [200, 300, 400]) commands.change((event) => ({ ...event, start }), 'start');
  assert.deepEqual([starts(), current().event, ended], [[150, 350, 400], 2, 3]);
  state.endStep();
  state.undo();
  assert.deepEqual([starts(), current().event], [[100, 150, 350], 0]);
  const before = current().design;
  edit({ loops: 5 }, 'drag');
  show({ tap: { level: 1, intensity: 2, inPattern: true }, response: { shown: false, quality: 3, hz: 4 } });
  state.cancelStep();
  assert.equal(current().design, before);
  assert.deepEqual([current().tap.level, current().response.quality, state.canRedo()], [1, 3, true]);
  state.redo();
  assert.deepEqual(starts(), [150, 350, 400]);
  edit({ loops: 1 }, 'drag'); // as it is
  assert.ok(!state.canRedo() && state.canUndo());
  commands.remove();
  assert.deepEqual([starts(), current().event], [[150, 350], 1]);
  commands.selectNext(-1);
  commands.selectNext(-1);
  assert.equal(current().event, 0);
  for (let i = 1; i < 250; ++i) edit({ interval: i });
  for (let i = 0; i < 250; ++i) state.undo();
  assert.equal(current().design.interval, 49);
  state.forgetPast();
  assert.ok(!state.canUndo() && !state.canRedo());
});

test('each kind of event has its form, and moves within its bounds', () => {
  const drawn = newCurve(10, 60);
  const vibration = { type: 'continuous', start: 10, duration: 200, points: drawn.points };
  for (const wrong of [null, 3, {}, { type: 'toString' }, { ...drawn, level: 3 }, { ...drawn, points: [[0, 0, 0]] },
    { ...drawn, toString: 1 }, { ...vibration, points: drawn.points.slice(1) }, { ...vibration, duration: 1.5 },
    { ...newTap(3), points: [] }, { ...newTap(3), level: '4' }, { ...newTap(3), driven: 4 }, { ...newTap(3), note: 4 },
    { type: 'transient', start: 0 }, { type: 'kept', start: 0, length: 1, written: { type: 'kept' } }]) {
    assert.equal(eventOf(wrong), null, JSON.stringify(wrong));
  }
  assert.deepEqual([endOf(newTap(10)), tap.next(newTap(10)), tap.lifted(newTap(0), -99).intensity], [25, 60, 0]);
  const driven = { type: 'transient', start: 3, driven: 40, level: 9, note: 'soft' };
  assert.deepEqual(tap.lifted(eventOf(driven), 5), { ...driven, driven: 45 });
  for (const one of [drawn, vibration]) {
    const kind = kindOf(one);
    const mixed = Object.fromEntries(Object.entries({ ...one, note: 'x' }).reverse());
    assert.equal(JSON.stringify(eventOf(mixed)), JSON.stringify({ ...one, note: 'x' }));
    assert.deepEqual([endOf(one), kind.next(one), kind.value(one, 'duration')], [210, 210, 200]);
    const moved = (index, ...to) => kind.withPoint(one, index, to);
    assert.deepEqual(moved(0, 40, 101, -51).points[0], [0, 100, -50]);
    assert.deepEqual([moved(1, -5, 1, 1), moved(1, 999, 1, 1)].map(({ points }) => points[1][0]), [0, 130]);
    assert.deepEqual([moved(3, 20, 1, 1), moved(3, 999, 1, 1)].map((event) => endOf(event)), [141, 1009]);
    const short = kind.stretched(one, -4);
    assert.equal(endOf(short), 11);
    assert.deepEqual(kind.stretched(short, 400).points.map(([time]) => time), [0, 100, 260, 400]);
    assert.deepEqual(kind.withValue(one, 'points.1.1', 300).points[1], [50, 300, 0]);
    assert.deepEqual([endOf(kind.withValue(one, 'points.3.0', 90)), kind.withValue(one, 'start', -3).start], [100, -3]);
    assert.deepEqual(kind.strengthened(one, 50).points.map(([, strength]) => strength), [50, 100, 100, 50]);
    assert.equal(kind.lifted(one, 9), one);
    assert.deepEqual([kind.span(one, 1), kind.span(one, -1)], [{ from: 60, to: 60 }, { from: 10, to: 210 }]);
  }
});

test('what the page cannot edit is kept as it is written, and moved where its start is a whole number', () => {
  const group = { type: 'group', start: 40, repeat: 4, every: '1/2b', events: [{ type: 'transient', start: 0 }, {}] };
  for (const [written, word, summary, free] of [
    [group, 'Group of 2 events, 4 times', '40 – 90 ms', true],
    [{ ...group, start: '1b', repeat: 1 }, 'Group of 2 events', 'at 1b', false],
    [{ type: 'curve', start: 40, points: [{ time: 0, intensity: 9, hz: 99 }, [1, 2, 3]] }, 'Curve, 2 points',
      '40 – 90 ms', true],
    [{ type: 'transient', start: '40ms', intensity: 1, level: 2 }, 'Tap', 'at 40ms', false],
  ]) {
    const one = readEvent(written, 40, 50);
    const kind = kindOf(one);
    assert.deepEqual([kind.word(one), kind.summary(one)], [word, summary]);
    assert.deepEqual(eventOf(JSON.parse(JSON.stringify(one))), one);
    assert.equal(writtenOf(one), written);
    const start = free ? 70 : written.start;
    assert.deepEqual(writtenOf(movedTo(one, 70)), { ...written, start });
    assert.deepEqual(writtenOf(kind.withValue(one, 'start', 70)), { ...written, start });
    assert.equal(kind.value(one, 'start'), free ? 40 : undefined);
    assert.deepEqual(writtenOf(kind.startedAt(one, kind.next(one))), { ...written, start: 90 }); // a duplicate
  }
});

test('what is looked at stays in bounds', () => {
  const { held, including, roundStep, zoomed } = spans;
  assert.deepEqual(zoomed({ from: 100, to: 300 }, 0.5, 150), { from: 125, to: 225 });
  assert.deepEqual(zoomed({ from: 100, to: 300 }, 2, 999), { from: -100, to: 300 });
  assert.deepEqual(held({ from: -100, to: 300 }, 1000), { from: 0, to: 400 });
  assert.deepEqual(held({ from: 900, to: 1100 }, 1000), { from: 800, to: 1000 });
  assert.deepEqual(held({ from: 5, to: 5 }, 1000), { from: 5, to: 5.5 });
  assert.deepEqual(including({ from: 0, to: 10 }, { from: 50, to: 60 }), { from: 50, to: 60 });
  assert.deepEqual(including({ from: 0, to: 10 }, { from: 10, to: 60 }), { from: 0, to: 10 });
  assert.deepEqual([[100, 7], [1, 3], [1200, 12]].map((range) => roundStep(...range)), [20, 0.5, 100]);
});
