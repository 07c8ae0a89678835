// SPDX-License-Identifier: Apache-2.0
// Patterns in files, links and the browser's own store.

import { eventOf, readEvent } from '../model/events.js';
import { asSaved, designOf } from '../model/file.js';
import { isInteger } from '../model/numbers.js';
import { current, edit, emptyDesign, forgetPast, onStepEnd, show } from '../model/state.js';
import { about, convert, form, laidOutBy, patternPiece, readPattern, release } from '../library/pieces.js';
import { decoded, heard } from '../library/sound.js';
import { element, make, setValue } from '../page/elements.js';
import { wordItems } from '../page/words.js';

/** @import {Said} from '../model/file.js' */
/** @import {Piece} from '../library/pieces.js' */
/** @import {Design, Profile, State, Words} from '../model/state.js' */

const firstExample = 'heartbeat';
const examples = [firstExample, 'sunrise', 'chirp', 'sweep', 'fade', 'alarm', 'rain', 'overlap'];
const store = 'lrasynth studio';
const mostOfSound = 256 * 2 ** 20; // bytes
const selected = { event: -1, point: -1, cursor: 0, view: null, messages: [] };

/** @param {Words['kind']} kind @param {string[]} lines */
const say = (kind, ...lines) => show({ messages: lines.map((line) => ({ line, kind })) });

const canonical = (/** @type {Piece} */ piece) =>
  new TextDecoder().decode(form(piece, 'json', current().response) ?? undefined);

/**
 * What a text makes of a piece that is released then.
 * @template T
 * @param {string} text @param {string} file @param {Design} design @param {(piece: Piece) => T} make
 */
function madeOf(text, file, design, make) {
  const piece = readPattern(text, file, design);
  try {
    return make(piece);
  } finally {
    release(piece);
  }
}

/**
 * Nothing gets in but what the command reads; else its words are shown. What is wrong on this motor alone is told
 * later, at the events.
 * @param {string} text @param {string} file
 * @param {Profile} [profile] that it was made for, where its text does not tell
 * @param {readonly string[]} lost before it was text
 */
function open(text, file, profile, lost = []) {
  const plain = madeOf(text, file, emptyDesign, read);
  const said = profile ?? offered(plain.facts.said);
  const own = designOf(said, {}, '');
  // Some are for the chip that they name alone.
  const { facts, json } = plain.json === null ? madeOf(text, file, own, read) : plain;
  if (json === null) return say('fault', ...plain.facts.faults);
  const { events: written, ...header } = JSON.parse(json);
  // Numbered as in this form.
  const { starts, entries } = madeOf(json, file, plain.json === null ? own : emptyDesign, ({ facts }) =>
    ({ starts: facts.starts, entries: laidOutBy(facts) }));
  const events = written.map((/** @type {unknown} */ event, /** @type {number} */ i) => {
    const start = starts[i] ?? 0;
    const end = (entries[i] ?? []).reduce((end, { end_ms = 0 }) => Math.max(end, end_ms), start);
    return readEvent(event, start, end - start);
  });
  edit({ ...designOf(said, header, file.replace(/\.[a-z]\w*$/i, '')), events }, '', selected);
  const { notes } = patternPiece(current().design).facts;
  const lines = [...lost, ...facts.losses, ...notes, ...(facts.comments ? ['its comments are not kept'] : [])];
  say('note', ...lines.map((line) => `${file}: ${line}`));
}

/** For the motor that is chosen, since it is made to sound like that there. @param {File} file */
async function openSound(file) {
  if (file.size > mostOfSound) return say('fault', `${file.name}: is larger than 256 MiB`);
  say('note', `${file.name}: is listened to …`);
  const sound = await file.arrayBuffer().then(decoded).catch(() => null);
  if (sound === null) return say('fault', `${file.name}: is neither text nor sound that this browser can read`);
  const { profile } = current().design;
  const { faults, losses, json } = heard(sound, file.name, profile);
  if (faults.length > 0) return say('fault', ...faults);
  open(json, file.name, profile, losses);
}

/** A byte of 0 stands in the head of any sound, and in no text. @param {File} file */
const isSound = async (file) => new Uint8Array(await file.slice(0, 4096).arrayBuffer()).includes(0);

/** As far as the menus have it. @param {Said} said @returns {Said} */
const offered = (said) => ({
  ...said,
  motor: about.motors.find(({ motor }) => motor === said.motor)?.motor,
  chip: about.chips.find(({ chip }) => chip === said.chip)?.chip,
});

/** Its form is null where it has faults. @param {Piece} piece */
const read = (piece) => ({ facts: piece.facts, json: piece.facts.faults.length > 0 ? null : canonical(piece) });

/** @param {string} name @param {() => Promise<void>} opening */
async function opened(name, opening) {
  try {
    await opening();
  } catch {
    say('fault', `${name}: cannot be read`);
  }
}

/** @param {string} kind one of studio_form's */
export function exported(kind) {
  const { design, response } = current();
  if (kind !== 'json') return form(patternPiece(design), kind, response);
  return saved(design, (piece) => form(piece, kind, response));
}

/** What the design makes as it is saved. @template T @param {Design} design @param {(piece: Piece) => T} make */
const saved = (design, make) =>
  madeOf(asSaved(design, patternPiece(design).facts.said), design.name, design, make);

/** Of what is no ending itself. @type {Record<string, string>} */
const endings = { flat: 'flat.json' };

/** @param {string} kind */
function download(kind) {
  const bytes = exported(kind);
  if (bytes === null) return say('fault', `${kind.toUpperCase()}: nothing to write.`);
  handOut(bytes, `.${endings[kind] ?? kind}`);
}

/** Returns the name of the file. @param {BlobPart} content @param {string} ending */
function handOut(content, ending) {
  const address = URL.createObjectURL(new Blob([content]));
  const file = `${current().design.name || 'pattern'}${ending}`;
  make('a', { href: address, download: file }).click();
  setTimeout(() => URL.revokeObjectURL(address), 10000);
  return file;
}

/** In the format that is chosen. */
function downloadForOthers() {
  const made = saved(current().design, (piece) => convert(piece, formats.value));
  if (made === null) return say('fault', `${formats.value}: nothing to write.`);
  const ending = outgoing.find(({ name }) => name === formats.value)?.ending ?? '';
  const file = handOut(made.content, ending);
  say('note', ...made.losses.map((line) => `${file}: ${line}`));
}

/** @param {BlobPart} data @param {CompressionStream | DecompressionStream} through */
const passed = (data, through) => new Response(new Blob([data]).stream().pipeThrough(through)).arrayBuffer();

/** The design as the fragment of a link. @param {Design} design */
export async function fragmentOf(design) {
  const packed = new Uint8Array(await passed(JSON.stringify(design), new CompressionStream('deflate-raw')));
  const text = btoa(Array.from(packed, (byte) => String.fromCharCode(byte)).join(''));
  return `#p=${text.replaceAll('+', '-').replaceAll('/', '_').replaceAll('=', '')}`;
}

/** @param {string} fragment */
async function designIn(fragment) {
  const packed = atob(fragment.slice(3).replaceAll('-', '+').replaceAll('_', '/'));
  const bytes = Uint8Array.from(packed, (character) => character.charCodeAt(0));
  return new TextDecoder().decode(await passed(bytes, new DecompressionStream('deflate-raw')));
}

/** A design of a link or an earlier visit, which may be anything. @param {string} text */
function takeDesign(text) {
  const { name, profile, loops, interval, header: { ...header } = {}, events: written } = JSON.parse(text);
  const { motor, chip, boost } = profile;
  const events = written.map(eventOf);
  const design =
    { name: String(name), profile: { motor, chip, boost: Boolean(boost) }, loops, interval, header, events };
  if (![motor, chip, loops, interval].every(isInteger) || events.includes(null)) throw new Error();
  patternPiece(design); // throws where there is no such profile
  edit(design, '', selected);
}

/** The last work, or an example, and then what a link carries, which can be undone. */
export async function restore() {
  await restoreLast();
  forgetPast();
  kept = current();
  onStepEnd(keep);
  await openLink();
  window.addEventListener('pagehide', keep);
  window.addEventListener('hashchange', openLink);
}

async function openLink() {
  if (!location.hash.startsWith('#p=')) return;
  try {
    const text = await designIn(location.hash);
    isLooking = true;
    takeDesign(text);
  } catch {
    say('fault', 'This link carries no pattern.');
  }
  isLooking = false;
}

async function restoreLast() {
  try {
    const text = sessionStorage.getItem(store) ?? localStorage.getItem(store) ?? ''; // of this tab, or of the last one
    takeDesign(text);
    const { shown, quality, hz } = JSON.parse(text).response ?? {};
    if (isInteger(quality) && isInteger(hz)) show({ response: { shown: Boolean(shown), quality, hz } });
  } catch {
    await openExample(firstExample); // nothing is kept, or nothing may be
  }
}

/** What needs not be kept: it is, or comes again with its link. */
let kept = current();
let isLooking = false; // at what a link carries, which is no work

/** What was done. From then on a link in the address is not what is shown. */
function keep() {
  const { design, response } = current();
  if (design === kept.design && response === kept.response) return;
  kept = current();
  if (isLooking) return;
  if (location.hash !== '') history.replaceState(null, '', location.pathname);
  try {
    for (const place of [localStorage, sessionStorage]) place.setItem(store, JSON.stringify({ ...design, response }));
  } catch {
    // The browser may forbid it.
  }
}

/** @param {string} name */
const openExample = (name) => opened(`${name}.json`, async () =>
  open(await (await fetch(`examples/${name}.json`)).text(), `${name}.json`));

async function copyLink() {
  const link = location.href.replace(/#.*/, '') + (await fragmentOf(current().design));
  try {
    await navigator.clipboard.writeText(link);
    say('done', 'The link is copied.');
  } catch {
    history.replaceState(null, '', link);
    say('done', 'The link is in the address bar.');
  }
}

/** @param {File | undefined} file */
const openFile = (file) => file && opened(file.name, async () =>
  (await isSound(file)) ? openSound(file) : open(await file.text(), file.name));

const readEndings = about.formats.filter(({ read }) => read).map(({ ending }) => ending);
// Ours is the first, which has a form for whoever knows nothing of motors; it is not what is saved.
const [ours, ...others] = about.formats.filter(({ written }) => written);
const outgoing = [...others, { ...ours, ending: '.driven.json', help: 'patterns as this motor is driven' }];
const input = element('file', HTMLInputElement);
input.accept = [...readEndings, 'audio/*'].join();
element('opened', HTMLElement).textContent = `Or drop a file anywhere: ${readEndings.join(', ')}, or sound. `;
const formats = element('format', HTMLSelectElement);
formats.append(...outgoing.map(({ name, ending, help }) => new Option(`${ending}: ${help}`, name)));
const forOthers = element('convert', HTMLButtonElement);
forOthers.onclick = downloadForOthers;
const choice = element('example', HTMLSelectElement);
choice.append(...examples.map((name) => new Option(name)));
choice.onchange = () => {
  if (choice.value !== '') openExample(choice.value);
  choice.value = '';
};
element('open', HTMLButtonElement).onclick = () => input.click();
input.onchange = async () => {
  await openFile(input.files?.[0]);
  input.value = '';
};
element('new', HTMLButtonElement).onclick = () => {
  const { profile: _, ...others } = emptyDesign;
  edit(others, '', selected);
};
element('help', HTMLPreElement).textContent = about.help.trim();
element('link', HTMLButtonElement).onclick = copyLink;
element('close', HTMLButtonElement).onclick = () => say('done');
const name = element('name', HTMLInputElement);
name.oninput = () => edit({ name: name.value }, 'name');
for (const button of document.querySelectorAll('[data-form]')) {
  button.addEventListener('click', () => download(/** @type {HTMLElement} */ (button).dataset.form ?? ''));
}
document.addEventListener('dragover', (event) => event.preventDefault());
document.addEventListener('drop', async (event) => {
  event.preventDefault();
  await openFile(event.dataTransfer?.files[0]);
});
/** @type {State['messages'] | null} */
let said = null;

export function showFiles() {
  const { design, messages } = current();
  const { facts } = patternPiece(design);
  setValue('name', design.name);
  element('file-note', HTMLElement).textContent = String(design.header.note ?? '');
  const none = facts.faults.length > 0;
  for (const button of document.querySelectorAll('button[data-form]')) {
    const kind = /** @type {HTMLElement} */ (button).dataset.form ?? '';
    /** @type {HTMLButtonElement} */ (button).disabled = none || (facts.stream && ['wav', 'svg'].includes(kind));
  }
  forOthers.disabled = none || facts.stream;
  if (messages === said) return;
  said = messages;
  element('messages', HTMLElement).replaceChildren(...wordItems(messages));
  element('notice', HTMLElement).hidden = messages.length === 0;
}
