#include "modules/qznlsmb/euro.h"

#include <algorithm>
#include <iterator>

#include "modules/qznlsmb/tables.h"

namespace veldnls {

EuroPair findEuro(CEI singleByte, CEI multiByte) {
  const auto* byte = std::ranges::find(singleByteEuros, singleByte, &EuroByte::cei);
  const auto* code = std::ranges::find(multiByteEuros, multiByte, &EuroCode::cei);
  if (byte == std::end(singleByteEuros) || code == std::end(multiByteEuros)) return {};
  return {byte->byte, code->code};
}

}  // namespace veldnls
