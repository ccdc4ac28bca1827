#include "core/qznlsstub.h"
#include "core/registry.h"
#include "core/session.h"
#include "transcode/pipeline.h"
#include "transcode/routes.h"
#include "transcode/stages.h"
#include "transcode/user_tables.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

// The encoding that a CEI of 0 or a double-byte type stands for here; a CEI with no such encoding stays.
CEI resolveCei(QZNLS* nls, CEI cei) {
  if (cei != 0 && !isAliasCei(cei)) return cei;
  const CEI resolved = resolveDbcsEncoding(nls, 0, cei);
  if (resolved >= 1) return resolved;
  CEI host = 0;
  if (getHostEncoding(nls, &host) == 0 && host > 0) return host;
  return cei;
}

void reportStatus(void* journal, NlsStatus status) {
  if (journal != nullptr) qzlStatusToJnl(journal, journalError, status);
}

}  // namespace

NlsStatus initPipeline(QZNLS* nls, CEI source, CEI target, TranscodingPipeline* pipeline,
                       const TranscodeOptions* options) {
  const CEI sourceCei = resolveCei(nls, source);
  const CEI targetCei = resolveCei(nls, target);
  const EncodingDescriptor* sourceRow = encodingRow(sourceCei);
  const EncodingDescriptor* targetRow = encodingRow(targetCei);
  // A host may name any number as its session's encoding.
  if (sourceRow == nullptr || targetRow == nullptr) return nlsUnknownEncoding;

  *pipeline = {};
  setMagic(pipeline->magic);
  pipeline->name = "Transcoding pipeline";
  pipeline->destroy = destroyPipeline;
  pipeline->nls = nls;
  pipeline->sourceCei = sourceCei;
  pipeline->targetCei = targetCei;
  pipeline->source.cei = sourceCei;
  pipeline->source.peerCei = targetCei;
  pipeline->source.padChar = sourceRow->padChar;
  pipeline->source.unitSize = static_cast<uint8_t>(targetRow->unitSize);
  pipeline->source.encodingClass = sourceRow->encodingClass;
  pipeline->target.padChar = targetRow->padChar;
  if (options != nullptr) pipeline->options.words[0] = options->words[0];
  pipeline->source.options = &pipeline->options;
  pipeline->target.options = &pipeline->options;
  installRuns<copyStage>(pipeline);

  const bool needed = conversionNeeded(nls, sourceCei, targetCei) != 0;
  const NlsStatus status = needed ? installConvertedRoute(nls, pipeline, sourceRow, targetRow)
                                  : installUnconvertedRoute(nls, pipeline, sourceRow, targetRow);
  if (status != 0) installRuns<copyStage>(pipeline);
  return status;
}

TranscodingPipeline* createPipeline(QZNLS* nls, CEI source, CEI target, const TranscodeOptions* options,
                                    void* journal) {
  const EncodingDescriptor* sourceRow = encodingRow(source);
  const EncodingDescriptor* targetRow = encodingRow(target);
  if (sourceRow == nullptr || targetRow == nullptr) {
    reportStatus(journal, nlsUnknownEncoding);
    return nullptr;
  }
  auto* pipeline = nlsPoolNew<TranscodingPipeline>(nls->pool);
  if (pipeline == nullptr) {
    reportStatus(journal, nlsNoMemory);
    return nullptr;
  }
  if (initPipeline(nls, source, target, pipeline, options) == 0) return pipeline;
  if (journal != nullptr) {
    QzlMessageToJnl(journal, journalError, u"InitTP Failed for %s to %s", 0, sourceRow->identifier,
                    targetRow->identifier);
  }
  nlsPoolFree(nls->pool, pipeline);
  return nullptr;
}

TranscodingPipeline* createToUtf16Pipeline(QZNLS* nls, CEI cei, const TranscodeOptions* options, void* journal) {
  return createPipeline(nls, cei, U_L_UNICODE_CE, options, journal);
}

TranscodingPipeline* createFromUtf16Pipeline(QZNLS* nls, CEI cei, const TranscodeOptions* options, void* journal) {
  return createPipeline(nls, U_L_UNICODE_CE, cei, options, journal);
}

NlsStatus destroyPipeline(void* handle) {
  auto* pipeline = static_cast<TranscodingPipeline*>(handle);
  XmPool* pool = pipeline->nls->pool;
  PipelineSide& source = pipeline->source;
  PipelineSide& target = pipeline->target;
  if ((pipeline->flags & NLS_PIPELINE_OWNS_BYTE_MAP) != 0 && source.byteMap != nullptr) {
    nlsPoolFree(pool, const_cast<uint8_t*>(source.byteMap));
  }
  const bool ownsSource = (pipeline->flags & NLS_PIPELINE_OWNS_SOURCE_OVERLAY) != 0;
  if (ownsSource && source.overlay != nullptr) freeOverlay(pool, source.overlay);
  if ((pipeline->flags & NLS_PIPELINE_OWNS_TARGET_OVERLAY) != 0) {
    // From UTF-16 the target's overlay stands on the source side.
    CodeOverlay* overlay = target.overlay;
    if (overlay == nullptr && !ownsSource) overlay = source.overlay;
    if (overlay != nullptr) freeOverlay(pool, overlay);
  }
  nlsPoolFree(pool, pipeline);
  return 0;
}

}  // namespace veldnls
