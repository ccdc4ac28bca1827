// A host with locales of every name, and the slots of a locale with texts as std::u16string.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/host.h"
#include "support/tsv.h"
#include "support/wide.h"
#include "veldnls/status.h"
#include "veldnls/veldnls.h"

namespace test {

struct DestroyLocale {
  void operator()(QZLocale* locale) const { locale->destroy(locale); }
};
using LocaleHandle = std::unique_ptr<QZLocale, DestroyLocale>;

inline LocaleHandle makeLocale(QZNLS* nls, const std::string& name) {
  const std::u16string wide = widen(name);
  return LocaleHandle(nls->createLocale(nls, wide.data(), static_cast<int32_t>(wide.size())));
}

// The 132 names.
inline std::vector<std::string> localeNames() {
  std::vector<std::string> names;
  for (const Fields& line : readTsv("locale/names.tsv")) names.push_back(line[0]);
  return names;
}

inline std::u16string textOf(const NlsText60& counted) { return {counted.text, static_cast<size_t>(counted.count)}; }

inline NlsText60 counted(const std::u16string& text) {
  NlsText60 result{};
  result.count = static_cast<int32_t>(text.size());
  std::copy(text.begin(), text.end(), result.text);
  return result;
}

inline const LocaleDateTime& dateTimeOf(QZLocale* locale) {
  const void* section = nullptr;
  EXPECT_EQ(locale->getLocaleSection(locale, NLS_LOCALE_SECTION_DATE_TIME, &section), 0u);
  return *static_cast<const LocaleDateTime*>(section);
}

// What a formatter gave.
struct Written {
  NlsStatus status;
  std::u16string text;
  bool operator==(const Written&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Written& written) {
  return out << std::hex << written.status << " \""
             << narrow(written.text.data(), static_cast<int>(written.text.size())) << "\"";
}

// Calls `format(output, capacity, &length)` with room enough. A failure must leave length and output as they were.
template <class Format>
Written written(Format format) {
  constexpr int32_t untouched = -77;
  std::u16string buffer(600, u'\xE000');
  int32_t length = untouched;
  const NlsStatus status = format(buffer.data(), static_cast<int32_t>(buffer.size()), &length);
  if (status != 0 && status != nlsFieldTooNarrow) {
    EXPECT_EQ(length, untouched);
    EXPECT_EQ(buffer, std::u16string(buffer.size(), u'\xE000'));
    return {status, u""};
  }
  EXPECT_EQ(buffer.find_first_not_of(u'\xE000', static_cast<size_t>(length)), std::u16string::npos);
  return {status, buffer.substr(0, static_cast<size_t>(length))};
}

inline Written formatDate(QZLocale* locale, uint32_t month, uint32_t day, uint32_t year, int32_t style) {
  return written([&](char16_t* output, int32_t capacity, int32_t* length) {
    return locale->formatDate(locale, month, day, year, style, output, capacity, length);
  });
}

inline Written formatTime(QZLocale* locale, double seconds, int32_t style) {
  return written([&](char16_t* output, int32_t capacity, int32_t* length) {
    return locale->formatTime(locale, seconds, style, output, capacity, length);
  });
}

inline Written formatDateTime(QZLocale* locale, double seconds) {
  return written([&](char16_t* output, int32_t capacity, int32_t* length) {
    return locale->formatDateTime(locale, seconds, 0, output, capacity, length);
  });
}

// What a parser gave. `consumed` is -77 where it stayed as it was.
struct ReadDate {
  NlsStatus status;
  uint32_t month, day, year;
  int32_t consumed;
  bool operator==(const ReadDate&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const ReadDate& date) {
  return out << std::hex << date.status << std::dec << " " << date.month << " " << date.day << " " << date.year << " ("
             << date.consumed << ")";
}

inline ReadDate parseDate(QZLocale* locale, const std::u16string& text, int32_t style) {
  ReadDate date = {0, 7777, 7777, 7777, -77};
  date.status = locale->parseDate(locale, text.data(), static_cast<int32_t>(text.size()), style, &date.month, &date.day,
                                  &date.year, &date.consumed);
  return date;
}

struct ReadSeconds {
  NlsStatus status;
  double seconds;  // -77 where it stayed as it was
  int32_t consumed;
  bool operator==(const ReadSeconds&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const ReadSeconds& read) {
  return out << std::hex << read.status << std::dec << " " << read.seconds << " (" << read.consumed << ")";
}

inline ReadSeconds parseTime(QZLocale* locale, const std::u16string& text, int32_t style) {
  ReadSeconds read = {0, -77, -77};
  read.status =
      locale->parseTime(locale, text.data(), static_cast<int32_t>(text.size()), style, &read.seconds, &read.consumed);
  return read;
}

inline ReadSeconds parseDateTime(QZLocale* locale, const std::u16string& text) {
  ReadSeconds read = {0, -77, -77};
  read.status =
      locale->parseDateTime(locale, text.data(), static_cast<int32_t>(text.size()), 0, &read.seconds, &read.consumed);
  return read;
}

}  // namespace test
