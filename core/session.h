// What the library knows of the place where it runs: session encoding and language from host options, host code page
// and locale from the operating system.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

// Encoding that a caller's CEI 0 stands for; 0 when the option has no value.
CEI sessionCei(QZNLS* nls);
// Row index in the DbcsLanguage table of the session's double-byte language; 0 none, 9 unknown.
int32_t sessionDbcsLanguage(QZNLS* nls);

// Always "UTF-16LE".
const char* activeEncodingName();
// The host's code page number as wide text of at most 200 bytes. `*length` is in units.
NlsStatus discoverHostCodePage(QZNLS* nls, char16_t* buffer, int32_t* length);
// Sets hostLocaleName, its length and hostLocaleStatus. Returns 0 or nlsLocaleNotFound.
NlsStatus discoverHostLocale(QZNLS* nls);

// Code page number and locale identifier of the process environment (LC_ALL, LC_CTYPE, LC_MESSAGES, LANG). The number
// is 1252 where no codeset is named, and 0, the name of no encoding, for a codeset that no encoding serves.
int32_t environmentCodePage();
uint32_t environmentLocaleId();

NlsStatus getHostEncoding(QZNLS* nls, CEI* cei);
NlsStatus getHostLocaleName(QZNLS* nls, char16_t* buffer, int32_t* length);
NlsStatus getLocaleEncodings(int32_t localeId, const LocaleEncodings** row);
NlsStatus getEncodingLocales(CEI cei, const LocaleEncodings** row);

}  // namespace veldnls
