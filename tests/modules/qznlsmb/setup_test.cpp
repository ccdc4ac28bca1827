// What each setup slot stores in a side.
#include "modules/qznlsmb/rows.h"
#include "modules/qznlsmb/skip_source.h"
#include "modules/qznlsmb/tables.h"

namespace transcode_test {
namespace {

using veldnls::CharacterRule;
using veldnls::Pace;

TEST(MultiByteSetup, ToUnicode) {
  for (const CEI cei : multiByteRows()) {
    for (const CEI form : unicodeForms) {
      StageRoute route(cei, form);
      const PipelineSide& side = route->source;
      const MultiByteProfile& profile = row(cei).profile;
      EXPECT_EQ(route.setup, 0u);
      EXPECT_EQ(side.pairs, &veldnls::toUnicodeSets[profile.doubleByteSet].table);
      EXPECT_EQ(side.toUnicode, veldnls::singleToUnicode[profile.singleByteSet]);
      EXPECT_EQ(side.scan, veldnls::scannerOf(veldnls::characterRuleOf(row(cei))));
      EXPECT_EQ(side.stage,
                veldnls::multibyteToUnicode(veldnls::characterRuleOf(row(cei)), form, veldnls::paceOfRow(row(cei))));
      EXPECT_EQ(side.kanaPairs, nullptr);
    }
  }
}

TEST(MultiByteSetup, FromUnicode) {
  const Pipeline loadsGb18030(U_GB18030_CE, U_L_UNICODE_CE);
  for (const CEI cei : multiByteRows()) {
    for (const CEI form : unicodeForms) {
      StageRoute route(form, cei);
      const PipelineSide& side = route->source;
      const MultiByteProfile& profile = row(cei).profile;
      EXPECT_EQ(route.setup, 0u);
      EXPECT_EQ(side.pairs, &veldnls::fromUnicodeSets[profile.doubleByteSet].table);
      EXPECT_EQ(side.singleMap, veldnls::singleFromUnicode[profile.singleByteSet]);
      EXPECT_EQ(side.scan, form == U_UTFE_CE ? veldnls::scanUtfe : nullptr);
      EXPECT_EQ(side.stage, veldnls::unicodeToMultibyte(targetRule(cei), form, Pace::kernelsForAll)) << cei;
      if (row(cei).baseCei != U_SHIFTJIS_CE) {
        EXPECT_EQ(side.kanaPairs, nullptr) << cei;
      } else if (cei == U_DECJP_CE || cei == U_EUCJP_CE) {
        EXPECT_EQ(side.kanaPairs, veldnls::eucHalfWidthKatakana);
      } else {
        EXPECT_EQ(side.kanaPairs, veldnls::halfWidthKatakana[profile.singleByteSet]) << cei;
      }
    }
  }
}

TEST(MultiByteSetup, SingleBytes) {
  for (const CEI cei : multiByteRows()) {
    for (const CEI single : {62, 97}) {
      StageRoute to(single, cei);
      EXPECT_EQ(to.setup, 0u);
      EXPECT_EQ(to->source.stage, veldnls::byteToMultibyte);
      EXPECT_EQ(to->source.scan, nullptr);
      StageRoute from(cei, single);
      EXPECT_EQ(from.setup, 0u);
      EXPECT_EQ(from->source.stage, veldnls::multibyteToByte);
      const CharacterRule rule = cei == U_GB18030_CE ? CharacterRule::leadByte : veldnls::characterRuleOf(row(cei));
      EXPECT_EQ(from->source.scan, veldnls::scannerOf(rule));
      EXPECT_NE(from->source.singleMap, nullptr);
    }
  }
}

// Kernels take a byte with codes for a lead byte, which in these rows isn't always one.
TEST(MultiByteSetup, RowsThatKernelsDontServe) {
  for (const CEI cei : multiByteRows()) {
    const bool served = cei != U_DECJP_CE && cei != 120 && cei != 9 && cei != 10 && cei != 11;
    EXPECT_EQ(veldnls::paceOfRow(row(cei)), served ? Pace::kernelsForAll : Pace::loops) << cei;
  }
  EXPECT_EQ(veldnls::paceOfRow(row(U_ASCII_CE)), Pace::kernelsForAll);
}

// What one stage of two has just written in pieces isn't loaded at once by the other.
TEST(MultiByteSetup, StagesOfTwo) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  EXPECT_EQ(pipeline->source.stage,
            veldnls::multibyteToUnicode(CharacterRule::leadByte, U_L_UNICODE_CE, Pace::kernels));
  EXPECT_EQ(pipeline->target.stage,
            veldnls::unicodeToMultibyte(veldnls::TargetRule::pairs, U_L_UNICODE_CE, Pace::kernels));
}

// What the inner loops rely on: a pointer to a set's pairs leads to the set, no set has a unit that UTF-16 doesn't
// take, and in no row is the blank, or a code that begins like a shift sequence, the code of another character.
TEST(MultiByteSetup, WhatTheStagesRelyOn) {
  for (const veldnls::ToUnicodeSet& set : veldnls::toUnicodeSets) {
    EXPECT_EQ(static_cast<const void*>(&set.table), &set);
    for (uint32_t i = 0; i < set.table.count; ++i) {
      const NlsCodePair& pair = set.table.pairs[i];
      EXPECT_FALSE(pair.value >= 0xD800 && pair.value <= 0xDFFF);
      EXPECT_EQ(set.lookUp(pair.key >> 8, pair.key & 0xFF), pair.value);
    }
  }
  for (const veldnls::FromUnicodeSet& set : veldnls::fromUnicodeSets) {
    EXPECT_EQ(static_cast<const void*>(&set.table), &set);
    for (uint32_t i = 0; i < set.table.count; ++i) {
      EXPECT_FALSE(set.table.pairs[i].key >= 0xD800 && set.table.pairs[i].key <= 0xDFFF);
      EXPECT_EQ(set.lookUp(static_cast<char16_t>(set.table.pairs[i].key)), set.table.pairs[i].value);
    }
  }
  for (const CEI cei : multiByteRows()) {
    const MultiByteProfile& profile = row(cei).profile;
    const veldnls::ToUnicodeSet& set = veldnls::toUnicodeSets[profile.doubleByteSet];
    if (cei == U_ISO2022KR_CE || cei == U_ISO2022CNGB_CE || cei == U_ISO2022CNCNS_CE) continue;
    const char16_t blank = set.lookUp(profile.doubleBlank[0], profile.doubleBlank[1]);
    EXPECT_TRUE(blank == 0 || blank == 0x3000) << cei;
    for (uint32_t other = 0; profile.shiftLength != 0 && other < 0x100; ++other) {
      for (const uint8_t shift : {profile.shiftOut[0], profile.shiftIn[0]}) {
        EXPECT_EQ(set.lookUp(shift, other), 0) << cei;
        if (profile.shiftLength == 1) {
          EXPECT_EQ(set.lookUp(other, shift), 0) << cei;
        }
      }
    }
  }
}

}  // namespace
}  // namespace transcode_test
