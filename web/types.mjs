// SPDX-License-Identifier: Apache-2.0
// What studio.h exports, as types: printed for exports.d.ts.
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

const declaration = /^STUDIO_EXPORT\((\w+)\)\s+(.+?) ?\b\1\(([^)]*)\);$/gm;
const typeOf = (words) => (words.endsWith('*') ? 'Address' : words === 'void' ? 'void' : 'number');
const argumentOf = (words) => ({ name: words.match(/\w+$/)[0], type: typeOf(words.replace(/ *\w+$/, '')) });

/** Of each function its name, its result and its arguments. */
export const declared = Array.from(
  readFileSync(new URL('./studio.h', import.meta.url), 'utf8').matchAll(declaration),
  ([, name, result, words]) =>
    ({ name, result: typeOf(result), arguments: words === '' ? [] : words.split(/,\s+/).map(argumentOf) }));

export const declarations = `// SPDX-License-Identifier: Apache-2.0
// Printed by types.mjs from studio.h.

/** In linear memory; 0 is null. */
export type Address = number & { readonly address: unique symbol };

export interface Exports {
  memory: WebAssembly.Memory;
  _initialize(): void;
${declared.map(({ name, result, arguments: all }) =>
    `  ${name}(${all.map(({ name, type }) => `${name}: ${type}`).join(', ')}): ${result};\n`).join('')}}
`;

if (import.meta.url === pathToFileURL(process.argv[1]).href) process.stdout.write(declarations);
