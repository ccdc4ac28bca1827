// The choice of a pipeline's route by the classes of its two rows.
#pragma once

#include "veldnls/encoding.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Both take a pipeline that copies, with the values of both rows set. They return 0, nlsModuleUnavailable, or what a
// module's setup answers; the runs of a pipeline that fails are not to be used.

// For a pair whose bytes can be used as they are: `transcode` stays the copy, `transcodeResumable` checks the text as
// one of the target encoding.
NlsStatus installUnconvertedRoute(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                  const EncodingDescriptor* target);
// For a pair that must be converted.
NlsStatus installConvertedRoute(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                const EncodingDescriptor* target);

// Prepares both sides for two module stages with UTF-16LE between them and sets `twoStage`. The source side's
// `sourceProfile` is set. Returns 0, or the status of the setup that failed, with `twoStage` 0.
NlsStatus setupTwoStage(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                        const EncodingDescriptor* target);

}  // namespace veldnls
