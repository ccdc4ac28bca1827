// Maps of valid bytes against the text that they were made from, and what the slot validateEncodedText says by them.
#include "transcode/valid_bytes.h"

#include "transcode/validity.h"
#include "transcode/verdicts.h"

namespace transcode_test {

namespace {

TEST(ValidByteMaps, AreThoseOfTheText) {
  int count = 0;
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const auto defined = definedBytes(cei);
    const uint8_t* map = veldnls::validByteMaps[cei];
    ASSERT_EQ(map != nullptr, defined.has_value()) << cei;
    if (map == nullptr) continue;
    ++count;
    for (int byte = 0; byte < 256; ++byte) EXPECT_EQ(map[byte] != 0, defined->contains(byte)) << cei << " " << byte;
  }
  EXPECT_EQ(count, 156);
}

TEST(ValidByteMaps, StandForTheRowsThatAreNotRefused) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const int32_t encodingClass = row(cei).encodingClass;
    const bool byMap = encodingClass == NLS_CLASS_SINGLE_BYTE || encodingClass >= NLS_CLASS_SHIFTED;
    const bool takesAny = cei == U_ANY_CE || cei == U_EBCDICANY_CE;
    EXPECT_EQ(veldnls::validByteMaps[cei] != nullptr, byMap && !takesAny && !isRefused(cei)) << cei;
  }
}

TEST(ValidByteMaps, KeepKnownFacts) {
  const auto undefined = [](CEI cei) {
    Bytes bytes;
    for (int byte = 0; byte < 256; ++byte) {
      if (veldnls::validByteMaps[cei][byte] == 0) bytes.push_back(static_cast<uint8_t>(byte));
    }
    return bytes;
  };
  EXPECT_EQ(undefined(U_WLATIN1_CE), hex("81 8D 8F 90 9D"));
  Bytes upper(128);
  for (size_t i = 0; i < upper.size(); ++i) upper[i] = static_cast<uint8_t>(0x80 + i);
  EXPECT_EQ(undefined(U_ASCII_CE), upper);
  EXPECT_EQ(undefined(U_EUCKR_CE), upper);
  struct Half {
    CEI cei;
    size_t defined;
  };
  for (const Half& half :
       {Half{U_IBM939_CE, 229}, {U_IBM930_CE, 229}, {U_IBM933_CE, 219}, {U_IBM935_CE, 168}, {U_IBM937_CE, 166}}) {
    EXPECT_EQ(256 - undefined(half.cei).size(), half.defined) << half.cei;
  }
}

TEST(Validate, EveryByteOfEverySingleByteRow) {
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    if (row(cei).encodingClass != NLS_CLASS_SINGLE_BYTE || isRefused(cei) || cei == U_ANY_CE || cei == U_EBCDICANY_CE) {
      continue;
    }
    const auto defined = definedBytes(cei);
    for (int byte = 0; byte < 256; ++byte) {
      const bool known = defined->contains(byte);
      Bytes text(7, static_cast<uint8_t>(row(cei).padChar));
      text[3] = static_cast<uint8_t>(byte);
      EXPECT_EQ(verdictOf(cei, text), known ? valid : faultAt(3)) << cei << " " << byte;
      EXPECT_EQ(verdictOf(cei, Span(text).subspan(3, 1)), known ? valid : faultAt(0)) << cei << " " << byte;
    }
  }
}

// The page of us-ascii has the C1 controls; a valid text has none.
TEST(Validate, AsciiHasNoUpperControls) {
  EXPECT_EQ(verdictOf(U_ASCII_CE, "41 7F"), valid);
  EXPECT_EQ(verdictOf(U_ASCII_CE, "41 80"), faultAt(1));
  EXPECT_EQ(verdictOf(U_ASCII_CE, "9F"), faultAt(0));
}

TEST(Validate, EveryByteInSingleByteMode) {
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    if (row(cei).encodingClass != NLS_CLASS_SHIFTED) continue;
    const MultiByteProfile& profile = row(cei).profile;
    const auto defined = definedBytes(cei);
    for (int byte = 0; byte < 256; ++byte) {
      const bool shift = profile.shiftLength == 1 && (byte == profile.shiftOut[0] || byte == profile.shiftIn[0]);
      const Bytes text = {static_cast<uint8_t>(byte)};
      EXPECT_EQ(verdictOf(cei, text), shift || defined->contains(byte) ? valid : faultAt(0)) << cei << " " << byte;
    }
  }
}

}  // namespace

}  // namespace transcode_test
