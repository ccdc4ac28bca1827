// The character records against ICU, in the properties that later versions of Unicode keep.
#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>

#include "core/characters.h"

using namespace veldnls;

namespace {

class CharactersPeer : public testing::Test {
 protected:
  static UChar32 codeOf(const CharacterRecord& record) { return static_cast<UChar32>(record.code); }
};

TEST_F(CharactersPeer, EveryRecordIsAssigned) {
  for (const CharacterRecord& record : characterRecords) {
    ASSERT_NE(u_charType(codeOf(record)), U_UNASSIGNED) << std::hex << record.code;
    UVersionInfo age;
    u_charAge(codeOf(record), age);
    ASSERT_LE(age[0], 5) << std::hex << record.code;
  }
}

TEST_F(CharactersPeer, CombiningClasses) {
  for (const CharacterRecord& record : characterRecords) {
    EXPECT_EQ(record.combiningClass, u_getCombiningClass(codeOf(record))) << std::hex << record.code;
  }
}

TEST_F(CharactersPeer, CanonicalDecompositions) {
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2* nfc = unorm2_getNFCInstance(&error);
  ASSERT_TRUE(U_SUCCESS(error));
  for (const CharacterRecord& record : characterRecords) {
    UChar text[8];
    const int32_t length = unorm2_getRawDecomposition(nfc, codeOf(record), text, 8, &error);
    ASSERT_TRUE(U_SUCCESS(error));
    UChar32 base = 0;
    UChar32 mark = 0;
    int32_t at = 0;
    if (at < length) U16_NEXT(text, at, length, base);
    if (at < length) U16_NEXT(text, at, length, mark);
    EXPECT_EQ(record.decompositionBase, static_cast<uint32_t>(base)) << std::hex << record.code;
    EXPECT_EQ(record.decompositionMark, static_cast<uint32_t>(mark)) << std::hex << record.code;
  }
}

// Later versions add mappings, but change none.
TEST_F(CharactersPeer, CaseMappings) {
  for (const CharacterRecord& record : characterRecords) {
    if (record.upper != 0) {
      EXPECT_EQ(record.upper, static_cast<uint32_t>(u_toupper(codeOf(record)))) << std::hex << record.code;
    }
    if (record.lower != 0) {
      EXPECT_EQ(record.lower, static_cast<uint32_t>(u_tolower(codeOf(record)))) << std::hex << record.code;
    }
  }
}

TEST_F(CharactersPeer, CategoriesOfUpperCaseLettersAndDigits) {
  for (const CharacterRecord& record : characterRecords) {
    if (record.category == NLS_CATEGORY_LU) {
      EXPECT_EQ(u_charType(codeOf(record)), U_UPPERCASE_LETTER) << std::hex << record.code;
    }
    if (record.category == NLS_CATEGORY_ND) {
      EXPECT_EQ(u_charType(codeOf(record)), U_DECIMAL_DIGIT_NUMBER) << std::hex << record.code;
    }
  }
}

}  // namespace
