/* Locale objects and the slots that make them.
 *
 * A locale formats and parses numbers, money, dates and times, hands out its data, compares texts plainly and fetches
 * messages in its language. It is read-only after creation, but for its list of message modules, which has to bear
 * several threads (see NlsGetLocaleMessage): every slot may be called from any thread. Texts are UTF-16 without
 * terminator; lengths and capacities count units, and nothing is written behind a capacity. Results don't depend on the
 * process, its locale, its time zone or the state of its floating point, and no slot raises a floating-point exception.
 */
#ifndef VELDNLS_QZLOCALE_H
#define VELDNLS_QZLOCALE_H

#include "veldnls/locale_record.h"
#include "veldnls/number_flags.h"
#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A locale with its formatters and parsers; a handle. */
typedef struct QZLocale QZLocale;

/* ---- Data of the locale ---- */

/* Writes the two letters of the language. `*length`, which may be null, always becomes 2. Without a transcoder for
 * wlatin1, as when memory fails, `language` stays as it was. Returns 0. */
typedef NlsStatus (*NlsGetLanguage)(QZLocale* locale, char16_t language[2], int32_t* length);

/* Delivers one of the sections NLS_LOCALE_SECTION_... of the locale's record, which live as long as the locale. Returns
 * 0, or nlsIndexOutOfRange with `*data` as it was. */
typedef NlsStatus (*NlsGetLocaleSection)(QZLocale* locale, int32_t section, const void** data);

/* Writes the name that the locale was created with, for which `name` has room (62 units always suffice). Returns 0, or
 * nlsNullLocaleOutput when `name` or `length` is null. */
typedef NlsStatus (*NlsGetLocaleName)(QZLocale* locale, char16_t* name, int32_t* length);

/* ---- Dates and times ----
 *
 * Days are of the calendar from 1 January 1582 to 31 December 20000 in which a year that 4000 divides is a common one.
 * A year below 100 is one of 1950 to 2049. Times are seconds from the midnight that starts 1 January 1960. */

/* Styles of dates; any other is NLS_DATE_STYLE_SHORT. */
#define NLS_DATE_STYLE_SHORT 0
#define NLS_DATE_STYLE_MEDIUM 1
#define NLS_DATE_STYLE_LONG 2
/* Styles of times. Any other is written with 24 hours and read with 12. */
#define NLS_TIME_STYLE_12 0
#define NLS_TIME_STYLE_24 1

/* Formatters. Years are written with four digits, so that one of five loses the first. Blanks at the end are cut.
 * Return 0; nlsDateInputMissing for a missing value; nlsDateOutOfRange for what is no date or outside of the calendar;
 * nlsBadArgument when the locale's format has an item that can't be written; nlsFieldTooNarrow with the first
 * `capacity` units of the text, and with 512 at most, since no text is longer. On other failures than the last, outputs
 * stay as they were. */
typedef NlsStatus (*NlsFormatDate)(QZLocale* locale, uint32_t month, uint32_t day, uint32_t year, int32_t style,
                                   char16_t* output, int32_t capacity, int32_t* length);
typedef NlsStatus (*NlsFormatTime)(QZLocale* locale, double seconds, int32_t style, char16_t* output, int32_t capacity,
                                   int32_t* length);
typedef NlsStatus (*NlsFormatDateTime)(QZLocale* locale, double seconds, uint32_t reserved, char16_t* output,
                                       int32_t capacity, int32_t* length);

/* Parsers. The text must follow the locale's format; blanks in front of it are skipped, text behind it is left. Digits
 * of numbers must all be there, but that blanks may stand in the place of the first, and that the end of the text may
 * cut a number short. Names compare without regard to case. `*consumed` counts the units read. Return 0 or
 * nlsDateResultMissing. */

/* On failure the three are 0, and so they are with status 0 when the locale's format lacks one of them. That they make
 * a date isn't checked. */
typedef NlsStatus (*NlsParseDate)(QZLocale* locale, const char16_t* text, int32_t length, int32_t style,
                                  uint32_t* month, uint32_t* day, uint32_t* year, int32_t* consumed);
/* On failure outputs stay as they were. */
typedef NlsStatus (*NlsParseTime)(QZLocale* locale, const char16_t* text, int32_t length, int32_t style,
                                  double* seconds, int32_t* consumed);
typedef NlsStatus (*NlsParseDateTime)(QZLocale* locale, const char16_t* text, int32_t length, uint32_t flags,
                                      double* seconds, int32_t* consumed);

/* ---- Numbers ----
 *
 * `flags` are those of number_flags.h. */

/* Formatters. The absolute value of the width is that of a field, and 0 means no field. A precision below 0 means 6,
 * and a capacity below 0 counts as 0. */

/* A double. Group separators that have no room are left out.
 *
 * The conversions into a field (FMT_BEST, FMT_FIELD_DECIMAL, FMT_FIELD_EXPONENT; a precision of 99 means FMT_BEST) fill
 * the smaller of field and capacity from the right, and with a width of 0 have room for no more than a zero. What
 * doesn't fit in decimal form is shown with an exponent.
 *
 * Other conversions don't cut the field to the capacity, and round the exact value half up. A negative width asks for
 * left justification, as FMT_LEFT does; the last unit of a field that is left-justified isn't written.
 *
 * A missing value is shown as its letter: with FMT_FIELD_DECIMAL in the place of the last integer digit, and otherwise
 * placed like a text of those other conversions. No field of it is cut to the capacity.
 *
 * Returns 0; nlsFieldTooNarrow, with "*" in the smaller of field and capacity; nlsDigitsLost when a field shows fewer
 * digits than was asked for, with a valid text; nlsBadArgument for what is no number, without output. When it is too
 * narrow, `*length` is the greater of text and field, and a capacity of it is enough (but without a field the general
 * conversion may show more digits then). For numbers in the conversions into a field it is the smaller of field and
 * capacity. */
typedef NlsStatus (*NlsFormatDouble)(QZLocale* locale, double value, int32_t width, int32_t precision, uint32_t flags,
                                     char16_t* output, int32_t capacity, int32_t* length);

/* Integers. `precision` is the least count of digits and group separators together; zero with precision 0 has no digit.
 * A negative width asks for left justification, as FMT_LEFT does. The output behind the text is filled with U+0000 up
 * to the capacity.
 *
 * Return 0 or nlsFieldTooNarrow: without output and with length 0 when the capacity is below precision or width;
 * otherwise with the text's length in `*length` and the last `capacity` units of the number, or, when it is the blanks
 * behind the number that have no room, the first `capacity` units of the text. */
typedef NlsStatus (*NlsFormatInt32)(QZLocale* locale, int32_t value, int32_t width, int32_t precision, uint32_t flags,
                                    char16_t* output, int32_t capacity, int32_t* length);
typedef NlsStatus (*NlsFormatInt64)(QZLocale* locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                                    char16_t* output, int32_t capacity, int32_t* length);
typedef NlsStatus (*NlsFormatUInt32)(QZLocale* locale, uint32_t value, int32_t width, int32_t precision, uint32_t flags,
                                     char16_t* output, int32_t capacity, int32_t* length);
typedef NlsStatus (*NlsFormatUInt64)(QZLocale* locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                                     char16_t* output, int32_t capacity, int32_t* length);

/* A pointer in upper-case hexadecimal; null is "NIL", whatever the width. Only FMT_POINTER_LEFT asks for left
 * justification; a negative width doesn't. The output behind the text is filled with U+0000. Returns 0, or
 * nlsFieldTooNarrow with the first `capacity` units of the text and the text's length in `*length`. */
typedef NlsStatus (*NlsFormatPointer)(QZLocale* locale, const void* value, int32_t width, uint32_t flags,
                                      char16_t* output, int32_t capacity, int32_t* length);

/* These return what NlsFormatDouble does. `*length` counts symbol and signs on failures too. */

/* An amount with FMT_FIXED and FMT_GROUP and the currency's symbol directly in front of its first character.
 * nlsFieldTooNarrow without output and with length 0 for a width below 1 or below the symbol's length. */
typedef NlsFormatDouble NlsFormatCurrency;
/* A hundred times the value with FMT_FIXED, and "%" behind it. */
typedef NlsFormatDouble NlsFormatPercent;

/* Parsers. Only the ASCII digits are digits. `*consumed` tells how many units were read, which for a failure is the
 * place of the unit that doesn't belong there. */

/* A number with fraction and exponent, or a missing value: "." with a letter or "_", or alone. Blanks and tabs may
 * stand around it, group separators anywhere in the integer part. The value is the double next to what all digits tell.
 * A null locale means "." and ",".
 *
 * Returns 0; for a text without anything 0 and the missing value "."; nlsNoDigits; nlsNumberOverflow;
 * nlsNumberUnderflow below the smallest normal double; nlsDateOutOfRange for an exponent above 30800, while one below
 * -30800 underflows. On failures `*value` is the missing value ".". */
typedef NlsStatus (*NlsParseDouble)(QZLocale* locale, const char16_t* text, int32_t length, double* value,
                                    int32_t* consumed);

/* Integers, with blanks in front and behind the sign. A text without anything is 0. Return 0; nlsNoDigits with the
 * value of what was read; nlsNumberOverflow and nlsNegativeLength with 0. The signed ones skip a group separator
 * together with the unit behind it, while both count as one unit of the length: "1,234" is 134. */
typedef NlsStatus (*NlsParseInt32)(QZLocale* locale, const char16_t* text, int32_t length, uint32_t flags,
                                   int32_t* value, int32_t* consumed);
typedef NlsStatus (*NlsParseInt64)(QZLocale* locale, const char16_t* text, int32_t length, uint32_t flags,
                                   int64_t* value, int32_t* consumed);
typedef NlsStatus (*NlsParseUInt32)(QZLocale* locale, const char16_t* text, int32_t length, uint32_t flags,
                                    uint32_t* value, int32_t* consumed);
typedef NlsStatus (*NlsParseUInt64)(QZLocale* locale, const char16_t* text, int32_t length, uint32_t flags,
                                    uint64_t* value, int32_t* consumed);

/* ---- Others ---- */

/* Does nothing, whatever it is given, and returns 0. */
typedef NlsStatus (*NlsLocaleReserved)(QZLocale* locale, ...);

/* Blank mode of NlsCompareText in which blanks at the end don't count; any other compares all units. */
#define NLS_COMPARE_IGNORES_BLANKS 1

/* Order of two texts by their bytes in memory, so that U+0100 stands before U+0041: -1, 0 or 1. Behind the common
 * length of two texts the longer one is greater; in the mode above the first of its units that isn't a blank tells, by
 * whether it is above U+0020. A null text has no units. */
typedef int32_t (*NlsCompareText)(QZLocale* locale, const char16_t* textA, int32_t lengthA, const char16_t* textB,
                                  int32_t lengthB, int32_t blankMode);

/* Fetches a text from the message module of the locale's language, or else from that of English. `code` isn't looked
 * at: modules are asked for 0. A module is an extension that the host's service `loadExtension` makes for the name
 * "t0a0" and two letters of language; `output` and `capacity` go to it as they are. The locale keeps modules in a list
 * of the host under that name (12 bytes), and asks a module once only, by the call that loads it.
 *
 * The locale's lock is held while a module is loaded and listed, so that of several threads one loads it. The list is
 * searched without the lock too, at any time, also while another thread inserts; modules are asked without it.
 *
 * A module that is listed belongs to the list: the locale ends its list when it is destroyed, but no module. One that
 * can't be listed is ended at once, through its `destroy`.
 *
 * Returns 0, the status of the lock or that of the last module asked, nlsMessageTrackFailed when a module can't be
 * listed, and nlsMessageNotFound when no module was asked. Without services of the host for locks, lists and modules
 * the call ends the process. */
typedef NlsStatus (*NlsGetLocaleMessage)(QZLocale* locale, uint32_t code, char16_t* output, int32_t capacity);

struct QZLocale {
  uint8_t magic[4];
  const char* typeName; /* "QZLocale handle" */
  NlsDestroy destroy;   /* before the QZNLS object goes, whose pool holds the locale */
  QZNLS* owner;
  int32_t nameLength;
  char16_t name[62]; /* the name that the locale was created with */
  NlsGetLanguage getLanguage;
  NlsFormatDate formatDate;
  NlsFormatTime formatTime;
  NlsFormatDouble formatDouble;
  NlsFormatInt32 formatInt32;
  NlsFormatInt64 formatInt64;
  NlsFormatUInt32 formatUInt32;
  NlsFormatUInt64 formatUInt64;
  NlsFormatPointer formatPointer;
  NlsFormatCurrency formatCurrency;
  NlsFormatPercent formatPercent;
  NlsParseDateTime parseDateTime;
  NlsParseDate parseDate;
  NlsParseTime parseTime;
  NlsParseDouble parseDouble;
  NlsParseInt32 parseInt32;
  NlsParseInt64 parseInt64;
  NlsParseUInt32 parseUInt32;
  NlsParseUInt64 parseUInt64;
  NlsLocaleReserved reserved1;
  NlsLocaleReserved reserved2;
  NlsLocaleReserved reserved3;
  NlsCompareText compareText;
  NlsFormatDateTime formatDateTime;
  NlsGetLocaleSection getLocaleSection;
  NlsGetLocaleMessage getLocaleMessage;
  NlsGetLocaleName getLocaleName;
  LocaleRecord* record;
  void* messageLock;  /* guards the loading of message modules, but not every look-up */
  void* messageTrack; /* the modules that were loaded */
};

/* ---- Slots of QZNLS ---- */

/* Makes a locale from one of the exact five-unit names ("en_US"), or returns null: another name, a negative length, no
 * memory, or a lock or list that the host refuses. The caller destroys it. */
typedef QZLocale* (*NlsCreateLocale)(QZNLS* nls, const char16_t* name, int32_t length);

/* Takes 272 zeroed bytes from the pool of the object that `locale` belongs to and writes 272 to `*size`; null without
 * touching `*size` when memory fails. */
typedef void* (*NlsAllocateLocaleWorkRecord)(QZLocale* locale, int32_t* size);

/* Returns null in every state of the library; callers take that into account. */
typedef QZLocale* (*NlsCreateDefaultLocale)(QZNLS* nls);

/* Gives a work record back; null is allowed. Returns 0. */
typedef NlsStatus (*NlsFreeLocaleWorkRecord)(QZNLS* nls, void* block);

#ifdef __cplusplus
}
#endif

#endif
