// Locales: creation from names, what they tell of themselves, the plain comparison, and every slot of numbers.
#include <fenv.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <bit>
#include <cstring>
#include <thread>

#include "locale/letters.h"
#include "locale/locale_object_support.h"
#include "support/death.h"
#include "support/guard.h"

namespace {

class LocaleObject : public testing::Test {
 protected:
  test::LocaleHandle make(const std::string& name) { return test::makeLocale(host.nls, name); }

  test::NlsHost host{&VELDNLSLIB};
  QZNLS* nls = host.nls;
};

std::u16string languageOf(QZLocale* locale) {
  char16_t letters[2] = {u'?', u'?'};
  int32_t length = -77;
  EXPECT_EQ(locale->getLanguage(locale, letters, &length), 0u);
  EXPECT_EQ(length, 2);
  return {letters, 2};
}

std::u16string nameOf(QZLocale* locale) {
  char16_t name[62];
  int32_t length = -77;
  EXPECT_EQ(locale->getLocaleName(locale, name, &length), 0u);
  return {name, static_cast<size_t>(length)};
}

TEST_F(LocaleObject, Header) {
  const test::LocaleHandle locale = make("en_US");
  ASSERT_NE(locale, nullptr);
  EXPECT_EQ(std::memcmp(locale->magic, "nevo", 4), 0);
  EXPECT_STREQ(locale->typeName, "QZLocale handle");
  EXPECT_EQ(locale->owner, nls);
  EXPECT_EQ(locale->nameLength, 5);
  EXPECT_EQ(std::u16string(locale->name, 5), u"en_US");
  for (int i = 5; i < 62; ++i) EXPECT_EQ(locale->name[i], u'\0');
  EXPECT_EQ(locale->messageLock, NLS_MARKER_HANDLE);
  EXPECT_EQ(locale->messageTrack, NLS_MARKER_HANDLE);
  EXPECT_EQ(locale->destroy(make("de_DE").release()), 0u);
}

TEST_F(LocaleObject, NoSlotIsEmpty) {
  const test::LocaleHandle locale = make("en_US");
  for (size_t offset = offsetof(QZLocale, getLanguage); offset < offsetof(QZLocale, record); offset += sizeof(void*)) {
    void* slot = nullptr;
    std::memcpy(&slot, reinterpret_cast<const char*>(locale.get()) + offset, sizeof slot);
    EXPECT_NE(slot, nullptr) << offset;
  }
}

TEST_F(LocaleObject, OnlyExactNamesMakeALocale) {
  for (const char* name : {"EN_US", "en-US", "de", "", "en_US ", "en_US.UTF-8", "English_UnitedStates", "iw_IL",
                           "sh_CS", "qq_QQ", "WLCID:1033", "QUOID:51"}) {
    EXPECT_EQ(make(name), nullptr) << name;
  }
  EXPECT_EQ(nls->createLocale(nls, nullptr, 0), nullptr);
  EXPECT_EQ(nls->createLocale(nls, nullptr, 5), nullptr);
  EXPECT_EQ(nls->createLocale(nls, u"en_US", -1), nullptr);
  EXPECT_EQ(nls->createLocale(nls, u"en_US", INT32_MIN), nullptr);
  EXPECT_EQ(nls->createDefaultLocale(nls), nullptr);
}

TEST_F(LocaleObject, NoUnitBehindTheNameIsRead) {
  const std::u16string name = u"en_US";
  for (size_t length = 0; length <= name.size(); ++length) {
    test::GuardedBuffer buffer({reinterpret_cast<const uint8_t*>(name.data()), length * 2});
    const test::LocaleHandle locale(
        nls->createLocale(nls, reinterpret_cast<const char16_t*>(buffer.data()), static_cast<int32_t>(length)));
    EXPECT_EQ(locale != nullptr, length == name.size()) << length;
  }
}

TEST_F(LocaleObject, LongNamesAreRefusedAndCopiedNoFurtherThanThereIsRoom) {
  for (const size_t length : {60u, 61u, 62u, 63u, 64u, 1000u, 100000u}) {
    const std::u16string name(length, u'e');
    EXPECT_EQ(nls->createLocale(nls, name.data(), static_cast<int32_t>(length)), nullptr) << length;
  }
  // Were the data to be had under such a name, it would be cut to the room.
  const auto load = nls->localeDatabase->loadLocaleRecord;
  nls->localeDatabase->loadLocaleRecord = [](LocaleRecord*, const char16_t*, int32_t) { return NlsStatus{0}; };
  const std::u16string name = std::u16string(60, u'a') + u"bcdef";
  const test::LocaleHandle locale(nls->createLocale(nls, name.data(), 65));
  EXPECT_EQ(nls->createLocale(nls, name.data(), -1), nullptr) << "a length that no loader sees";
  nls->localeDatabase->loadLocaleRecord = load;
  ASSERT_NE(locale, nullptr);
  EXPECT_EQ(nameOf(locale.get()), name.substr(0, 62));
  EXPECT_EQ(test::textOf(locale->record->requestedName), name.substr(0, 60));
}

TEST_F(LocaleObject, ALocaleWithoutItsDataMayExist) {
  const auto load = nls->localeDatabase->loadLocaleRecord;
  nls->localeDatabase->loadLocaleRecord = [](LocaleRecord*, const char16_t*, int32_t) -> NlsStatus {
    return nlsLocaleNotFound;
  };
  const test::LocaleHandle locale = make("en_US");
  nls->localeDatabase->loadLocaleRecord = [](LocaleRecord*, const char16_t*, int32_t) -> NlsStatus {
    return nlsLocaleInvalid;
  };
  EXPECT_EQ(make("en_US"), nullptr);
  nls->localeDatabase->loadLocaleRecord = load;
  ASSERT_NE(locale, nullptr);
  EXPECT_EQ(nameOf(locale.get()), u"en_US");
  // Nothing was filled in: zeros.
  EXPECT_EQ(languageOf(locale.get()), u"en");
  EXPECT_EQ(test::formatDate(locale.get(), 1, 1, 1960, 0), (test::Written{0, u""}));
}

TEST_F(LocaleObject, EveryLocaleByName) {
  const std::vector<std::string> names = test::localeNames();
  ASSERT_EQ(names.size(), 132u);
  for (const std::string& name : names) {
    const test::LocaleHandle locale = make(name);
    ASSERT_NE(locale, nullptr) << name;
    EXPECT_EQ(nameOf(locale.get()), test::widen(name));
    EXPECT_EQ(languageOf(locale.get()), test::widen(name.substr(0, 2)));
    // The record is that of the database, with the name and zeros where that writes nothing.
    LocaleRecord expected{};
    expected.requestedName = test::counted(test::widen(name));
    ASSERT_EQ(nls->localeDatabase->loadLocaleRecord(&expected, test::widen(name).data(), 5), 0u);
    EXPECT_EQ(std::memcmp(locale->record, &expected, sizeof expected), 0) << name;
  }
}

// The looser forms of a name lead to a row, whose name makes the locale.
TEST_F(LocaleObject, EveryLocaleByEveryFormOfItsNameInEveryMode) {
  for (const test::Fields& line : test::readTsv("locale/names.tsv")) {
    const std::string& name = line[0];
    std::string hyphen = name;
    hyphen[2] = '-';
    const std::string longName = line[2] + "_" + line[3];
    const std::string number = "QUOID:" + line[4];
    for (const std::string& form : {name, hyphen, test::upper(name), test::lower(name), name + ".UTF-8", name + "@euro",
                                    name + "_POSIX", number, longName}) {
      for (const uint16_t mode :
           std::initializer_list<uint16_t>{NLS_LOCALE_FALLBACK, NLS_LOCALE_STRICT, NLS_LOCALE_WIDE}) {
        if (form == longName && mode != NLS_LOCALE_WIDE) continue;
        const std::u16string wide = test::widen(form);
        const LocaleNameRow* row = nullptr;
        ASSERT_EQ(nls->findLocaleEntry(nls, wide.data(), static_cast<int32_t>(wide.size()), mode, &row), 0u) << form;
        const test::LocaleHandle locale(nls->createLocale(nls, row->posixName, row->posixNameLength));
        ASSERT_NE(locale, nullptr) << form;
        EXPECT_EQ(nameOf(locale.get()), test::widen(name)) << form;
      }
      // The form itself makes a locale only when it is the exact name.
      EXPECT_EQ(make(form) != nullptr, form == name) << form;
    }
  }
}

TEST_F(LocaleObject, Sections) {
  const test::LocaleHandle locale = make("ja_JP");
  const LocaleRecord* record = locale->record;
  const void* expected[] = {
      record,           record->reserved1,    record->reserved2, &record->currency, &record->number, &record->dateTime,
      &record->percent, &record->measurement, &record->identity, record->items};
  for (int32_t section = 0; section < 10; ++section) {
    const void* found = nullptr;
    EXPECT_EQ(locale->getLocaleSection(locale.get(), section, &found), 0u);
    EXPECT_EQ(found, expected[section]) << section;
  }
  for (const int32_t section : {10, -1, 11, INT32_MAX, INT32_MIN}) {
    const void* found = &host;
    EXPECT_EQ(locale->getLocaleSection(locale.get(), section, &found), nlsIndexOutOfRange) << section;
    EXPECT_EQ(found, &host);
  }
}

TEST_F(LocaleObject, Name) {
  const test::LocaleHandle locale = make("en_US");
  int32_t length = -77;
  char16_t name[6] = u"-----";
  EXPECT_EQ(locale->getLocaleName(locale.get(), nullptr, &length), nlsNullLocaleOutput);
  EXPECT_EQ(length, -77);
  EXPECT_EQ(locale->getLocaleName(locale.get(), name, nullptr), nlsNullLocaleOutput);
  EXPECT_EQ(std::u16string(name), u"-----");
  test::GuardedBuffer buffer(10);
  EXPECT_EQ(locale->getLocaleName(locale.get(), reinterpret_cast<char16_t*>(buffer.data()), &length), 0u);
  EXPECT_EQ(length, 5);
}

TEST_F(LocaleObject, LanguageGoesByTheItem) {
  const test::LocaleHandle locale = make("de_DE");
  LocaleItem& item = locale->record->items[NLS_LOCALE_ITEM_LANGUAGE];
  EXPECT_EQ(languageOf(locale.get()), u"de");
  char16_t letters[2] = {u'?', u'?'};
  EXPECT_EQ(locale->getLanguage(locale.get(), letters, nullptr), 0u);
  EXPECT_EQ(std::u16string(letters, 2), u"de");
  item.text[0] = '\xE9';
  item.text[1] = '\x80';
  EXPECT_EQ(languageOf(locale.get()), u"\xE9\x20AC") << "wlatin1";
  item.length = 0;
  EXPECT_EQ(languageOf(locale.get()), u"en");
  for (const uint16_t length : std::initializer_list<uint16_t>{1, 3, 160}) {
    item.length = length;
    EXPECT_EQ(languageOf(locale.get()), u"??") << length;
  }
}

TEST_F(LocaleObject, CompareText) {
  const test::LocaleHandle locale = make("en_US");
  const auto compare = [&](const std::u16string& a, const std::u16string& b, int32_t mode) {
    return locale->compareText(locale.get(), a.data(), static_cast<int32_t>(a.size()), b.data(),
                               static_cast<int32_t>(b.size()), mode);
  };
  EXPECT_EQ(compare(u"ab", u"ab  ", 0), -1);
  EXPECT_EQ(compare(u"ab", u"ab  ", 1), 0);
  EXPECT_EQ(compare(u"ab  ", u"ab", 0), 1);
  EXPECT_EQ(compare(u"ab  ", u"ab", 1), 0);
  EXPECT_EQ(compare(u"ab", u"ab\t", 1), 1) << "the tab stands before the blank";
  EXPECT_EQ(compare(u"ab\t", u"ab", 1), -1);
  EXPECT_EQ(compare(u"ab", u"ab\t", 0), -1);
  EXPECT_EQ(compare(u"ab  x", u"ab", 1), 1);
  EXPECT_EQ(compare(u"ab", u"ab  x", 1), -1);
  EXPECT_EQ(compare(u"ab", u"ac", 0), -1);
  EXPECT_EQ(compare(u"b", u"ac", 1), 1);
  EXPECT_EQ(compare(u"ac", u"b", 1), -1);
  EXPECT_EQ(compare(u"ab", u"ab", 0), 0);
  // By bytes in memory: the low byte of U+0100 stands first.
  EXPECT_EQ(compare(u"\x0100", u"\x0041", 0), -1);
  EXPECT_EQ(compare(u"\x0041", u"\x0100", 0), 1);
  for (const int32_t mode : {2, -1, 257}) EXPECT_EQ(compare(u"ab", u"ab  ", mode), -1) << "a mode that ignores nothing";
}

TEST_F(LocaleObject, CompareTextWithoutText) {
  const test::LocaleHandle locale = make("en_US");
  const auto compare = [&](const char16_t* a, int32_t lengthA, const char16_t* b, int32_t lengthB, int32_t mode) {
    return locale->compareText(locale.get(), a, lengthA, b, lengthB, mode);
  };
  for (const int32_t mode : {0, 1}) {
    EXPECT_EQ(compare(nullptr, 0, nullptr, 0, mode), 0);
    EXPECT_EQ(compare(nullptr, 7, nullptr, 5, mode), 0);
    EXPECT_EQ(compare(nullptr, 7, u"a", 1, mode), -1);
    EXPECT_EQ(compare(u"a", 1, nullptr, 7, mode), 1);
    EXPECT_EQ(compare(u"a", -1, u"b", INT32_MIN, mode), 0);
    EXPECT_EQ(compare(nullptr, 0, u"  ", 2, mode), mode == 1 ? 0 : -1);
  }
}

TEST_F(LocaleObject, CompareTextAgainstGuardPages) {
  const test::LocaleHandle locale = make("en_US");
  const std::u16string a = u"abcd    ";
  const std::u16string b = u"abcd  x";
  for (size_t lengthA = 0; lengthA <= a.size(); ++lengthA) {
    for (size_t lengthB = 0; lengthB <= b.size(); ++lengthB) {
      test::GuardedBuffer left({reinterpret_cast<const uint8_t*>(a.data()), lengthA * 2});
      test::GuardedBuffer right({reinterpret_cast<const uint8_t*>(b.data()), lengthB * 2});
      for (const int32_t mode : {0, 1}) {
        const auto order = [&](test::GuardedBuffer& first, size_t firstLength, test::GuardedBuffer& second,
                               size_t secondLength) {
          return locale->compareText(
              locale.get(), reinterpret_cast<const char16_t*>(first.data()), static_cast<int32_t>(firstLength),
              reinterpret_cast<const char16_t*>(second.data()), static_cast<int32_t>(secondLength), mode);
        };
        EXPECT_EQ(order(left, lengthA, right, lengthB), -order(right, lengthB, left, lengthA));
      }
    }
  }
}

TEST_F(LocaleObject, ReservedSlotsDoNothing) {
  const test::LocaleHandle locale = make("en_US");
  for (const NlsLocaleReserved slot : {locale->reserved1, locale->reserved2, locale->reserved3}) {
    EXPECT_EQ(slot(locale.get()), 0u);
    EXPECT_EQ(slot(nullptr), 0u);
    EXPECT_EQ(slot(locale.get(), 1, 2.0, "three", nullptr), 0u);
  }
}

TEST_F(LocaleObject, WorkRecords) {
  const test::LocaleHandle locale = make("en_US");
  int32_t size = -77;
  auto* block = static_cast<uint8_t*>(nls->allocateLocaleWorkRecord(locale.get(), &size));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(size, 272);
  for (int i = 0; i < 272; ++i) EXPECT_EQ(block[i], 0);
  std::memset(block, 0xA5, 272);
  EXPECT_EQ(nls->freeLocaleWorkRecord(nls, block), 0u);
  EXPECT_EQ(nls->freeLocaleWorkRecord(nls, nullptr), 0u);
  // Memory that was used before is zeroed too.
  block = static_cast<uint8_t*>(nls->allocateLocaleWorkRecord(locale.get(), &size));
  for (int i = 0; i < 272; ++i) ASSERT_EQ(block[i], 0);
  EXPECT_EQ(nls->freeLocaleWorkRecord(nls, block), 0u);
}

// Each slot of numbers reaches its function with the data of this locale: the functions have tests of their own.
TEST_F(LocaleObject, FormattersOfNumbers) {
  const test::LocaleHandle handle = make("de_DE");
  QZLocale* l = handle.get();
  char16_t out[64];
  int32_t length = 0;
  const auto text = [&](NlsStatus status) {
    EXPECT_EQ(status, 0u);
    return std::u16string(out, static_cast<size_t>(length));
  };
  EXPECT_EQ(text(l->formatDouble(l, 1234567.25, 0, 2, FMT_FIXED | FMT_GROUP, out, 64, &length)), u"1.234.567,25");
  EXPECT_EQ(text(l->formatInt32(l, -1234567, 0, 0, FMT_GROUP, out, 64, &length)), u"-1.234.567");
  EXPECT_EQ(text(l->formatInt64(l, -1234567890123, 0, 0, FMT_GROUP, out, 64, &length)), u"-1.234.567.890.123");
  EXPECT_EQ(text(l->formatUInt32(l, 4294967295, 0, 0, FMT_GROUP, out, 64, &length)), u"4.294.967.295");
  EXPECT_EQ(text(l->formatUInt64(l, 18446744073709551615u, 0, 0, 0, out, 64, &length)), u"18446744073709551615");
  EXPECT_EQ(text(l->formatUInt32(l, 255, 0, 0, FMT_HEX | FMT_ALT_HEX, out, 64, &length)), u"0xff");
  EXPECT_EQ(text(l->formatPointer(l, nullptr, 12, 0, out, 64, &length)), u"NIL");
  EXPECT_EQ(text(l->formatPointer(l, reinterpret_cast<void*>(0xAB), 0, FMT_POINTER_PREFIX, out, 64, &length)), u"0xAB");
  EXPECT_EQ(text(l->formatPercent(l, -0.5, 8, 1, FMT_PERCENT_PARENTHESES, out, 64, &length)), u"( 50,0%)");
  const std::u16string symbol = test::textOf(l->record->currency.currencySymbol);
  EXPECT_EQ(text(l->formatCurrency(l, -1234.5, 12, 2, 0, out, 64, &length)), u"  " + symbol + u"-1.234,50");
}

TEST_F(LocaleObject, ParsersOfNumbers) {
  const test::LocaleHandle handle = make("de_DE");
  QZLocale* l = handle.get();
  int32_t consumed = 0;
  double d = 0;
  EXPECT_EQ(l->parseDouble(l, u"1.234,5", 7, &d, &consumed), 0u);
  EXPECT_EQ(d, 1234.5);
  EXPECT_EQ(consumed, 7);
  EXPECT_EQ(l->parseDouble(nullptr, u"1,234.5", 7, &d, &consumed), 0u) << "without a locale the signs are fixed";
  EXPECT_EQ(d, 1234.5);
  int32_t i32 = 0;
  EXPECT_EQ(l->parseInt32(l, u"-2147483648", 11, 0, &i32, &consumed), 0u);
  EXPECT_EQ(i32, INT32_MIN);
  int64_t i64 = 0;
  EXPECT_EQ(l->parseInt64(l, u"9223372036854775807", 19, 0, &i64, &consumed), 0u);
  EXPECT_EQ(i64, INT64_MAX);
  EXPECT_EQ(l->parseInt32(l, u"1.234", 5, 0, &i32, &consumed), 0u);
  EXPECT_EQ(i32, 134) << "the unit behind a separator is skipped";
  uint32_t u32 = 0;
  EXPECT_EQ(l->parseUInt32(l, u"1.234", 5, 0, &u32, &consumed), 0u);
  EXPECT_EQ(u32, 1234u);
  uint64_t u64 = 0;
  EXPECT_EQ(l->parseUInt64(l, u"0xFFFFFFFFFFFFFFFF", 18, PARSE_HEX, &u64, &consumed), 0u);
  EXPECT_EQ(u64, UINT64_MAX);
}

// Doubles of every kind, in a thread whose floating point traps whatever it can.
TEST_F(LocaleObject, NoSlotTrapsWhereExceptionsAreUnmasked) {
  const test::LocaleHandle handle = make("en_US");
  QZLocale* l = handle.get();
  const uint64_t values[] = {0,
                             uint64_t{1} << 63,
                             1,  // the smallest double
                             0x000FFFFFFFFFFFFF,
                             0x3FF0000000000000,  // 1
                             0x3FB999999999999A,  // 0.1
                             0xC0F86A0000000001,  // close to -100000
                             0x40DFFFFFFFFFFFFF,
                             0x7FEFFFFFFFFFFFFF,  // the largest
                             0xFFEFFFFFFFFFFFFF,
                             0x7FF0000000000000,  // infinity
                             0x7FF8000000000000,  // no number
                             0x7FF0000000000001,  // a signalling one
                             0xFFFFD10000000000,  // missing
                             0xFFFF000000000001};
  const test::Ending ending = test::runInChild([&] {
    char16_t out[400];
    int32_t length = 0;
    double value = 0;
    feenableexcept(FE_ALL_EXCEPT);
    for (const uint64_t bits : values) {
      const auto number = std::bit_cast<double>(bits);
      l->formatTime(l, number, 0, out, 400, &length);
      l->formatDateTime(l, number, 0, out, 400, &length);
      for (const uint32_t flags :
           {FMT_FIXED, FMT_GENERAL, FMT_EXPONENT, FMT_BEST, FMT_FIELD_DECIMAL, FMT_FIELD_EXPONENT}) {
        l->formatDouble(l, number, 12, 2, flags, out, 400, &length);
      }
      l->formatCurrency(l, number, 20, 2, 0, out, 400, &length);
      l->formatPercent(l, number, 20, 2, 0, out, 400, &length);
    }
    for (const std::u16string text :
         {u"1e400", u"1e-400", u"0.1", u".", u".a", u"123456789012345678901234567890", u"x"}) {
      l->parseDouble(l, text.data(), static_cast<int32_t>(text.size()), &value, &length);
    }
    l->parseTime(l, u"12:34:56 PM", 11, 0, &value, &length);
    l->parseDateTime(l, u"31Dec1959:23:59:59", 18, 0, &value, &length);
    _exit(7);
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_EQ(ending.exitCode, 7);
}

TEST_F(LocaleObject, ALocaleServesSeveralThreads) {
  const test::LocaleHandle handle = make("ja_JP");
  QZLocale* l = handle.get();
  const auto expected = test::formatDateTime(l, 1612325106);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 200; ++round) {
        EXPECT_EQ(test::formatDateTime(l, 1612325106), expected);
        EXPECT_EQ(test::parseDateTime(l, expected.text).seconds, 1612325106);
        EXPECT_EQ(languageOf(l), u"ja");
        const test::LocaleHandle own = make("fr_CA");
        EXPECT_EQ(languageOf(own.get()), u"fr");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
