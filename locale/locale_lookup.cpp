#include <algorithm>
#include <iterator>

#include "core/wide_text.h"
#include "locale/name_tables.h"
#include "locale/qznlsldb.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

constexpr int32_t posixNameLength = 5;
constexpr int32_t separatorPlace = 2;  // of "ll_CC"
constexpr int32_t prefixLength = 6;
constexpr char16_t windowsPrefix[] = u"WLCID:";
constexpr char16_t numberPrefix[] = u"QUOID:";
constexpr uint16_t primaryLanguageMask = 0x3FF;  // of a Windows identifier; the bits above are the sublanguage

// What a call searches for and where its answer goes.
struct Request {
  const char16_t* name;
  int32_t length;
  uint16_t mode;
  const LocaleNameRow** row;
};

NlsStatus deliver(const Request& request, const LocaleNameRow& row, NlsStatus status) {
  *request.row = &row;
  return status;
}

// The answer to a name that means nothing; the fallback mode gets the default row with it.
NlsStatus unknownName(const Request& request) {
  if (request.mode == NLS_LOCALE_FALLBACK) *request.row = &defaultLocaleRow;
  return nlsLocaleInvalid;
}

// A name shorter than the prefix need only agree as far as it goes: "WL" counts as "WLCID:" without a number.
bool hasPrefix(const Request& request, const char16_t* prefix) {
  const int32_t length = std::min(request.length, prefixLength);
  return wideEqualExact(request.name, length, prefix, length);
}

struct PrefixedNumber {
  uint32_t value;  // modulo 2^32
  bool negative;
};

// The number behind the prefix. Blanks are skipped wherever they stand; the first unit that can't belong to the number
// ends it.
PrefixedNumber readNumber(const Request& request, bool signAllowed) {
  PrefixedNumber number{0, false};
  for (int32_t i = prefixLength; i < request.length; ++i) {
    const char16_t unit = request.name[i];
    if (unit == u' ') continue;
    if (unit == u'-' && signAllowed) {
      number.negative = true;
    } else if (unit >= u'0' && unit <= u'9') {
      number.value = number.value * 10 + static_cast<uint32_t>(unit - u'0');
    } else {
      break;
    }
  }
  return number;
}

// The first row of a table for which `matches` holds, or null.
template <class Row, size_t count, class Matches>
const Row* firstRow(const Row (&table)[count], Matches matches) {
  const Row* found = std::find_if(std::begin(table), std::end(table), matches);
  return found != std::end(table) ? found : nullptr;
}

NlsStatus findByWindowsLcid(const Request& request) {
  const uint32_t value = readNumber(request, false).value;
  if (value == 0) return unknownName(request);
  const auto lcid = static_cast<uint16_t>(value);
  if (lcid > primaryLanguageMask) {
    const auto* exact = firstRow(localeNameTable, [=](const LocaleNameRow& row) { return row.windowsLcid == lcid; });
    if (exact != nullptr) return deliver(request, *exact, 0);
    if (request.mode == NLS_LOCALE_STRICT) return unknownName(request);
  }
  const uint16_t language = lcid & primaryLanguageMask;
  const auto* substitute = firstRow(languageDefaultTable, [=](const LocaleNameRow& row) {
    return (row.windowsLcid & primaryLanguageMask) == language;
  });
  if (substitute != nullptr) return deliver(request, *substitute, nlsLocaleApproximated);
  const auto* known =
      firstRow(windowsLanguageTable, [=](const WindowsLanguageRow& row) { return row.primaryLanguage == language; });
  if (known != nullptr) return deliver(request, defaultLocaleRow, nlsLocaleLanguageOnly);
  return unknownName(request);
}

NlsStatus findByLocaleId(const Request& request) {
  const PrefixedNumber number = readNumber(request, true);
  if (number.negative || number.value >= NLS_LOCALE_COUNT) return unknownName(request);
  const auto id = static_cast<int32_t>(number.value);
  const auto* found = firstRow(localeNameTable, [=](const LocaleNameRow& row) { return row.localeId == id; });
  return found != nullptr ? deliver(request, *found, 0) : unknownName(request);
}

// The locale whose POSIX name the text begins with; whatever follows (codeset, modifier) is ignored.
const LocaleNameRow* findByPosixName(const char16_t* name) {
  char16_t posixName[posixNameLength];
  std::copy_n(name, posixNameLength, posixName);
  posixName[separatorPlace] = u'_';
  return firstRow(localeNameTable, [&](const LocaleNameRow& row) {
    return wideEqualNoCase(posixName, posixNameLength, row.posixName, row.posixNameLength);
  });
}

const LocaleNameRow* findByLongName(const char16_t* name, int32_t length) {
  return firstRow(localeNameTable, [=](const LocaleNameRow& row) {
    return wideEqualNoCase(name, length, row.longName, row.longNameLength);
  });
}

// In the wide mode a language is found by its name, up to the first underscore. Whatever the name means, the default
// row is delivered where no other is.
NlsStatus findByLanguageName(const Request& request) {
  if (request.mode == NLS_LOCALE_WIDE) {
    const auto length =
        static_cast<int32_t>(std::find(request.name, request.name + request.length, u'_') - request.name);
    const auto* found = firstRow(languageDefaultTable, [&](const LocaleNameRow& row) {
      return wideEqualNoCase(request.name, length, row.languageName, row.languageNameLength);
    });
    if (found != nullptr) return deliver(request, *found, nlsLocaleApproximated);
  }
  return deliver(request, defaultLocaleRow, nlsLocaleInvalid);
}

NlsStatus findByLanguageCode(const Request& request) {
  const auto* substitute = firstRow(languageDefaultTable, [&](const LocaleNameRow& row) {
    return wideEqualNoCase(request.name, row.languageCodeLength, row.languageCode, row.languageCodeLength);
  });
  if (substitute != nullptr) return deliver(request, *substitute, nlsLocaleApproximated);
  const auto* known = firstRow(languageCodeTable, [&](const LanguageCodeRow& row) {
    return wideEqualNoCase(request.name, row.codeLength, row.code, row.codeLength);
  });
  if (known != nullptr) return deliver(request, defaultLocaleRow, nlsLocaleLanguageOnly);
  return unknownName(request);
}

// Units that end a language code.
bool endsLanguageCode(char16_t unit) { return unit == u'_' || unit == u'-' || unit == u'@' || unit == u'.'; }

NlsStatus findByText(const Request& request) {
  const char16_t* name = request.name;
  if (request.length >= posixNameLength) {
    const char16_t separator = name[separatorPlace];
    const LocaleNameRow* exact = nullptr;
    if (separator == u'_' || separator == u'-') {
      exact = findByPosixName(name);
    } else if (request.mode == NLS_LOCALE_WIDE) {
      exact = findByLongName(name, request.length);
    }
    if (exact != nullptr) return deliver(request, *exact, 0);
  }
  if (request.mode == NLS_LOCALE_STRICT) return unknownName(request);
  if (request.length > separatorPlace && !endsLanguageCode(name[separatorPlace])) return findByLanguageName(request);
  return findByLanguageCode(request);
}

}  // namespace

NlsStatus findLocaleEntry(QZNLS*, const char16_t* name, int32_t length, uint16_t mode, const LocaleNameRow** row) {
  if (mode != NLS_LOCALE_FALLBACK && mode != NLS_LOCALE_STRICT && mode != NLS_LOCALE_WIDE) return nlsBadLookupKind;
  const Request request{name, length, mode, row};
  if (name == nullptr || length < 2) return unknownName(request);
  if (hasPrefix(request, windowsPrefix)) return findByWindowsLcid(request);
  if (hasPrefix(request, numberPrefix)) return findByLocaleId(request);
  return findByText(request);
}

NlsStatus findLocaleIdByName(const char16_t* name, int32_t length, int32_t* localeId) {
  const auto* found = firstRow(localeNameTable, [=](const LocaleNameRow& row) {
    return wideEqualExact(name, length, row.posixName, row.posixNameLength);
  });
  if (found == nullptr) return nlsLocaleNameUnknown;
  *localeId = found->localeId;
  return 0;
}

}  // namespace veldnls
