// SPDX-License-Identifier: Apache-2.0
// Writes a WebAssembly module as text into a JavaScript module: node embed.mjs lrasynth.wasm wasm.js
import { readFileSync, writeFileSync } from 'node:fs';

const [wasm, module] = process.argv.slice(2);
writeFileSync(module, `// SPDX-License-Identifier: Apache-2.0
// lrasynth.wasm in base64.
export default '${readFileSync(wasm).toString('base64')}';
`);
