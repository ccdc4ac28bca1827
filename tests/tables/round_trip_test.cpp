// What a single-byte table decodes it also encodes, and the other way round, but for the reviewed exceptions.
#include <gtest/gtest.h>

#include "exceptions.h"
#include "modules/qznlssb/tables.h"
#include "page_text.h"

namespace {

using test::Exceptions;
using test::RowText;
using test::unitText;
using veldnls::byteFromUnicodeTables;
using veldnls::byteToUnicodeTables;

void bytesComeBack(const RowText& row, Exceptions& exceptions) {
  for (size_t byte = 0; byte < 256; ++byte) {
    const char16_t unit = byteToUnicodeTables[row.cei][byte];
    if (unit == 0xFFFD) continue;
    const uint8_t* const page = byteFromUnicodeTables[row.cei][unit >> 8];
    ASSERT_NE(page, nullptr) << row.name << " byte " << byte;
    const uint8_t back = page[unit & 0xFF];
    if (back == byte) continue;
    EXPECT_TRUE(exceptions.allow({row.page, "byte", unitText(static_cast<int32_t>(byte)), unitText(back)}))
        << row.name << ": byte " << unitText(static_cast<int32_t>(byte)) << " comes back as " << unitText(back);
  }
}

void unitsComeBack(const RowText& row, Exceptions& exceptions) {
  for (size_t unit = 1; unit < 0x10000; ++unit) {
    const uint8_t* const page = byteFromUnicodeTables[row.cei][unit >> 8];
    if (page == nullptr || page[unit & 0xFF] == 0) continue;
    const char16_t back = byteToUnicodeTables[row.cei][page[unit & 0xFF]];
    if (back == unit) continue;
    EXPECT_TRUE(exceptions.allow({row.page, "unit", unitText(static_cast<int32_t>(unit)), unitText(back)}))
        << row.name << ": unit " << unitText(static_cast<int32_t>(unit)) << " comes back as " << unitText(back);
  }
}

TEST(SingleByteRoundTrip, KeepsAllButTheReviewedExceptions) {
  Exceptions exceptions(test::tablesTestPath("round_trip_exceptions.tsv"));
  for (const RowText& row : test::readRowTexts()) {
    if (byteFromUnicodeTables[row.cei] == nullptr) continue;
    bytesComeBack(row, exceptions);
    unitsComeBack(row, exceptions);
  }
  EXPECT_EQ(exceptions.unused(), std::vector<std::string>());
}

}  // namespace
