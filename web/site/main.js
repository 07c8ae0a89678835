// SPDX-License-Identifier: Apache-2.0
// Starts the studio, which needs what is compiled, or says why it cannot.

import { element } from './page/elements.js';

import('./studio.js').catch((error) => {
  element('notice', HTMLElement).hidden = false;
  element('messages', HTMLElement).textContent = `The studio cannot start: ${error.message}`;
});
