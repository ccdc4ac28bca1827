/* The data of one locale, as the locale database fills it and a locale object keeps it.
 *
 * The record has ten sections, numbered from 0 in another order than they stand. Callers get pointers to sections, so
 * that order and capacities never change. Texts are counted; behind them buffers are zero. The formats of dates and
 * times consist of text and of items "%x"; patterns have the row's own signs for decimal point and groups, and U+00A4
 * in the place of a currency.
 */
#ifndef VELDNLS_LOCALE_RECORD_H
#define VELDNLS_LOCALE_RECORD_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Section numbers. */
#define NLS_LOCALE_SECTION_RECORD 0 /* the whole record */
#define NLS_LOCALE_SECTION_RESERVED_1 1
#define NLS_LOCALE_SECTION_RESERVED_2 2
#define NLS_LOCALE_SECTION_CURRENCY 3
#define NLS_LOCALE_SECTION_NUMBER 4
#define NLS_LOCALE_SECTION_DATE_TIME 5
#define NLS_LOCALE_SECTION_PERCENT 6
#define NLS_LOCALE_SECTION_MEASUREMENT 7
#define NLS_LOCALE_SECTION_IDENTITY 8
#define NLS_LOCALE_SECTION_ITEMS 9

/* Items of the item table. */
#define NLS_LOCALE_ITEM_COUNT 143
/* The item that holds the two letters of the language. */
#define NLS_LOCALE_ITEM_LANGUAGE 2

typedef struct LocaleDateTime {
  NlsText60 dayNames[7]; /* Sunday first */
  NlsText60 dayAbbreviations[7];
  NlsText60 monthNames[12]; /* January first */
  NlsText60 monthAbbreviations[12];
  NlsText60 dateFormatShort;
  NlsText60 dateFormatMedium;
  NlsText60 dateFormatLong;
  NlsText60 dateTimeFormat;
  NlsText60 timeFormat24;
  NlsText60 timeFormat12;
  NlsText60 amText;
  NlsText60 pmText;
  char16_t dateSeparator;
  char16_t timeSeparator;
} LocaleDateTime;

typedef struct LocaleNumber {
  NlsText60 numberPattern;
  NlsText60 numberGrouping; /* sizes of groups from the decimal point leftward, the last one repeats: "3", "3;2" */
  char16_t decimalPoint;
  char16_t groupSeparator;
} LocaleNumber;

typedef struct LocaleCurrency {
  NlsText60 currencyPattern; /* behind a ";" the form of negative amounts */
  NlsText60 currencyPatternInternational;
  NlsText60 currencyGrouping;
  NlsText60 currencySymbol;
  NlsText60 currencyCode;
  char16_t currencyDecimalPoint;
  char16_t currencyGroupSeparator;
  uint16_t currencyDigits;
  uint16_t currencyDigitsInternational;
} LocaleCurrency;

typedef struct LocalePercent {
  NlsText60 percentPattern;
  char16_t percentSign;
} LocalePercent;

typedef struct LocaleIdentity {
  NlsText60 posixName; /* "en_US" */
  char16_t languageCode[2];
  char16_t countryCode[2];
  NlsText60 languageName; /* "English" */
  NlsText60 countryName;  /* "UnitedStates" */
  NlsText60 paperName;    /* "LETTER" or "A4" */
  uint16_t paperHeight;   /* millimetres */
  uint16_t paperWidth;
} LocaleIdentity;

/* ASCII text; any other character is an escape, "<U5E74>" or "<u00a4>". */
typedef struct LocaleItem {
  uint16_t length; /* bytes */
  char text[160];
} LocaleItem;

typedef struct LocaleRecord {
  NlsText60 requestedName; /* the name that the locale was created with */
  uint8_t reserved2[96];
  LocaleDateTime dateTime;
  LocaleNumber number;
  LocaleCurrency currency;
  LocalePercent percent;
  uint8_t reserved1[124];
  int32_t measurement; /* 1 */
  LocaleIdentity identity;
  LocaleItem items[NLS_LOCALE_ITEM_COUNT];
} LocaleRecord;

#ifdef __cplusplus
}
#endif

#endif
