// Listing the events of a request for a chip that plays them by itself.
#include "pattern/event_stream.h"

#include "profile/arithmetic.h"
#include "profile/sample_code.h"

namespace lrasynth {
namespace {

constexpr int32_t kHeaderLength = 2;
constexpr int32_t kGroupLength = 6;
constexpr int32_t kTransientMs = 5;  // what a transient counts as

struct Group {
  int32_t delta_ms;
  int32_t strength;
  int32_t duration_ms;

  uint8_t byte(int64_t i) const {
    switch (i) {
      case 1:
        return low_byte(delta_ms);
      case 2:
        return low_byte(delta_ms >> 8);
      case 3:
        return low_byte(strength);
      case 4:
        return low_byte(duration_ms);
      case 5:
        return low_byte(duration_ms >> 8);
      default:
        return 0;
    }
  }
};

// Visits the group of each event, wherever in the array its type code stands.
template <class Visit>
void for_each_group(const Request& request, Visit visit) {
  bool first = true;
  for (int64_t i = 0; i < request.length(); ++i) {
    const int32_t type = request.at(i);
    if (!is_event(type)) continue;
    // The predecessor is whatever stands one record before, even where no record does.
    const int32_t since_ms = first ? 0 : request.at(i + 1 - LRASYNTH_RECORD_LENGTH);
    const int32_t delta_ms = wrapping_subtract(request.at(i + 1), since_ms);
    const bool continuous = type == LRASYNTH_CONTINUOUS;
    visit(Group{.delta_ms = delta_ms,
                .strength = request.at(continuous ? i + 9 : i + 2),
                .duration_ms = continuous ? request.at(i + 4) : kTransientMs});
    first = false;
  }
}

}  // namespace

EventStream::EventStream(const Request& request, int32_t loop_count) : request_(request) {
  int64_t block = 0;
  for_each_group(request_, [&](const Group& group) {
    block += kGroupLength;
    total_ms_ = wrapping_add(total_ms_, wrapping_add(group.delta_ms, group.duration_ms));
  });
  groups_ = {.pass = block, .copies = std::max(1, loop_count) - int64_t{1}, .stride = block};
  total_ms_ = wrapping_multiply(total_ms_, loop_count);
}

int64_t EventStream::length() const { return kHeaderLength + groups_.end(); }

void EventStream::draw(const Window<uint8_t>& window) const {
  const uint8_t header[kHeaderLength] = {low_byte(total_ms_), low_byte(total_ms_ >> 8)};
  const Window<uint8_t> part = window.of_piece(0, kHeaderLength);
  std::copy(header + part.first, header + part.end, part.out);
  draw_repeated(groups_, window.of_piece(kHeaderLength, groups_.end()),
                [this](const Window<uint8_t>& groups) { draw_groups(groups); });
}

void EventStream::draw_groups(const Window<uint8_t>& window) const {
  int64_t at = 0;
  for_each_group(request_, [&](const Group& group) {
    const Window<uint8_t> part = window.of_piece(at, kGroupLength);
    for (int64_t i = part.first; i < part.end; ++i) part.out[i - part.first] = group.byte(i);
    at += kGroupLength;
  });
}

}  // namespace lrasynth
