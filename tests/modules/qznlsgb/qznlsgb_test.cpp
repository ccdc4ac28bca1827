// "qznlsgb": its record and its two look-ups.
#include "modules/qznlsgb/qznlsgb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "modules/qznlsgb/tables.h"
#include "support/host.h"
#include "support/module_record.h"

namespace veldnls {
namespace {

class Gb18030 : public ::testing::Test {
 protected:
  test::NlsHost host_{&VELDNLSLIB};
  Gb18030Module* module_ = nullptr;

  void SetUp() override {
    module_ = reinterpret_cast<Gb18030Module*>(createGb18030Module(&host_, nullptr));
    ASSERT_NE(module_, nullptr);
  }
  void TearDown() override { EXPECT_EQ(module_->release(module_), 0u); }

  uint32_t fromUnicode(uint32_t codePoint) { return module_->fromUnicode(module_, codePoint); }
  uint32_t toUnicode(uint32_t code) { return module_->toUnicode(module_, code); }
};

TEST_F(Gb18030, ConstructorFillsTheRecord) { test::expectModuleHeader(*module_, &host_); }

TEST_F(Gb18030, Examples) {
  EXPECT_EQ(toUnicode(0x81308130), 0x80u);
  EXPECT_EQ(fromUnicode(0x80), 0x81308130u);
  EXPECT_EQ(fromUnicode(0x20AC), 0xA2E3u);
  EXPECT_EQ(toUnicode(0xA2E3), 0x20ACu);
  EXPECT_EQ(fromUnicode(0x452), 0x20u);
  EXPECT_EQ(fromUnicode(0xE000), 0xAAA1u);
  EXPECT_EQ(fromUnicode(0xF600), 0x20u);
  EXPECT_EQ(toUnicode(0x8431A233), 0xFFDFu);
  EXPECT_EQ(toUnicode(0x8431A234), 0x20u);
  EXPECT_EQ(toUnicode(0xA3A4), 0xFFE5u);
  EXPECT_EQ(toUnicode('A'), uint32_t{'A'});
  EXPECT_EQ(fromUnicode('A'), uint32_t{'A'});
}

// The euro sign's one byte is the multi-byte module's, and no mapping of its own.
TEST_F(Gb18030, SingleBytesEndAt7F) {
  for (uint32_t byte = 0; byte < 0x100; ++byte) EXPECT_EQ(toUnicode(byte), byte < 0x80 ? byte : gbNotFound) << byte;
}

TEST_F(Gb18030, OnlyTheLow16BitsOfACodePointCount) {
  EXPECT_EQ(fromUnicode(0x1E000), 0xAAA1u);
  EXPECT_EQ(fromUnicode(0x1F600), 0x20u);
  EXPECT_EQ(fromUnicode(0xFFFF0041), 0x41u);
}

// Against a plain search of the tables: every unit; every code of one and two bytes, every four-byte code of the lead
// bytes that have some and the next one.
TEST_F(Gb18030, LookUpsAnswerWhatTheTablesHold) {
  ASSERT_TRUE(std::ranges::is_sorted(gbFromUnicodeTable, {}, &GbFromUnicodeRow::unit));
  ASSERT_TRUE(std::ranges::is_sorted(gbToUnicodeTable, {}, &GbToUnicodeRow::code));
  const GbFromUnicodeRow* next = std::begin(gbFromUnicodeTable);
  for (uint32_t unit = 0; unit < 0x10000; ++unit) {
    const bool listed = next != std::end(gbFromUnicodeTable) && next->unit == unit;
    ASSERT_EQ(fromUnicode(unit), listed ? next->code : gbNotFound) << std::hex << unit;
    if (listed) ++next;
  }
  EXPECT_EQ(next, std::end(gbFromUnicodeTable));

  const GbToUnicodeRow* row = std::begin(gbToUnicodeTable);
  const auto check = [&](uint32_t code) {
    const bool listed = row != std::end(gbToUnicodeTable) && row->code == code;
    ASSERT_EQ(toUnicode(code), listed ? row->unit : gbNotFound) << std::hex << code;
    if (listed) ++row;
  };
  for (uint32_t code = 0; code < 0x10000; ++code) check(code);
  for (uint32_t high = 0x8130; high <= 0x8539; ++high) {
    if ((high & 0xFF) < 0x30 || (high & 0xFF) > 0x39) continue;
    for (uint32_t low = 0x8130; low <= 0xFE39; ++low) {
      if ((low & 0xFF) >= 0x30 && (low & 0xFF) <= 0x39) check(high << 16 | low);
    }
  }
  EXPECT_EQ(row, std::end(gbToUnicodeTable));
}

// Bytes outside of the form's ranges, next to codes that exist.
TEST_F(Gb18030, CodesOutOfTheFormAreNotFound) {
  for (const uint32_t code : {0x80308130u, 0x812F8130u, 0x813A8130u, 0x81308030u, 0x8130FF30u, 0x8130812Fu, 0x8130813Au,
                              0xFF39FE39u, 0x00010000u, 0xFFFFFFFFu, 0x90308130u}) {
    EXPECT_EQ(toUnicode(code), gbNotFound) << std::hex << code;
  }
}

int allowedAllocations;
NlsBool8 allowSome(uint32_t /*size*/) { return allowedAllocations-- > 0; }

TEST_F(Gb18030, ConstructorWithoutMemory) {
  const uint32_t before = host_.memory.context->inUse;
  for (int round = 0; round < 50; ++round) {
    for (int allowed = 0; allowed < 10; ++allowed) {
      allowedAllocations = allowed;
      host_.memory.allowAllocation = allowSome;
      NlsExtension* module = createGb18030Module(nullptr, nullptr);
      host_.memory.allowAllocation = nullptr;
      if (module != nullptr) {
        EXPECT_GE(allowed, 1);
        module->release(module);
        break;
      }
      ASSERT_LT(allowed, 9);
    }
  }
  EXPECT_LE(host_.memory.context->inUse, before + 65536);
}

}  // namespace
}  // namespace veldnls
