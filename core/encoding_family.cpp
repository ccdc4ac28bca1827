#include "core/encoding_family.h"

namespace veldnls {

namespace {

constexpr EncodingFamilyRow familyRows[] = {
#include "encodings/families.inc"
};

}  // namespace

const EncodingFamilyRow* encodingFamily(CEI cei) {
  for (const EncodingFamilyRow& row : familyRows) {
    if (row.member == cei) return &row;
  }
  return nullptr;
}

CEI familyHead(CEI cei) {
  const EncodingFamilyRow* row = encodingFamily(cei);
  return row != nullptr ? row->head : cei;
}

}  // namespace veldnls
