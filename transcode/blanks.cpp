#include "transcode/blanks.h"

#include "transcode/units.h"
#include "veldnls/status.h"

namespace veldnls {

bool allowsBlankTruncation(const TranscodingPipeline* pipeline, const TranscodeOptions* options) {
  const uint32_t call = options != nullptr ? options->words[0] : 0;
  return ((call | pipeline->options.words[0]) & NLS_ALLOW_BLANK_TRUNCATION) != 0;
}

bool isAllBlank(const uint8_t* text, size_t length, Blank blank) {
  if (length % blank.size != 0) return false;
  for (size_t i = 0; i < length; i += blank.size) {
    const uint32_t unit = blank.size == 1   ? text[i]
                          : blank.size == 2 ? load16<std::endian::little>(text + i)
                                            : load32<std::endian::little>(text + i);
    if (unit != blank.value) return false;
  }
  return true;
}

NlsStatus applyBlankRule(NlsStatus status, const TranscodingPipeline* pipeline, const TranscodeOptions* options,
                         const uint8_t* rest, size_t length, Blank blank) {
  if (status != nlsOutputTruncated || length == 0 || !allowsBlankTruncation(pipeline, options)) return status;
  return isAllBlank(rest, length, blank) ? 0 : status;
}

}  // namespace veldnls
