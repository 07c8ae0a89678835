// SPDX-License-Identifier: Apache-2.0
// The built site in Debian's browser, and the command beside it.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { basename, extname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';

const root = fileURLToPath(new URL('../..', import.meta.url));
export const site = process.env.STUDIO_SITE ?? join(root, 'build/web/site');
export const demos = join(root, 'tools/demo');
const command = process.env.LRASYNTH ?? join(root, 'build/test/tools/lrasynth');
export const scratch = mkdtempSync(join(tmpdir(), 'studio-'));

/** Run where the demo patterns are. */
export function lrasynth(...words) {
  const { error, status, stdout, stderr } = spawnSync(command, words, { cwd: demos, maxBuffer: 1 << 28 });
  assert.ifError(error);
  const lines = stderr.toString().trim().split('\n').map((line) => line.replace(/^lrasynth: /, ''));
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

export async function stopBrowser() {
  await browser?.close();
  server.close();
  assert.deepEqual(wrongs, []);
}

/** A page of a fresh visitor, or of one that has been there. */
export async function openPage({ context, link = '', ...options } = {}) {
  const visitor = context ?? (await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options }));
  const page = await visitor.newPage();
  page.setDefaultTimeout(10000);
  page.on('console', (message) => message.type() !== 'log' && wrongs.push(message.text()));
  page.on('pageerror', (error) => wrongs.push(error.message));
  page.on('request', (request) => /^(blob:)?http:\/\/127\.0\.0\.1:/.test(request.url()) || wrongs.push(request.url()));
  page.on('response', (response) => response.ok() || wrongs.push(`${response.status()} ${response.url()}`));
  await page.goto(address + link);
  await drawn(page);
  return page;
}

export const drawn = (page) => page.waitForFunction(() => performance.getEntriesByName('draw').length > 0);

/** What was done is on the screen, and kept. */
export const shown = (page) =>
  page.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done))));

export const click = async (page, selector) => (await page.click(selector), shown(page));
export const fill = async (page, selector, text) => (await page.fill(selector, text), shown(page));
export const reload = async (page) => (await page.reload(), drawn(page));

/** From the list. */
export const choose = async (page, event) => (await page.locator('.event').nth(event).click(), shown(page));
export const chosen = (page) => page.locator('.event[aria-pressed=true]').textContent();

export async function openEvents(page, ...events) {
  const file = join(scratch, 'events.json');
  writeFileSync(file, JSON.stringify({ events }));
  await openFile(page, file);
}

/** Fingers, in steps of a type and places. */
export async function touch(page, steps) {
  const hand = await page.context().newCDPSession(page);
  for (const [type, ...points] of steps) await hand.send('Input.dispatchTouchEvent', { type, touchPoints: points });
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

/** A right one. */
export async function openFile(page, file) {
  await page.setInputFiles('#file', file);
  await page.waitForFunction((name) => document.getElementById('name').value === name, basename(file, '.json'));
  await shown(page);
}

export const openDemo = (page, name) => openFile(page, join(demos, `${name}.json`));

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
