// SPDX-License-Identifier: Apache-2.0
// The note that any event may have.

/**
 * Reads an event that may have a note, and nothing else than what `read` takes of it.
 * @template {object} E
 * @param {(value: any) => E | null} read @returns {(value: any) => (E & {note?: string}) | null}
 */
export const noted = (read) => ({ note, ...value }) => {
  const event = read(value);
  if (event === null || !['string', 'undefined'].includes(typeof note)) return null;
  if (Object.keys(value).some((name) => !Object.hasOwn(event, name))) return null;
  return note === undefined ? event : { ...event, note };
};
