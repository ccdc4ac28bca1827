#include "modules/qznlssb/utf8_sequence.h"

namespace veldnls {

namespace {

// What a lead byte leaves of itself, by the number of bytes behind it.
constexpr uint8_t leadMasks[] = {0x7F, 0x1F, 0x0F, 0x07, 0x03, 0x01};

bool isContinuation(uint8_t byte) { return (byte & 0xC0) == 0x80; }

// Of a second byte that is a continuation.
bool secondFits(uint8_t lead, uint8_t second) {
  switch (lead) {
    case 0xE0:
      return second >= 0xA0;
    case 0xED:
      return second <= 0x9F;
    case 0xF0:
      return second >= 0x90;
    default:
      return true;
  }
}

// Leads of five and six bytes, among others, begin nothing valid.
bool leadFits(uint8_t lead) { return lead > 0xC1 && lead <= 0xF4; }

}  // namespace

uint32_t readLongUtf8(const uint8_t* start, uint32_t available, uint32_t& advance) {
  const uint8_t lead = start[0];
  const uint32_t extra = utf8ExtraBytes(lead);
  uint32_t code = lead & leadMasks[extra];
  for (uint32_t i = 1; i <= extra; ++i) {
    if (i == available || !isContinuation(start[i])) {
      advance = i;
      return invalidUtf8;
    }
    code = code << 6 | (start[i] & 0x3F);
  }
  advance = extra + 1;
  return leadFits(lead) && secondFits(lead, start[1]) ? code : invalidUtf8;
}

}  // namespace veldnls
