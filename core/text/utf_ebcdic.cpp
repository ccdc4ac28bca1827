#include "core/text/utf_ebcdic.h"

namespace veldnls {

constexpr uint8_t ebcdicToI8[] = {
#include "pages/ebcdic_to_i8.inc"
};

constexpr uint8_t i8ToEbcdic[] = {
#include "pages/i8_to_ebcdic.inc"
};

}  // namespace veldnls
