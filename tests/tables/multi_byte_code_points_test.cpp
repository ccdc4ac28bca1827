// Every code point, in every Unicode form, to every multi-byte encoding, and every byte of pages, through pipelines.
#include <map>

#include "reference/checked_route.h"

namespace transcode_test {

namespace {

constexpr char32_t blockSize = 0x100;
constexpr char32_t firstSupplementary = 0x10000;
constexpr char32_t endOfPlanes = 0x110000;

Bytes blockIn(const TextForm& form, char32_t first, char32_t size) {
  std::u32string text;
  for (char32_t c = first; c < first + size; ++c) text += c;
  return textIn(form, text);
}

// Every second character is one of another mode.
Bytes alternatingBlockIn(const TextForm& form, char32_t first, char32_t size) {
  std::u32string text;
  for (char32_t c = first; c < first + size; ++c) {
    text += c;
    text += c % 3 == 0 ? U'a' : U'\u3000';
  }
  return textIn(form, text);
}

using Blocks = std::vector<Bytes>;
using MakeBlock = Bytes (*)(const TextForm&, char32_t, char32_t);

Blocks blocksIn(const TextForm& form, MakeBlock make, char32_t first, char32_t end, char32_t step) {
  Blocks blocks;
  for (char32_t c = first; c < end; c += step) blocks.push_back(make(form, c, blockSize));
  return blocks;
}

// The texts of a form, made once. Of those beyond the first plane all are converted from one form, and every sixteenth
// block from the others.
struct FormTexts {
  explicit FormTexts(const TextForm& form)
      : plain(blocksIn(form, blockIn, 0, firstSupplementary, blockSize)),
        alternating(blocksIn(form, alternatingBlockIn, 0, firstSupplementary, blockSize)),
        supplementary(blocksIn(form, blockIn, firstSupplementary, endOfPlanes,
                               form.cei == U_L_UNICODE_CE ? blockSize : 16 * blockSize)) {}

  Blocks plain;
  Blocks alternating;
  Blocks supplementary;
};

const FormTexts& textsOf(const TextForm& form) {
  static std::map<CEI, FormTexts> made;
  return made.try_emplace(form.cei, form).first->second;
}

class MultiByteCodePoints : public testing::TestWithParam<CEI> {
 protected:
  test::DbcsLanguage language_{host(), u"UNKNOWN"};
};

TEST_P(MultiByteCodePoints, EachOfTheFirstPlaneFromUtf16) {
  const CheckedRoute route(U_L_UNICODE_CE, GetParam());
  for (uint32_t unit = 0; unit < firstSupplementary; ++unit) {
    const uint8_t text[] = {static_cast<uint8_t>(unit), static_cast<uint8_t>(unit >> 8)};
    ASSERT_NO_FATAL_FAILURE(route.checkResumable(text));
  }
}

TEST_P(MultiByteCodePoints, AllOfTheFirstPlaneFromEveryForm) {
  for (const TextForm& form : textForms) {
    const CheckedRoute route(form.cei, GetParam());
    for (const Bytes& text : textsOf(form).plain) ASSERT_NO_FATAL_FAILURE(route.checkResumable(text));
    for (const Bytes& text : textsOf(form).alternating) ASSERT_NO_FATAL_FAILURE(route.check(text));
  }
}

TEST_P(MultiByteCodePoints, AllBeyondTheFirstPlane) {
  for (const TextForm& form : textForms) {
    const CheckedRoute route(form.cei, GetParam());
    for (const Bytes& text : textsOf(form).supplementary) ASSERT_NO_FATAL_FAILURE(route.checkResumable(text));
  }
}

TEST_P(MultiByteCodePoints, BytesThatAreNone) {
  for (const TextForm& form : textForms) {
    const CheckedRoute route(form.cei, GetParam());
    for (uint32_t first = 0; first < 0x100; ++first) {
      for (uint32_t second = 0; second < 0x100; second += 17) {
        const auto lead = static_cast<uint8_t>(first);
        const auto next = static_cast<uint8_t>(second);
        ASSERT_NO_FATAL_FAILURE(route.check(Bytes{lead, next, 0x82, 0xD8, 0xA3, 0x41, 0x30, 0xDC, lead}));
      }
    }
  }
}

TEST_P(MultiByteCodePoints, EveryByteOfAPage) {
  for (const CEI page : {U_WLATIN1_CE, U_LATIN9_CE, U_CYRILLIC_CE, U_WCYRILLIC_CE, U_LATIN2_CE, U_EBCDIC1047_CE}) {
    const CheckedRoute route(page, GetParam());
    Bytes all;
    for (uint32_t byte = 0; byte < 0x100; ++byte) {
      all.push_back(static_cast<uint8_t>(byte));
      ASSERT_NO_FATAL_FAILURE(route.check({&all.back(), 1}));
    }
    ASSERT_NO_FATAL_FAILURE(route.check(all));
  }
}

// A pipeline to GB18030 keeps to what there was when it was made.
TEST(Gb18030Target, WithoutItsModule) {
  unloadMultiByteModules();
  const CheckedRoute before(U_L_UNICODE_CE, U_GB18030_CE);
  loadGbModule();
  const CheckedRoute after(U_L_UNICODE_CE, U_GB18030_CE);
  for (const Bytes& text : textsOf(textForms[2]).plain) {
    ASSERT_NO_FATAL_FAILURE(before.check(text));
    ASSERT_NO_FATAL_FAILURE(after.check(text));
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, MultiByteCodePoints, testing::ValuesIn(multiByteCeis()));

}  // namespace

}  // namespace transcode_test
