// SPDX-License-Identifier: Apache-2.0
// The built site in Debian's browser, and the command beside it.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { extname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';

export const root = fileURLToPath(new URL('../..', import.meta.url));
export const site = process.env.STUDIO_SITE ?? join(root, 'build/web/site');
const command = process.env.LRASYNTH ?? join(root, 'build/test/tools/lrasynth');
export const scratch = mkdtempSync(join(tmpdir(), 'studio-'));
cpSync(join(root, 'tools/demo'), scratch, { recursive: true });
process.on('exit', () => rmSync(scratch, { recursive: true }));

/** Run where the demo patterns are, and what a test writes. */
export function lrasynth(...words) {
  const { error, status, stdout, stderr } = spawnSync(command, words, { cwd: scratch, maxBuffer: 1 << 28 });
  assert.ifError(error);
  const lines = stderr.toString().split('\n').slice(0, -1).map((line) => line.replace(/^lrasynth: /, ''));
  return { status, stdout, lines };
}

const types = { '.html': 'text/html', '.js': 'text/javascript', '.css': 'text/css', '.svg': 'image/svg+xml',
  '.wasm': 'application/wasm', '.json': 'application/json' };
const server = createServer((request, response) => {
  const path = new URL(request.url, 'http://studio').pathname.replace(/\/$/, '/index.html');
  try {
    const body = readFileSync(join(site, path.startsWith('/npm/') ? '..' : '.', path)); // the npm package stands beside it
    response.writeHead(200, { 'content-type': types[extname(path)] ?? 'application/octet-stream' }).end(body);
  } catch {
    response.writeHead(404).end();
  }
});

let browser;
export let address;
/** What no page may do. */
const wrongs = [];

export async function startBrowser() {
  await new Promise((ready) => server.listen(0, '127.0.0.1', ready));
  address = `http://127.0.0.1:${server.address().port}/`;
  browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
}

/** Between tests, since what still plays or draws there would slow down the next one. */
export const closePages = () => Promise.all(browser.contexts().map((visitor) => visitor.close()));

export async function stopBrowser() {
  await browser?.close();
  server.close();
  assert.deepEqual(wrongs, []);
}

/** A page of a fresh visitor, or of one that has been there. */
export async function openPage({ context, link = '', ...options } = {}) {
  const visitor = context ?? (await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options }));
  const page = await visitor.newPage();
  page.setDefaultTimeout(60000); // for what hangs: no machine is too slow
  page.on('console', (message) => message.type() !== 'log' && wrongs.push(message.text()));
  page.on('pageerror', (error) => wrongs.push(error.message));
  page.on('request', (request) => /^(blob:)?http:\/\/127\.0\.0\.1:/.test(request.url()) || wrongs.push(request.url()));
  page.on('response', (response) => response.ok() || wrongs.push(`${response.status()} ${response.url()}`));
  await page.goto(address + link);
  await settled(page);
  return pacedHands(page);
}

/** What was done is on the screen, with what follows a moment later, once a frame has nothing more to draw. */
const settled = (page) => page.evaluate(async () => {
  const lastDrawn = () => performance.getEntriesByName('draw').at(-1)?.startTime;
  for (let before; before === undefined || before !== lastDrawn();) {
    before = lastDrawn();
    await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
  }
});

/** Like anybody's, they wait until they see what they did: places are those of what was drawn last. */
function pacedHands(page) {
  const { keyboard, mouse } = page;
  const turn = mouse.wheel.bind(mouse);
  mouse.wheel = async (...by) => { // the browser may say that it is done before the page hears of it
    await page.evaluate(() => {
      window.hasTurned = false;
      addEventListener('wheel', () => (window.hasTurned = true), { once: true });
    });
    await turn(...by);
    await page.waitForFunction(() => window.hasTurned);
  };
  for (const [hand, steps] of [[page, ['click', 'fill', 'focus', 'reload', 'selectOption', 'setChecked']],
    [keyboard, ['press', 'type', 'down', 'up']], [mouse, ['click', 'down', 'move', 'up', 'wheel']]]) {
    for (const name of steps) {
      const step = hand[name].bind(hand);
      hand[name] = async (...how) => {
        const result = await step(...how);
        await settled(page);
        return result;
      };
    }
  }
  return page;
}

export async function press(page, ...keys) {
  for (const key of keys) await page.keyboard.press(key);
}

/** From the list. */
export const choose = (page, event) => page.click(`#events > :nth-child(${event + 1}) .event`);
export const chosen = (page) => page.locator('.event[aria-pressed=true]').textContent();

export async function openText(page, text) {
  const file = join(scratch, 'events.json');
  writeFileSync(file, text);
  await openFile(page, file);
}

export const openEvents = (page, ...events) => openText(page, JSON.stringify({ events }));

/** Fingers, in steps of a type and places. */
export async function touch(page, steps) {
  const hand = await page.context().newCDPSession(page);
  for (const [type, ...points] of steps) {
    await hand.send('Input.dispatchTouchEvent', { type, touchPoints: points });
    await settled(page);
  }
}

/** The bytes of an export as a buffer, null where there are none. */
export async function exported(page, kind) {
  const text = await page.evaluate(async (kind) => {
    const bytes = (await import('./panels/files.js')).exported(kind);
    return bytes && Array.from(bytes, (byte) => String.fromCharCode(byte)).join('');
  }, kind);
  return text === null ? null : Buffer.from(text, 'latin1');
}

export const savedEvents = async (page) => JSON.parse(await exported(page, 'json')).events;

/** Right or wrong: the page forgets it when it has read it. */
export async function openFile(page, file) {
  await page.setInputFiles('#file', file);
  await page.waitForFunction(() => document.getElementById('file').value === '');
  await settled(page);
}

export const openDemo = (page, name) => openFile(page, join(scratch, `${name}.json`));

/** Where a point of an event, or its grip, is on the screen. */
export const pointOnScreen = (page, lane, event, point) => page.evaluate(async ([lane, event, point]) => {
  const { lanes } = await import('./lanes/lanes.js');
  const { current } = await import('./model/state.js');
  const found = lanes.find(({ canvas }) => canvas.id === lane);
  const { points, grip } = found.handles(current().design.events[event]);
  const [x, y] = point === 'grip' ? grip : points[point];
  const box = found.canvas.getBoundingClientRect();
  return { x: box.left + x, y: box.top + y };
}, [lane, event, point]);

/**
 * Which of these places on a canvas, in pixels from its left top, have a colour of the style sheet beside them. A thin
 * line is mixed with what is below it, and so is told with more tolerance.
 */
export const coloured = (page, id, name, places, tolerance = 20) => page.evaluate(([id, name, places, tolerance]) => {
  const hex = getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
  const wanted = [1, 3, 5].map((at) => parseInt(hex.slice(at, at + 2), 16));
  const canvas = document.getElementById(id);
  const draw = new OffscreenCanvas(canvas.width, canvas.height).getContext('2d', { willReadFrequently: true });
  draw.drawImage(canvas, 0, 0);
  return places.map(([x, y]) => {
    const { data } = draw.getImageData(Math.round(x) - 1, Math.round(y) - 1, 3, 3);
    return Array.from({ length: 9 }, (_, i) => data.slice(4 * i, 4 * i + 4))
      .some((pixel) => pixel[3] > 24 && wanted.every((value, i) => Math.abs(value - pixel[i]) <= tolerance));
  });
}, [id, name, places, tolerance]);

export const shownSpan = (page) => page.evaluate(async () => (await import('./lanes/view.js')).shownSpan());

/** Where a time and a value are on a canvas with such axes, in pixels from its left top. */
export async function plotOf(page, id, { from, to }, [low, high], [above, below]) {
  const { width, height } = await page.locator(`#${id}`).evaluate((canvas) =>
    ({ width: canvas.clientWidth, height: canvas.clientHeight }));
  return (ms, value) => [40 + ((ms - from) / (to - from)) * (width - 50),
    height - below - ((value - low) / (high - low)) * (height - below - above)];
}
