/* Flags of the formatters and parsers of numbers. The slots for doubles and integers share one word; pointers,
 * percents, amounts and parsers have words of their own. */
#ifndef VELDNLS_NUMBER_FLAGS_H
#define VELDNLS_NUMBER_FLAGS_H

#include <stdint.h>

/* Conversions of a double. Without FMT_FIXED, FMT_FRACTION_ONLY, FMT_INTEGER_ONLY, FMT_EXPONENT, FMT_EXPONENT_UPPER and
 * FMT_FIELD_DECIMAL the conversion is general. */
#define FMT_GENERAL UINT32_C(0x00000001)
#define FMT_FIXED UINT32_C(0x00000002)
/* "0" for the integer part, whatever it is; a fraction that is rounded up to 1 makes it "1". */
#define FMT_FRACTION_ONLY UINT32_C(0x00000004)
#define FMT_INTEGER_ONLY UINT32_C(0x00000008) /* truncated, not rounded */
#define FMT_EXPONENT UINT32_C(0x00000010)
#define FMT_EXPONENT_UPPER UINT32_C(0x00000020) /* with "E" */
#define FMT_GENERAL_UPPER UINT32_C(0x00000400)  /* with "E" */
/* Conversions of an unsigned integer; without one it is decimal. */
#define FMT_HEX UINT32_C(0x00000080)
#define FMT_HEX_UPPER UINT32_C(0x00000100)
#define FMT_OCTAL UINT32_C(0x00000200)
/* Conversions of a double into a field of `width` units, filled from the right. */
#define FMT_BEST UINT32_C(0x00000800) /* as many digits as fit; a precision of 99 asks for it too */
#define FMT_FIELD_DECIMAL UINT32_C(0x00001000)
#define FMT_FIELD_EXPONENT UINT32_C(0x00002000)
/* What is added to a number; the fields above know of these FMT_GROUP only, with FMT_FIELD_DECIMAL. */
#define FMT_PLUS UINT32_C(0x00010000)
#define FMT_GROUP UINT32_C(0x00020000)
#define FMT_LEFT UINT32_C(0x00040000)
#define FMT_ZERO UINT32_C(0x00080000)       /* fill with zeros; not with left justification or width 0 */
#define FMT_POINT UINT32_C(0x00100000)      /* a decimal point even without a fraction */
#define FMT_SPACE UINT32_C(0x00200000)      /* a blank in the place of a plus sign */
#define FMT_KEEP_ZEROS UINT32_C(0x00400000) /* the general conversion keeps zeros at the end */
#define FMT_ALT_HEX UINT32_C(0x00800000)    /* "0x" or "0X" in front */
#define FMT_ALT_OCTAL UINT32_C(0x01000000)  /* one "0" in front, if the width leaves room */

/* formatPointer. */
#define FMT_POINTER_PREFIX UINT32_C(0x00000001) /* "0x" in front */
#define FMT_POINTER_LEFT UINT32_C(0x00000002)
/* formatPercent: negative values in parentheses. */
#define FMT_PERCENT_PARENTHESES UINT32_C(0x00000001)
/* formatCurrency: FMT_INTEGER_ONLY in the place of FMT_FIXED. */
#define FMT_CURRENCY_NO_FRACTION UINT32_C(0x00000001)

/* Parsers of integers; PARSE_HEX holds for the unsigned ones. */
#define PARSE_HEX UINT32_C(0x00000001)
#define PARSE_ALLOW_TRAILING_BLANKS UINT32_C(0x00001000)

#endif
