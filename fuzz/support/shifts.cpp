#include "fuzz/support/shifts.h"

#include "fuzz/support/object.h"
#include "reference/encoding_text.h"
#include "reference/multi_byte_text.h"
#include "veldnls/cei.h"

namespace fuzz {

namespace {

using transcode_test::encodingText;
using transcode_test::isMultiByteClass;

bool isMultiByte(CEI cei) { return isMultiByteClass(encodingText(cei).encodingClass); }

// Single bytes that need no conversion are read as ASCII.
Bytes unitsOf(CEI source, Span text) {
  if (encodingText(source).encodingClass == 0) {
    Bytes units;
    for (const uint8_t byte : text) units.insert(units.end(), {byte, 0});
    return units;
  }
  const Pipeline toUnits(source, U_L_UNICODE_CE);
  if (source == U_L_UNICODE_CE || toUnits == nullptr) return {text.begin(), text.end()};
  return outputOf(toUnits, text);
}

}  // namespace

Bytes shiftOutOf(CEI cei) { return isMultiByte(cei) ? encodingText(cei).shiftOut : Bytes(); }
Bytes shiftInOf(CEI cei) { return isMultiByte(cei) ? encodingText(cei).shiftIn : Bytes(); }

void joinSeams(Bytes& text, CEI cei) {
  Bytes seam = shiftInOf(cei);
  const Bytes shiftOut = shiftOutOf(cei);
  seam.insert(seam.end(), shiftOut.begin(), shiftOut.end());
  if (seam.empty()) return;
  for (;;) {
    const auto found = std::ranges::search(text, seam);
    if (found.empty()) return;
    text.erase(found.begin(), found.end());
  }
}

Span withoutClosing(Span text, CEI cei) {
  const Bytes shiftIn = shiftInOf(cei);
  if (shiftIn.empty() || text.size() < shiftIn.size()) return text;
  const bool closed = std::ranges::equal(text.last(shiftIn.size()), shiftIn);
  return closed ? text.first(text.size() - shiftIn.size()) : text;
}

bool hasShiftsAsCharacters(CEI source, CEI target, Span text) {
  const Bytes shiftOut = shiftOutOf(target);
  const Bytes shiftIn = shiftInOf(target);
  if (shiftIn.empty()) return false;
  const auto& single = transcode_test::singleByteText(encodingText(target).singleByteSet);
  const Bytes units = unitsOf(source, text);
  for (size_t i = 0; i + 1 < units.size(); i += 2) {
    if (units[i + 1] != 0 || units[i] >= 0x9F) continue;
    const uint8_t byte = single.bytes[units[i]];
    if (byte == shiftOut[0] || byte == shiftIn[0]) return true;
  }
  return false;
}

}  // namespace fuzz
