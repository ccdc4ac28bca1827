// Pipelines: creation, the choice of the route, and the slots of QZNLS that belong to them. Contracts stand at the slot
// types in veldnls/pipeline.h.
#pragma once

#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace veldnls {

TranscodingPipeline* createPipeline(QZNLS* nls, CEI source, CEI target, const TranscodeOptions* options, void* journal);
TranscodingPipeline* createToUtf16Pipeline(QZNLS* nls, CEI cei, const TranscodeOptions* options, void* journal);
TranscodingPipeline* createFromUtf16Pipeline(QZNLS* nls, CEI cei, const TranscodeOptions* options, void* journal);
NlsStatus destroyPipeline(void* pipeline);
NlsStatus estimateOutputLength(QZNLS* nls, CEI source, const void* input, uint32_t inputLength, CEI target,
                               uint32_t* size);

// Fills a record in place: the core of createPipeline and the constructor of the prebuilt pipelines. Allocates nothing
// itself. A failure leaves a pipeline that copies; but nlsUnknownEncoding, when a CEI resolves to one outside of the
// table, leaves the record as it was.
NlsStatus initPipeline(QZNLS* nls, CEI source, CEI target, TranscodingPipeline* pipeline,
                       const TranscodeOptions* options);

// Stores the seventeen slots of this folder that belong to pipelines: estimateOutputLength, the four of creation and
// destruction, and the twelve convert slots; and those of user character tables and validation.
void installPipelineSlots(QZNLS* nls);

}  // namespace veldnls
