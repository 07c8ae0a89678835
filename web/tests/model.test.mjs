// SPDX-License-Identifier: Apache-2.0
// What needs no browser: the rooms of the page, and its model.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import { dirname, join, relative } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const site = fileURLToPath(new URL('../site', import.meta.url));
const modules = readdirSync(site, { recursive: true }).filter((file) => file.endsWith('.js')).sort();
const textOf = (file) => readFileSync(join(site, file), 'utf8');

test('a module imports only rooms to its left, and none leads back to itself', () => {
  const rooms = ['model', 'library', 'page', 'lanes', 'panels', '.'];
  const imported = Object.fromEntries(modules.map((file) => {
    const paths = [...textOf(file).matchAll(/^import .*'(.*)';|^import\('(.*)'\)/gm)].map(([, path, late]) => path ?? late);
    return [file, paths.map((path) => relative(site, join(site, dirname(file), path)))];
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
