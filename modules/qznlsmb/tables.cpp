#include "modules/qznlsmb/tables.h"

#include <bit>

namespace veldnls {

// Values with two code bytes are made for hosts that keep the low byte first.
static_assert(std::endian::native == std::endian::little);

namespace {

#include "sets/singles.inc"
#include "sets/tables.inc"

}  // namespace

constexpr ToUnicodeSet toUnicodeSets[] = {
#include "sets/to_sets.inc"
};

constexpr FromUnicodeSet fromUnicodeSets[] = {
#include "sets/from_sets.inc"
};

constexpr const char16_t* const singleToUnicode[] = {singleTo0, singleTo1, singleTo2, singleTo3,
                                                     singleTo4, singleTo5, singleTo6};
constexpr const uint8_t* const singleFromUnicode[] = {singleFrom0, singleFrom1, singleFrom2, singleFrom3,
                                                      singleFrom4, singleFrom5, singleFrom6};
constexpr const uint16_t* const halfWidthKatakana[] = {katakana0, katakana1, katakana2, katakana3,
                                                       katakana4, katakana5, katakana6};
constexpr const uint16_t* const eucHalfWidthKatakana = katakanaEuc;

constexpr uint8_t identity[] = {
#include "sets/identity.inc"
};

constexpr uint8_t asciiPassthrough[] = {
#include "sets/ascii_passthrough.inc"
};

constexpr uint8_t ebcdicToAscii[] = {
#include "sets/ebcdic_to_ascii.inc"
};

constexpr uint8_t asciiToEbcdic[] = {
#include "sets/ascii_to_ebcdic.inc"
};

constexpr EuroByte singleByteEuros[] = {
#include "sets/euro_bytes.inc"
};

constexpr EuroCode multiByteEuros[] = {
#include "sets/euro_codes.inc"
};

}  // namespace veldnls
