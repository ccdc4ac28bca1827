// The byte map between two single-byte encodings, made from their tables.
#pragma once

#include "veldnls/encoding.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Allocates the source side's `byteMap` from the object's pool, which the pipeline then owns. A byte goes to the first
// that means the same; the bytes left over on both sides are paired in ascending order, so that the map keeps the round
// trip where both encodings leave the same number over. Returns nlsUnknownEncoding when there is no memory, or when the
// source lacks a table in either direction or the target its table to Unicode.
NlsStatus buildByteMap(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                       const EncodingDescriptor* target);

}  // namespace veldnls
