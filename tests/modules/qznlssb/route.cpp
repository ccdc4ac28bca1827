#include "modules/qznlssb/route.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "core/qznlsstub.h"

namespace test {

namespace {

constexpr uint8_t untouched = 0xCD;
constexpr size_t areaSize = 16384;

// The last `size` bytes before a guard page. Two areas serve all calls.
uint8_t* inputArea(size_t size) {
  static GuardedBuffer area(areaSize);
  return area.data() + (areaSize - size);
}

uint8_t* outputArea(size_t size) {
  static GuardedBuffer area(areaSize);
  return area.data() + (areaSize - size);
}

template <class Unit>
Bytes unitsOf(std::basic_string_view<Unit> text, bool bigEndian) {
  Bytes bytes;
  for (const Unit unit : text) {
    for (size_t i = 0; i < sizeof(Unit); ++i) {
      const size_t shift = 8 * (bigEndian ? sizeof(Unit) - 1 - i : i);
      bytes.push_back(static_cast<uint8_t>(static_cast<uint32_t>(unit) >> shift));
    }
  }
  return bytes;
}

bool isOppositeOrder(QZNLS* nls, const EncodingDescriptor& row) {
  const EncodingDescriptor* working = nullptr;
  if (row.encodingClass != NLS_CLASS_UTF16 && row.encodingClass != NLS_CLASS_UTF32) return false;
  nls->getEncodingDescriptor(nls, row.encodingClass == NLS_CLASS_UTF16 ? U_L_UNICODE_CE : U_L_UCS4_CE, &working);
  return row.padChar != working->padChar;
}

NlsSingleByteSetup slotOf(const SingleByteModule& module, int32_t sourceClass, int32_t targetClass) {
  if (targetClass != NLS_CLASS_SINGLE_BYTE) return module.setupByteToUnicode;
  if (sourceClass == NLS_CLASS_SINGLE_BYTE) return module.setupByteToByte;
  return sourceClass == NLS_CLASS_UTF8 ? module.setupUtf8ToByte : module.setupWideToByte;
}

}  // namespace

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }
Bytes utf16(std::u16string_view text, bool bigEndian) { return unitsOf(text, bigEndian); }
Bytes utf32(std::u32string_view text, bool bigEndian) { return unitsOf(text, bigEndian); }

TranscodeProgress holding(std::span<const uint8_t> bytes) {
  TranscodeProgress progress{};
  progress.pending = 1;
  progress.heldCount = static_cast<uint32_t>(bytes.size());
  std::ranges::copy(bytes, progress.held);
  return progress;
}

Route::Route(QZNLS* nls, CEI source, CEI target) {
  pipeline.nls = nls;
  const EncodingDescriptor* sourceRow = nullptr;
  const EncodingDescriptor* targetRow = nullptr;
  nls->getEncodingDescriptor(nls, source, &sourceRow);
  nls->getEncodingDescriptor(nls, target, &targetRow);
  prepare(*sourceRow, *targetRow);
}

Route::Route(QZNLS* nls, const EncodingDescriptor& source, const EncodingDescriptor& target) {
  pipeline.nls = nls;
  prepare(source, target);
}

void Route::prepare(const EncodingDescriptor& source, const EncodingDescriptor& target) {
  QZNLS* nls = pipeline.nls;
  pipeline.source.swapInput = isOppositeOrder(nls, source);
  pipeline.source.swapOutput = isOppositeOrder(nls, target);
  setup = slotOf(*nls->singleByteModule, source.encodingClass, target.encodingClass)(nls, &pipeline, &source, &target);
}

Route::~Route() {
  if ((pipeline.flags & NLS_PIPELINE_OWNS_BYTE_MAP) == 0) return;
  veldnls::nlsPoolFree(pipeline.nls->pool, const_cast<uint8_t*>(pipeline.source.byteMap));
}

Outcome Route::transcode(std::span<const uint8_t> input, uint32_t capacity, const TranscodeOptions* options) {
  return run(input, capacity, nullptr, options);
}

Outcome Route::resume(std::span<const uint8_t> input, uint32_t capacity, TranscodeProgress& progress,
                      const TranscodeOptions* options) {
  return run(input, capacity, &progress, options);
}

Outcome Route::run(std::span<const uint8_t> input, uint32_t capacity, TranscodeProgress* progress,
                   const TranscodeOptions* options) {
  uint8_t* in = inputArea(input.size());
  uint8_t* out = outputArea(capacity);
  std::ranges::copy(input, in);
  std::memset(out, untouched, capacity);
  const auto inputLength = static_cast<uint32_t>(input.size());
  uint32_t length = 0xFFFFFFFF;
  Outcome outcome;
  outcome.status =
      progress != nullptr
          ? pipeline.transcodeResumable(&pipeline, in, inputLength, out, capacity, &length, progress, options)
          : pipeline.transcode(&pipeline, in, inputLength, out, capacity, &length, options);
  if (length > capacity) {
    ADD_FAILURE() << "output length " << length << " of " << capacity;
    return outcome;
  }
  outcome.output.assign(out, out + length);
  EXPECT_TRUE(std::all_of(out + length, out + capacity, [](uint8_t byte) { return byte == untouched; }))
      << "bytes behind the output were written, capacity " << capacity << ", output " << length;
  EXPECT_TRUE(std::equal(input.begin(), input.end(), in)) << "the input was written";
  return outcome;
}

Whole stream(Route& route, std::span<const uint8_t> input, uint32_t piece, uint32_t room) {
  Whole whole;
  TranscodeProgress progress{};
  size_t at = 0;
  while (at < input.size()) {
    const auto given = input.subspan(at, std::min<size_t>(piece, input.size() - at));
    const Outcome outcome = route.resume(given, room, progress);
    whole.output.insert(whole.output.end(), outcome.output.begin(), outcome.output.end());
    if ((progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0) whole.substituted = true;
    whole.incomplete = outcome.status == nlsIncompleteInput;
    if (outcome.status != nlsOutputTruncated) {
      at += given.size();
    } else if (progress.consumed != 0 || !outcome.output.empty()) {
      at += progress.consumed;
    } else {
      ADD_FAILURE() << "no progress at " << at;
      break;
    }
  }
  return whole;
}

const EncodingDescriptor& SingleByteTest::row(CEI cei) const {
  const EncodingDescriptor* found = nullptr;
  nls->getEncodingDescriptor(nls, cei, &found);
  return *found;
}

}  // namespace test
