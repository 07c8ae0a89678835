// SPDX-License-Identifier: Apache-2.0
// What the page calls: patterns and taps in, samples, pictures and words out, through linear memory.
//
// A piece, a tap or a pattern, has a number above 0 from when it is made until it is released, and no other piece ever
// has it. There are 16 pieces at most at once. Texts are UTF-8, addresses are valid until the next call; what stands in
// a JSON text is defined in protocol.d.ts. No call traps: arguments outside of what is documented, numbers of no piece
// included, give an empty text and -1, or null.
//
// The page calls _initialize() once, before anything else.
#pragma once

#include <cstddef>
#include <cstdint>

#define STUDIO_EXPORT(name) [[clang::export_name(#name)]]

extern "C" {

// Memory for what is handed over; null where there is none left.
STUDIO_EXPORT(studio_alloc) void* studio_alloc(size_t size);
STUDIO_EXPORT(studio_free) void studio_free(void* memory);

// The text result of the last call that has one.
STUDIO_EXPORT(studio_text) const char* studio_text();
STUDIO_EXPORT(studio_text_length) size_t studio_text_length();

// Text: an About.
STUDIO_EXPORT(studio_about) void studio_about();

// Makes a piece of a pattern in any format that About lists, which plays loops (1..65535) times with gaps of
// interval_ms (0..600000) between them, whatever its text says of these, of motor, chip and boost. Motors and chips (0,
// 1 or 11) as in the library's header. Returns its number, 0 where there are faults; one is also a waveform of more
// than 600000 ms, or an event stream of more than 64 MiB. Text: its Facts.
STUDIO_EXPORT(studio_pattern)
int studio_pattern(const char* json, size_t length, const char* name, size_t name_length, int motor, int chip,
                   int boost, int loops, int interval_ms);

// A sound is listened to from here on, in place of any other: of so many samples a second, with a floor of -80..-6 and
// a gain of -60..60 decibels, for taps, for curves or for both. Returns 0.
STUDIO_EXPORT(studio_listen) int studio_listen(double rate, double floor_db, double gain_db, int taps, int curves);

// Its next samples, of one channel, of which full scale is 1 or -1: 65536 at most. Returns 1 as long as there is any
// use in more of them, else 0.
STUDIO_EXPORT(studio_hear) int studio_hear(const float* samples, size_t count);

// What it means as a pattern for that profile, and its end: nothing is listened to any more. Returns 1, 0 where there
// are faults. Text: a Heard.
STUDIO_EXPORT(studio_heard) int studio_heard(const char* name, size_t name_length, int motor, int chip, int boost);

// Makes a piece of a tap: level and intensity 0..100. Returns as above. Text: its Facts.
STUDIO_EXPORT(studio_tap) int studio_tap(int level, int intensity, int in_pattern, int motor, int chip);

// Its number is no piece's from then on. Any other number changes nothing.
STUDIO_EXPORT(studio_release) void studio_release(int piece);

// Sample codes from sample first on, or bytes of an event stream: count of them, or as many as there are. Null where
// there is none.
STUDIO_EXPORT(studio_read) const uint8_t* studio_read(int piece, double first, double count);

// Lowest and highest amplitude in each of so many (1..65536) equal parts of the samples first..first + count - 1. Each
// column has one sample at least; those beside the piece have 127 and -128.
STUDIO_EXPORT(studio_extremes) const int8_t* studio_extremes(int piece, double first, double count, int columns);

// The estimated response of the motor, with a quality of 1..1000 and a resonance of up to 2000 Hz; 0 is the motor's
// own. Text: an Estimate. Returns lowest and highest displacement in each of so many (0..65536) equal parts of
// from_ms..to_ms, in units in which 1 is the swing that a full-scale tone at the resonance reaches; columns without a
// sample have 1 and -1. Null without columns.
STUDIO_EXPORT(studio_response)
const double* studio_response(int piece, double quality, double hz, double from_ms, double to_ms, int columns);

// The estimated level that a finger feels, at 1 g rated, with a resonator as above. Text: a Feeling. Returns the
// strongest level in each of so many (0..65536) equal parts of from_ms..to_ms, in decibels above threshold, 0 where
// nothing is felt. Null without columns.
STUDIO_EXPORT(studio_felt)
const double* studio_felt(int piece, double quality, double hz, double from_ms, double to_ms, int columns);

// Makes the text one of these forms, and returns its length: "json" (canonical), "flat" (the same as records) and
// "c" (the request) of patterns; "bin", "csv", "summary" of anything; "wav", "felt.csv" and "svg" not of event streams.
// What is estimated is so with that resonator; with a quality of -1 it is the motor's own, and the response is left out
// of the picture. What is to be felt is driven for the motor's own in any case. The picture shows from_ms..to_ms; a
// to_ms of 0 is its end.
STUDIO_EXPORT(studio_form)
int studio_form(int piece, const char* form, size_t length, double quality, double hz, double from_ms, double to_ms);

// A pattern in one of the formats that About lists as written, on a chip that renders samples. Text: a Converted.
// Returns the length of that.
STUDIO_EXPORT(studio_convert) int studio_convert(int piece, const char* format, size_t length);

}  // extern "C"
