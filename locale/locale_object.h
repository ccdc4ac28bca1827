// Locale objects: creation, and the slots that aren't formatters or parsers. Contracts stand in veldnls/qzlocale.h.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

QZLocale* createLocale(QZNLS* nls, const char16_t* name, int32_t length);
QZLocale* createDefaultLocale(QZNLS* nls);

NlsStatus getLanguage(QZLocale* locale, char16_t language[2], int32_t* length);
NlsStatus getLocaleSection(QZLocale* locale, int32_t section, const void** data);
NlsStatus getLocaleName(QZLocale* locale, char16_t* name, int32_t* length);
NlsStatus getLocaleMessage(QZLocale* locale, uint32_t code, char16_t* output, int32_t capacity);
int32_t compareText(QZLocale* locale, const char16_t* textA, int32_t lengthA, const char16_t* textB, int32_t lengthB,
                    int32_t blankMode);

}  // namespace veldnls
