/* Every status of the library. 0 is success; values that stand in no line here are not raised.
 *
 * Two facilities share the numbers: 0x803FC... is the support layer, 0x803FE8... the language support. Five results
 * are outside of both: the export's at the top, and at the end four of host-layer and formatting calls.
 */
#ifndef VELDNLS_STATUS_H
#define VELDNLS_STATUS_H

#include <stdint.h>

/* Export failed. */
#define nlsInitFailed UINT32_C(0x8000040E)
/* A message call was given status zero. */
#define nlsNoMessage UINT32_C(0x803FC001)
/* Pool allocation failed. */
#define nlsNoMemory UINT32_C(0x803FC002)
/* Digits of a number do not fit the caller's buffer. */
#define nlsDigitsOverflow UINT32_C(0x803FC0C9)
/* A message catalogue has no entry. */
#define nlsMessageNotFound UINT32_C(0x803FC0DC)
/* Entering a catalogue in the tracking table failed. */
#define nlsMessageTrackFailed UINT32_C(0x803FC12C)
/* A scan of the 132-row locale identifier table found nothing (by name or id). */
#define nlsLocaleIdUnknown UINT32_C(0x803FC2BC)
/* No locale has this exact name. */
#define nlsLocaleNameUnknown UINT32_C(0x803FC2BD)
/* Null object or a format item that can't be processed. */
#define nlsBadArgument UINT32_C(0x803FE806)
/* Target buffer too small: the output holds what fit. */
#define nlsOutputTruncated UINT32_C(0x803FE807)
/* At least one input character was invalid or had no mapping and was replaced; the output is complete. */
#define nlsSubstituted UINT32_C(0x803FE808)
/* CEI out of range or name unknown. */
#define nlsUnknownEncoding UINT32_C(0x803FE809)
/* A code-page module could not be loaded, or it has no table for the pair. */
#define nlsModuleUnavailable UINT32_C(0x803FE80A)
/* A computed date or time is the missing value. */
#define nlsDateResultMissing UINT32_C(0x803FE80B)
/* A date or time operand is the missing value. */
#define nlsDateInputMissing UINT32_C(0x803FE80C)
/* A date value is outside what can be formatted. */
#define nlsDateOutOfRange UINT32_C(0x803FE80D)
/* Formatted text does not fit its field or buffer. */
#define nlsFieldTooNarrow UINT32_C(0x803FE80E)
/* A locale has no entry; a locale handle is still created with it. */
#define nlsLocaleNotFound UINT32_C(0x803FE80F)
/* Parsed text holds no number; also the start value of the integer parsers. */
#define nlsNoDigits UINT32_C(0x803FE810)
/* A parsed number overflows. */
#define nlsNumberOverflow UINT32_C(0x803FE811)
/* A parsed number underflows in the floating-point conversion. */
#define nlsNumberUnderflow UINT32_C(0x803FE812)
/* The input ended inside a character; with a TranscodeProgress the bytes are kept in held. */
#define nlsIncompleteInput UINT32_C(0x803FE814)
/* A format option is used with a width of zero. */
#define nlsBadWidthForOption UINT32_C(0x803FE815)
/* A number could be shown only with loss of digits. */
#define nlsDigitsLost UINT32_C(0x803FE816)
/* An index outside 0 to 9. */
#define nlsIndexOutOfRange UINT32_C(0x803FE817)
/* A negative length or count. */
#define nlsNegativeLength UINT32_C(0x803FE818)
/* A locale name or index can't be used; also getLocaleEncodings with an index outside 0 to 131. */
#define nlsLocaleInvalid UINT32_C(0x803FE819)
/* A locale was found by its primary language only; the found entry is returned and callers take this as success. */
#define nlsLocaleApproximated UINT32_C(0x803FE81A)
/* The name of the OS encoding is unknown. */
#define nlsBadOsCei UINT32_C(0x803FE81B)
/* A locale was found by its language part only. */
#define nlsLocaleLanguageOnly UINT32_C(0x803FE81D)
/* A collator was requested for a locale that can't be used. */
#define nlsCollatorLocaleInvalid UINT32_C(0x803FE81E)
/* A collator option is out of range. */
#define nlsCollatorOptionInvalid UINT32_C(0x803FE81F)
/* The encoding of a collator is out of range. */
#define nlsCollatorCeiInvalid UINT32_C(0x803FE820)
/* Two collation keys come from different tables. */
#define nlsCollationKeyMismatch UINT32_C(0x803FE822)
/* A collation key header is not valid. */
#define nlsCollationKeyCorrupt UINT32_C(0x803FE823)
/* A handle isn't a "QZNLSCollate handle". */
#define nlsWrongHandle UINT32_C(0x803FE824)
/* A key buffer is too small; the needed length is written back. */
#define nlsKeyBufferTooSmall UINT32_C(0x803FE825)
/* Null output for a key. */
#define nlsNullKeyOutput UINT32_C(0x803FE827)
/* Null argument to a collator operation. */
#define nlsNullCollatorArgument UINT32_C(0x803FE828)
/* Null string record or null output buffer. */
#define nlsNullString UINT32_C(0x803FE82A)
/* findLocaleEntry was given a kind other than 1, 4, 8, or a string operation an unknown mode. */
#define nlsBadLookupKind UINT32_C(0x803FE82B)
/* Text holds an invalid character. No substitution is made; validateEncodedText gives the offset. */
#define nlsInvalidCharacter UINT32_C(0x803FE82C)
/* A string position is out of range. */
#define nlsBadPosition UINT32_C(0x803FE82E)
/* String manipulator requested with options that aren't supported. */
#define nlsOptionsUnsupported UINT32_C(0x803FE82F)
/* Null output to a locale name query. */
#define nlsNullLocaleOutput UINT32_C(0x803FE831)
/* An alignment letter other than L, R, C and N (either case). */
#define nlsBadAlignment UINT32_C(0x803FE835)
/* encodingFromMibEnum found nothing. */
#define nlsUnknownMibEnum UINT32_C(0x803FE836)
/* A collation key of a version that can't be read. */
#define nlsCollationKeyVersion UINT32_C(0x803FE837)
/* A match pattern ends in a dangling escape. */
#define nlsBadPattern UINT32_C(0x803FE838)

/* Support-layer results outside of the two facilities. */
/* xmcreateChecked could not make the pool. */
#define xmCreateFailed UINT32_C(0x80040001)
/* xmreset was given a null handle. */
#define xmNullPool UINT32_C(0x80040002)
/* A message code has no text in the catalogues. */
#define hsMessageMissing UINT32_C(0x80010003)
/* A date passed the range test but no calendar year could be derived. */
#define nlsNoCalendarYear UINT32_C(0xFFFFFFFF)

#endif
