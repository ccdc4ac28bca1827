// Case and class of 16-bit units, without any locale: names and formats are matched with these. One unit is one
// character; a surrogate is a character of no class. Pure functions on constant tables.
#pragma once

#include <cstdint>

namespace veldnls {

// Fold of one unit.
char16_t foldToLower(char16_t unit);
char16_t foldToUpper(char16_t unit);

// Fold a counted text in place.
void wideFoldToLower(char16_t* text, int32_t length);
void wideFoldToUpper(char16_t* text, int32_t length);

// Equal lengths and equal lower-case folds. Neither text is changed.
bool wideEqualNoCase(const char16_t* a, int32_t lengthA, const char16_t* b, int32_t lengthB);
// Folds both texts in place to lower case, whatever their lengths, then compares. The texts stay folded.
bool wideEqualFolded(char16_t* a, int32_t lengthA, char16_t* b, int32_t lengthB);
bool wideEqualExact(const char16_t* a, int32_t lengthA, const char16_t* b, int32_t lengthB);

// The length without trailing blanks (mode 0) or without trailing units of class space (any other mode).
int32_t wideTrimRight(const char16_t* text, int32_t length, int32_t mode);

bool isWideDigit(char16_t unit);
bool isWideLower(char16_t unit);
bool isWideUpper(char16_t unit);
bool isWideAlpha(char16_t unit);
bool isWideSpace(char16_t unit);
bool isWideAlphaNumeric(char16_t unit);
bool isWidePrintable(char16_t unit);

}  // namespace veldnls
