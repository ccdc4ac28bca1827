#include "core/wide_text.h"

namespace veldnls {
namespace {

using Fold = char16_t (*)(char16_t);

void foldText(char16_t* text, int32_t length, Fold fold) {
  for (int32_t i = 0; i < length; ++i) text[i] = fold(text[i]);
}

}  // namespace

void wideFoldToLower(char16_t* text, int32_t length) { foldText(text, length, foldToLower); }

void wideFoldToUpper(char16_t* text, int32_t length) { foldText(text, length, foldToUpper); }

bool wideEqualNoCase(const char16_t* a, int32_t lengthA, const char16_t* b, int32_t lengthB) {
  if (lengthA != lengthB) return false;
  for (int32_t i = 0; i < lengthA; ++i) {
    if (foldToLower(a[i]) != foldToLower(b[i])) return false;
  }
  return true;
}

bool wideEqualFolded(char16_t* a, int32_t lengthA, char16_t* b, int32_t lengthB) {
  wideFoldToLower(a, lengthA);
  wideFoldToLower(b, lengthB);
  return wideEqualExact(a, lengthA, b, lengthB);
}

bool wideEqualExact(const char16_t* a, int32_t lengthA, const char16_t* b, int32_t lengthB) {
  if (lengthA != lengthB) return false;
  for (int32_t i = 0; i < lengthA; ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

int32_t wideTrimRight(const char16_t* text, int32_t length, int32_t mode) {
  while (length > 0 && (mode == 0 ? text[length - 1] == u' ' : isWideSpace(text[length - 1]))) --length;
  return length > 0 ? length : 0;
}

}  // namespace veldnls
