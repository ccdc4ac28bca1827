// Characters that code pages take and don't give back, against every character there and back by itself.
#include "unwritable.h"

#include <gtest/gtest.h>

#include "apps/program.h"
#include "loss.h"
#include "module.h"
#include "multi_byte_scan.h"
#include "names.h"
#include "route.h"
#include "unicode_scan.h"
#include "veldnls/cei.h"

namespace {

constexpr char32_t bmpEnd = 0x10000;
constexpr size_t room = 64;

const veld::Library& library() {
  static const veld::Library loaded(std::string(VELDNLS_BINARY_DIR) + "/veldnls.so");
  return loaded;
}

QZNLS& nls() { return library().nls(); }

bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

std::string utf16(char32_t c) { return {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)}; }

veld::Bytes view(const std::string& text) { return {reinterpret_cast<const uint8_t*>(text.data()), text.size()}; }

// What a text becomes; nothing where a substitute is noted.
std::optional<std::string> through(const veld::Pipeline& pipeline, const std::string& text) {
  std::array<uint8_t, room> output;
  const veld::Converted done = veld::convertShort(*pipeline, view(text), output);
  if (!done.whole) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(output.data()), done.size);
}

struct WayThereAndBack {
  explicit WayThereAndBack(CEI cei)
      : there(veld::makePipeline(nls(), U_L_UNICODE_CE, cei)), back(veld::makePipeline(nls(), cei, U_L_UNICODE_CE)) {}
  bool exists() const { return there != nullptr && back != nullptr; }
  // True when a character is written and doesn't come back by itself.
  bool loses(char32_t c) const {
    const std::optional<std::string> written = through(there, utf16(c));
    return written && through(back, *written) != utf16(c);
  }
  veld::Pipeline there;
  veld::Pipeline back;
};

bool isCodePage(CEI cei) {
  if (veld::isWildCard(cei)) return false;
  return veld::rowOf(nls(), cei).encodingClass == NLS_CLASS_SINGLE_BYTE || veld::isMultiByte(nls(), cei);
}

// Below U+00A0 what follows decides too.
TEST(VeldUnwritable, HasWhatDoesntComeBackFromAnyPage) {
  size_t pages = 0;
  for (CEI cei = 1; cei < NLS_CEI_COUNT; ++cei) {
    if (!isCodePage(cei)) continue;
    const WayThereAndBack way(cei);
    if (!way.exists()) continue;
    ++pages;
    veld::Unwritable unwritable(nls(), cei);
    size_t wrong = 0;
    for (char32_t c = 0xA0; c < bmpEnd; ++c) {
      if (unwritable.has(c) != (!isSurrogate(c) && way.loses(c))) ++wrong;
    }
    EXPECT_EQ(wrong, 0u) << veld::displayName(nls(), cei);
  }
  EXPECT_GT(pages, 100u);
}

// It would change how the text behind it is read.
TEST(VeldUnwritable, HasWhatBecomesAByteOfAShiftSequence) {
  size_t rows = 0;
  for (CEI cei = 1; cei < NLS_CEI_COUNT; ++cei) {
    const MultiByteProfile& profile = veld::rowOf(nls(), cei).profile;
    const WayThereAndBack way(cei);
    if (!isCodePage(cei) || !veld::isMultiByte(nls(), cei) || profile.shiftLength == 0 || !way.exists()) continue;
    ++rows;
    veld::Unwritable unwritable(nls(), cei);
    size_t found = 0;
    for (char32_t c = 0; c < 0xA0; ++c) {
      const std::optional<std::string> code = through(way.there, utf16(c));
      if (!code || code->size() != 1) continue;
      const auto byte = static_cast<uint8_t>(code->front());
      if (byte != profile.shiftOut[0] && byte != profile.shiftIn[0]) continue;
      ++found;
      EXPECT_TRUE(unwritable.has(c)) << veld::displayName(nls(), cei) << ' ' << veld::codePoint(c);
    }
    EXPECT_GT(found, 0u) << veld::displayName(nls(), cei);
  }
  EXPECT_GT(rows, 20u);
}

TEST(VeldUnwritable, HasNothingOfUnicodeForms) {
  for (const CEI cei : {U_UTF8_CE, U_L_UNICODE_CE, U_B_UCS4_CE, U_UTFE_CE}) {
    veld::Unwritable unwritable(nls(), cei);
    EXPECT_FALSE(unwritable.mayHaveAny());
    for (char32_t c = 0; c < bmpEnd + 0x100; ++c) ASSERT_FALSE(unwritable.has(c));
  }
}

// Whatever order the characters come in.
TEST(VeldUnwritable, ScansOfUtf8FindThemAnywhere) {
  veld::Unwritable unwritable(nls(), U_EUCCN_CE);
  const veld::Pipeline toUtf8 = veld::makePipeline(nls(), U_L_UNICODE_CE, U_UTF8_CE);
  for (char32_t c = 0xA0; c < bmpEnd; ++c) {
    if (isSurrogate(c)) continue;
    veld::Utf8Scan scan(unwritable, 0x90);
    const std::string text = *through(toUtf8, utf16(0x4E2D) + utf16('a') + utf16(c) + utf16(0x4E2D));
    ASSERT_EQ(scan.find(view(text), unwritable), unwritable.has(c) ? std::optional<size_t>(4) : std::nullopt)
        << veld::codePoint(c);
  }
}

// What is told of a lead byte is the same before and after it has come often.
TEST(VeldUnwritable, ScansOfUtf8FindThemBehindLongText) {
  veld::Unwritable unwritable(nls(), U_EUCJP_CE);
  veld::Utf8Scan scan(unwritable, 0x90);
  const std::string wave = test::bytes("E3 80 9C");
  for (const char* often : {"E3 80 81", "E4 B8 AD", "C3 97", "E2 80 95", "61 E3 81 82"}) {
    const std::string text = test::times(10000, test::bytes(often));
    EXPECT_EQ(scan.find(view(text), unwritable), std::nullopt) << often;
    EXPECT_EQ(scan.find(view(text + wave), unwritable), text.size()) << often;
    EXPECT_EQ(scan.find(view(text + test::bytes("C2 A2")), unwritable), text.size()) << often;
  }
}

// Each character of a source, written as it comes back there, is found if the target loses it.
TEST(VeldUnwritable, ScansOfMultiByteTextFindTheirCodes) {
  for (const CEI from :
       {U_SHIFTJIS_CE, U_EUCJP_CE, U_GB18030_CE, U_IBM939_CE, U_ISO2022JP_CE, U_ISO2022KR_CE, U_BIG5_CE}) {
    const WayThereAndBack source(from);
    ASSERT_TRUE(source.exists());
    for (const CEI to : {U_EUCCN_CE, U_NECJP_CE, U_MS950_CE, U_ISO2022JP_CE}) {
      veld::Unwritable unwritable(nls(), to);
      veld::MultiByteScan scan(nls(), from);
      size_t lost = 0;
      for (char32_t c = 0xA0; c < bmpEnd; ++c) {
        const std::optional<std::string> code = through(source.there, utf16(c));
        if (isSurrogate(c) || !code || code->size() == 1 || through(source.back, *code) != utf16(c)) continue;
        lost += unwritable.has(c);
        ASSERT_EQ(scan.find(view(*code), false, unwritable).has_value(), unwritable.has(c))
            << veld::displayName(nls(), from) << " to " << veld::displayName(nls(), to) << ' ' << veld::codePoint(c);
      }
      EXPECT_TRUE(lost > 0 || from != U_GB18030_CE);
    }
  }
}

}  // namespace
