#include "transcode/own_multi_byte_module.h"

namespace transcode_test {

StageCall lastCall;
std::vector<SetupCall> setups;
std::string refusedSlot;

namespace {

constexpr uint32_t base = 0x4E00;

void note(const CodePageModule* module, const PipelineSide* side, const TranscodeOptions* options) {
  lastCall = {module, side, options != nullptr ? options->words[0] : 0, lastCall.count + 1};
}

NlsStatus finish(uint32_t read, uint32_t written, NlsStatus status, bool substituted, uint32_t* outputLength,
                 TranscodeProgress* progress) {
  if (outputLength != nullptr) *outputLength = written;
  if (progress != nullptr) {
    progress->consumed = read;
    progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
    if (substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  }
  return status;
}

}  // namespace

NlsStatus toUnicodeStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                         void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                         const TranscodeOptions* options) {
  note(module, side, options);
  const auto* in = static_cast<const uint8_t*>(input);
  auto* out = static_cast<uint8_t*>(output);
  uint32_t read = 0;
  uint32_t written = 0;
  NlsStatus status = 0;
  while (read < inputLength) {
    const uint32_t length = in[read] < 0x80 ? 1 : 2;
    if (inputLength - read < length) {
      status = progress != nullptr ? nlsIncompleteInput : nlsSubstituted;
      break;
    }
    if (outputSize - written < 2) {
      status = nlsOutputTruncated;
      break;
    }
    const uint32_t unit = length == 1 ? in[read] : base + (in[read] & 0x7Fu) * 256 + in[read + 1];
    out[written] = static_cast<uint8_t>(unit);
    out[written + 1] = static_cast<uint8_t>(unit >> 8);
    read += length;
    written += 2;
  }
  return finish(read, written, status, false, outputLength, progress);
}

NlsStatus fromUnicodeStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                           void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                           const TranscodeOptions* options) {
  note(module, side, options);
  const auto* in = static_cast<const uint8_t*>(input);
  auto* out = static_cast<uint8_t*>(output);
  const int low = options != nullptr && (options->words[0] & NLS_SWAPPED_INPUT) != 0 ? 1 : 0;
  uint32_t read = 0;
  uint32_t written = 0;
  NlsStatus status = 0;
  bool substituted = false;
  while (inputLength - read >= 2) {
    const uint32_t unit = in[read + static_cast<uint32_t>(low)] + in[read + 1 - static_cast<uint32_t>(low)] * 256u;
    const uint32_t code = unit - base;
    const bool known = unit < 0x80 || code < 0x8000;
    const uint32_t length = known && unit >= 0x80 ? 2 : 1;
    if (outputSize - written < length) {
      status = nlsOutputTruncated;
      break;
    }
    if (length == 2) {
      out[written] = static_cast<uint8_t>(0x80 | code >> 8);
      out[written + 1] = static_cast<uint8_t>(code);
    } else {
      out[written] = known ? static_cast<uint8_t>(unit) : '?';
    }
    if (!known) {
      status = nlsSubstituted;
      substituted = true;
    }
    read += 2;
    written += length;
  }
  return finish(read, written, status, substituted, outputLength, progress);
}

namespace {

template <const char* name, NlsModuleStage stage>
NlsStatus setup(MultiByteModule*, PipelineSide* side, const EncodingDescriptor* source,
                const EncodingDescriptor* target) {
  setups.push_back({name, side, source->cei, target->cei});
  if (refusedSlot == name) return nlsModuleUnavailable;
  side->stage = stage;
  return 0;
}

NlsStatus nothingToDestroy(void*) { return 0; }

MultiByteModule makeModule(QZNLS* object) {
  MultiByteModule module{};
  module.destroy = nothingToDestroy;
  module.nls = object;
  module.setupByteToMultibyte = setup<byteToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToByte = setup<multibyteToByte, toUnicodeStage>;
  module.setupUtf16ToMultibyte = setup<utf16ToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtf16 = setup<multibyteToUtf16, toUnicodeStage>;
  module.setupUtf32ToMultibyte = setup<utf32ToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtf32 = setup<multibyteToUtf32, toUnicodeStage>;
  module.setupUtf8ToMultibyte = setup<utf8ToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtf8 = setup<multibyteToUtf8, toUnicodeStage>;
  module.setupUtfeToMultibyte = setup<utfeToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtfe = setup<multibyteToUtfe, toUnicodeStage>;
  return module;
}

}  // namespace

void MultiByte::SetUp() {
  module_ = makeModule(nls());
  loaded_ = nls()->multiByteModule;
  nls()->multiByteModule = &module_;
  setups.clear();
  refusedSlot.clear();
  lastCall = {};
}

}  // namespace transcode_test
