// SPDX-License-Identifier: Apache-2.0
// Printed by types.mjs from studio.h.

/** In linear memory; 0 is null. */
export type Address = number & { readonly address: unique symbol };

export interface Exports {
  memory: WebAssembly.Memory;
  _initialize(): void;
  studio_alloc(size: number): Address;
  studio_free(memory: Address): void;
  studio_text(): Address;
  studio_text_length(): number;
  studio_about(): void;
  studio_pattern(json: Address, length: number, name: Address, name_length: number, motor: number, chip: number, boost: number, loops: number, interval_ms: number): number;
  studio_listen(rate: number, floor_db: number, gain_db: number, taps: number, curves: number): number;
  studio_hear(samples: Address, count: number): number;
  studio_heard(name: Address, name_length: number, motor: number, chip: number, boost: number): number;
  studio_tap(level: number, intensity: number, in_pattern: number, motor: number, chip: number): number;
  studio_release(piece: number): void;
  studio_read(piece: number, first: number, count: number): Address;
  studio_extremes(piece: number, first: number, count: number, columns: number): Address;
  studio_response(piece: number, quality: number, hz: number, from_ms: number, to_ms: number, columns: number): Address;
  studio_felt(piece: number, quality: number, hz: number, from_ms: number, to_ms: number, columns: number): Address;
  studio_form(piece: number, form: Address, length: number, quality: number, hz: number, from_ms: number, to_ms: number): number;
  studio_convert(piece: number, format: Address, length: number): number;
}
