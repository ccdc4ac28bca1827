// conversionNeeded for all pairs, against its rules restated from the text files step by step.
#include <gtest/gtest.h>

#include "core/encoding_family.h"
#include "core/registry.h"
#include "encoding_data.h"
#include "veldnls/cei.h"

using test::encodingFacts;

namespace veldnls {
namespace {

std::map<int, int> familyHeads() {
  std::map<int, int> heads;
  for (const auto& fields : test::readTsv("encodings/families.tsv")) {
    for (const int member : test::numbers(fields.at(1))) heads[member] = std::stoi(fields.at(0));
  }
  return heads;
}

// The length that the column claims, and the text as far as that.
std::string claimedCcsid(CEI cei) {
  std::string text = encodingFacts().text(cei, "ccsid");
  if (cei == U_DECJP_CE || cei == U_EUCJP_CE) text.push_back('\0');
  return text;
}

bool isMultiByte(CEI cei) {
  if (isAliasCei(cei)) return cei != U_UNICODE_CE;
  const auto profile = encodingFacts().profiles.find(cei);
  return profile != encodingFacts().profiles.end() && profile->second.at(2) != "0";
}

int restated(CEI a, CEI b, const std::map<int, int>& heads) {
  const auto& facts = encodingFacts();
  const auto classOf = [&](CEI cei) { return facts.number(cei, "encodingClass"); };
  const auto both = [&](int flag) { return (facts.number(a, "flags") & facts.number(b, "flags") & flag) != 0; };
  const auto either = [&](CEI cei) { return a == cei || b == cei; };
  if (a == b || either(204)) return 0;
  if (!isMultiByte(a) && !isMultiByte(b)) {
    for (const int wide : {2, 3}) {
      if (classOf(a) == wide && classOf(b) == wide && facts.text(a, "padChar") != facts.text(b, "padChar")) return 1;
    }
    if (both(1)) return either(28) || (either(62) && either(29)) ? 0 : 1;
    if (both(8)) return either(203) || (!claimedCcsid(a).empty() && claimedCcsid(a) == claimedCcsid(b)) ? 0 : 1;
    return 1;
  }
  if (!isMultiByte(a) || !isMultiByte(b)) {
    for (const CEI cei : {a, b}) {
      if (classOf(cei) == 2 || classOf(cei) == 3) return 1;
    }
    if (both(1)) return either(28) ? 0 : 1;
    return both(8) && either(203) ? 0 : 1;
  }
  const auto head = [&](CEI cei) { return heads.contains(cei) ? heads.at(cei) : cei; };
  return head(a) == head(b) ? 0 : 1;
}

TEST(ConversionNeeded, AllPairsFollowTheRules) {
  const std::map<int, int> heads = familyHeads();
  for (CEI a = 0; a < NLS_CEI_COUNT; ++a) {
    for (CEI b = 0; b < NLS_CEI_COUNT; ++b) {
      ASSERT_EQ(conversionNeeded(nullptr, a, b), restated(a, b, heads)) << a << " " << b;
    }
  }
}

TEST(ConversionNeeded, SymmetricAndNeverForOneEncoding) {
  for (CEI a = 0; a < NLS_CEI_COUNT; ++a) {
    EXPECT_EQ(conversionNeeded(nullptr, a, a), 0);
    EXPECT_EQ(conversionNeeded(nullptr, a, U_ANY_CE), 0);
    for (CEI b = 0; b < a; ++b) EXPECT_EQ(conversionNeeded(nullptr, a, b), conversionNeeded(nullptr, b, a));
  }
}

TEST(ConversionNeeded, Examples) {
  const struct {
    CEI source, target;
    int32_t needed;
  } examples[] = {{62, 29, 0},   {29, 30, 1},   {28, 29, 0},   {136, 138, 0}, {136, 134, 1}, {25, 24, 1},
                  {19, 25, 1},   {97, 110, 0},  {25, 204, 0},  {20, 28, 0},   {20, 62, 1},   {27, 26, 1},
                  {203, 97, 0},  {203, 129, 0}, {129, 206, 1}, {28, 138, 0},  {133, 134, 1}, {118, 123, 0},
                  {160, 125, 0}, {92, 95, 1},   {207, 208, 1}};
  for (const auto& example : examples) {
    EXPECT_EQ(conversionNeeded(nullptr, example.source, example.target), example.needed)
        << example.source << " " << example.target;
  }
}

TEST(ConversionNeeded, AliasesAreComparedAsRows) {
  EXPECT_EQ(conversionNeeded(nullptr, 6, U_SHIFTJIS_CE), 1);
  EXPECT_EQ(conversionNeeded(nullptr, 6, 7), 1);
  EXPECT_EQ(conversionNeeded(nullptr, 6, U_ASCII_CE), 0);
  EXPECT_EQ(conversionNeeded(nullptr, 1, U_EBCDICANY_CE), 0);
  EXPECT_EQ(conversionNeeded(nullptr, 17, U_EBCDICANY_CE), 1);
}

TEST(ConversionNeeded, OutsideTheTable) {
  for (const CEI outside : {-1, 230, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(conversionNeeded(nullptr, outside, 62), 1);
    EXPECT_EQ(conversionNeeded(nullptr, 62, outside), 1);
    EXPECT_EQ(conversionNeeded(nullptr, outside, outside), 0);
    EXPECT_EQ(conversionNeeded(nullptr, outside, U_ANY_CE), 0);
  }
}

TEST(EncodingFamily, HeadsOfAllEncodings) {
  const std::map<int, int> heads = familyHeads();
  EXPECT_EQ(heads.size(), 16u);
  for (CEI cei = -1; cei <= NLS_CEI_COUNT; ++cei) {
    const auto head = heads.find(cei);
    EXPECT_EQ(familyHead(cei), head == heads.end() ? cei : head->second);
    EXPECT_EQ(encodingFamily(cei) != nullptr, head != heads.end());
  }
}

}  // namespace
}  // namespace veldnls
