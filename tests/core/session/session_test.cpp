#include "core/session.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <limits>

#include "core/qznlsstub.h"
#include "support/death.h"
#include "support/host.h"
#include "support/wide.h"
#include "veldnls/status.h"

namespace {

// What the option service was asked for.
struct Request {
  void* host = nullptr;
  std::u16string name;
  int32_t type = 0;
  int32_t size = 0;
};

// A host whose option service, code page and locale are the test's.
class SessionTest : public testing::Test {
 protected:
  SessionTest() {
    services.size = sizeof services;
    services.getOption = getOption;
    services.hostCodePage = [] { return codePage; };
    services.hostLocaleId = [] { return localeId; };
    host.memory.services = &services;
    veldnls::storeHostRecords(host.vector);
    asked = {};
    answer = 0;
    integer = 0;
    text.clear();
    reportedSize = -1;
    codePage = 1252;
    localeId = 1033;
  }

  static NlsStatus getOption(void* handle, const char16_t* name, int32_t nameLength, int32_t type, void* buffer,
                             int32_t* size) {
    asked = {handle, {name, static_cast<size_t>(nameLength)}, type, *size};
    if (answer != 0) return answer;
    if (type == NLS_OPTION_INTEGER) {
      std::memcpy(buffer, &integer, sizeof integer);
    } else {
      std::memcpy(buffer, text.data(), std::min(text.size() * 2, static_cast<size_t>(*size)));
      *size = reportedSize >= 0 ? reportedSize : static_cast<int32_t>(text.size() * 2);
    }
    return 0;
  }

  inline static Request asked;
  inline static NlsStatus answer;
  inline static int32_t integer;
  inline static std::u16string text;
  inline static int32_t reportedSize;
  inline static int32_t codePage;
  inline static uint32_t localeId;

  test::HostRecords host;
  NlsHostServices services{};
  QZNLS bare{};
};

TEST_F(SessionTest, SessionEncodingIsAnIntegerOption) {
  bare.host = &host;
  integer = 138;
  EXPECT_EQ(veldnls::sessionCei(&bare), 138);
  EXPECT_EQ(asked.host, &host);
  EXPECT_EQ(asked.name, u"QZNLS.XPA_SESSION_CEI");
  EXPECT_EQ(asked.type, 3);
  EXPECT_EQ(asked.size, 4);
  integer = -1;
  EXPECT_EQ(veldnls::sessionCei(&bare), -1);
}

TEST_F(SessionTest, SessionEncodingWithoutAValueIsZero) {
  integer = 138;
  answer = nlsUnknownEncoding;
  EXPECT_EQ(veldnls::sessionCei(&bare), 0);
}

TEST_F(SessionTest, DbcsLanguageIsTheRowOfItsName) {
  const struct {
    const char16_t* value;
    int32_t row;
  } cases[] = {{u"", 0},         {u"NONE", 0},     {u"JAPANESE", 1}, {u"KANJI", 1},     {u"KOREAN", 2},
               {u"HANJA", 2},    {u"CHINESE", 3},  {u"HANZI", 3},    {u"TAIWANESE", 4}, {u"TCHINESE", 4},
               {u"UNKNOWN", 5},  {u"KATAKANA", 6}, {u"KANA942", 7},  {u"HANGUL", 8},    {u"japanese", 1},
               {u"tChinese", 4}, {u"kana942", 7},  {u"JAPANES", 9},  {u"JAPANESE ", 9}, {u"FRENCH", 9},
               {u" ", 9},        {u"KANA943", 9}};
  for (const auto& c : cases) {
    text = c.value;
    EXPECT_EQ(veldnls::sessionDbcsLanguage(&bare), c.row) << test::narrow(text.data(), static_cast<int>(text.size()));
  }
}

TEST_F(SessionTest, DbcsLanguageIsATextOption) {
  bare.host = &host;
  text = u"KOREAN";
  veldnls::sessionDbcsLanguage(&bare);
  EXPECT_EQ(asked.host, &host);
  EXPECT_EQ(asked.name, u"QZNLS.DBCSLANG");
  EXPECT_EQ(asked.type, 4);
  EXPECT_EQ(asked.size, 256);
}

TEST_F(SessionTest, DbcsLanguageWithoutAValueIsZero) {
  text = u"KOREAN";
  answer = nlsBadArgument;
  EXPECT_EQ(veldnls::sessionDbcsLanguage(&bare), 0);
}

TEST_F(SessionTest, DbcsLanguageReadsNoMoreThanItsBuffer) {
  text.assign(1000, u'K');
  EXPECT_EQ(veldnls::sessionDbcsLanguage(&bare), 9);
  text = u"KANJI";
  for (const int32_t size : {11, 10}) {
    reportedSize = size;
    EXPECT_EQ(veldnls::sessionDbcsLanguage(&bare), 1) << size;
  }
  reportedSize = std::numeric_limits<int32_t>::max();
  EXPECT_EQ(veldnls::sessionDbcsLanguage(&bare), 9);
}

TEST(SessionDefaults, ReadingAnOptionEndsTheProcess) {
  test::HostRecords host;
  veldnls::storeHostRecords(host.vector);
  QZNLS bare{};
  for (const auto& body : {std::function<void()>([&] { veldnls::sessionCei(&bare); }),
                           std::function<void()>([&] { veldnls::sessionDbcsLanguage(&bare); })}) {
    const test::Ending ending = test::runInChild(body);
    EXPECT_EQ(ending.signal, SIGSEGV);
    EXPECT_NE(ending.output.find("Assertion failed: hs/src/qznlsstub/456\n"), std::string::npos) << ending.output;
  }
}

TEST(SessionDefaults, TheSystemsTextInterface) { EXPECT_STREQ(veldnls::activeEncodingName(), "UTF-16LE"); }

TEST(SessionDefaults, DiscoveryNeedsAnObject) {
  char16_t buffer[100];
  int32_t length = -3;
  EXPECT_EQ(veldnls::discoverHostCodePage(nullptr, buffer, &length), nlsBadArgument);
  EXPECT_EQ(length, -3);
  EXPECT_EQ(veldnls::discoverHostLocale(nullptr), nlsBadArgument);
}

// An object made by the export, with the numbers that the host's services give.
class HostDiscoveryTest : public SessionTest {
 protected:
  void make() {
    void* object = nullptr;
    ASSERT_EQ(VELDNLSLIB(5, host.input(), &object), 0u);
    nls = static_cast<QZNLS*>(object);
  }
  ~HostDiscoveryTest() override {
    if (nls != nullptr) nls->destroy(nls);
  }
  QZNLS* nls = nullptr;
};

TEST_F(HostDiscoveryTest, CodePageNumbersAreEncodingNames) {
  make();
  const struct {
    int32_t number;
    CEI cei;
    NlsStatus status;
  } cases[] = {{1252, 62, 0},
               {932, 136, 0},
               {1208, 20, 0},
               {65001, 62, nlsUnknownEncoding},
               {437, 41, 0},
               {0, 62, nlsUnknownEncoding},
               {-1252, 62, nlsUnknownEncoding},
               {std::numeric_limits<int32_t>::min(), 62, nlsUnknownEncoding}};
  for (const auto& c : cases) {
    codePage = c.number;
    void* object = nullptr;
    ASSERT_EQ(VELDNLSLIB(5, host.input(), &object), 0u);
    auto* other = static_cast<QZNLS*>(object);
    CEI cei = -1;
    EXPECT_EQ(other->getHostEncoding(other, &cei), c.status) << c.number;
    EXPECT_EQ(cei, c.cei) << c.number;
    EXPECT_EQ(other->hostCei, c.cei);
    EXPECT_EQ(other->hostCeiStatus, c.status);
    EXPECT_EQ(other->osCei, 25);
    other->destroy(other);
  }
}

TEST_F(HostDiscoveryTest, CodePageTextIsPlainDecimal) {
  make();
  for (const int32_t number : {1252, 0, 7, -5, std::numeric_limits<int32_t>::min()}) {
    codePage = number;
    char16_t buffer[100];
    int32_t length = -1;
    EXPECT_EQ(veldnls::discoverHostCodePage(nls, buffer, &length), 0u);
    EXPECT_EQ(test::narrow(buffer, length), std::to_string(number));
  }
}

TEST_F(HostDiscoveryTest, LocaleNumbersBecomeNames) {
  make();
  const struct {
    uint32_t number;
    const char* name;
    NlsStatus status;
  } cases[] = {{0x0409, "en_US", 0},
               {0x0407, "de_DE", 0},
               {0x0404, "zh_TW", 0},
               {0x0414, "nb_NO", 0},
               {0x8015, "pl_XX", 0},
               {0x0007, "de_DE", 0},
               {0xFC07, "de_DE", 0},
               {0x10409, "en_US", 0},
               {0x046B, "en_US", nlsLocaleNotFound},
               {0x07FF, "en_US", nlsLocaleNotFound},
               {0, "en_US", nlsLocaleNotFound},
               {0x80000409, "en_US", nlsLocaleNotFound}};
  for (const auto& c : cases) {
    localeId = c.number;
    void* object = nullptr;
    ASSERT_EQ(VELDNLSLIB(5, host.input(), &object), 0u);
    auto* other = static_cast<QZNLS*>(object);
    char16_t buffer[60] = {};
    int32_t length = -1;
    EXPECT_EQ(other->getHostLocaleName(other, buffer, &length), c.status) << c.number;
    EXPECT_EQ(test::narrow(buffer, length), c.name) << c.number;
    EXPECT_EQ(buffer[length], u'\0');
    EXPECT_EQ(other->getHostLocaleName(other, nullptr, &length), nlsNullString);
    other->destroy(other);
  }
}

TEST_F(HostDiscoveryTest, AFailedLocaleDiscoveryKeepsTheNameAndTellsItsStatus) {
  localeId = 0x0407;
  make();
  localeId = 0x07FF;
  EXPECT_EQ(veldnls::discoverHostLocale(nls), nlsLocaleNotFound);
  EXPECT_EQ(nls->hostLocaleStatus, nlsLocaleNotFound);
  EXPECT_EQ(test::narrow(nls->hostLocaleName, nls->hostLocaleNameLength), "de_DE");
  localeId = 0x040C;
  EXPECT_EQ(veldnls::discoverHostLocale(nls), 0u);
  EXPECT_EQ(nls->hostLocaleStatus, 0u);
  EXPECT_EQ(test::narrow(nls->hostLocaleName, nls->hostLocaleNameLength), "fr_FR");
}

TEST_F(HostDiscoveryTest, ANullBufferWritesNothing) {
  make();
  int32_t length = -3;
  EXPECT_EQ(nls->getHostLocaleName(nls, nullptr, &length), nlsNullString);
  EXPECT_EQ(length, -3);
}

}  // namespace
