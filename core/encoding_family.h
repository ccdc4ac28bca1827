// Families of stateless multi-byte encodings: their members differ in a few characters only and are taken for one
// encoding where the question is whether text must be converted.
#pragma once

#include <cstdint>

#include "veldnls/types.h"

namespace veldnls {

// A member's family: its head, and the double-byte language and type whose cell is the head.
struct EncodingFamilyRow {
  CEI member;
  CEI head;
  int32_t language;
  int32_t type;
};

// The row of a member, or null for an encoding of no family.
const EncodingFamilyRow* encodingFamily(CEI cei);

// The head of the encoding's family; an encoding of no family is its own head.
CEI familyHead(CEI cei);

}  // namespace veldnls
