#include "status_names.h"

#include <algorithm>
#include <iterator>

#include "text.h"
#include "veldnls/status.h"

namespace veld {

namespace {

constexpr int statusDigits = 8;

struct Name {
  NlsStatus status;
  const char* name;
};

#define VELD_STATUS(name) \
  { name, #name }

constexpr Name names[] = {
    VELD_STATUS(nlsInitFailed),
    VELD_STATUS(nlsNoMessage),
    VELD_STATUS(nlsNoMemory),
    VELD_STATUS(nlsDigitsOverflow),
    VELD_STATUS(nlsMessageNotFound),
    VELD_STATUS(nlsMessageTrackFailed),
    VELD_STATUS(nlsLocaleIdUnknown),
    VELD_STATUS(nlsLocaleNameUnknown),
    VELD_STATUS(nlsBadArgument),
    VELD_STATUS(nlsOutputTruncated),
    VELD_STATUS(nlsSubstituted),
    VELD_STATUS(nlsUnknownEncoding),
    VELD_STATUS(nlsModuleUnavailable),
    VELD_STATUS(nlsDateResultMissing),
    VELD_STATUS(nlsDateInputMissing),
    VELD_STATUS(nlsDateOutOfRange),
    VELD_STATUS(nlsFieldTooNarrow),
    VELD_STATUS(nlsLocaleNotFound),
    VELD_STATUS(nlsNoDigits),
    VELD_STATUS(nlsNumberOverflow),
    VELD_STATUS(nlsNumberUnderflow),
    VELD_STATUS(nlsIncompleteInput),
    VELD_STATUS(nlsBadWidthForOption),
    VELD_STATUS(nlsDigitsLost),
    VELD_STATUS(nlsIndexOutOfRange),
    VELD_STATUS(nlsNegativeLength),
    VELD_STATUS(nlsLocaleInvalid),
    VELD_STATUS(nlsLocaleApproximated),
    VELD_STATUS(nlsBadOsCei),
    VELD_STATUS(nlsLocaleLanguageOnly),
    VELD_STATUS(nlsCollatorLocaleInvalid),
    VELD_STATUS(nlsCollatorOptionInvalid),
    VELD_STATUS(nlsCollatorCeiInvalid),
    VELD_STATUS(nlsCollationKeyMismatch),
    VELD_STATUS(nlsCollationKeyCorrupt),
    VELD_STATUS(nlsWrongHandle),
    VELD_STATUS(nlsKeyBufferTooSmall),
    VELD_STATUS(nlsNullKeyOutput),
    VELD_STATUS(nlsNullCollatorArgument),
    VELD_STATUS(nlsNullString),
    VELD_STATUS(nlsBadLookupKind),
    VELD_STATUS(nlsInvalidCharacter),
    VELD_STATUS(nlsBadPosition),
    VELD_STATUS(nlsOptionsUnsupported),
    VELD_STATUS(nlsNullLocaleOutput),
    VELD_STATUS(nlsBadAlignment),
    VELD_STATUS(nlsUnknownMibEnum),
    VELD_STATUS(nlsCollationKeyVersion),
    VELD_STATUS(nlsBadPattern),
    VELD_STATUS(xmCreateFailed),
    VELD_STATUS(xmNullPool),
    VELD_STATUS(hsMessageMissing),
    VELD_STATUS(nlsNoCalendarYear),
};

#undef VELD_STATUS

}  // namespace

std::string statusName(NlsStatus status) {
  const Name* found =
      std::find_if(std::begin(names), std::end(names), [&](const Name& row) { return row.status == status; });
  return found == std::end(names) ? "" : found->name;
}

std::string statusNumber(NlsStatus status) { return hexNumber(status, statusDigits); }

std::string statusText(NlsStatus status) {
  const std::string number = statusNumber(status);
  const std::string name = statusName(status);
  return name.empty() ? number : name + " (" + number + ")";
}

}  // namespace veld
