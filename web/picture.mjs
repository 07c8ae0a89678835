// SPDX-License-Identifier: Apache-2.0
// The studio's picture for the documentation.
import { fileURLToPath } from 'node:url';
import { choose, openDemo, openPage, startBrowser, stopBrowser } from './tests/browser.mjs';

await startBrowser();
const page = await openPage({ viewport: { width: 1360, height: 880 }, colorScheme: 'light' });
await openDemo(page, 'sunrise');
await choose(page, 2);
await page.click('#close');
await page.focus('#intensity-lane');
await page.keyboard.press('3');
await page.evaluate(() => /** @type {HTMLElement} */ (document.activeElement).blur());
await page.mouse.move(0, 0);
await page.screenshot({ path: fileURLToPath(new URL('../docs/pictures/studio.png', import.meta.url)) });
await stopBrowser();
