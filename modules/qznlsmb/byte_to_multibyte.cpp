#include "modules/qznlsmb/byte_route.h"
#include "modules/qznlsmb/euro.h"
#include "modules/qznlsmb/stage_run.h"
#include "modules/qznlsmb/stages.h"

namespace veldnls {

NlsStatus byteToMultibyte(CodePageModule* /*module*/, PipelineSide* side, const void* input, uint32_t inputLength,
                          void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                          const TranscodeOptions* options) {
  StageRun run(input, inputLength, output, outputSize);
  const uint8_t* map = side->singleMap;
  const uint32_t padChar = side->padChar;
  const EuroPair euro = findEuro(side->cei, side->peerCei);
  while (!run.atEnd() && run.room() != 0) {
    const uint8_t byte = *run.at;
    if (euro.exists() && byte == euro.byte) {
      if (euro.code > 0xFF) {
        if (run.room() < 2) break;
        *run.out++ = static_cast<uint8_t>(euro.code >> 8);
      }
      *run.out++ = static_cast<uint8_t>(euro.code);
    } else {
      *run.out++ = map[byte];
      if (isReplaced(byte, map[byte], padChar)) run.substituted = true;
    }
    ++run.at;
  }
  NlsStatus status = run.noted(progress);
  // Room that is missing outweighs a replacement, and blanks that are dropped outweigh both.
  if (!run.atEnd()) status = run.statusOfRest(mayDropBlanks(*side, options), {1, inputBlank(map, padChar)});
  run.report(outputLength, progress);
  return status;
}

}  // namespace veldnls
