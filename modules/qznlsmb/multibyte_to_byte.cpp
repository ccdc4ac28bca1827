#include "modules/qznlsmb/byte_route.h"
#include "modules/qznlsmb/euro.h"
#include "modules/qznlsmb/source_run.h"
#include "modules/qznlsmb/stages.h"

namespace veldnls {

NlsStatus multibyteToByte(CodePageModule* /*module*/, PipelineSide* side, const void* input, uint32_t inputLength,
                          void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                          const TranscodeOptions* options) {
  SourceRun run(*side, input, inputLength, output, outputSize, progress);
  const uint8_t* map = side->singleMap;
  const uint32_t padChar = side->padChar;
  const EuroPair euro = findEuro(side->peerCei, side->cei);
  while (!run.atEnd()) {
    const uint32_t length = run.next();
    if (length == 0 || run.room() == 0) break;
    uint8_t byte = static_cast<uint8_t>(padChar);
    if (run.inDouble == 0) {
      byte = map[*run.at];
      if (isReplaced(*run.at, byte, padChar)) run.substituted = true;
    } else if (euro.code > 0xFF && run.at[0] == euro.code >> 8 && run.at[1] == (euro.code & 0xFF)) {
      // A euro code of one byte is no double-byte character: those go one way only.
      byte = euro.byte;
    } else {
      run.substituted = true;
    }
    *run.out++ = byte;
    run.at += length;
  }
  return run.finish(inputBlank(map, padChar), outputLength, progress, options);
}

}  // namespace veldnls
