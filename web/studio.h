// SPDX-License-Identifier: Apache-2.0
// What the page calls: patterns and taps in, samples, pictures and words out, through linear memory.
//
// There is one current piece, a tap or a pattern. Texts are UTF-8, addresses are valid until the next call. No call
// traps: arguments outside of what is documented give an empty text and -1, or null.
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

// Text: {"version":"1.1.0","longest_ms":600000,"help":the form of a pattern file in words,"motors":[{"motor":1040,
// "taps":true,"boost":false,"shares":true,"resonance":170,"hz":[without boost, with it: of the offsets -50..50]}]}.
STUDIO_EXPORT(studio_about) void studio_about();

// Makes a pattern the current piece, loops (1..65535) times with gaps of interval_ms (0..600000) between them. Motors
// and chips (0, 1 or 11) as in the library's header. Returns 0, or the number of faults; there is no piece then. A
// fault is also a waveform of more than 600000 ms, or an event stream of more than 64 MiB.
//
// Text:
//   {"faults":["heartbeat.json:3:12: event 2, ...", as the command says them],
//    "fault_events":[of each listed fault the event's number; 0: none in particular],
//    "title":"...","length":samples or bytes of the event stream,"rate":24000,"length_ms":..,"pass_ms":..,
//    "stream":false,
//    "events":[in the order in which they start,
//      {"number":1,"type":"transient","start":0,"intensity":80,"level":50,"driven":64,
//       "end_ms":12.5,"heard":[[0,12.5]]},
//      {"number":2,"type":"continuous","start":40,"duration":400,"points":[[time,intensity,offset] x 4],
//       "hz":[at each point],"sweeps":[{"from_ms":40,"to_ms":140,"from_hz":..,"to_hz":..,"reached_hz":..}],
//       "end_ms":440,"heard":[[40,440]]}],
//    "warnings":[{"event":2,"ms":40,"line":"event 2 at 40 ms: ..."}],
//    "sections":[{"from":ms,"to":ms,"label":"pass 1"}]}
// Times are those of the first pass, in ms from its start; number is the place in the file, from 1. With faults, the
// events are those that can be read, and nothing but number, type and their fields is told of them.
STUDIO_EXPORT(studio_pattern)
int studio_pattern(const char* json, size_t length, const char* name, size_t name_length, int motor, int chip,
                   int boost, int loops, int interval_ms);

// Makes a tap the current piece: level and intensity 0..100. Text as above, with no events, and with the named segments
// as sections where they are known.
STUDIO_EXPORT(studio_tap) int studio_tap(int level, int intensity, int in_pattern, int motor, int chip);

// Sample codes from sample first on, or bytes of an event stream: count of them, or as many as there are. Null where
// there is none.
STUDIO_EXPORT(studio_read) const uint8_t* studio_read(double first, double count);

// Lowest and highest amplitude in each of so many (1..65536) equal parts of the samples first..first + count - 1. Each
// column has one sample at least; those beside the piece have 127 and -128.
STUDIO_EXPORT(studio_extremes) const int8_t* studio_extremes(double first, double count, int columns);

// The estimated response of the motor, with a quality of 1..1000 and a resonance of 0 (the motor's own) to 2000 Hz.
// Text: {"peak":..,"numbers":[[name,value with its unit]]}. Returns lowest and highest displacement
// in each of so many (0..65536) equal parts of from_ms..to_ms, in units in which 1 is the swing that a full-scale tone
// at the resonance reaches; columns without a sample have 1 and -1. Null without columns.
STUDIO_EXPORT(studio_response)
const double* studio_response(double quality, double hz, double from_ms, double to_ms, int columns);

// Makes the text one of these forms, and returns its length: "json" (canonical) and "c" (the request) of patterns;
// "bin", "csv", "summary" of anything; "wav" and "svg" not of event streams. A quality of 0 leaves the response out of
// the picture, which shows from_ms..to_ms; a to_ms of 0 is its end.
STUDIO_EXPORT(studio_form)
int studio_form(const char* form, size_t length, double quality, double hz, double from_ms, double to_ms);

}  // extern "C"
