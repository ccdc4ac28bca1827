#include "bounds/calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "bounds/locale_calls.h"
#include "bounds/routes.h"
#include "core/digits.h"
#include "core/name_index.h"
#include "core/session.h"

namespace bounds_test {

namespace {

using transcode_test::dropBlanks;
using transcode_test::nls;

using Rows = std::vector<CallRow>;

uint32_t sizeOf(Span bytes) { return static_cast<uint32_t>(bytes.size()); }

// ---- Pipelines ----

using PipelineCall = CallResult (*)(TranscodingPipeline* pipeline, Span input, Room output);

CallResult transcode(TranscodingPipeline* pipeline, Span input, Room output) {
  uint32_t written = 0;
  const NlsStatus status =
      pipeline->transcode(pipeline, input.data(), sizeOf(input), output.data(), sizeOf(output), &written, nullptr);
  return {status, written};
}

CallResult resumable(TranscodingPipeline* pipeline, Span input, Room output) {
  uint32_t written = 0;
  const NlsStatus status = pipeline->transcodeResumable(pipeline, input.data(), sizeOf(input), output.data(),
                                                        sizeOf(output), &written, nullptr, nullptr);
  return {status, written};
}

CallResult resume(TranscodingPipeline* pipeline, Span input, Room output, TranscodeProgress& progress,
                  const TranscodeOptions* options) {
  uint32_t written = 0;
  const NlsStatus status = pipeline->transcodeResumable(pipeline, input.data(), sizeOf(input), output.data(),
                                                        sizeOf(output), &written, &progress, options);
  EXPECT_LE(progress.consumed, input.size());
  EXPECT_LE(progress.heldCount, sizeof progress.held);
  return {status, written};
}

CallResult resumed(TranscodingPipeline* pipeline, Span input, Room output) {
  TranscodeProgress progress{};
  return resume(pipeline, input, output, progress, nullptr);
}

CallResult droppingBlanks(TranscodingPipeline* pipeline, Span input, Room output) {
  TranscodeProgress progress{};
  return resume(pipeline, input, output, progress, &dropBlanks);
}

// With bytes from a call before, so that the run works on a copy of the input.
CallResult withHeldBytes(TranscodingPipeline* pipeline, Span input, Room output) {
  TranscodeProgress progress{0, 0, 1, 3, {0xF0, 0x9F, 0x98}};
  return resume(pipeline, input, output, progress, nullptr);
}

// A shift-in. In the text of ISO-2022 encodings it is looked for once more, and found as the second byte of a character
// where the text has control characters that are shifts.
size_t closingOf(const Encoding& target) {
  const size_t shiftIn = shiftInOf(target).size();
  const bool looksAgain = target.cei == U_JIS7_CE || target.cei == U_ISO2022JP_CE || target.cei == U_ISO2022KR_CE;
  return looksAgain ? shiftIn + 1 : shiftIn;
}

void addRoute(Rows& rows, const Route& route) {
  constexpr std::pair<const char*, PipelineCall> forms[] = {{"transcode", transcode},
                                                            {"resumable", resumable},
                                                            {"resumed", resumed},
                                                            {"droppingBlanks", droppingBlanks},
                                                            {"withHeldBytes", withHeldBytes}};
  const bool pairs =
      isUtf16(route.target) && (route.source.cei == U_UTF8_CE || route.source.kind == TextKind::utf32le ||
                                route.source.kind == TextKind::utf32be);
  const size_t closing = closingOf(route.target);
  const Shortening shortening = pairs          ? Shortening::pairBecomesFFFD
                                : closing != 0 ? Shortening::closed
                                               : Shortening::prefix;
  for (const auto& [name, form] : forms) {
    rows.push_back({.name = route.name() + "_" + name,
                    .input = route.source.kind,
                    .call = [route, form](Span input, Room output) { return form(route.pipeline(), input, output); },
                    .shortening = shortening,
                    .bigEndianOutput = route.target.kind == TextKind::utf16be,
                    .closing = closing});
  }
}

// ---- The convert slots ----

using Slot = NlsConvert QZNLS::*;
using ResumableSlot = NlsConvertResumable QZNLS::*;

struct ConvertRow {
  const char* name;
  TextKind input;
  Slot slot;
  ResumableSlot resumableSlot;
  Shortening shortening = Shortening::prefix;
};

constexpr ConvertRow convertRows[] = {
    {"convertUtf16ToUtf32", TextKind::utf16le, &QZNLS::convertUtf16ToUtf32, &QZNLS::convertUtf16ToUtf32Resumable},
    {"convertUtf32ToUtf16", TextKind::utf32le, &QZNLS::convertUtf32ToUtf16, &QZNLS::convertUtf32ToUtf16Resumable,
     Shortening::pairBecomesFFFD},
    {"convertUtf16ToUtf8", TextKind::utf16le, &QZNLS::convertUtf16ToUtf8, &QZNLS::convertUtf16ToUtf8Resumable},
    {"convertUtf8ToUtf16", TextKind::utf8, &QZNLS::convertUtf8ToUtf16, &QZNLS::convertUtf8ToUtf16Resumable,
     Shortening::pairBecomesFFFD},
    {"convertUtf16ToUtfEbcdic", TextKind::utf16le, &QZNLS::convertUtf16ToUtfEbcdic,
     &QZNLS::convertUtf16ToUtfEbcdicResumable},
    {"convertUtfEbcdicToUtf16", TextKind::utfEbcdic, &QZNLS::convertUtfEbcdicToUtf16,
     &QZNLS::convertUtfEbcdicToUtf16Resumable},
};

CallResult convert(Slot slot, Span input, Room output) {
  uint32_t written = 0;
  const NlsStatus status =
      (nls()->*slot)(nls(), input.data(), sizeOf(input), output.data(), sizeOf(output), &written, nullptr);
  return {status, written};
}

CallResult convertResumable(ResumableSlot slot, Span input, Room output) {
  uint32_t written = 0;
  TranscodeProgress progress{};
  const NlsStatus status =
      (nls()->*slot)(nls(), input.data(), sizeOf(input), output.data(), sizeOf(output), &written, &progress, nullptr);
  EXPECT_LE(progress.consumed, input.size());
  return {status, written};
}

void addConvertSlots(Rows& rows) {
  for (const ConvertRow& row : convertRows) {
    rows.push_back({.name = row.name,
                    .input = row.input,
                    .call = [&row](Span input, Room output) { return convert(row.slot, input, output); },
                    .shortening = row.shortening});
    rows.push_back(
        {.name = std::string(row.name) + "Resumable",
         .input = row.input,
         .call = [&row](Span input, Room output) { return convertResumable(row.resumableSlot, input, output); },
         .shortening = row.shortening});
  }
}

// ---- Look-ups ----

const char16_t* unitsOf(Span text) { return reinterpret_cast<const char16_t*>(text.data()); }
int32_t unitCountOf(Span text) { return static_cast<int32_t>(text.size() / sizeof(char16_t)); }

// Stores an answer, at whatever address the output begins.
template <class Answer>
CallResult answer(uint32_t status, Room output, const Answer& value) {
  std::memcpy(output.data(), &value, sizeof value);
  return {status, sizeof value};
}

CallRow nameRow(const std::string& name, TextKind input, size_t outputSize,
                std::function<CallResult(Span, Room)> call) {
  return {
      .name = name, .input = input, .call = std::move(call), .inputUnit = sizeof(char16_t), .outputSize = outputSize};
}

void addLookups(Rows& rows) {
  for (int32_t kind = NLS_LOOKUP_ANY; kind <= NLS_LOOKUP_PREFERRED_NAME; ++kind) {
    rows.push_back(
        nameRow("lookupEncoding_" + std::to_string(kind), TextKind::encodingName, sizeof(CEI),
                [kind](Span name, Room output) -> CallResult {
                  auto* cei = reinterpret_cast<CEI*>(output.data());
                  *cei = -1;
                  return {nls()->lookupEncoding(nls(), unitsOf(name), unitCountOf(name), kind, cei), sizeof(CEI)};
                }));
  }
  rows.push_back(nameRow("nlsTrieLookup", TextKind::encodingName, sizeof(int32_t), [](Span name, Room output) {
    return answer(0, output, veldnls::nlsTrieLookup(unitsOf(name), unitCountOf(name), &veldnls::encodingNameTrie));
  }));
  for (const int number : {NLS_LOCALE_FALLBACK, NLS_LOCALE_STRICT, NLS_LOCALE_WIDE}) {
    const auto mode = static_cast<uint16_t>(number);
    rows.push_back(
        nameRow("findLocaleEntry_" + std::to_string(mode), TextKind::localeName, sizeof(void*),
                [mode](Span name, Room output) -> CallResult {
                  auto* row = reinterpret_cast<const LocaleNameRow**>(output.data());
                  *row = nullptr;
                  return {nls()->findLocaleEntry(nls(), unitsOf(name), unitCountOf(name), mode, row), sizeof(void*)};
                }));
  }
  rows.push_back(nameRow("localeAcceptsEncoding", TextKind::localeName, sizeof(NlsBool8), [](Span name, Room output) {
    return answer(0, output, nls()->localeAcceptsEncoding(unitsOf(name), unitCountOf(name), U_SHIFTJIS_CE));
  }));
  rows.push_back({.name = "getHostLocaleName",
                  .input = TextKind::bytes,
                  .call = [](Span, Room output) -> CallResult {
                    int32_t length = 0;
                    const NlsStatus status =
                        nls()->getHostLocaleName(nls(), reinterpret_cast<char16_t*>(output.data()), &length);
                    return {status, static_cast<size_t>(length) * sizeof(char16_t)};
                  },
                  .inputSize = 0,
                  .outputSize = sizeof QZNLS::hostLocaleName});
}

// ---- Validation, a row or more for each class of encodings ----

void addValidations(Rows& rows) {
  constexpr std::pair<CEI, TextKind> validated[] = {
      {U_WLATIN1_CE, TextKind::bytes},     {U_PCOEM850_CE, TextKind::bytes},    {U_UTF8_CE, TextKind::utf8},
      {U_L_UNICODE_CE, TextKind::utf16le}, {U_B_UNICODE_CE, TextKind::utf16be}, {U_L_UCS4_CE, TextKind::utf32le},
      {U_B_UCS4_CE, TextKind::utf32be},    {U_SHIFTJIS_CE, TextKind::shiftJis}, {U_EUCJP_CE, TextKind::eucJp},
      {U_GB18030_CE, TextKind::gb18030},   {U_IBM939_CE, TextKind::ibm939},     {U_HITACHIJP_CE, TextKind::hitachiJp}};
  for (const auto& [number, kind] : validated) {
    const CEI cei = number;
    rows.push_back({.name = "validateEncodedText_" + std::to_string(cei),
                    .input = kind,
                    .call = [cei](Span text, Room output) -> CallResult {
                      int32_t offset = 0;
                      const NlsStatus status =
                          nls()->validateEncodedText(nls(), text.data(), sizeOf(text), cei, nullptr, &offset);
                      EXPECT_NE(status, nlsUnknownEncoding);
                      return answer(status, output, offset);
                    },
                    .outputSize = sizeof(int32_t)});
  }
}

// ---- Numbers ----

double realOf(Span bytes) {
  double value = 0;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

using Digits = NlsStatus (*)(double, char16_t*, int32_t, int32_t*, int32_t*);

template <Digits digits, bool countsZeros>
CallResult digitsOf(Span input, Room output) {
  const auto capacity = static_cast<int32_t>(output.size() / sizeof(char16_t));
  int32_t count = 0;
  int32_t zeros = 0;
  const NlsStatus status = digits(realOf(input), reinterpret_cast<char16_t*>(output.data()), capacity, &count,
                                  countsZeros ? &zeros : nullptr);
  return {status, static_cast<size_t>(std::min(count, capacity)) * sizeof(char16_t)};
}

void addNumbers(Rows& rows) {
  const auto add = [&rows](const char* name, CallResult (*call)(Span, Room), Shortening shortening) {
    rows.push_back({.name = name,
                    .input = TextKind::real,
                    .call = call,
                    .outputUnit = sizeof(char16_t),
                    .inputSize = sizeof(double),
                    .shortening = shortening});
  };
  using veldnls::nlsFractionDigits;
  using veldnls::nlsIntegerDigits;
  add("nlsIntegerDigits", digitsOf<nlsIntegerDigits, false>, Shortening::reversed);
  add("nlsIntegerDigits_countingZeros", digitsOf<nlsIntegerDigits, true>, Shortening::reversed);
  add("nlsFractionDigits", digitsOf<nlsFractionDigits, false>, Shortening::prefix);
  add("nlsFractionDigits_countingZeros", digitsOf<nlsFractionDigits, true>, Shortening::prefix);
}

// The input isn't read: its address has no memory.
void addEstimates(Rows& rows) {
  for (const Route& route : routes()) {
    if (route.hasUserTables()) continue;  // which estimates don't ask
    rows.push_back(
        {.name = "estimateOutputLength_" + route.name(),
         .input = route.source.kind,
         .call = [route](Span input, Room output) -> CallResult {
           const void* nowhere = NLS_FIXED_POINTER(void, 1);
           auto* size = reinterpret_cast<uint32_t*>(output.data());
           return {nls()->estimateOutputLength(nls(), route.source.cei, nowhere, sizeOf(input), route.target.cei, size),
                   sizeof *size};
         },
         .outputSize = sizeof(uint32_t)});
  }
}

}  // namespace

std::vector<CallRow> callRows() {
  Rows rows;
  for (const Route& route : routes()) addRoute(rows, route);
  addConvertSlots(rows);
  addLookups(rows);
  addValidations(rows);
  addNumbers(rows);
  addEstimates(rows);
  addLocaleCalls(rows);
  return rows;
}

}  // namespace bounds_test
