#include "transcode/convert_slots.h"
#include "transcode/pipeline.h"
#include "transcode/user_tables.h"
#include "transcode/validate.h"

namespace veldnls {

void installPipelineSlots(QZNLS* nls) {
  nls->estimateOutputLength = estimateOutputLength;
  nls->createPipeline = createPipeline;
  nls->createToUtf16Pipeline = createToUtf16Pipeline;
  nls->createFromUtf16Pipeline = createFromUtf16Pipeline;
  nls->destroyPipeline = destroyPipeline;
  installConvertSlots(nls);
  nls->setUserCharacterTables = setUserCharacterTables;
  nls->freeUserCharacterTables = freeUserCharacterTables;
  nls->validateEncodedText = validateEncodedText;
}

}  // namespace veldnls
