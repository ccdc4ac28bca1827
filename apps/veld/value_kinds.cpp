#include "value_kinds.h"

#include "veldnls/status.h"

namespace veld {

namespace {

const char* reasonOf(NlsStatus status) {
  switch (status) {
    case nlsNoDigits:
      return "this is no part of a number";
    case nlsNumberOverflow:
      return "the number is too large";
    case nlsNumberUnderflow:
      return "the number is too small";
    case nlsDateInputMissing:
      return "the value is missing";
    case nlsDateOutOfRange:
      return "outside of the range";
    case nlsDateResultMissing:
      return "this makes no date";
    case nlsBadArgument:
      return "this is no finite number";
    case nlsDigitsLost:
      return "the field shows fewer digits";
    case nlsFieldTooNarrow:
      return "the field is too narrow";
    default:
      return "not done";
  }
}

}  // namespace

Fault faultOf(NlsStatus status) { return {status, reasonOf(status)}; }

}  // namespace veld
