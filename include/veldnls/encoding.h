/* The encoding table, the locale name rows, the Unicode character records, and the slots that answer from them.
 *
 * All tables are constant and belong to the library: a row pointer stays valid while the module is loaded, may be read
 * from any thread, and is never freed by a caller.
 */
#ifndef VELDNLS_ENCODING_H
#define VELDNLS_ENCODING_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How many rows EncodingDescriptor has; CEIs run from 0 to one less. */
#define NLS_CEI_COUNT 230

/* Values of EncodingDescriptor.encodingClass. */
#define NLS_CLASS_SINGLE_BYTE 0
#define NLS_CLASS_UTF8 1 /* utf-8 and utf-e */
#define NLS_CLASS_UTF16 2
#define NLS_CLASS_UTF32 3
#define NLS_CLASS_SHIFTED 4    /* multi-byte with shift state */
#define NLS_CLASS_MULTI_BYTE 5 /* multi-byte without shift state */

/* Bits of EncodingDescriptor.flags. */
#define NLS_ENCODING_ASCII UINT32_C(0x1)        /* the invariant characters sit where ASCII has them */
#define NLS_ENCODING_EBCDIC UINT32_C(0x8)       /* they sit where EBCDIC has them */
#define NLS_ENCODING_DIRECTIONAL UINT32_C(0x10) /* right-to-left script with direction marks (whebrew, warabic) */

/* Values of MultiByteProfile.structure. */
#define NLS_STRUCTURE_LEAD_BYTE 0
#define NLS_STRUCTURE_SHIFTED 1
#define NLS_STRUCTURE_EUC 2

/* Inclusive range of byte values; `low` 0 ends a list of ranges. */
typedef struct NlsByteRange {
  uint8_t low;
  uint8_t high;
} NlsByteRange;

/* What a multi-byte row says of its form. All zero in other rows but the two with direction marks, which hold
 * shiftLength 1, shiftOut 0xFD and shiftIn 0xFE. */
typedef struct MultiByteProfile {
  uint32_t structure;
  uint32_t doubleByteSet; /* index into the double-byte pair tables, 1 to 20; 0: not a multi-byte row */
  uint32_t singleByteSet; /* index into the single-byte tables, 0 to 6 */
  uint16_t shiftLength;   /* bytes of a shift sequence, 0 if none */
  uint8_t shiftOut[4];    /* enters double-byte mode */
  uint8_t shiftIn[4];     /* leaves it */
  uint8_t doubleBlank[2]; /* the two-byte blank, also the double-byte substitution character */
  NlsByteRange leadRanges[4];
  NlsByteRange trailRanges[4];
} MultiByteProfile;

/* One row of the encoding table; its place is its CEI. Texts are UTF-16, zero-padded; capacities count the terminator.
 * The length fields are table data of their own: `ccsidLength` of dec-jp and euc-jp is 4 for "954", and
 * `codePageLength` of pcoem921 is 3 for an empty text. */
typedef struct EncodingDescriptor {
  CEI cei;
  int32_t encodingClass;
  uint32_t flags;
  uint32_t padChar;      /* the blank as bytes in the encoding, lowest address in the low byte */
  uint32_t substitution; /* the substitution character, likewise */
  uint16_t unitSize;     /* the most bytes that one character can occupy */
  char16_t shortName[5]; /* four-letter name, blank-padded */
  int32_t shortNameLength;
  char16_t name[14]; /* primary name; empty in alias and vacant rows */
  int32_t nameLength;
  char16_t description[34];
  int32_t descriptionLength;
  char16_t identifier[18]; /* as U_WLATIN1_CE */
  int32_t identifierLength;
  char16_t longDescription[42];
  int32_t longDescriptionLength;
  char16_t ianaName[32];
  int32_t ianaNameLength;
  char16_t javaName[32];
  int32_t javaNameLength;
  char16_t ccsid[6]; /* decimal; the identity of EBCDIC pages */
  int32_t ccsidLength;
  char16_t codePage[6]; /* Windows code-page number, decimal */
  int32_t codePageLength;
  MultiByteProfile profile;
  CEI baseCei;     /* the encoding to which the row falls back in the family of its language */
  int32_t mibEnum; /* IANA MIBenum, 0 if none */
  char16_t preferredName[32];
  int32_t preferredNameLength;
} EncodingDescriptor;

/* Columns that lookupEncoding searches. */
#define NLS_LOOKUP_ANY 0
#define NLS_LOOKUP_SHORT_NAME 1
#define NLS_LOOKUP_NAME 2
#define NLS_LOOKUP_DESCRIPTION 3
#define NLS_LOOKUP_LONG_DESCRIPTION 4
#define NLS_LOOKUP_IDENTIFIER 5 /* finds nothing: identifiers are keys of NLS_LOOKUP_ANY only */
#define NLS_LOOKUP_IANA_NAME 6
#define NLS_LOOKUP_CCSID 7
#define NLS_LOOKUP_CODE_PAGE 8
#define NLS_LOOKUP_JAVA_NAME 9
#define NLS_LOOKUP_PREFERRED_NAME 10

/* Unicode character record, from the Unicode Character Database 5.0.0. */
typedef struct CharacterRecord {
  uint32_t code;      /* the code point; in records that stand for a range, its start */
  uint32_t category;  /* one-bit mask, NLS_CATEGORY_... */
  uint32_t bidiClass; /* NLS_BIDI_... */
  uint32_t combiningClass;
  uint32_t upper;             /* simple upper-case mapping, 0 if none */
  uint32_t lower;             /* simple lower-case mapping, 0 if none */
  uint32_t decompositionBase; /* canonical decomposition, 0 if none */
  uint32_t decompositionMark;
} CharacterRecord;

#define NLS_CATEGORY_LU UINT32_C(0x1)
#define NLS_CATEGORY_LL UINT32_C(0x2)
#define NLS_CATEGORY_LT UINT32_C(0x4)
#define NLS_CATEGORY_MN UINT32_C(0x8)
#define NLS_CATEGORY_MC UINT32_C(0x10)
#define NLS_CATEGORY_ME UINT32_C(0x20)
#define NLS_CATEGORY_ND UINT32_C(0x40)
#define NLS_CATEGORY_NL UINT32_C(0x80)
#define NLS_CATEGORY_NO UINT32_C(0x100)
#define NLS_CATEGORY_ZS UINT32_C(0x200)
#define NLS_CATEGORY_ZL UINT32_C(0x400)
#define NLS_CATEGORY_ZP UINT32_C(0x800)
#define NLS_CATEGORY_CC UINT32_C(0x1000)
#define NLS_CATEGORY_CF UINT32_C(0x2000)
#define NLS_CATEGORY_CS UINT32_C(0x4000)
#define NLS_CATEGORY_CO UINT32_C(0x8000)
#define NLS_CATEGORY_LM UINT32_C(0x20000)
#define NLS_CATEGORY_LO UINT32_C(0x40000)
#define NLS_CATEGORY_PC UINT32_C(0x80000)
#define NLS_CATEGORY_PD UINT32_C(0x100000)
#define NLS_CATEGORY_PS UINT32_C(0x200000)
#define NLS_CATEGORY_PE UINT32_C(0x400000)
#define NLS_CATEGORY_PI UINT32_C(0x800000)
#define NLS_CATEGORY_PF UINT32_C(0x1000000)
#define NLS_CATEGORY_PO UINT32_C(0x2000000)
#define NLS_CATEGORY_SM UINT32_C(0x4000000)
#define NLS_CATEGORY_SC UINT32_C(0x8000000)
#define NLS_CATEGORY_SK UINT32_C(0x10000000)
#define NLS_CATEGORY_SO UINT32_C(0x20000000)

#define NLS_BIDI_L 0
#define NLS_BIDI_LRE 1
#define NLS_BIDI_LRO 2
#define NLS_BIDI_R 3
#define NLS_BIDI_AL 4
#define NLS_BIDI_RLE 5
#define NLS_BIDI_RLO 6
#define NLS_BIDI_PDF 7
#define NLS_BIDI_EN 8
#define NLS_BIDI_ES 9
#define NLS_BIDI_ET 10
#define NLS_BIDI_AN 11
#define NLS_BIDI_CS 12
#define NLS_BIDI_NSM 13
#define NLS_BIDI_BN 14
#define NLS_BIDI_B 15
#define NLS_BIDI_S 16
#define NLS_BIDI_WS 17
#define NLS_BIDI_ON 18

/* Relation between locales and encodings: a locale's row lists CEIs in descending order, an encoding's row lists
 * locale identifiers in ascending order. No number stands on both lists of a row. */
typedef struct LocaleEncodings {
  int32_t index; /* the row's place: localeId or CEI */
  const int32_t* primary;
  int32_t primaryCount;
  const int32_t* secondary; /* encodings that serve the language only partly */
  int32_t secondaryCount;
} LocaleEncodings;

/* How many locales have data; locale identifiers run from 0 to one less. */
#define NLS_LOCALE_COUNT 132

/* One row of the locale name tables. Texts are zero-filled behind their length. */
typedef struct LocaleNameRow {
  char16_t posixName[6]; /* five units and a terminator, as "af_ZA" */
  int32_t posixNameLength;
  char16_t languageCode[2];
  int32_t languageCodeLength;
  char16_t countryCode[2]; /* "YU" in the row of sr_BA; never used for matching */
  int32_t countryCodeLength;
  char16_t longName[32]; /* "Afrikaans_SouthAfrica" */
  int32_t longNameLength;
  char16_t languageName[32]; /* "Afrikaans" */
  int32_t languageNameLength;
  int32_t localeId;     /* 0 to 131 */
  uint16_t windowsLcid; /* 0 where Windows has none; a bare primary language where it has no sublanguage */
} LocaleNameRow;

/* Finds an encoding by name, without regard to case (lookups fold with the library's own case table).
 *   name, nameLength  the name in 16-bit units; 1 to 40 units. Any other length fails, and `name` may be null then
 *   kind              NLS_LOOKUP_...: any name through the index, or one column, first row wins
 *   cei               the answer, not null. Untouched on failure, but set to 0 for an unknown name of kind 0
 * Returns 0 or nlsUnknownEncoding. Any thread. */
typedef NlsStatus (*NlsLookupEncoding)(QZNLS* nls, const char16_t* name, int32_t nameLength, int32_t kind, CEI* cei);

/* Writes the row of `cei` to `*row`. Returns 0, or nlsUnknownEncoding with `*row` untouched when `cei` is outside 0 to
 * 229. Any thread. */
typedef NlsStatus (*NlsGetEncodingDescriptor)(QZNLS* nls, CEI cei, const EncodingDescriptor** row);

/* Writes the row's `baseCei` to `*base`. A CEI of 0 or an alias is resolved first, with language 0, which may read a
 * host option. Returns 0, or nlsUnknownEncoding when the (resolved) CEI is outside 1 to 229. Any thread. */
typedef NlsStatus (*NlsGetBaseEncoding)(QZNLS* nls, CEI cei, CEI* base);

/* Tells whether text of `source` must be converted to stand as `target`: 0 the bytes can be used as they are, 1 they
 * must be converted. A CEI outside the table answers 1, unless both are equal or one is 204 (any). Any thread. */
typedef int32_t (*NlsConversionNeeded)(QZNLS* nls, CEI source, CEI target);

/* True when the invariant characters have the same codes in both encodings. A CEI of 0 that differs from the other
 * reads the session encoding from a host option. Any thread. */
typedef NlsBool8 (*NlsSharesInvariantCharacters)(QZNLS* nls, CEI a, CEI b);

/* Tells whether the locale's language can be taken to be written in the encoding, by the first two letters of the name
 * in any case: for "en" every row with NLS_ENCODING_ASCII; for "ko", "ja", "zt" and "zh" the few of that language,
 * where "zh_HK", "zh_MO" and "zh_TW" are as "zt". False for every other language. Takes no object. Any thread.
 *   locale, localeLength  a locale name in 16-bit units, as "zh_TW"; null or below 2 units answers false */
typedef NlsBool8 (*NlsLocaleAcceptsEncoding)(const char16_t* locale, int32_t localeLength, CEI cei);

/* Finds the encoding of an IANA MIBenum. Takes no object. `*cei` is set to 0 first.
 * Returns 0 or nlsUnknownMibEnum. Any thread. */
typedef NlsStatus (*NlsEncodingFromMibEnum)(int32_t mib, CEI* cei);

/* Gives the encoding of a double-byte type in a double-byte language.
 *   language  code of the DbcsLanguage table; 0 means the session's, which is read from a host option. As the session's
 *             language KATAKANA, KANA942 and HANGUL lead to 0
 *   type      1 to 23, or 24 to 27; below 1 means the session encoding, read from a host option
 * Types 19 (as 25), 20 and 24 to 27 are the same in every language. A type without an encoding in the language answers
 * itself. Other answers of 0 are for a language or type outside the tables, and for no language at all, in which types
 * 5, 6, 8 and 18 still have an answer. Any thread. */
typedef CEI (*NlsResolveDbcsEncoding)(QZNLS* nls, int32_t language, int32_t type);

/* The reverse of the above: writes both outputs, 0 where nothing is known. Returns 0, or 1 for a CEI outside the
 * table. A CEI of 0 reads the session encoding from a host option. Any thread. */
typedef NlsStatus (*NlsDescribeDbcsEncoding)(QZNLS* nls, CEI cei, int32_t* language, int32_t* type);

/* Copies the record of a character to `*out` and returns 0. Takes no object. Only the low 16 bits of `code` count;
 * characters without a record get the default one, whose `code` is 0xFFFF. Any thread. */
typedef NlsStatus (*NlsGetCharacterRecord)(uint32_t code, CharacterRecord* out);

/* Simple case mapping of one character, as a 16-bit code. Takes no object. Only the low 16 bits of `code` count. From
 * U+0100 on nothing changes unless bit 0 of `flags` is set. Any thread. */
typedef uint16_t (*NlsMapCharacter)(uint32_t code, uint32_t flags);

/* Writes hostCei to `*cei` and returns hostCeiStatus (0 or nlsUnknownEncoding). Any thread. */
typedef NlsStatus (*NlsGetHostEncoding)(QZNLS* nls, CEI* cei);

/* Copies the host's locale name, without terminator, to `buffer` (room for 60 units) and its length in units to
 * `*length`. Returns hostLocaleStatus, or nlsNullString for a null buffer with nothing written. Any thread. */
typedef NlsStatus (*NlsGetHostLocaleName)(QZNLS* nls, char16_t* buffer, int32_t* length);

/* Writes the row of a locale (0 to 131) or of an encoding (0 to 229) to `*row`; outside, `*row` becomes null and the
 * result is nlsLocaleInvalid or nlsUnknownEncoding. Takes no object. Any thread. */
typedef NlsStatus (*NlsGetLocaleEncodings)(int32_t localeId, const LocaleEncodings** row);
typedef NlsStatus (*NlsGetEncodingLocales)(CEI cei, const LocaleEncodings** row);

/* Modes of findLocaleEntry. */
#define NLS_LOCALE_FALLBACK 1 /* on failure the default row, en_US, is delivered */
#define NLS_LOCALE_STRICT 4   /* an unknown name delivers nothing and the search stops at the exact name */
#define NLS_LOCALE_WIDE 8     /* long names and language names are accepted too */

/* Finds the best matching locale for a name: POSIX ("en_US", "en-US", anything behind is ignored), language code
 * ("de"), "WLCID:1033", "QUOID:51", and in the wide mode "German_Germany" and "German".
 *   name, length  16-bit units; null or below 2 units is an unknown name
 *   row           receives the row; left as it was where the mode delivers none, so look at the status first
 * Returns 0 exact; nlsLocaleApproximated a locale of the language; nlsLocaleLanguageOnly a known language without
 * data, with the default row; nlsLocaleInvalid unknown; nlsBadLookupKind the mode is none of the three. Any thread. */
typedef NlsStatus (*NlsFindLocaleEntry)(QZNLS* nls, const char16_t* name, int32_t length, uint16_t mode,
                                        const LocaleNameRow** row);

/* Tells whether a buffer is well-formed in an encoding, and where the first fault is. Nothing is converted; text that a
 * conversion takes may be refused here, and the reverse.
 *   text, length  in bytes; the whole text, which begins in single-byte mode where the encoding has shifts. Null is
 *                 allowed with length 0
 *   cei           20 and 24 to 229. A row without a map of valid bytes can't be validated, nor can 161 and 162; 203 and
 *                 204 take any text. Nothing is resolved: 0 and the aliases are refused
 *   reserved      not looked at
 *   offset        may be null. Set to -1, and to the byte offset of the fault when there is one; an offset above
 *                 0x7FFFFFFF is given as 0x7FFFFFFF
 * Returns 0 well-formed, an empty text always is; nlsInvalidCharacter; nlsUnknownEncoding the CEI can't be validated,
 * whatever the text. Takes no memory, `nls` isn't looked at. Any thread. */
typedef NlsStatus (*NlsValidateEncodedText)(QZNLS* nls, const void* text, uint32_t length, CEI cei, void* reserved,
                                            int32_t* offset);

#ifdef __cplusplus
}
#endif

#endif
