/* The records of a conversion: the pipeline, its two sides, and the caller's progress and options records.
 *
 * A pipeline is read-only after creation: it may run on many threads at once, each with its own TranscodeProgress.
 * Lengths and sizes are in bytes. No buffer needs any alignment.
 */
#ifndef VELDNLS_PIPELINE_H
#define VELDNLS_PIPELINE_H

#include "veldnls/encoding.h"
#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct TranscodingPipeline TranscodingPipeline;
typedef struct PipelineSide PipelineSide;
typedef struct CodePageModule CodePageModule;

/* Bits of TranscodeOptions.words[0]. */
#define NLS_ALLOW_BLANK_TRUNCATION UINT32_C(0x1) /* blanks that don't fit may be dropped without a status */
#define NLS_SWAPPED_INPUT UINT32_C(0x10000000)   /* set by run functions in private copies; callers leave it 0 */

/* Options of a pipeline or of a call; all zero by default. A bit counts if it is set in either record. */
typedef struct TranscodeOptions {
  uint32_t words[4];
} TranscodeOptions;

/* Bits of TranscodeProgress.flags. */
#define NLS_PROGRESS_DOUBLE_MODE UINT32_C(0x1)   /* shift state of multi-byte sources */
#define NLS_PROGRESS_SUBSTITUTED UINT32_C(0x100) /* a substitution took place in this call */

/* The caller's record of a resumable conversion: zero it before the first call, keep it unchanged between calls.
 * The next call's input starts behind the bytes that this call consumed or held. */
typedef struct TranscodeProgress {
  uint32_t flags;
  uint32_t consumed;  /* input bytes taken by this call, without those held from the call before */
  uint8_t pending;    /* nonzero: `held` has bytes of an incomplete character */
  uint32_t heldCount; /* 0 to 8 */
  uint8_t held[8];
} TranscodeProgress;

/* Run function without progress. Converts as much as fits and never writes part of a character, unless the pair copies
 * bytes as they are; a check or a change of byte order of UTF-16, which goes by units, can end inside a surrogate pair.
 *   input, inputLength    may overlap the output; a null input is allowed with length 0
 *   output, outputSize    nothing is written past outputSize
 *   outputLength          bytes written; may be null
 *   options               may be null
 * Returns 0 all converted; nlsOutputTruncated the output was too small; nlsSubstituted converted with replacements (an
 * input that ends inside a character counts as such); nlsNoMemory nothing converted.
 * nlsSubstituted hides a short output in four cases, and only `consumed` tells: U+FFFD took the last unit of room from
 * a character of two UTF-16 units; in one step, a character of a multi-byte source was replaced before the output was
 * full; in one step without a progress record, a Unicode character on its way to a multi-byte target;
 * and on the way to ISO 2022 text, in all runs, one that has no form of seven bits.
 * The end of a UTF-16 or UTF-32 input that is no whole unit is no replacement in three cases: from UTF-16 to a
 * single-byte encoding it is dropped without a status; a check or a change of byte order leaves it unread with
 * nlsOutputTruncated; a pipeline that copies takes every byte. */
typedef NlsStatus (*NlsTranscode)(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                                  uint32_t outputSize, uint32_t* outputLength, const TranscodeOptions* options);

/* Run function with progress, and the form of a Unicode stage. As above; with a progress record also
 * nlsIncompleteInput: the input ended inside a character, whose bytes are kept in `held` for the next call. With
 * nlsOutputTruncated the caller goes on from `consumed`. When a call has too little room even for the character that
 * was held, the bytes go back to `held`, `pending` stays 1 and `consumed` is 0. */
typedef NlsStatus (*NlsUnicodeStage)(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength,
                                     void* output, uint32_t outputSize, uint32_t* outputLength,
                                     TranscodeProgress* progress, const TranscodeOptions* options);

/* A stage of the multi-byte module: a run over one side, which holds nothing. What it doesn't read, the run function
 * that calls it keeps for the next call, if a progress record is there; `consumed` and bits 0 and 8 of `flags` are the
 * stage's. Input and output don't overlap. `outputLength`, `progress` and `options` may be null. Statuses as
 * NlsUnicodeStage. */
typedef NlsStatus (*NlsModuleStage)(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                                    void* output, uint32_t outputSize, uint32_t* outputLength,
                                    TranscodeProgress* progress, const TranscodeOptions* options);

/* Converts a text of a two-stage route at once, by both sides. Input and output don't overlap. Returns how many bytes
 * it wrote, or 0 when it can't take the whole text, and what it wrote until then is of no account. */
typedef uint32_t (*NlsDirectRun)(const PipelineSide* source, const PipelineSide* target, const void* input,
                                 uint32_t inputLength, void* output, uint32_t outputSize);

/* Character scanner of a multi-byte source. `*length` is the bytes remaining on entry and the character's length on
 * return, 0 if the input ends inside it. `*inDouble` is the shift state. Returns the position of the character. */
typedef const uint8_t* (*NlsScanCharacter)(const PipelineSide* side, const uint8_t* position, uint32_t* length,
                                           NlsBool8* inDouble);

/* Two 16-bit values, ascending by the first in a table. */
typedef struct NlsCodePair {
  uint16_t key;
  uint16_t value;
} NlsCodePair;

/* User characters of one direction of a pipeline, looked at ahead of the module's own pairs by a binary search. Keys
 * ascend as far as the host's columns do. Of the object's pool, owned by the pipeline, read-only. */
typedef struct CodeOverlay {
  uint32_t count;
  NlsCodePair* pairs;
} CodeOverlay;

/* Constant pair table of one double-byte set and direction. */
typedef struct NlsPairTable {
  uint32_t count;
  const NlsCodePair* pairs;
} NlsPairTable;

/* One side of a pipeline. `source` is the side that a one-step route uses; `target` serves two-stage routes and keeps
 * the target row's values. Names that share a field are the two uses of it. */
struct PipelineSide {
  CEI cei;
  CEI peerCei;
  NlsBool8 swapInput;  /* the source has the byte order opposite to the form that stages work in */
  NlsBool8 swapOutput; /* the target has */
  uint32_t padChar;
  uint8_t unitSize;
  uint8_t directForm; /* of the multi-byte module: how direct runs read or write this side; 0: not at all */
  union {
    const uint8_t* byteMap; /* 256 bytes, single byte to single byte */
    NlsDirectRun direct;    /* for short texts of two-stage routes; may be null; of the source side */
  };
  NlsModuleStage stage; /* in routes through qznlsmb */
  union {
    const MultiByteProfile* directionMarks;
    const MultiByteProfile* sourceProfile;
  };
  const MultiByteProfile* targetProfile;
  const NlsPairTable* pairs; /* of the module's own sets, whose further tables stand around it: stages read those */
  union {
    const uint8_t* singleMap;  /* multi-byte module: a from-table or byte map */
    const char16_t* toUnicode; /* 256 values by byte */
  };
  const uint8_t* const* fromUnicode; /* 256 page addresses by high byte; a page is 256 bytes by low byte */
  const uint16_t* kanaPairs;
  CodeOverlay* overlay; /* may be null */
  NlsScanCharacter scan;
  int32_t encodingClass;
  uint32_t substitution;
  const TranscodeOptions* options; /* the pipeline's */
};

/* Bits of TranscodingPipeline.flags: what the pipeline frees when it is destroyed. */
#define NLS_PIPELINE_OWNS_BYTE_MAP UINT32_C(0x1)
#define NLS_PIPELINE_OWNS_SOURCE_OVERLAY UINT32_C(0x2)
#define NLS_PIPELINE_OWNS_TARGET_OVERLAY UINT32_C(0x4) /* from UTF-16 that overlay stands on the source side */

struct TranscodingPipeline {
  NLS_HANDLE_FIELDS /* name "Transcoding pipeline" */
      QZNLS* nls;
  NlsTranscode transcode;
  NlsUnicodeStage transcodeResumable;
  CEI sourceCei; /* resolved */
  CEI targetCei;
  uint8_t twoStage; /* 1: two module stages with UTF-16LE between them */
  PipelineSide source;
  PipelineSide target;
  uint32_t flags;
  TranscodeOptions options; /* the pipeline's defaults; only the first word is ever filled */
};

/* Makes a pipeline, or returns null: a CEI outside 0 to 229, given or answered by the host's option, no memory, or a
 * route that is refused. The reason goes to the journal if one is given. `options` and `journal` may be null. The
 * caller ends it with its `destroy`, which is the slot `destroyPipeline`; a prebuilt pipeline is never destroyed by a
 * caller.
 * A route through the multi-byte module takes overlays of the object's user character tables if these relate its two
 * encodings, a Unicode form counting as utf-16le; without memory for them it works without user characters. */
typedef TranscodingPipeline* (*NlsCreatePipeline)(QZNLS* nls, CEI source, CEI target, const TranscodeOptions* options,
                                                  void* journal);

/* The same with target, or source, utf-16le. */
typedef TranscodingPipeline* (*NlsCreateUtf16Pipeline)(QZNLS* nls, CEI cei, const TranscodeOptions* options,
                                                       void* journal);

/* Writes to `*size` an output size, in bytes, that usually suffices; the largest number where it would be more. It is
 * no bound from single-byte to multi-byte encodings; where a target has shift sequences; to utf-e, where a byte can
 * become four, U+FFFD among them; to gb18030 with its module loaded, where a byte can become four; for encoding 204;
 * and for resumable runs between equal encodings, which may replace a byte by a longer character. Bytes that a
 * resumable run holds from the call before count as input: add `heldCount` to `inputLength`. A CEI outside the table
 * counts as single-byte. `input` isn't read. Returns 0. Any thread. */
typedef NlsStatus (*NlsEstimateOutputLength)(QZNLS* nls, CEI source, const void* input, uint32_t inputLength,
                                             CEI target, uint32_t* size);

/* Runs of the first six prebuilt pipelines, with and without progress. Statuses as NlsUnicodeStage. */
typedef NlsStatus (*NlsConvert)(QZNLS* nls, const void* input, uint32_t inputLength, void* output, uint32_t outputSize,
                                uint32_t* outputLength, const TranscodeOptions* options);
typedef NlsStatus (*NlsConvertResumable)(QZNLS* nls, const void* input, uint32_t inputLength, void* output,
                                         uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                                         const TranscodeOptions* options);

/* A set of user-defined characters and its codes in several encodings; an element of a list, the k-th element of which
 * belongs to the encoding in ceis[k] of the head. The head says which encodings the list relates. */
typedef struct UserCharacterTable {
  uint8_t heading[24]; /* copied, not interpreted, as the next three */
  uint8_t subheading[24];
  uint8_t codeA[2];
  uint8_t codeB[2];
  int32_t columnCount;    /* encodings related, 0 to 24 */
  int32_t characterCount; /* rows */
  int32_t columnBytes;    /* size of one column in bytes, at least two for each row */
  uint8_t* columns[24];   /* two-byte codes, high byte first, a row each; ascending where codes are looked up in them */
  struct UserCharacterTable* next; /* null ends the list */
  CEI ceis[24];                    /* of the columns; of a list that is set only the first six count */
} UserCharacterTable;

/* Copies a host's list deep into the object's pool, stores the copy's head in `userCharacterTables` and returns it.
 *   list  isn't changed and may go afterwards; it must end, as a list that runs into itself isn't found out
 * Returns null, with the list in use left as it was, without memory, for a null list, and for an element whose figures
 * are out of range or that lacks a column.
 * A list that was set before isn't freed: pipelines take their own copies, so that it can be freed as soon as another
 * stands. Called while no other thread creates a pipeline of the object; pipelines made before are as they were. */
typedef UserCharacterTable* (*NlsSetUserCharacterTables)(QZNLS* nls, const UserCharacterTable* list);

/* Frees a list made by the above; null is allowed. When it is the list in use the caller clears `userCharacterTables`
 * first. Destroying the object frees whatever is left. Returns 0. Called while no other thread creates a pipeline. */
typedef NlsStatus (*NlsFreeUserCharacterTables)(QZNLS* nls, UserCharacterTable* list);

#ifdef __cplusplus
}
#endif

#endif
